// DynamicObject: construction, copies and the trie store under the properties. The public face of the
// properties is in DynamicObjectProperties.cpp, arrays in DynamicObjectArrays.cpp, values and copies
// between objects in DynamicObjectValues.cpp.
#include <tov/utils/DynamicObject.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/impl/DynamicKey.h>
#include <tov/utils/impl/DynamicObjectNodes.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {

using details::DynamicObjectNode;

namespace {

const unsigned int defaultBlockSize = 128;
const unsigned int defaultStringTableSeed = 100;
// The character of the root's p node. The node is never reached again; it exists so that the root split
// node gets the handle 2 and its value node the handle 3 in every object.
const char rootCharacter = 7;

} // namespace

DynamicObject::DynamicObject()
    : nodeAllocator(TOV_NEW NodeAllocator(defaultBlockSize)), stringTable(TOV_NEW StringTable(defaultStringTableSeed)),
      owning(true), root(0), nextFreeSlot(defaultBlockSize), freeList(0)
{
    addRootProperty();
}

DynamicObject::DynamicObject(NodeAllocator& allocator, StringTable& table)
    : nodeAllocator(&allocator), stringTable(&table), owning(false), root(0), nextFreeSlot(allocator.getBlockSize()),
      freeList(0)
{
    addRootProperty();
}

DynamicObject::DynamicObject(const DynamicObject& other)
    : nodeAllocator(TOV_NEW NodeAllocator(other.nodeAllocator->getBlockSize())),
      stringTable(TOV_NEW StringTable(*other.stringTable)), owning(true), root(0), nextFreeSlot(0), freeList(0)
{
    doMemoryCopy(other);
}

DynamicObject::DynamicObject(const Ref& ref)
    : nodeAllocator(ref.getObject().nodeAllocator), stringTable(ref.getObject().stringTable), owning(false), root(0),
      nextFreeSlot(0), freeList(0)
{
    doMemoryCopy(ref.getObject());
}

DynamicObject& DynamicObject::operator=(const DynamicObject& other)
{
    if (this == &other) {
        return *this;
    }
    doClear();
    // QUIRK(assignment-replaces-shared-table): a string table shared with other objects is replaced for
    // all of them; kept as assignment has always copied the other's strings in place.
    *stringTable = *other.stringTable;
    if (nodeAllocator->getBlockSize() == other.nodeAllocator->getBlockSize()) {
        doMemoryCopy(other);
    } else {
        doStreamCopy(other);
    }
    return *this;
}

DynamicObject::~DynamicObject()
{
    if (owning) {
        // The allocator goes with this object and gives back every block it handed out: returning each
        // block to its free list first (a search and an erasure in its set of blocks, under its lock)
        // would be undone at once. What reaches the memory service is the same.
        TOV_DELETE(nodeAllocator);
        TOV_DELETE(stringTable);
        return;
    }
    doClear();
}

DynamicObject::NodeAllocator& DynamicObject::getNodeAllocator()
{
    return *nodeAllocator;
}

DynamicObject::NodeAllocator& DynamicObject::getNodeAllocator() const
{
    return *nodeAllocator;
}

StringTable& DynamicObject::getStringTable()
{
    return *stringTable;
}

StringTable& DynamicObject::getStringTable() const
{
    return *stringTable;
}

bool DynamicObject::isOwningNodeAllocator() const
{
    return owning;
}

bool DynamicObject::isOwningStringTable() const
{
    return owning;
}

unsigned int DynamicObject::getRoot() const
{
    return root;
}

unsigned int DynamicObject::getMaximumArraySize()
{
    return impl::maximumArraySize;
}

bool DynamicObject::empty() const
{
    return getType(root) == type::null;
}

void DynamicObject::clear()
{
    doClear();
    addRootProperty();
}

void DynamicObject::forgetPath()
{
    pathMemo.forget();
}

void DynamicObject::reportBlockOutOfRange()
{
    TOV_ASSERT(false, "Block index out of range");
}

