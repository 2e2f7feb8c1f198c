#include <tov/utils/DynamicObjectIterator.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/details/NodeTable.h>
#include <tov/utils/impl/DynamicObjectNodes.h>

namespace tov {
namespace utils {

using details::DynamicObjectNode;

using impl::isSeparator;

DynamicObjectIterator::DynamicObjectIterator(const DynamicObject& object, unsigned int property)
    : object(&object), startProperty(0), startValue(0), property(0), maxDepth(0xFFFFFFFFu), depth(0)
{
    initializeTraversal(property);
}

DynamicObjectIterator::DynamicObjectIterator(const DynamicObject& object, unsigned int property, unsigned int maxDepth)
    : object(&object), startProperty(0), startValue(0), property(0), maxDepth(maxDepth), depth(0)
{
    initializeTraversal(property);
}

bool DynamicObjectIterator::end() const
{
    return property == 0;
}

unsigned int DynamicObjectIterator::getProperty() const
{
    return property;
}

const char* DynamicObjectIterator::getKey() const
{
    if (key.empty()) {
        return "";
    }
    return key.data() + (key[0] == '.' ? 1 : 0);
}

unsigned int DynamicObjectIterator::getKeyLength() const
{
    if (key.empty()) {
        return 0;
    }
    return static_cast<unsigned int>(key.size()) - 1 - (key[0] == '.' ? 1 : 0);
}

const DynamicObject& DynamicObjectIterator::getDynamicObject() const
{
    return *object;
}

void DynamicObjectIterator::initializeTraversal(unsigned int start)
{
    if (start == 0) {
        start = object->getRoot();
    }
    object->findValueNode(start, "", 0, startProperty, startValue);
    property = startProperty;
    depth = 0;
    stack.clear();
    key.clear();
    // Room for a usual depth of trie and a usual key at once: writers make an iterator per object, and
    // growing both step by step was most of what such a walk allocated.
    stack.reserve(256);
    key.reserve(256);
}

DynamicObjectIterator& DynamicObjectIterator::next()
{
    unsigned int current = stack.empty() ? startProperty : stack.back();
    TOV_ASSERT(current != 0, "unable to increment from invalid current node");
    if (current == 0) {
        property = 0;
        return *this;
    }
    if (current != startProperty) {
        // The value node in hand has been seen: leave it.
        current = findNextChildFromParent(current);
    }
    const details::NodeTable nodes = object->getNodeTable();
    // The node last gone down from, to find the next one in a chain without waiting for its link.
    const DynamicObjectNode* above = nullptr;
    unsigned int aboveHandle = 0;
    while (current != 0) {
        stack.push_back(current);
        const DynamicObjectNode* node =
            above != nullptr ? nodes.stepDown(above, aboveHandle, current) : nodes.at(current);
        above = nullptr;
        if (node == nullptr) {
            object->getNode(current); // reports the handle out of range
            TOV_ASSERT(false, "unable to convert current to real trie node pointer");
            current = 0;
            break;
        }
        if (node->trie.isValue) {
            break;
        }
        if (node->trie.less != 0) {
            current = node->trie.less;
            continue;
        }
        if (node->trie.equal != 0 && node->trie.equal != startValue) {
            const signed char splitChar = node->trie.splitChar;
            bool descend = true;
            // The first separator below the start is not counted: the key is still empty there.
            if (!key.empty() && isSeparator(splitChar)) {
                if (depth + 1 <= maxDepth) {
                    ++depth;
                } else {
                    descend = false;
                }
            }
            if (descend) {
                // The last node to set `property` before a value node is its split node.
                property = current;
                above = node;
                aboveHandle = current;
                current = node->trie.equal;
                key.push_back(static_cast<char>(splitChar));
                continue;
            }
        }
        current = node->trie.greater != 0 ? node->trie.greater : findNextChildFromParent(current);
    }
    if (current == 0) {
        property = 0;
    }
    return *this;
}

unsigned int DynamicObjectIterator::findNextChildFromParent(unsigned int current)
{
    TOV_ASSERT(!stack.empty(), "unable to retrieve next child from empty stack");
    if (stack.empty()) {
        return 0;
    }
    unsigned int child = stack.back();
    stack.pop_back();
    current = stack.empty() ? 0 : stack.back();
    const details::NodeTable nodes = object->getNodeTable();
    bool found = false;
    while (current != 0 && !found) {
        const DynamicObjectNode* node = nodes.at(current);
        bool up = false;
        if (node->trie.less == child) {
            // The `less` side is done.
            // QUIRK(walk-depth-from-less-side): this way into an `equal` link neither tests nor raises
            // the depth, while the way back out lowers it, so a walk can end early; kept because writers
            // and resetProperty walk with this iterator as it is.
            if (node->trie.equal != 0 && node->trie.equal != startValue) {
                found = true;
                // Set as on the other way down, so that a split node reached here is the property
                // that the iterator stands on next, not the one before it.
                property = current;
                current = node->trie.equal;
                key.push_back(static_cast<char>(node->trie.splitChar));
            } else if (node->trie.greater == 0) {
                up = true;
            } else {
                found = true;
                current = node->trie.greater;
            }
        } else if (node->trie.equal == child) {
            TOV_ASSERT(!key.empty(), "unable to remove one character from key although we are in an equal match case");
            if (isSeparator(node->trie.splitChar)) {
                if (depth == 0) {
                    // Climbing over the first separator below the start: the walk has left its region.
                    return 0;
                }
                --depth;
            }
            if (!key.empty()) {
                key.pop_back();
            }
            if (node->trie.greater == 0) {
                up = true;
            } else {
                found = true;
                current = node->trie.greater;
            }
        } else if (node->trie.greater == child) {
            up = true;
        } else {
            TOV_ASSERT(false, "unexpected state in iteration stack - one of the children of current should be "
                              "the top element");
            up = true;
        }
        if (up) {
            child = current;
            stack.pop_back();
            current = stack.empty() ? 0 : stack.back();
        }
    }
    return current;
}

} // namespace utils
} // namespace tov
