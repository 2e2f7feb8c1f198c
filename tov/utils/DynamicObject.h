#pragma once
// DynamicObject: a tree of named properties with the values of JSON, held in one ternary search trie over
// the full path of each property. A property is named by a 32-bit handle or by its path (`a.b[3].c`).
//   tov::utils::DynamicObject object;
//   object.setInt("items[2].pos.x", 4);              // items becomes an array of 3, pos an object
//   unsigned int x = object.getProperty("items[2].pos.x");   // object.getInt(x) == 4

#include <tov/utils/BlockAllocator.h>
#include <tov/utils/Containers.h>
#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>
#include <tov/utils/details/DynamicObjectNode.h>
#include <tov/utils/details/NodeTable.h>
#include <tov/utils/details/PathMemo.h>

namespace tov {
namespace utils {

class AbstractObjectBuilder;
class DynamicValue;
class StringTable;
class TypeManager;
class Uuid;

namespace details {
class ChildWalk;
} // namespace details

class TOV_UTILS_API DynamicObject {
public:
    using NodeAllocator = BlockAllocator<details::DynamicObjectNode>;

    // Names an object to copy while sharing its allocator and string table:
    //   DynamicObject copy(DynamicObject::Ref(original));
    class Ref {
    public:
        explicit Ref(DynamicObject& object) : object(object) {}
        DynamicObject& getObject() const { return object; }

    private:
        DynamicObject& object;
    };

    // Owns a new allocator (blocks of 128 nodes) and a new string table (seed 100).
    DynamicObject();
    // Shares `allocator` and `table`, which must outlive the object.
    DynamicObject(NodeAllocator& allocator, StringTable& table);
    // A copy with an allocator and a string table of its own; handles stay valid in the copy.
    DynamicObject(const DynamicObject& other);
    // A copy that shares the allocator and the string table of the referred object.
    explicit DynamicObject(const Ref& ref);
    // Copies the content and the string table, keeping the own allocator. A shared string table is
    // replaced for everybody who shares it.
    DynamicObject& operator=(const DynamicObject& other);
    ~DynamicObject();

    NodeAllocator& getNodeAllocator();
    NodeAllocator& getNodeAllocator() const;
    StringTable& getStringTable();
    StringTable& getStringTable() const;
    bool isOwningNodeAllocator() const;
    bool isOwningStringTable() const;
    // The handle of the root property; 2 in every object.
    unsigned int getRoot() const;
    // One more than the largest number of elements of an array.
    static unsigned int getMaximumArraySize();

    // Paths. Readers given a key assert that the property exists; writers given a key create it.
    bool hasProperty(const char* key) const;
    bool hasProperty(const char* key, unsigned int length) const;
    // The handle, 0 when missing.
    unsigned int getProperty(const char* key) const;
    unsigned int getProperty(const char* key, unsigned int length) const;
    // Creates what the path misses; 0 for a malformed path or one that runs into a value of another kind.
    unsigned int addProperty(const char* key);
    unsigned int addProperty(const char* key, unsigned int length);

    // type::null for the handle 0 and for a property that no longer exists.
    type::Type getType(unsigned int property) const;
    type::Type getType(const char* key) const;
    type::Type getType(const char* key, unsigned int length) const;
    // A null property is compatible with everything; integers and reals with each other.
    bool isTypeCompatible(unsigned int property, type::Type type) const;
    bool isTypeCompatible(const char* key, type::Type type) const;
    bool isTypeCompatible(const char* key, unsigned int length, type::Type type) const;
    // Whether the property could hold a value of the registered type `typeId`: a scalar type by kind, an
    // object type by each of its properties that the property has as a child, recursively.
    bool isTypeCompatible(unsigned int property, const Uuid& typeId, const TypeManager& typeManager) const;
    bool isTypeCompatible(const char* key, const Uuid& typeId, const TypeManager& typeManager) const;
    bool isTypeCompatible(const char* key, unsigned int length, const Uuid& typeId,
                          const TypeManager& typeManager) const;
    unsigned int countChildren(unsigned int property) const;
    unsigned int countChildren(const char* key) const;
    unsigned int countChildren(const char* key, unsigned int length) const;

