// Uri::set on any text: an accepted text, written back with computeString and read again, gives an
// equal Uri; a refused one leaves the Uri empty.
#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

using tov::utils::Uri;

namespace {

void require(bool condition, const char* what, const char* text)
{
    if (!condition) {
        std::fprintf(stderr, "%s: \"%s\"\n", what, text);
        std::abort();
    }
}

// Two shapes are written back in a form that reads otherwise, and are kept as they are: a path without
// scheme whose first segment reads as a scheme once its leading slash is gone ("/a:b" writes "a:b"), and
// a path holding a dot behind which stands an empty extension ("a.b." writes "a.b").
bool writesBackDifferently(const Uri& uri, const Uri& again)
{
    if (!uri.hasScheme() && again.hasScheme()) {
        return true;
    }
    if (uri.hasExtension()) {
        return false;
    }
    std::vector<char> path(uri.computePathStringLength() + 1);
    uri.computePathString(path.data());
    return std::strchr(path.data(), '.') != nullptr;
}

void checkRoundTrip(const char* text, unsigned int length)
{
    Uri uri;
    if (!uri.set(text, length, nullptr)) {
        require(uri.empty(), "a refused text leaves a part behind", text);
        return;
    }
    char* written = uri.computeString();
    require(std::strlen(written) == uri.computeStringLength(), "written length differs", text);
    Uri again;
    const bool accepted = again.set(written, nullptr);
    if (!writesBackDifferently(uri, again)) {
        require(accepted, "written text refused", written);
        require(again == uri, "written text reads as another Uri", written);
    }
    TOV_DELETE_ARRAY(written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The scheme scan reads on to the text's NUL, whatever the length, so the text gets one.
    std::vector<char> text(data, data + size);
    text.push_back('\0');
    checkRoundTrip(text.data(), static_cast<unsigned int>(size));
    // A length short of the text lets the scheme scan run past it.
    checkRoundTrip(text.data(), static_cast<unsigned int>(size / 2));
    return 0;
}
