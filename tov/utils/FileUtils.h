#pragma once
// Whole-file helpers. Buffers handed out are made by tracked array new: release them with TOV_DELETE_ARRAY.
//   unsigned int size = 0;
//   char* content = tov::utils::loadFile("world.json", size, logger);   // no terminating zero
//   ...; TOV_DELETE_ARRAY(content);

#include <tov/utils/Export.h>
#include <tov/utils/ScopedPtr.h>

#include <iosfwd>

namespace tov {
namespace utils {

class AbstractLogger;

TOV_UTILS_API bool fileExists(const char* path);
// Binary, shared with other processes. A null path asserts.
[[nodiscard]] TOV_UTILS_API bool openFileForReading(const char* path, ScopedPtr<std::basic_istream<char>>& stream,
                                                    AbstractLogger* logger = nullptr);
// Binary, truncating, shared with other processes.
[[nodiscard]] TOV_UTILS_API bool openFileForWriting(const char* path, ScopedPtr<std::basic_ostream<char>>& stream,
                                                    AbstractLogger* logger = nullptr);
// The whole file, or null (an empty file gives null too). `size` is set only on success.
[[nodiscard]] TOV_UTILS_API char* loadFile(const char* path, unsigned int& size, AbstractLogger* logger = nullptr);
[[nodiscard]] TOV_UTILS_API bool saveToFile(const char* path, const char* buffer, unsigned int size,
                                            AbstractLogger* logger = nullptr);
[[nodiscard]] TOV_UTILS_API bool eraseFile(const char* path, AbstractLogger* logger = nullptr);

} // namespace utils
} // namespace tov