DynamicObjectNode* DynamicObject::allocateNode(char splitChar, unsigned int& handle)
{
    DynamicObjectNode* node;
    unsigned int allocated;
    if (freeList != 0) {
        allocated = freeList;
        node = getNode(allocated);
        freeList = node->trie.greater;
    } else {
        const unsigned int blockSize = nodeAllocator->getBlockSize();
        if (nextFreeSlot >= blockSize) {
            blocks.push_back(nodeAllocator->allocate());
            nextFreeSlot = 0;
        }
        const unsigned int slot = nextFreeSlot++;
        allocated = static_cast<unsigned int>(blocks.size() - 1) * blockSize + slot + 1;
        node = blocks.back() + slot;
    }
    // `handle` may be a link inside another node: it is written before this node is touched, which is
    // safe as blocks never move.
    handle = allocated;
    std::memset(static_cast<void*>(node), 0, sizeof(DynamicObjectNode));
    node->trie.splitChar = static_cast<signed char>(splitChar);
    return node;
}

DynamicObjectNode* DynamicObject::allocateValueNode(unsigned int& handle)
{
    DynamicObjectNode* node = allocateNode(0, handle);
    node->leaf.isValue = 1;
    return node;
}

void DynamicObject::deallocateNode(DynamicObjectNode* node, unsigned int handle)
{
    forgetPath();
    // Dead nodes read as nonsense (a negative character, no value) should anything still look at them.
    std::memset(static_cast<void*>(node), 0xEF, sizeof(DynamicObjectNode));
    const unsigned int lastGiven =
        static_cast<unsigned int>(blocks.size() - 1) * nodeAllocator->getBlockSize() + nextFreeSlot;
    if (handle == lastGiven) {
        --nextFreeSlot;
    } else {
        node->trie.greater = freeList;
        freeList = handle;
    }
}

DynamicObjectNode* DynamicObject::findNode(unsigned int start, const char* key, unsigned int length, bool toSplitNode,
                                           unsigned int& handle) const
{
    // The loop keeps the handle in a local and picks the next link without branching on the comparison,
    // which is as good as random in a search: every path read by text goes through here.
    unsigned int current = start;
    const char* p = key;
    const char* const end = key + length;
    const details::NodeTable nodes = getNodeTable();
    // The node last read, so that the next one is taken from beside it when it follows it (NodeTable::follows).
    const DynamicObjectNode* above = nullptr;
    unsigned int aboveHandle = 0;
    while (current != 0 && p != end) {
        const DynamicObjectNode* node = nodes.follows(aboveHandle, current) ? above + 1 : nodes.at(current);
        if (node == nullptr) {
            getNode(current); // reports the handle out of range
            current = 0;
            break;
        }
        TOV_ASSERT(!node->trie.isValue, "unclean state during trie search - detected leaf node");
        const signed char c = static_cast<signed char>(*p);
        // A zero byte would match a split node and lead the search into a value node: no path holds one.
        if (node->trie.isValue || c == 0) {
            current = 0;
            break;
        }
        const signed char splitChar = node->trie.splitChar;
        const unsigned int sideways = c < splitChar ? node->trie.less : node->trie.greater;
        if (c == splitChar) {
            ++p;
            if (p == end && toSplitNode) {
                break;
            }
        }
        above = node;
        aboveHandle = current;
        current = c == splitChar ? node->trie.equal : sideways;
    }
    handle = current;
    DynamicObjectNode* node = getNode(handle);
    if (toSplitNode && node != nullptr && node->trie.splitChar != 0) {
        // The key ends on a path character: what it names is the split node of the level below.
        handle = impl::findLevelSplitNode(node->trie.equal, [this](unsigned int h) { return getNode(h); });
        node = getNode(handle);
    }
    return node;
}

DynamicObjectNode* DynamicObject::findValueNode(DynamicObjectNode* splitNode, unsigned int& valueHandle) const
{
    // A value node also reads as character 0: it is refused, so that a value handle passed as a
    // property is found invalid instead of having its number followed as a link.
    if (splitNode != nullptr && !splitNode->trie.isValue && splitNode->trie.splitChar == 0) {
        valueHandle = splitNode->trie.equal;
        DynamicObjectNode* value = getNode(valueHandle);
        if (value != nullptr && value->trie.isValue) {
            return value;
        }
    }
    valueHandle = 0;
    return nullptr;
}

