#include <tov/utils/details/ChildWalk.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/impl/DynamicObjectNodes.h>

#include <climits>

namespace tov {
namespace utils {
namespace details {

using impl::isSeparator;

ChildWalk::ChildWalk(const DynamicObject& object, Room& room)
    : object(object), nodes(object.getNodeTable()), room(room),
      frameBase(static_cast<unsigned int>(room.frames.size())), keyBase(static_cast<unsigned int>(room.key.size())),
      startProperty(0), startValue(0), property(0), started(false), ended(false)
{
}

ChildWalk::ChildWalk(const DynamicObject& object, unsigned int property, Room& room) : ChildWalk(object, room)
{
    object.findValueNode(property == 0 ? object.getRoot() : property, "", 0, startProperty, startValue);
    ended = startProperty == 0;
}

ChildWalk::ChildWalk(const DynamicObject& object, unsigned int splitNode, const DynamicObjectNode& value, Room& room)
    : ChildWalk(object, room)
{
    unsigned int valueHandle = 0;
    if (object.findValueNode(nodes.at(splitNode), valueHandle) == &value) {
        startProperty = splitNode;
        startValue = valueHandle;
    } else {
        object.findValueNode(splitNode == 0 ? object.getRoot() : splitNode, "", 0, startProperty, startValue);
    }
    ended = startProperty == 0;
}

ChildWalk::~ChildWalk()
{
    room.frames.erase(room.frames.begin() + frameBase, room.frames.end());
    room.key.resize(keyBase);
}

// The steps are those of DynamicObjectIterator::next at depth 0, where the depth never rises: a separator
// below the first character is not descended from above, and climbing back out of one ends the walk.
bool ChildWalk::next()
{
    if (ended) {
        return false;
    }
    // The walk stopped at a value node, which got no frame: the climb starts from the node above it.
    unsigned int current = started ? climbAbove() : startProperty;
    started = true;
    const NodeTable table = nodes;
    while (current != 0) {
        const DynamicObjectNode* node = table.at(current);
        if (node == nullptr) {
            object.getNode(current); // reports the handle out of range
            TOV_ASSERT(false, "unable to convert current to real trie node pointer");
            break;
        }
        const DynamicObjectNode::Trie& links = node->trie;
        if (links.isValue) {
            value = node;
            return true;
        }
        room.frames.emplace_back(current, links);
        if (links.less != 0) {
            room.frames.back().afterLess = true;
            current = links.less;
        } else if (links.equal != 0 && links.equal != startValue &&
                   (room.key.size() == keyBase || !isSeparator(links.splitChar))) {
            current = descendEqual(room.frames.back());
        } else {
            current = links.greater != 0 ? goSideways(links.greater) : climb();
        }
    }
    ended = true;
    property = 0;
    return false;
}

unsigned int ChildWalk::descendEqual(Frame& frame)
{
    // The last node to set `property` before a value node is its split node.
    property = frame.handle;
    room.key.push_back(static_cast<char>(frame.splitChar));
    frame.afterLess = false;
    frame.chainBelow = 0;
    const NodeTable table = nodes;
    unsigned int current = frame.equal;
    const DynamicObjectNode* node = table.at(current);
    while (frame.chainBelow < USHRT_MAX) {
        if (node == nullptr || node->trie.isValue || node->trie.less != 0 || node->trie.greater != 0 ||
            node->trie.equal == 0 || node->trie.equal == startValue || isSeparator(node->trie.splitChar)) {
            break;
        }
        property = current;
        room.key.push_back(static_cast<char>(node->trie.splitChar));
        ++frame.chainBelow;
        const unsigned int below = node->trie.equal;
        node = table.stepDown(node, current, below);
        current = below;
    }
    return current;
}

unsigned int ChildWalk::goSideways(unsigned int greater)
{
    // Coming back from `greater` only passes its node on the way up: the node need not wait for it.
    room.frames.pop_back();
    return greater;
}

unsigned int ChildWalk::climb()
{
    room.frames.pop_back();
    return climbAbove();
}

unsigned int ChildWalk::climbAbove()
{
    while (room.frames.size() > frameBase) {
        Frame& frame = room.frames.back();
        if (frame.afterLess) {
            // QUIRK(walk-depth-from-less-side): in from the `less` side, an `equal` link is taken
            // without a test of the depth, as the iterator takes it.
            if (frame.equal != 0 && frame.equal != startValue) {
                return descendEqual(frame);
            }
        } else {
            room.key.resize(room.key.size() - frame.chainBelow);
            if (isSeparator(frame.splitChar)) {
                return 0;
            }
            if (room.key.size() > keyBase) {
                room.key.pop_back();
            }
        }
        if (frame.greater != 0) {
            return goSideways(frame.greater);
        }
        room.frames.pop_back();
    }
    return 0;
}

const DynamicObjectNode* ChildWalk::findValueNode(const DynamicObject& object, unsigned int property)
{
    return object.findValueNode(property);
}

} // namespace details
} // namespace utils
} // namespace tov
