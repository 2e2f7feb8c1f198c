// Uri::retrieveFirstPathSegment on any bytes, read only up to their size: a segment that is found lies
// inside the text, starts it or follows a slash, and holds no slash; a refusal changes nothing.
#include <tov/utils/Uri.h>

#include <cstdint>
#include <cstdlib>

using tov::utils::Uri;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* path = reinterpret_cast<const char*>(data);
    const unsigned int untouched = 0xDEADBEEFu;
    unsigned int offset = untouched;
    unsigned int length = untouched;
    if (!Uri::retrieveFirstPathSegment(path, static_cast<unsigned int>(size), offset, length)) {
        if (offset != untouched || length != untouched) {
            std::abort();
        }
        return 0;
    }
    if (offset > size || length > size - offset) {
        std::abort();
    }
    if (length == 0) {
        if (offset != size) {
            std::abort();
        }
        return 0;
    }
    if (offset > 1 || (offset == 1 && path[0] != '/')) {
        std::abort();
    }
    for (unsigned int i = 0; i < length; ++i) {
        if (path[offset + i] == '/' || path[offset + i] == '\0') {
            std::abort();
        }
    }
    return 0;
}
