// JSON text from outside into a DynamicObject, with the default assertion function left in place, so
// that any path from such input to an assertion ends the run as a finding. What was read is written
// out again and read back, which must succeed the same way.
#include <tov/utils/DynamicObject.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/impl/StringDataOutput.h>

#include <cstdint>
#include <cstring>

namespace {

// Serves the bytes once and then gives false, as a request body does.
class BytesInput : public tov::utils::AbstractDataInputOutput {
public:
    BytesInput(const char* data, std::size_t size) : data(data), size(size) {}

    bool isWritable() const override { return false; }
    bool write(const char*, unsigned int, tov::utils::AbstractLogger*) override { return false; }
    bool isReadable() const override { return position < size; }
    bool read(char* buffer, unsigned int& length, tov::utils::AbstractLogger*) override
    {
        if (position >= size) {
            length = 0;
            return false;
        }
        const std::size_t count = size - position < length ? size - position : length;
        std::memcpy(buffer, data + position, count);
        position += count;
        length = static_cast<unsigned int>(count);
        return true;
    }

private:
    const char* data;
    std::size_t size;
    std::size_t position = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tov::utils::DynamicObject object;
    BytesInput input(reinterpret_cast<const char*>(data), size);
    // Only a crash, a hang or an assertion is a finding: refused text is expected, and so is the part
    // of an object that a refusal leaves, which is written and read again below.
    static_cast<void>(tov::utils::deserializeDynamicObjectFromJson(object, input, nullptr));

    tov::utils::impl::StringDataOutput written;
    if (tov::utils::serializeDynamicObjectToJson(object, written, nullptr)) {
        tov::utils::DynamicObject again;
        BytesInput second(written.getText().data(), written.getText().size());
        static_cast<void>(tov::utils::deserializeDynamicObjectFromJson(again, second, nullptr));
    }
    return 0;
}
