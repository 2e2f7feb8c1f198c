#pragma once
// LocationText: the text of a Uri for the life of a scope, released through the memory service on every
// way out. Private to the library.
//   const LocationText location(context->getLocation());
//   builder.string(location.get(), location.getLength());

#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class LocationText {
public:
    explicit LocationText(const Uri& location)
        : text(location.computeString()), length(static_cast<unsigned int>(std::strlen(text)))
    {
    }
    ~LocationText() { TOV_DELETE_ARRAY(text); }
    LocationText(const LocationText&) = delete;
    LocationText& operator=(const LocationText&) = delete;

    const char* get() const { return text; }
    unsigned int getLength() const { return length; }

private:
    char* text;
    unsigned int length;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
