#pragma once
// StringDataOutput: a write-only stream into a String, for serialising to memory.

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {
namespace impl {

class StringDataOutput : public AbstractDataInputOutput {
public:
    bool isWritable() const override { return true; }
    bool write(const char* buffer, unsigned int size, AbstractLogger*) override
    {
        text.append(buffer, size);
        return true;
    }
    bool isReadable() const override { return false; }
    bool read(char*, unsigned int&, AbstractLogger*) override { return false; }

    const String& getText() const { return text; }

private:
    String text;
};

} // namespace impl
} // namespace utils
} // namespace tov