    // Arrays. Grows with null elements or shrinks from the end; false at getMaximumArraySize() or above.
    bool resize(unsigned int property, unsigned int size);
    bool resize(const char* key, unsigned int size);
    bool resize(const char* key, unsigned int length, unsigned int size);

    // Element `index` of an array, or child number `index` of an object in key order; 0 when missing.
    // The children of an object are counted by a walk, so a loop over them by index is quadratic: use
    // DynamicObjectIterator instead. Pass an index of 0 as 0u.
    unsigned int getChild(unsigned int property, unsigned int index) const;
    // getChild(array, i) for every i below `count` (less than getMaximumArraySize()), in one walk of the
    // array's nodes where a loop of getChild descends once per element: 0 where getChild gives 0.
    void getElements(unsigned int array, unsigned int* elements, unsigned int count) const;
    unsigned int getChild(const char* key, unsigned int index) const;
    unsigned int getChild(const char* key, unsigned int length, unsigned int index) const;
    // The child `name` (which may be a path below the parent); 0 when missing or when `name` is empty.
    unsigned int getChild(unsigned int parent, const char* name) const;
    unsigned int getChild(unsigned int parent, const char* name, unsigned int nameLength) const;
    unsigned int getChild(const char* parentKey, const char* name) const;
    unsigned int getChild(const char* parentKey, unsigned int parentLength, const char* name,
                          unsigned int nameLength) const;
    bool hasChild(unsigned int parent, const char* name) const;
    bool hasChild(unsigned int parent, const char* name, unsigned int nameLength) const;
    bool hasChild(const char* parentKey, const char* name) const;
    bool hasChild(const char* parentKey, unsigned int parentLength, const char* name, unsigned int nameLength) const;
    // Adds the child `name` to an object (or a null property, which becomes an object) and returns it,
    // or returns the existing child. A name holding ".", "[" or "]" breaks the contract.
    unsigned int addChild(unsigned int parent, const char* name);
    unsigned int addChild(unsigned int parent, const char* name, unsigned int nameLength);
    unsigned int addChild(const char* parentKey, const char* name);
    unsigned int addChild(const char* parentKey, unsigned int parentLength, const char* name, unsigned int nameLength);
    // Removes a child and its subtree; the parent becomes null with its last child. False when missing.
    bool eraseChild(unsigned int parent, const char* name);
    bool eraseChild(unsigned int parent, const char* name, unsigned int nameLength);
    bool eraseChild(const char* parentKey, const char* name);
    bool eraseChild(const char* parentKey, unsigned int parentLength, const char* name, unsigned int nameLength);
    // Removes an array element; those behind it move down by relinking, keeping the handles of the
    // positions. An emptied array stays an array.
    bool eraseChild(unsigned int parent, unsigned int index);
    bool eraseChild(const char* parentKey, unsigned int index);
    bool eraseChild(const char* parentKey, unsigned int parentLength, unsigned int index);
    // Moves a child with its subtree to a new name by relinking; returns the child's new handle.
    unsigned int renameChild(unsigned int parent, const char* oldName, const char* newName);
    unsigned int renameChild(unsigned int parent, const char* oldName, unsigned int oldLength, const char* newName,
                             unsigned int newLength);
    // Makes a property null and frees what it held; the property itself stays.
    void resetProperty(unsigned int property);
    void resetProperty(const char* key);
    void resetProperty(const char* key, unsigned int length);

    // Readers assert on a property of another kind; integers and reals convert.
    long long getInt(unsigned int property) const;
    long long getInt(const char* key) const;
    long long getInt(const char* key, unsigned int length) const;
    double getReal(unsigned int property) const;
    double getReal(const char* key) const;
    double getReal(const char* key, unsigned int length) const;
    bool getBool(unsigned int property) const;
    bool getBool(const char* key) const;
    bool getBool(const char* key, unsigned int length) const;
    unsigned long long getStringHash(unsigned int property) const;
    unsigned long long getStringHash(const char* key) const;
    unsigned long long getStringHash(const char* key, unsigned int length) const;
    // Valid while the string table is unchanged; null for a hash the table does not know.
    const char* getString(unsigned int property) const;
    const char* getString(const char* key) const;
    const char* getString(const char* key, unsigned int length) const;