DynamicObjectNode* DynamicObject::findValueNode(unsigned int property) const
{
    DynamicObjectNode* splitNode = getNode(property);
    // A value node mostly lies right after its split node, made just after it: taken from there, it is read
    // beside the split node instead of after it (see NodeTable::follows). The same checks as below.
    if (splitNode != nullptr && getNodeTable().follows(property, splitNode->trie.equal)) {
        DynamicObjectNode* value = splitNode + 1;
        if (!splitNode->trie.isValue && splitNode->trie.splitChar == 0 && value->trie.isValue) {
            return value;
        }
    }
    unsigned int valueHandle;
    return findValueNode(splitNode, valueHandle);
}

DynamicObjectNode* DynamicObject::findValueNode(unsigned int start, const char* key, unsigned int length,
                                                unsigned int& property, unsigned int& valueHandle) const
{
    DynamicObjectNode* value = findValueNode(findNode(start, key, length, true, property), valueHandle);
    if (value == nullptr) {
        property = 0;
        valueHandle = 0;
    }
    return value;
}

DynamicObjectNode* DynamicObject::addProperty(unsigned int start, const char* key, unsigned int length, bool& inserted,
                                              unsigned int& child, unsigned int& childValue)
{
    unsigned int startLink = start;
    unsigned int* slot = &startLink;
    const char* p = key;
    const char* const end = key + length;
    // Valid until the first node is allocated, below this loop. `above` is the node gone down from, so that
    // the next one is taken from beside it when it follows it (NodeTable::follows).
    const details::NodeTable nodes = getNodeTable();
    DynamicObjectNode* above = nullptr;
    unsigned int aboveHandle = 0;
    while (p != end && *slot != 0) {
        child = *slot;
        DynamicObjectNode* node = above != nullptr && nodes.follows(aboveHandle, child) ? above + 1 : getNode(child);
        above = nullptr;
        const signed char c = static_cast<signed char>(*p);
        if (c == node->trie.splitChar) {
            above = node;
            aboveHandle = child;
            slot = &node->trie.equal;
            ++p;
        } else if (c > node->trie.splitChar) {
            slot = &node->trie.greater;
        } else {
            slot = &node->trie.less;
        }
    }
    // What is left of a new key hangs as a straight chain of `equal` links.
    while (p != end) {
        DynamicObjectNode* node = allocateNode(*p, *slot);
        child = *slot;
        slot = &node->trie.equal;
        ++p;
    }
    // The split node heads its level. Separators and the children under them are inserted from the split
    // node, and every search from above meets it first, so both find them. A split node put lower down,
    // below a sibling that extends the name (`ab-c` when `ab` comes), would lie apart from where those
    // searches go, and the children of the property could no longer be found by their paths.
    if (*slot != 0 && getNode(*slot)->trie.splitChar != 0) {
        const unsigned int level = *slot;
        DynamicObjectNode* splitNode = allocateNode(0, *slot);
        splitLevel(level, splitNode->trie.less, splitNode->trie.greater);
    }
    if (*slot == 0) {
        allocateNode(0, *slot);
    }
    child = *slot;
    DynamicObjectNode* splitNode = getNode(child);
    DynamicObjectNode* value;
    if (splitNode->trie.equal != 0) {
        childValue = splitNode->trie.equal;
        inserted = false;
        value = getNode(childValue);
        TOV_ASSERT(value != nullptr && value->trie.isValue, "Sanity check, that this is a valid node.");
    } else {
        unsigned int valueHandle;
        value = allocateValueNode(valueHandle);
        splitNode->trie.equal = valueHandle;
        childValue = valueHandle;
        inserted = true;
    }
    return value;
}

void DynamicObject::splitLevel(unsigned int level, unsigned int& less, unsigned int& greater)
{
    // Splits a binary tree of characters by 0: bytes of 0x80 and above (negative) to `less`, the others to
    // `greater`. Nodes are relinked, never moved, and keep their order.
    unsigned int* lessSlot = &less;
    unsigned int* greaterSlot = &greater;
    while (level != 0) {
        DynamicObjectNode* node = getNode(level);
        if (node->trie.splitChar < 0) {
            *lessSlot = level;
            lessSlot = &node->trie.greater;
            level = node->trie.greater;
        } else {
            *greaterSlot = level;
            greaterSlot = &node->trie.less;
            level = node->trie.less;
        }
    }
    *lessSlot = 0;
    *greaterSlot = 0;
}

bool DynamicObject::eraseProperty(unsigned int start, const char* key, unsigned int length)
{
    unsigned int startLink = start;
    bool matchErased = false;
    eraseProperty(&startLink, key, length, matchErased);
    return matchErased;
}

