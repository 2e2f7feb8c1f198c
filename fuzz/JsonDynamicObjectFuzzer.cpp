// JSON text from outside into a DynamicObject, with the default assertion function left in place, so
// that any path from such input to an assertion ends the run as a finding. What was read is written
// out again and read back, which must succeed the same way.
#include <tov/utils/DynamicObject.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/MemoryInputOutput.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tov::utils::DynamicObject object;
    tov::utils::MemoryInputOutput input(reinterpret_cast<const char*>(data), size);
    // Only a crash, a hang or an assertion is a finding: refused text is expected, and so is the part
    // of an object that a refusal leaves, which is written and read again below.
    static_cast<void>(tov::utils::deserializeDynamicObjectFromJson(object, input, nullptr));

    tov::utils::MemoryInputOutput written;
    if (tov::utils::serializeDynamicObjectToJson(object, written, nullptr)) {
        tov::utils::DynamicObject again;
        static_cast<void>(tov::utils::deserializeDynamicObjectFromJson(again, written, nullptr));
    }
    return 0;
}