    // Writers replace whatever the property held, a whole subtree included.
    void setInt(unsigned int property, long long value);
    void setInt(const char* key, long long value);
    void setInt(const char* key, unsigned int length, long long value);
    void setReal(unsigned int property, double value);
    void setReal(const char* key, double value);
    void setReal(const char* key, unsigned int length, double value);
    void setBool(unsigned int property, bool value);
    void setBool(const char* key, bool value);
    void setBool(const char* key, unsigned int length, bool value);
    void setString(unsigned int property, const char* text);
    void setString(unsigned int property, const char* text, unsigned int textLength);
    void setString(const char* key, const char* text);
    void setString(const char* key, unsigned int keyLength, const char* text, unsigned int textLength);
    void setValue(unsigned int property, const DynamicValue& value);
    void setValue(const char* key, const DynamicValue& value);
    void setValue(const char* key, unsigned int length, const DynamicValue& value);
    // Scalars only; arrays and objects assert and reset `value`.
    void retrieveValue(unsigned int property, DynamicValue& value) const;
    void retrieveValue(const char* key, DynamicValue& value) const;
    void retrieveValue(const char* key, unsigned int length, DynamicValue& value) const;

    // Merges a property of `source` (its root by default) into a property of this object: scalars
    // overwrite, objects merge child by child, arrays are resized to the source's length. A null source
    // changes nothing.
    void put(unsigned int property, const DynamicObject& source);
    void put(unsigned int property, const DynamicObject& source, unsigned int sourceProperty);
    void put(const char* key, const DynamicObject& source);
    void put(const char* key, unsigned int length, const DynamicObject& source);
    void put(const char* key, const DynamicObject& source, const char* sourceKey);
    void put(const char* key, unsigned int length, const DynamicObject& source, const char* sourceKey,
             unsigned int sourceLength);
    // Copies the subtree under a property into the root of `target`. An unknown key copies everything.
    void retrieve(unsigned int property, DynamicObject& target) const;
    void retrieve(const char* key, DynamicObject& target) const;
    void retrieve(const char* key, unsigned int length, DynamicObject& target) const;

    // True when the root is null.
    bool empty() const;
    // Drops all content; handles of the former content must not be used again.
    void clear();

    // Writes the raw trie under a node, one object per node, for diagnosis.
    bool visitTrie(unsigned int handle, AbstractObjectBuilder& builder) const;

private:
    friend class DynamicObjectIterator;
    friend class DynamicObjectBuilder;
    friend class details::ChildWalk;
    friend class details::PathMemo;

    // For the builder, which has checked the kind of the container and the key: the element after the
    // last of an array (null, or an array of none) in one step where resize and getChild take several;
    // 0 with `full` set at the largest size, 0 alone for a property of another kind.
    // `elementValue` is the new element's value node.
    unsigned int appendElement(unsigned int array, bool& full, unsigned int& elementValue);
    // addChild for the builder, with its checks done on the one reading of the parent's value: 0 with
    // `notObject` set for a parent of another kind, 0 alone for a name that addChild would refuse.
    // `childValue` is the child's value node.
    unsigned int addCheckedChild(unsigned int parent, const char* name, unsigned int length, bool& notObject,
                                 unsigned int& childValue);
    // A scalar written straight into a value node, as the setters write it, when the node holds no
    // children, the case of every value a producer sends once; false, with nothing written, otherwise.
    bool writeScalar(unsigned int valueHandle, type::Type type, unsigned long long bits);

