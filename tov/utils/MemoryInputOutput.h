#pragma once
// MemoryInputOutput: bytes in memory as an AbstractDataInputOutput. Writes append; reads hand the bytes
// out from the first one on and, like a file at its end, succeed with a zero count once all are read.
//   tov::utils::MemoryInputOutput in("{\"speed\":3}");
//   deserializeDynamicObjectFromJson(object, in, logger);
//   tov::utils::MemoryInputOutput out; serializeDynamicObjectToJson(object, out, logger);   // out.getText()

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>

#include <cstddef>

namespace tov {
namespace utils {

class TOV_UTILS_API MemoryInputOutput : public AbstractDataInputOutput {
public:
    MemoryInputOutput();
    // Copies the text, which a read then hands out.
    explicit MemoryInputOutput(const char* text);
    MemoryInputOutput(const char* bytes, std::size_t size);
    virtual ~MemoryInputOutput();

    // Always true: memory is written by appending and read from where the last read stopped.
    bool isWritable() const override;
    bool write(const char* buffer, unsigned int size, AbstractLogger* logger) override;
    bool isReadable() const override;
    bool read(char* buffer, unsigned int& size, AbstractLogger* logger) override;

    // Everything written or given, read or not.
    const String& getText() const;
    // The next read starts again from the first byte.
    void rewind();
    // Drops every byte; the next read starts from the first byte written after.
    void clear();

private:
    String bytes;
    std::size_t readPosition;
};

} // namespace utils
} // namespace tov
