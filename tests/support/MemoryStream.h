#pragma once
// An in-memory AbstractDataInputOutput for tests: reads hand out the text in pieces and give false
// once it is used up, as the JSON reader expects of a stream; writes append.

#include <tov/utils/AbstractDataInputOutput.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace tov {
namespace testing {

class MemoryStream : public utils::AbstractDataInputOutput {
public:
    explicit MemoryStream(std::string text = std::string()) : text(std::move(text)) {}

    bool isWritable() const override { return true; }
    bool write(const char* buffer, unsigned int size, utils::AbstractLogger*) override
    {
        text.append(buffer, size);
        return true;
    }
    bool isReadable() const override { return position < text.size(); }
    bool read(char* buffer, unsigned int& size, utils::AbstractLogger*) override
    {
        if (position >= text.size()) {
            size = 0;
            return false;
        }
        size = static_cast<unsigned int>(std::min<std::size_t>(size, text.size() - position));
        std::memcpy(buffer, text.data() + position, size);
        position += size;
        return true;
    }

    const std::string& getText() const { return text; }

private:
    std::string text;
    std::size_t position = 0;
};

} // namespace testing
} // namespace tov
