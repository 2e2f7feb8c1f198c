#include <tov/utils/details/PathMemo.h>

#include <tov/utils/DynamicObject.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {
namespace details {

PathMemo::Walk::Walk(const char* path, unsigned int length, unsigned int root)
    : cursor(path, length), property(root), parts(), partCount(0), overflowed(false), forgettings(0)
{
}

void PathMemo::Walk::took(const Part& part)
{
    if (partCount == maximumParts) {
        overflowed = true;
        return;
    }
    parts[partCount++] = part;
}

PathMemo::PathMemo()
    : text(), textLength(0), cursor("", 0), property(0), parts(), partCount(0), kept(false), forgettings(0)
{
}

void PathMemo::resume(const DynamicObject& object, Walk& walk) const
{
    walk.forgettings = forgettings;
    const char* path = walk.cursor.getPath();
    const unsigned int length = walk.cursor.getLength();
    if (!kept || length < textLength || std::memcmp(path, text, textLength) != 0) {
        return;
    }
    for (unsigned int index = 0; index < partCount; ++index) {
        if (!stillTakes(object, parts[index])) {
            return;
        }
    }
    // The cursor's state after a text depends on that text alone, which the two paths share.
    walk.cursor = cursor;
    walk.cursor.moveTo(path, length);
    walk.property = property;
    std::copy(parts, parts + partCount, walk.parts);
    walk.partCount = partCount;
}

// What addProperty checks before it takes a part, read from one value node: a part taken once leads to
// the same property as long as the object keeps its shape, and only these checks could answer otherwise.
// A property without a value node is not resumed from: the walk from the root then meets it as before.
bool PathMemo::stillTakes(const DynamicObject& object, const Part& part) const
{
    const DynamicObjectNode* value = object.findValueNode(part.from);
    if (value == nullptr) {
        return false;
    }
    const type::Type own = static_cast<type::Type>(value->leaf.type);
    if (own != type::null && own != part.kind) {
        return false;
    }
    return part.kind != type::array || (own == type::array && part.index < value->leaf.value.bits);
}

void PathMemo::keep(const Walk& walk, const PathCursor& atLastPart)
{
    const unsigned int consumed = atLastPart.getPosition();
    if (walk.forgettings != forgettings || walk.overflowed || consumed > maximumText) {
        kept = false;
        return;
    }
    std::memcpy(text, walk.cursor.getPath(), consumed);
    textLength = consumed;
    cursor = atLastPart;
    property = walk.property;
    std::copy(walk.parts, walk.parts + walk.partCount, parts);
    partCount = walk.partCount;
    kept = true;
}

void PathMemo::forget()
{
    kept = false;
    ++forgettings;
}

} // namespace details
} // namespace utils
} // namespace tov
