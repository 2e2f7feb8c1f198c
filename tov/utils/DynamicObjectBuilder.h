#pragma once
// DynamicObjectBuilder: writes the values a producer sends into a DynamicObject, below a chosen property
// (the root by default). A container takes its type from its first child, so an empty object or array
// leaves its property null. Used for one build; what was written before a failure stays.
//   tov::utils::DynamicObject object;
//   tov::utils::DynamicObjectBuilder builder(object);
//   builder.beginObject(); builder.objectChild("x"); builder.integer(3); builder.endObject();   // x = 3

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Containers.h>
#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class DynamicObject;

class TOV_UTILS_API DynamicObjectBuilder : public AbstractObjectBuilder {
public:
    // `property` 0 stands for the root. A target that already has a type accepts a value of that type.
    explicit DynamicObjectBuilder(DynamicObject& object, unsigned int property = 0);
    ~DynamicObjectBuilder() override;

    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;

    bool begin() override;
    bool end() override;
    bool null() override;
    bool boolean(bool value) override;
    bool integer(long long value) override;
    bool real(double value) override;
    bool string(const char* text, unsigned int length) override;
    bool beginObject() override;
    // Refuses, with a message, a key that is empty or holds ".", "[", "]" or a zero byte.
    bool objectChild(const char* key, unsigned int length) override;
    bool endObject() override;
    bool beginArray() override;
    bool arrayChild() override;
    bool endArray() override;

private:
    bool beginProperty(type::Type type);
    bool endProperty(type::Type type);
    bool beginScalar(type::Type type);
    bool endScalar(type::Type type);
    bool reportChildFailure(const char* key, unsigned int length);
    // Writes a scalar into the current property's value node when the builder knows it and it holds no
    // children; false when the setter of the object has to do it.
    bool writeScalar(type::Type type, unsigned long long bits);

    Vector<unsigned int> properties;
    Vector<type::Type> types;
    // Beside each property, its value node when the builder made or found the property itself (0 for the
    // target): a scalar then goes straight into it.
    Vector<unsigned int> values;
    DynamicObject& object;
};

} // namespace utils
} // namespace tov
