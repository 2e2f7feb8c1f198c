#pragma once
// AbstractDataInputOutput: the byte stream that serialisers read from and write to, so that they know
// nothing of where the data lives. Destroyed through its concrete class.
//   FileInputOutput file("world.json"); file.openForWriting(logger);
//   serializeDynamicObjectToJson(world, file, logger);

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractLogger;

class TOV_UTILS_API AbstractDataInputOutput {
public:
    virtual bool isWritable() const = 0;
    // Writes all `size` bytes.
    [[nodiscard]] virtual bool write(const char* buffer, unsigned int size, AbstractLogger* logger) = 0;
    virtual bool isReadable() const = 0;
    // `size` is the room in `buffer` on the way in and the count read on the way out. At the end of
    // the data a read succeeds with a short (or zero) count: a reader stops at a short read.
    [[nodiscard]] virtual bool read(char* buffer, unsigned int& size, AbstractLogger* logger) = 0;

protected:
    ~AbstractDataInputOutput() = default;
};

} // namespace utils
} // namespace tov