    details::DynamicObjectNode* getNode(unsigned int handle) const;
    // getNode without the report of a handle beyond the blocks (null then), inlined into the loops that
    // take one step per node.
    details::DynamicObjectNode* nodeAt(unsigned int handle) const;
    static void reportBlockOutOfRange();
    // What nodeAt reads, for the loops that hold it in a local: valid while no block is added.
    details::NodeTable getNodeTable() const
    {
        return details::NodeTable(blocks.data(), static_cast<unsigned int>(blocks.size()),
                                  nodeAllocator->getBlockSize());
    }
    details::DynamicObjectNode* allocateNode(char splitChar, unsigned int& handle);
    details::DynamicObjectNode* allocateValueNode(unsigned int& handle);
    void deallocateNode(details::DynamicObjectNode* node, unsigned int handle);
    details::DynamicObjectNode* findNode(unsigned int start, const char* key, unsigned int length, bool toSplitNode,
                                         unsigned int& handle) const;
    details::DynamicObjectNode* findValueNode(details::DynamicObjectNode* splitNode, unsigned int& valueHandle) const;
    details::DynamicObjectNode* findValueNode(unsigned int property) const;
    details::DynamicObjectNode* findValueNode(unsigned int start, const char* key, unsigned int length,
                                              unsigned int& property, unsigned int& valueHandle) const;
    details::DynamicObjectNode* addProperty(unsigned int start, const char* key, unsigned int length, bool& inserted,
                                            unsigned int& child, unsigned int& childValue);
    void splitLevel(unsigned int level, unsigned int& less, unsigned int& greater);
    bool eraseProperty(unsigned int start, const char* key, unsigned int length);
    bool eraseProperty(unsigned int* link, const char* key, unsigned int length, bool& matchErased);
    void addRootProperty();
    // `parentValue`, the parent's value node when the caller has it at hand, spares looking it up again.
    // `childValue`, when given, receives the child's value node.
    unsigned int doAddChild(unsigned int parent, const char* key, unsigned int length,
                            details::DynamicObjectNode* parentValue = nullptr, unsigned int* childValue = nullptr);
    // The steps of renameChild once the new name has its node: the children move from the old split node
    // to the new one (a link handed over, nothing copied), then the old name goes.
    unsigned int* findChildrenLink(unsigned int property, char separatorChar);
    void hangChildren(unsigned int property, char separatorChar, unsigned int subtree);
    void moveChildren(unsigned int from, const details::DynamicObjectNode& value, unsigned int to);
    void eraseRenamedChild(unsigned int separator, const char* name, unsigned int length);
    void collectElements(unsigned int level, unsigned int index, unsigned int digits, unsigned int* elements,
                         unsigned int count) const;
    unsigned int getChildRecursive(unsigned int handle, unsigned int target, unsigned int& nbChildrenParsed,
                                   bool insideName, bool isStart, unsigned int parent) const;
    bool checkKey(const char* key, unsigned int length) const;
    unsigned int formatArrayKey(char* buffer, unsigned int index) const;
    unsigned int getPropertyAsserts(const char* key, unsigned int length) const;
    unsigned int getSeparator(unsigned int property) const;
    bool recursiveVisitTrie(unsigned int handle, AbstractObjectBuilder& builder) const;
    void doClear();
    // After anything that frees, moves or renames nodes: a path may then lead elsewhere.
    void forgetPath();
    void doMemoryCopy(const DynamicObject& other);
    void doStreamCopy(const DynamicObject& other);

    NodeAllocator* nodeAllocator;
    StringTable* stringTable;
    bool owning;
    Vector<details::DynamicObjectNode*> blocks;
    unsigned int root;
    unsigned int nextFreeSlot;
    unsigned int freeList;
    details::PathMemo pathMemo;
};

inline details::DynamicObjectNode* DynamicObject::getNode(unsigned int handle) const
{
    details::DynamicObjectNode* node = nodeAt(handle);
    if (node == nullptr && handle != 0) {
        reportBlockOutOfRange();
    }
    return node;
}

inline details::DynamicObjectNode* DynamicObject::nodeAt(unsigned int handle) const
{
    return getNodeTable().at(handle);
}

} // namespace utils
} // namespace tov
