// The statics that serve the HTTP side of Uri: request paths and queries, read without building a Uri.
#include <tov/utils/Uri.h>

#include <tov/utils/impl/UriGrammarParser.h>

namespace tov {
namespace utils {

namespace {

struct FirstSegment {
    const char* path;
    unsigned int offset;
    unsigned int length;
};

bool recordFirstSegment(void* userData, const char* segment, unsigned int length)
{
    FirstSegment& first = *static_cast<FirstSegment*>(userData);
    first.offset = static_cast<unsigned int>(segment - first.path);
    first.length = length;
    return false;
}

} // namespace

bool Uri::retrieveFirstPathSegment(const char* path, unsigned int size, unsigned int& offset, unsigned int& length)
{
    FirstSegment first = {path, 0, 0};
    impl::UriGrammarParser::Callbacks callbacks;
    callbacks.userData = &first;
    callbacks.onSegment = &recordFirstSegment;
    switch (impl::UriGrammarParser(path, size, callbacks).parsePath()) {
    case impl::UriGrammarParser::stopped:
        offset = first.offset;
        length = first.length;
        return true;
    case impl::UriGrammarParser::complete:
        offset = size;
        length = 0;
        return true;
    default:
        return false;
    }
}

} // namespace utils
} // namespace tov
