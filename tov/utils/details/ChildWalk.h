#pragma once
// ChildWalk: the children of a property, in the order and with the keys that a DynamicObjectIterator of
// depth 0 gives after its start, its kept quirks included, for the writers that list every object's
// members. It takes fewer steps per node: a frame remembers which link it waits on instead of finding it
// again by comparing handles on the way up, a `greater` link is followed in place of its node, and the
// walks of one document share their room, so that nested walks allocate nothing once it has grown.
//   details::ChildWalk::Room room;
//   for (details::ChildWalk member(object, property, room); member.next();) use(member.getKey(), member.getProperty());

#include <tov/utils/Containers.h>
#include <tov/utils/details/DynamicObjectNode.h>
#include <tov/utils/details/NodeTable.h>

namespace tov {
namespace utils {

class DynamicObject;

namespace details {

class ChildWalk {
public:
    // A node that the walk went down from, with the links that it needs on the way back up, so that
    // climbing reads no node again.
    struct Frame {
        // Built in its place field by field: a frame put together aside and copied in as a whole makes
        // the processor wait for the small writes to reach memory before the wide read (seen here as
        // most of a walk's time).
        Frame(unsigned int handle, const DynamicObjectNode::Trie& links)
            : handle(handle), equal(links.equal), greater(links.greater), splitChar(links.splitChar), afterLess(false),
              chainBelow(0)
        {
        }

        unsigned int handle;
        unsigned int equal;
        unsigned int greater;
        signed char splitChar;
        // The link that the node waits on to come back: its `less` or its `equal` side.
        bool afterLess;
        // Below its `equal` link, the nodes that have no other link and are no separator: on the way up
        // each of them only takes its character off the key, so they get no frame of their own.
        unsigned short chainBelow;
    };
    // Frames and key characters of the walks in progress, innermost last: a walk started while another
    // one stands on a child appends its own and gives them back when it ends.
    struct Room {
        Vector<Frame> frames;
        Vector<char> key;
    };

    // `property` 0 stands for the root. A property without a value node has no children to give.
    ChildWalk(const DynamicObject& object, unsigned int property, Room& room);
    // The same walk for a split node whose value node the caller holds, as a writer does: the value node
    // is not looked for again when the split node leads to it.
    ChildWalk(const DynamicObject& object, unsigned int splitNode, const DynamicObjectNode& value, Room& room);
    ~ChildWalk();
    ChildWalk(const ChildWalk&) = delete;
    ChildWalk& operator=(const ChildWalk&) = delete;

    // Moves to the next child; false at the end.
    bool next();
    unsigned int getProperty() const;
    // The value node of the child, so that a writer need not look for it again.
    const DynamicObjectNode& getValueNode() const;
    // The value node of any property as the getters find it; null when it has none.
    static const DynamicObjectNode* findValueNode(const DynamicObject& object, unsigned int property);
    // The child's name, terminated, and its length, as DynamicObjectIterator's getKey and getKeyLength
    // give them. Valid until the next call of next, also while a nested walk runs.
    const char* getKey() const;
    unsigned int getKeyLength() const;

private:
    // The walk before its start is known: the constructors above end it at once when there is none.
    ChildWalk(const DynamicObject& object, Room& room);
    // Goes down the `equal` link of the innermost frame's node, and on down the chain of nodes below
    // it, adding their characters to the key; the first node after the chain, to take next.
    unsigned int descendEqual(Frame& frame);
    // Leaves the innermost frame for its `greater` node, the one to take next.
    unsigned int goSideways(unsigned int greater);
    // Leaves the innermost frame, done with, for the first node above that has one to take next; 0 at
    // the end of the walk.
    unsigned int climb();
    // climb without leaving a frame first: a value node gets none, so after one the innermost frame is the
    // node that it hangs from.
    unsigned int climbAbove();

    const DynamicObject& object;
    const NodeTable nodes;
    Room& room;
    const unsigned int frameBase;
    const unsigned int keyBase;
    unsigned int startProperty;
    unsigned int startValue;
    unsigned int property;
    const DynamicObjectNode* value;
    bool started;
    bool ended;
};

// Inline: the writers ask for them at every member.
inline unsigned int ChildWalk::getProperty() const
{
    return property;
}

inline const DynamicObjectNode& ChildWalk::getValueNode() const
{
    return *value;
}

inline const char* ChildWalk::getKey() const
{
    if (room.key.size() == keyBase) {
        return "";
    }
    return room.key.data() + keyBase + (room.key[keyBase] == '.' ? 1 : 0);
}

inline unsigned int ChildWalk::getKeyLength() const
{
    const unsigned int length = static_cast<unsigned int>(room.key.size()) - keyBase;
    if (length == 0) {
        return 0;
    }
    return length - 1 - (room.key[keyBase] == '.' ? 1 : 0);
}

} // namespace details
} // namespace utils
} // namespace tov
