#pragma once
// PathMemo: how DynamicObject::addProperty's last walk of a path went, up to the property it ended on, so
// that the next path with the same beginning (the fields of one record, set one after the other) starts
// there instead of descending the trie part by part again. A start is offered only while every part on
// the way would still be taken as it was (a property still able to hold children, an array still holding
// the index); the object forgets the memo whenever nodes are freed, moved or renamed, which could make the
// same text lead elsewhere. It lives in the object and allocates nothing: a longer path is not kept.
//   details::PathMemo::Walk walk(key, length, root);
//   memo.resume(object, walk);   ... walk.cursor.next(...); walk.took(part) ...;   memo.keep(walk, atLastPart);

#include <tov/utils/DynamicType.h>
#include <tov/utils/details/PathCursor.h>

namespace tov {
namespace utils {

class DynamicObject;

namespace details {

class PathMemo {
public:
    // A part that a walk took: from which property, as a name (type::object) or as an index.
    struct Part {
        unsigned int from;
        type::Type kind;
        unsigned int index;
    };

    static const unsigned int maximumParts = 8;
    static const unsigned int maximumText = 64;

    // One walk of a path: the cursor and property it stands on, and the parts taken so far.
    struct Walk {
        Walk(const char* path, unsigned int length, unsigned int root);
        // Notes a part taken; a walk of more parts than the memo holds is not kept.
        void took(const Part& part);

        PathCursor cursor;
        unsigned int property;
        Part parts[maximumParts];
        unsigned int partCount;
        bool overflowed;
        // The memo's count of forgettings when the walk began: a walk during which the object changed
        // shape is not kept.
        unsigned int forgettings;
    };

    PathMemo();

    // Moves `walk`, at the root, to where the kept walk ended when its path begins with the kept text and
    // every part of the kept walk would still be taken; otherwise leaves it at the root.
    void resume(const DynamicObject& object, Walk& walk) const;
    // Keeps `walk`, whose last part ended where `atLastPart` stands.
    void keep(const Walk& walk, const PathCursor& atLastPart);
    void forget();

private:
    bool stillTakes(const DynamicObject& object, const Part& part) const;

    char text[maximumText];
    unsigned int textLength;
    PathCursor cursor;
    unsigned int property;
    Part parts[maximumParts];
    unsigned int partCount;
    bool kept;
    unsigned int forgettings;
};

} // namespace details
} // namespace utils
} // namespace tov
