// DynamicObject: arrays, the elements below a property reached by their index: size, the walk that
// finds them all at once, and the erasure that moves the ones behind down.
#include <tov/utils/DynamicObject.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/impl/DynamicObjectNodes.h>

#include <algorithm>
#include <utility>

namespace tov {
namespace utils {

using details::DynamicObjectNode;

using impl::arrayKeyCapacity;
using impl::invalidPropertyMessage;
using impl::isSeparator;
using impl::lengthOf;
using impl::unknownTypeMessage;

bool DynamicObject::resize(unsigned int property, unsigned int size)
{
    TOV_ASSERT(isTypeCompatible(property, type::array), "Can't resize a property that is not an array.");
    const unsigned int count = countChildren(property);
    if (count == size) {
        return true;
    }
    if (size >= getMaximumArraySize()) {
        return false;
    }
    DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return false;
    }
    // The count is set before the elements change; a failing growth leaves it at the asked size.
    value->leaf.value.bits = size;
    value->leaf.type = size != 0 ? type::array : type::null;
    char key[arrayKeyCapacity];
    if (size < count) {
        bool erased = true;
        for (unsigned int i = count; i-- > size;) {
            const unsigned int keyLength = formatArrayKey(key, i);
            unsigned int element;
            findNode(property, key, keyLength, true, element);
            resetProperty(element);
            erased = eraseProperty(property, key, keyLength) && erased;
        }
        return erased;
    }
    for (unsigned int i = count; i < size; ++i) {
        const unsigned int keyLength = formatArrayKey(key, i);
        bool inserted;
        unsigned int element;
        unsigned int elementValue;
        if (addProperty(property, key, keyLength, inserted, element, elementValue) == nullptr) {
            return false;
        }
    }
    return true;
}

unsigned int DynamicObject::appendElement(unsigned int array, bool& full, unsigned int& elementValue)
{
    full = false;
    elementValue = 0;
    DynamicObjectNode* value = findValueNode(array);
    if (value == nullptr || (value->leaf.type != type::null && value->leaf.type != type::array)) {
        return 0;
    }
    const unsigned int count = value->leaf.type == type::array ? static_cast<unsigned int>(value->leaf.value.bits) : 0;
    if (count + 1 >= getMaximumArraySize()) {
        full = true;
        return 0;
    }
    // The nodes that resize(array, count + 1) would make, in the same order; the split node that
    // addProperty ends on is the one getChild would search for.
    value->leaf.value.bits = count + 1;
    value->leaf.type = type::array;
    char key[arrayKeyCapacity];
    const unsigned int keyLength = formatArrayKey(key, count);
    bool inserted;
    unsigned int element = 0;
    addProperty(array, key, keyLength, inserted, element, elementValue);
    return element;
}

bool DynamicObject::resize(const char* key, unsigned int size)
{
    return resize(key, lengthOf(key), size);
}

bool DynamicObject::resize(const char* key, unsigned int length, unsigned int size)
{
    return resize(getPropertyAsserts(key, length), size);
}

void DynamicObject::getElements(unsigned int array, unsigned int* elements, unsigned int count) const
{
    std::fill(elements, elements + count, 0u);
    if (count == 0 || getType(array) != type::array) {
        return;
    }
    // The "[" of the array's keys, searched from its split node as getChild's descent searches it.
    unsigned int level = array;
    while (level != 0) {
        const DynamicObjectNode* node = getNode(level);
        if (node == nullptr || node->trie.isValue) {
            return;
        }
        if (node->trie.splitChar == '[') {
            collectElements(node->trie.equal, 0, 0, elements, count);
            return;
        }
        level = '[' < node->trie.splitChar ? node->trie.less : node->trie.greater;
    }
}

void DynamicObject::collectElements(unsigned int level, unsigned int index, unsigned int digits, unsigned int* elements,
                                    unsigned int count) const
{
    // Every key "[digits]" below the "[", in the form formatArrayKey writes (no leading zero, five digits
    // at most): the split node after its "]", found as findNode finds it, is element `digits`.
    while (level != 0) {
        const DynamicObjectNode* node = getNode(level);
        if (node == nullptr || node->trie.isValue) {
            return;
        }
        if (node->trie.less != 0) {
            collectElements(node->trie.less, index, digits, elements, count);
        }
        const signed char c = node->trie.splitChar;
        if (c >= '0' && c <= '9') {
            if (digits < impl::arrayIndexDigits && !(digits != 0 && index == 0)) {
                collectElements(node->trie.equal, index * 10 + static_cast<unsigned int>(c - '0'), digits + 1, elements,
                                count);
            }
        } else if (c == ']' && digits != 0 && index < count) {
            elements[index] = impl::findLevelSplitNode(node->trie.equal, [this](unsigned int h) { return getNode(h); });
        }
        level = node->trie.greater;
    }
}

bool DynamicObject::eraseChild(unsigned int parent, unsigned int index)
{
    // Elements move between handles.
    forgetPath();
    DynamicObjectNode* value = findValueNode(parent);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return false;
    }
    const unsigned int type = value->leaf.type;
    if (type > type::object) {
        TOV_ASSERT(false, type << unknownTypeMessage);
        return false;
    }
    if (type != type::null && type != type::array) {
        TOV_ASSERT(false, "Not an array.");
        return false;
    }
    const unsigned int count = static_cast<unsigned int>(value->leaf.value.bits);
    if (count <= index) {
        return true;
    }
    // Elements move down by swapping the contents of their split nodes: each position keeps its split
    // node, and so its handle, while the value and subtree of the next element move in. The content of
    // the erased element travels to the last position, from where it is removed.
    char key[arrayKeyCapacity];
    DynamicObjectNode* previous = nullptr;
    for (unsigned int i = index; i < count; ++i) {
        const unsigned int keyLength = formatArrayKey(key, i);
        unsigned int element;
        DynamicObjectNode* node = findNode(parent, key, keyLength, true, element);
        TOV_ASSERT(node != nullptr && node->trie.splitChar == 0 && node->trie.less == 0,
                   "Invalid state, " << element << " is not a valid property node.");
        // An element missing from a count out of step (after a path erased through the parent's name)
        // has nothing to swap with; stopping here keeps the elements that are there.
        if (node == nullptr) {
            return false;
        }
        if (node->trie.greater != 0) {
            const DynamicObjectNode* separator = getNode(node->trie.greater);
            TOV_ASSERT(separator != nullptr && isSeparator(separator->trie.splitChar),
                       "Invalid state, the greater node of " << element << " is not a valid property separator.");
        }
        if (previous != nullptr) {
            std::swap(*previous, *node);
        }
        previous = node;
    }
    value->leaf.value.bits -= 1;
    const unsigned int keyLength = formatArrayKey(key, count - 1);
    unsigned int last;
    findNode(parent, key, keyLength, true, last);
    resetProperty(last);
    return eraseProperty(parent, key, keyLength);
}

bool DynamicObject::eraseChild(const char* parentKey, unsigned int index)
{
    return eraseChild(parentKey, lengthOf(parentKey), index);
}

bool DynamicObject::eraseChild(const char* parentKey, unsigned int parentLength, unsigned int index)
{
    return eraseChild(getPropertyAsserts(parentKey, parentLength), index);
}

} // namespace utils
} // namespace tov
