#include "JsonText.h"

#include <cstring>

namespace demo {

bool TextStream::write(const char* buffer, unsigned int size, tov::utils::AbstractLogger*)
{
    text.append(buffer, size);
    return true;
}

bool TextStream::read(char* buffer, unsigned int& size, tov::utils::AbstractLogger*)
{
    if (position >= text.size()) {
        size = 0;
        return false;
    }
    const std::size_t count = std::min<std::size_t>(size, text.size() - position);
    std::memcpy(buffer, text.data() + position, count);
    position += count;
    size = static_cast<unsigned int>(count);
    return true;
}

bool readJson(const std::string& text, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger)
{
    out.clear();
    TextStream stream(text);
    // The reader reports failures only to the logger; what counts here is whether anything arrived.
    static_cast<void>(tov::utils::deserializeDynamicObjectFromJson(out, stream, logger));
    return !out.empty();
}

std::string writeJson(const tov::utils::DynamicObject& object)
{
    TextStream stream;
    // A stream in memory takes every write: the text is whole whatever the result.
    static_cast<void>(tov::utils::serializeDynamicObjectToJson(object, stream, nullptr));
    return stream.getText();
}

} // namespace demo
