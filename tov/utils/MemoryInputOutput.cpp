#include <tov/utils/MemoryInputOutput.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {

MemoryInputOutput::MemoryInputOutput() : readPosition(0) {}

MemoryInputOutput::MemoryInputOutput(const char* text) : MemoryInputOutput(text, std::strlen(text)) {}

MemoryInputOutput::MemoryInputOutput(const char* bytes, std::size_t size) : bytes(bytes, size), readPosition(0) {}

MemoryInputOutput::~MemoryInputOutput() = default;

bool MemoryInputOutput::isWritable() const
{
    return true;
}

bool MemoryInputOutput::write(const char* buffer, unsigned int size, AbstractLogger*)
{
    bytes.append(buffer, size);
    return true;
}

bool MemoryInputOutput::isReadable() const
{
    return true;
}

bool MemoryInputOutput::read(char* buffer, unsigned int& size, AbstractLogger*)
{
    const std::size_t count = std::min<std::size_t>(size, bytes.size() - readPosition);
    if (count != 0) {
        std::memcpy(buffer, bytes.data() + readPosition, count);
    }
    readPosition += count;
    size = static_cast<unsigned int>(count);
    return true;
}

const String& MemoryInputOutput::getText() const
{
    return bytes;
}

void MemoryInputOutput::rewind()
{
    readPosition = 0;
}

void MemoryInputOutput::clear()
{
    bytes.clear();
    readPosition = 0;
}

} // namespace utils
} // namespace tov
