#include <tov/utils/Memory.h>

#include <cstdint>
#include <cstring>

namespace tov {
namespace utils {

char* trackedArrayNew(unsigned int count, const char* /*file*/, unsigned int /*line*/)
{
    char* block = static_cast<char*>(allocator::Allocator::instance().allocate(count + 4));
    const std::uint32_t word = count;
    std::memcpy(block, &word, sizeof word);
    return block + 4;
}

void trackedArrayDelete(char* buffer, const char* /*file*/, unsigned int /*line*/)
{
    if (buffer == nullptr) {
        return;
    }
    allocator::Allocator::instance().deallocate(buffer - 4, 0);
}

} // namespace utils
} // namespace tov
