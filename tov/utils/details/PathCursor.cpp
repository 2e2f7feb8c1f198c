#include <tov/utils/details/PathCursor.h>

#include <tov/utils/impl/DynamicObjectNodes.h>

#include <algorithm>

namespace tov {
namespace utils {
namespace details {

PathCursor::PathCursor(const char* path, unsigned int length)
    : path(path), length(length), position(0), partStart(0), part(0), partLength(0), partIndex(0), insideBrackets(false)
{
}

PathCursor::Step PathCursor::next(bool atRoot)
{
    while (position < length) {
        const unsigned int here = position++;
        const char c = path[here];
        if (!insideBrackets) {
            if (c == '.') {
                if ((here > partStart && atRoot) || here > partStart + 1) {
                    return endName(here);
                }
                if (path[partStart] != ']') {
                    return refused;
                }
                partStart = here;
            } else if (c == '[') {
                insideBrackets = true;
                partIndex = 0;
                // QUIRK(root-array-path): a first part ended by "[" must be longer than one character, as
                // the position of the part's own first character is taken for that of a separator, so on
                // a null object `a[0]` makes the root itself an array. Kept so that every path gives the
                // property it always gave.
                if (here > partStart + 1) {
                    return endName(here);
                }
            } else if (c == ']' || c == '\0') {
                // A zero byte inside a name would read as the end of a path in the trie.
                return refused;
            }
        } else if (c >= '0' && c <= '9') {
            // Saturated, so that a long run of digits cannot wrap around to a small index.
            partIndex = std::min(partIndex * 10 + static_cast<unsigned int>(c - '0'), impl::maximumArraySize);
        } else if (c == ']') {
            if (here > partStart + 1) {
                insideBrackets = false;
                partStart = here;
                return index;
            }
        } else {
            return refused;
        }
    }
    return finished;
}

PathCursor::Step PathCursor::endName(unsigned int end)
{
    part = partStart;
    partLength = end - partStart;
    partStart = end;
    return name;
}

void PathCursor::moveTo(const char* otherPath, unsigned int otherLength)
{
    path = otherPath;
    length = otherLength;
}

unsigned int PathCursor::getPosition() const
{
    return position;
}

const char* PathCursor::getPath() const
{
    return path;
}

unsigned int PathCursor::getLength() const
{
    return length;
}

const char* PathCursor::getPart() const
{
    return path + part;
}

unsigned int PathCursor::getPartLength() const
{
    return partLength;
}

unsigned int PathCursor::getIndex() const
{
    return partIndex;
}

const char* PathCursor::getRest() const
{
    return path + partStart;
}

unsigned int PathCursor::getRestLength() const
{
    return length - partStart;
}

} // namespace details
} // namespace utils
} // namespace tov