bool DynamicObject::eraseProperty(unsigned int* link, const char* key, unsigned int length, bool& matchErased)
{
    DynamicObjectNode* node = getNode(*link);
    if (node == nullptr) {
        return false;
    }
    if (node->trie.isValue) {
        TOV_ASSERT(length == 0, "Value node reached before the full exploration of the key.");
        if (length != 0) {
            return false;
        }
        deallocateNode(node, *link);
        *link = 0;
        matchErased = true;
        return true;
    }
    // With the key done, 0 is looked for: the split node ending it.
    const signed char c = length != 0 ? static_cast<signed char>(*key) : 0;
    bool removed;
    if (c == node->trie.splitChar) {
        removed =
            eraseProperty(&node->trie.equal, length != 0 ? key + 1 : key, length != 0 ? length - 1 : 0, matchErased);
    } else if (c > node->trie.splitChar) {
        removed = eraseProperty(&node->trie.greater, key, length, matchErased);
    } else {
        removed = eraseProperty(&node->trie.less, key, length, matchErased);
    }
    if (removed && node->trie.greater == 0 && node->trie.equal == 0 && node->trie.less == 0) {
        deallocateNode(node, *link);
        *link = 0;
        return true;
    }
    return false;
}

void DynamicObject::addRootProperty()
{
    unsigned int rootCharacterHandle;
    DynamicObjectNode* rootCharacterNode = allocateNode(rootCharacter, rootCharacterHandle);
    TOV_ASSERT(rootCharacterNode != nullptr, "Unable to add the root p node.");
    unsigned int rootSplit;
    DynamicObjectNode* rootSplitNode = allocateNode(0, rootSplit);
    TOV_ASSERT(rootSplitNode != nullptr, "Unable to add the root split node.");
    rootCharacterNode->trie.equal = rootSplit;
    root = rootSplit;
    unsigned int rootValue;
    DynamicObjectNode* rootValueNode = allocateValueNode(rootValue);
    TOV_ASSERT(rootValueNode != nullptr, "Unable to add the root p value node.");
    rootSplitNode->trie.equal = rootValue;
}

unsigned int DynamicObject::doAddChild(unsigned int parent, const char* key, unsigned int length,
                                       DynamicObjectNode* parentValue, unsigned int* childValueOut)
{
    TOV_ASSERT(key != nullptr, impl::nullKeyMessage);
    if (key == nullptr || length == 0) {
        return 0;
    }
    unsigned int start = parent;
    if (parent == root) {
        if (key[0] == '.') {
            ++key;
            --length;
        }
    } else if (key[0] != '.') {
        findNode(parent, ".", 1, false, start);
    }
    bool inserted = false;
    unsigned int child = 0;
    unsigned int childValue = 0;
    DynamicObjectNode* value;
    if (start == 0) {
        // The first child of an object: its key starts at the object's split node, with the separator.
        const impl::ChildKey childKey(key, length, true);
        value = addProperty(parent, childKey.data(), childKey.length(), inserted, child, childValue);
    } else {
        value = addProperty(start, key, length, inserted, child, childValue);
    }
    TOV_ASSERT(value != nullptr, "Unable to add a child.");
    if (childValueOut != nullptr) {
        *childValueOut = childValue;
    }
    if (inserted) {
        if (parentValue == nullptr) {
            parentValue = findValueNode(parent);
        }
        TOV_ASSERT(parentValue != nullptr, impl::invalidPropertyMessage);
        if (parentValue != nullptr) {
            parentValue->leaf.value.bits += 1;
            parentValue->leaf.type = type::object;
        }
    }
    return child;
}

unsigned int DynamicObject::getChildRecursive(unsigned int handle, unsigned int target, unsigned int& nbChildrenParsed,
                                              bool insideName, bool isStart, unsigned int parent) const
{
    const DynamicObjectNode* node = getNode(handle);
    if (node == nullptr) {
        return 0;
    }
    if (node->trie.isValue) {
        ++nbChildrenParsed;
        return parent;
    }
    unsigned int found = 0;
    if (node->trie.less != 0) {
        found = getChildRecursive(node->trie.less, target, nbChildrenParsed, insideName, false, handle);
        if (nbChildrenParsed == target) {
            return found;
        }
    }
    // QUIRK(extending-sibling-names): a sibling whose name extends this one lies on the same links and is
    // counted as a child; telling it apart would need a walk per name, and indices stay as they were.
    const bool separator = impl::isSeparator(node->trie.splitChar);
    if (node->trie.equal != 0 && !isStart && !(insideName && separator)) {
        found = getChildRecursive(node->trie.equal, target, nbChildrenParsed, true, false, handle);
        if (nbChildrenParsed == target) {
            return found;
        }
    }
    if (node->trie.greater != 0) {
        found = getChildRecursive(node->trie.greater, target, nbChildrenParsed, insideName, false, handle);
    }
    return found;
}

