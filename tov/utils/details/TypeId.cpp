#include <tov/utils/details/TypeId.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/Quaternion.h>
#include <tov/utils/Vector2.h>
#include <tov/utils/Vector3.h>

namespace tov {
namespace utils {
namespace details {

// Each id is built on first use, so that no registry depends on the order of static construction.

template <>
const Uuid& getClassTypeId<int>()
{
    static const Uuid id = Uuid::create("1bc45061-9b2d-47a0-91e4-366d093a370b");
    return id;
}

template <>
const Uuid& getClassTypeId<long long>()
{
    static const Uuid id = Uuid::create("6f6dce75-d95d-4da8-944c-94fece5c8e4d");
    return id;
}

template <>
const Uuid& getClassTypeId<double>()
{
    static const Uuid id = Uuid::create("897618b0-7479-4a89-8ab7-23fa13f16316");
    return id;
}

template <>
const Uuid& getClassTypeId<float>()
{
    static const Uuid id = Uuid::create("8e6fc8dd-2cee-4bc0-b1d8-87142e68d777");
    return id;
}

template <>
const Uuid& getClassTypeId<bool>()
{
    static const Uuid id = Uuid::create("23aa4943-a9fb-4472-a4f0-35a0bf88f41e");
    return id;
}

template <>
const Uuid& getClassTypeId<String>()
{
    static const Uuid id = Uuid::create("ad7b0b58-c164-4d3f-be4a-327ace48624c");
    return id;
}

template <>
const Uuid& getClassTypeId<Vector3<double>>()
{
    static const Uuid id = Uuid::create("f31f94dc-07a5-462f-b055-7be3506a7b36");
    return id;
}

template <>
const Uuid& getClassTypeId<Vector2<double>>()
{
    static const Uuid id = Uuid::create("848ef37e-0b2f-4805-85b3-f0b3b14f0fd0");
    return id;
}

template <>
const Uuid& getClassTypeId<Quaternion<double>>()
{
    static const Uuid id = Uuid::create("509e70d9-c3f4-48e6-8072-614b6805fa48");
    return id;
}

template <>
const Uuid& getClassTypeId<DynamicObject>()
{
    static const Uuid id = Uuid::create("0775eb00-e4e6-4c6a-83fb-a970e0cbc092");
    return id;
}

} // namespace details
} // namespace utils
} // namespace tov
