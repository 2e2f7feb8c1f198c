#include "JsonText.h"

namespace demo {

bool readJson(const std::string& text, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger)
{
    out.clear();
    tov::utils::MemoryInputOutput stream(text.data(), text.size());
    // The reader reports failures only to the logger; what counts here is whether anything arrived.
    static_cast<void>(tov::utils::deserializeDynamicObjectFromJson(out, stream, logger));
    return !out.empty();
}

std::string writeJson(const tov::utils::DynamicObject& object)
{
    tov::utils::MemoryInputOutput stream;
    // A stream in memory takes every write: the text is whole whatever the result.
    static_cast<void>(tov::utils::serializeDynamicObjectToJson(object, stream, nullptr));
    return std::string(stream.getText().data(), stream.getText().size());
}

} // namespace demo