bool DynamicObject::checkKey(const char* key, unsigned int length) const
{
    return impl::isValidChildKey(key, length);
}

// QUIRK(array-keys-as-text): an index is stored as its decimal text, so walks meet elements in the order
// of that text ([0] [10] [1]); getElements and getChild read them by number.
unsigned int DynamicObject::formatArrayKey(char* buffer, unsigned int index) const
{
    TOV_ASSERT(index < impl::maximumArraySize, "Array indices must be less than " << impl::maximumArraySize << ".");
    if (index >= impl::maximumArraySize) {
        return 0;
    }
    char digits[impl::arrayIndexDigits];
    unsigned int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + index % 10);
        index /= 10;
    } while (index != 0);
    unsigned int length = 0;
    buffer[length++] = '[';
    while (count != 0) {
        buffer[length++] = digits[--count];
    }
    buffer[length++] = ']';
    return length;
}

unsigned int DynamicObject::getSeparator(unsigned int property) const
{
    unsigned int separator;
    findNode(property, ".", 1, false, separator);
    return separator;
}

void DynamicObject::doClear()
{
    forgetPath();
    for (DynamicObjectNode* block : blocks) {
        nodeAllocator->free(block);
    }
    blocks.clear();
    freeList = 0;
    nextFreeSlot = nodeAllocator->getBlockSize();
}

void DynamicObject::doMemoryCopy(const DynamicObject& other)
{
    const unsigned int blockSize = nodeAllocator->getBlockSize();
    blocks.reserve(other.blocks.size());
    for (const DynamicObjectNode* source : other.blocks) {
        DynamicObjectNode* block = nodeAllocator->allocate();
        std::memcpy(static_cast<void*>(block), source, blockSize * sizeof(DynamicObjectNode));
        blocks.push_back(block);
    }
    nextFreeSlot = other.nextFreeSlot;
    root = other.root;
}

void DynamicObject::doStreamCopy(const DynamicObject& other)
{
    // Handles number the slots linearly from 1, so copying the nodes as one stream keeps every handle.
    const unsigned int blockSize = nodeAllocator->getBlockSize();
    const unsigned int otherBlockSize = other.nodeAllocator->getBlockSize();
    unsigned int remainingSpaceInBlock = 0;
    for (const DynamicObjectNode* source : other.blocks) {
        unsigned int copied = 0;
        while (copied < otherBlockSize) {
            if (remainingSpaceInBlock == 0) {
                blocks.push_back(nodeAllocator->allocate());
                remainingSpaceInBlock = blockSize;
            }
            const unsigned int count = std::min(remainingSpaceInBlock, otherBlockSize - copied);
            std::memcpy(static_cast<void*>(blocks.back() + (blockSize - remainingSpaceInBlock)), source + copied,
                        count * sizeof(DynamicObjectNode));
            copied += count;
            remainingSpaceInBlock -= count;
        }
    }
    root = other.root;
    // The other object's `nextFreeSlot` counts in its own block size: taken as it stands, the next node
    // allocated here could be one that is in use. It is converted from the number of slots handed out,
    // and the blocks that the stream filled beyond them go back to the allocator.
    const unsigned int usedSlots =
        other.blocks.empty() ? 0
                             : static_cast<unsigned int>(other.blocks.size() - 1) * otherBlockSize + other.nextFreeSlot;
    const unsigned int neededBlocks = (usedSlots + blockSize - 1) / blockSize;
    while (blocks.size() > neededBlocks) {
        nodeAllocator->free(blocks.back());
        blocks.pop_back();
    }
    nextFreeSlot = blocks.empty() ? blockSize : usedSlots - static_cast<unsigned int>(blocks.size() - 1) * blockSize;
}

} // namespace utils
} // namespace tov
