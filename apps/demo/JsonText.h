#pragma once
// JSON texts in memory to and from property trees, for the demo's files and the tour's checks.
//   tov::utils::DynamicObject reply;  demo::readJson("{\"suspended\":true}", reply, logger);
//   std::string text = demo::writeJson(reply);

#include <tov/utils/All.h>

#include <string>

namespace demo {

// Into the root of `out`, which is cleared first; false when the text left nothing to read.
bool readJson(const std::string& text, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger);
std::string writeJson(const tov::utils::DynamicObject& object);

// An in-memory stream: reads hand out the text and give false once it is used up, as the JSON reader
// expects; writes append.
class TextStream : public tov::utils::AbstractDataInputOutput {
public:
    TextStream() = default;
    explicit TextStream(std::string text) : text(std::move(text)) {}

    bool isWritable() const override { return true; }
    bool write(const char* buffer, unsigned int size, tov::utils::AbstractLogger*) override;
    bool isReadable() const override { return true; }
    bool read(char* buffer, unsigned int& size, tov::utils::AbstractLogger*) override;

    const std::string& getText() const { return text; }

private:
    std::string text;
    std::size_t position = 0;
};

} // namespace demo
