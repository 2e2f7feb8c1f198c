#include "JsonText.h"

namespace demo {

bool readJson(const std::string& text, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger)
{
    out.clear();
    tov::utils::MemoryInputOutput stream(text.data(), text.size());
    tov::utils::deserializeDynamicObjectFromJson(out, stream, logger);
    // The reader reports failures only to the logger; what counts here is whether anything arrived.
    return !out.empty();
}

std::string writeJson(const tov::utils::DynamicObject& object)
{
    tov::utils::MemoryInputOutput stream;
    tov::utils::serializeDynamicObjectToJson(object, stream, nullptr);
    return std::string(stream.getText().data(), stream.getText().size());
}

} // namespace demo
