// DynamicObject: paths, types and children, the structural half of the public face; arrays are in
// DynamicObjectArrays.cpp.
#include <tov/utils/DynamicObject.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObjectIterator.h>
#include <tov/utils/String.h>
#include <tov/utils/details/PathCursor.h>
#include <tov/utils/details/PathMemo.h>
#include <tov/utils/impl/DynamicObjectNodes.h>

namespace tov {
namespace utils {

using details::DynamicObjectNode;

using impl::arrayKeyCapacity;
using impl::ChildKey;
using impl::invalidPropertyMessage;
using impl::lengthOf;
using impl::nullKeyMessage;
using impl::unknownTypeMessage;

bool DynamicObject::hasProperty(const char* key) const
{
    return hasProperty(key, lengthOf(key));
}

bool DynamicObject::hasProperty(const char* key, unsigned int length) const
{
    return getProperty(key, length) != 0;
}

unsigned int DynamicObject::getProperty(const char* key) const
{
    return getProperty(key, lengthOf(key));
}

unsigned int DynamicObject::getProperty(const char* key, unsigned int length) const
{
    TOV_ASSERT(key != nullptr, nullKeyMessage);
    if (key == nullptr) {
        return 0;
    }
    unsigned int property;
    unsigned int valueHandle;
    findValueNode(root, key, length, property, valueHandle);
    return property;
}

unsigned int DynamicObject::getPropertyAsserts(const char* key, unsigned int length) const
{
    const unsigned int property = getProperty(key, length);
    TOV_ASSERT(property != 0, "Unable to find property for the key '"
                                  << String(key != nullptr ? key : "", key != nullptr ? length : 0) << "'");
    return property;
}

unsigned int DynamicObject::addProperty(const char* key)
{
    return addProperty(key, lengthOf(key));
}

unsigned int DynamicObject::addProperty(const char* key, unsigned int length)
{
    TOV_ASSERT(key != nullptr, nullKeyMessage);
    if (key == nullptr) {
        return 0;
    }
    // Each part of the path is made as the cursor reaches it; the last one, left in the cursor's rest,
    // is the property asked for. A path that begins as the last one did starts where that one ended.
    details::PathMemo::Walk walk(key, length, root);
    pathMemo.resume(*this, walk);
    details::PathCursor& cursor = walk.cursor;
    unsigned int& current = walk.property;
    details::PathCursor atLastPart = cursor;
    for (details::PathCursor::Step step = cursor.next(current == root); current != 0;
         step = cursor.next(current == root)) {
        if (step == details::PathCursor::finished) {
            break;
        }
        const unsigned int from = current;
        if (step == details::PathCursor::name) {
            // A part in the middle of a path becomes a child of what comes before it, which must then be
            // able to hold children: adding below a scalar or an array would count the child into the
            // value's bits and turn it into an object, leaving a count that no walk can bring back to 0.
            current = isTypeCompatible(current, type::object)
                          ? doAddChild(current, cursor.getPart(), cursor.getPartLength())
                          : 0;
            walk.took(details::PathMemo::Part{from, type::object, 0});
        } else if (step == details::PathCursor::index && cursor.getIndex() < getMaximumArraySize() &&
                   isTypeCompatible(current, type::array)) {
            // An index beyond the largest array would reach the assertion of the array key. The next
            // element is made in one step, without a search for what was just made.
            const unsigned int count = countChildren(current);
            if (cursor.getIndex() == count) {
                bool full = false;
                unsigned int elementValue = 0;
                current = appendElement(current, full, elementValue);
            } else {
                if (cursor.getIndex() > count) {
                    resize(current, cursor.getIndex() + 1);
                }
                current = getChild(current, cursor.getIndex());
            }
            walk.took(details::PathMemo::Part{from, type::array, cursor.getIndex()});
        } else {
            current = 0;
        }
        atLastPart = cursor;
    }
    // QUIRK(malformed-path-keeps-parts): a path refused halfway gives 0 but keeps the parts it made
    // before; undoing them would need a second walk, and the answer 0 is what callers test.
    if (current == 0) {
        return 0;
    }
    pathMemo.keep(walk, atLastPart);
    const unsigned int restLength = cursor.getRestLength();
    if (restLength <= 1 && (restLength == 0 || current != root)) {
        return current;
    }
    if (!isTypeCompatible(current, type::object)) {
        return 0;
    }
    return doAddChild(current, cursor.getRest(), restLength);
}

type::Type DynamicObject::getType(unsigned int property) const
{
    const DynamicObjectNode* value = findValueNode(property);
    return value != nullptr ? static_cast<type::Type>(value->leaf.type) : type::null;
}

type::Type DynamicObject::getType(const char* key) const
{
    return getType(key, lengthOf(key));
}

type::Type DynamicObject::getType(const char* key, unsigned int length) const
{
    return getType(getPropertyAsserts(key, length));
}

bool DynamicObject::isTypeCompatible(unsigned int property, type::Type type) const
{
    const type::Type own = getType(property);
    switch (own) {
    case type::null:
        return true;
    case type::integer:
    case type::real:
        return type == type::integer || type == type::real;
    case type::string:
    case type::boolean:
    case type::array:
    case type::object:
        return own == type;
    }
    TOV_ASSERT(false, static_cast<int>(type) << "is an unknown tov::utils::type.");
    return false;
}

bool DynamicObject::isTypeCompatible(const char* key, type::Type type) const
{
    return isTypeCompatible(key, lengthOf(key), type);
}

bool DynamicObject::isTypeCompatible(const char* key, unsigned int length, type::Type type) const
{
    return isTypeCompatible(getPropertyAsserts(key, length), type);
}

unsigned int DynamicObject::countChildren(unsigned int property) const
{
    const DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return 0;
    }
    if (value->leaf.type == type::array || value->leaf.type == type::object) {
        return static_cast<unsigned int>(value->leaf.value.bits);
    }
    return 0;
}

unsigned int DynamicObject::countChildren(const char* key) const
{
    return countChildren(key, lengthOf(key));
}

unsigned int DynamicObject::countChildren(const char* key, unsigned int length) const
{
    return countChildren(getPropertyAsserts(key, length));
}

unsigned int DynamicObject::addCheckedChild(unsigned int parent, const char* name, unsigned int length, bool& notObject,
                                            unsigned int& childValue)
{
    childValue = 0;
    DynamicObjectNode* value = findValueNode(parent);
    notObject = value == nullptr || (value->leaf.type != type::null && value->leaf.type != type::object);
    if (notObject || !checkKey(name, length)) {
        return 0;
    }
    return doAddChild(parent, name, length, value, &childValue);
}

bool DynamicObject::writeScalar(unsigned int valueHandle, type::Type type, unsigned long long bits)
{
    DynamicObjectNode* value = getNode(valueHandle);
    if (value == nullptr || !value->leaf.isValue ||
        ((value->leaf.type == type::array || value->leaf.type == type::object) && value->leaf.value.bits > 0)) {
        return false;
    }
    value->leaf.type = static_cast<unsigned char>(type);
    value->leaf.value.bits = bits;
    return true;
}

unsigned int DynamicObject::getChild(unsigned int property, unsigned int index) const
{
    const type::Type type = getType(property);
    switch (type) {
    case type::null:
    case type::integer:
    case type::real:
    case type::string:
    case type::boolean:
        return 0;
    case type::array: {
        char key[arrayKeyCapacity];
        const unsigned int keyLength = formatArrayKey(key, index);
        if (keyLength == 0) {
            return 0;
        }
        unsigned int element;
        return findNode(property, key, keyLength, true, element) != nullptr ? element : 0;
    }
    case type::object: {
        const unsigned int target = index + 1;
        if (target == 0) {
            return 0;
        }
        unsigned int nbChildrenParsed = 0;
        const unsigned int found = getChildRecursive(property, target, nbChildrenParsed, false, true, property);
        return nbChildrenParsed == target ? found : 0;
    }
    }
    TOV_ASSERT(false, static_cast<int>(type) << unknownTypeMessage);
    return 0;
}

unsigned int DynamicObject::getChild(const char* key, unsigned int index) const
{
    return getChild(key, lengthOf(key), index);
}

unsigned int DynamicObject::getChild(const char* key, unsigned int length, unsigned int index) const
{
    return getChild(getProperty(key, length), index);
}

unsigned int DynamicObject::getChild(unsigned int parent, const char* name) const
{
    return getChild(parent, name, lengthOf(name));
}

unsigned int DynamicObject::getChild(unsigned int parent, const char* name, unsigned int nameLength) const
{
    TOV_ASSERT(name != nullptr, nullKeyMessage);
    if (name == nullptr || nameLength == 0) {
        return 0;
    }
    const unsigned int start = parent == root ? root : getSeparator(parent);
    if (start == 0) {
        return 0;
    }
    unsigned int child;
    unsigned int childValue;
    findValueNode(start, name, nameLength, child, childValue);
    return child;
}

unsigned int DynamicObject::getChild(const char* parentKey, const char* name) const
{
    return getChild(getPropertyAsserts(parentKey, lengthOf(parentKey)), name);
}

unsigned int DynamicObject::getChild(const char* parentKey, unsigned int parentLength, const char* name,
                                     unsigned int nameLength) const
{
    return getChild(getPropertyAsserts(parentKey, parentLength), name, nameLength);
}

bool DynamicObject::hasChild(unsigned int parent, const char* name) const
{
    return getChild(parent, name) != 0;
}

bool DynamicObject::hasChild(unsigned int parent, const char* name, unsigned int nameLength) const
{
    return getChild(parent, name, nameLength) != 0;
}

bool DynamicObject::hasChild(const char* parentKey, const char* name) const
{
    return getChild(getProperty(parentKey, lengthOf(parentKey)), name) != 0;
}

bool DynamicObject::hasChild(const char* parentKey, unsigned int parentLength, const char* name,
                             unsigned int nameLength) const
{
    return getChild(getProperty(parentKey, parentLength), name, nameLength) != 0;
}

unsigned int DynamicObject::addChild(unsigned int parent, const char* name)
{
    return addChild(parent, name, lengthOf(name));
}

unsigned int DynamicObject::addChild(unsigned int parent, const char* name, unsigned int nameLength)
{
    TOV_ASSERT(name != nullptr, nullKeyMessage);
    if (name == nullptr) {
        return 0;
    }
    const bool isObject = isTypeCompatible(parent, type::object);
    TOV_ASSERT(isObject, "The given property is not an object.");
    const bool validKey = checkKey(name, nameLength);
    TOV_ASSERT(validKey, "The given child key, " << String(name, nameLength) << " is invalid.");
    // QUIRK(add-child-refused): should the assertion function return, nothing is added, the smallest
    // safe thing: a refused name would be taken as a path, and a child below a value would corrupt its
    // count.
    if (!isObject || !validKey) {
        return 0;
    }
    return doAddChild(parent, name, nameLength);
}

unsigned int DynamicObject::addChild(const char* parentKey, const char* name)
{
    return addChild(getPropertyAsserts(parentKey, lengthOf(parentKey)), name);
}

unsigned int DynamicObject::addChild(const char* parentKey, unsigned int parentLength, const char* name,
                                     unsigned int nameLength)
{
    return addChild(getPropertyAsserts(parentKey, parentLength), name, nameLength);
}

bool DynamicObject::eraseChild(unsigned int parent, const char* name)
{
    return eraseChild(parent, name, lengthOf(name));
}

bool DynamicObject::eraseChild(unsigned int parent, const char* name, unsigned int nameLength)
{
    TOV_ASSERT(name != nullptr, nullKeyMessage);
    // An empty name below the root is the root itself, whose value node must never go: every later write
    // would then fail.
    if (name == nullptr || (nameLength == 0 && parent == root)) {
        return false;
    }
    // QUIRK(erase-child-takes-path): the name is not checked as addChild checks it, so a path erases a
    // descendant; kept as callers may rely on it.
    const ChildKey completeChildKey(name, nameLength, parent != root);
    unsigned int child;
    unsigned int childValue;
    if (findValueNode(parent, completeChildKey.data(), completeChildKey.length(), child, childValue) == nullptr) {
        return false;
    }
    resetProperty(child);
    eraseProperty(parent, completeChildKey.data(), completeChildKey.length());
    DynamicObjectNode* parentValue = findValueNode(parent);
    TOV_ASSERT(parentValue != nullptr, invalidPropertyMessage);
    if (parentValue != nullptr) {
        parentValue->leaf.value.bits -= 1;
        if (parentValue->leaf.value.bits == 0) {
            parentValue->leaf.type = type::null;
        }
    }
    return true;
}

bool DynamicObject::eraseChild(const char* parentKey, const char* name)
{
    return eraseChild(getPropertyAsserts(parentKey, lengthOf(parentKey)), name);
}

bool DynamicObject::eraseChild(const char* parentKey, unsigned int parentLength, const char* name,
                               unsigned int nameLength)
{
    return eraseChild(getPropertyAsserts(parentKey, parentLength), name, nameLength);
}

unsigned int DynamicObject::renameChild(unsigned int parent, const char* oldName, const char* newName)
{
    return renameChild(parent, oldName, lengthOf(oldName), newName, lengthOf(newName));
}

unsigned int DynamicObject::renameChild(unsigned int parent, const char* oldName, unsigned int oldLength,
                                        const char* newName, unsigned int newLength)
{
    forgetPath();
    TOV_ASSERT(oldLength != 0, "No given name for the child to rename.");
    const bool validKey = newName != nullptr && checkKey(newName, newLength);
    TOV_ASSERT(validKey, "The given child key, '"
                             << String(newName != nullptr ? newName : "", newName != nullptr ? newLength : 0)
                             << "' is invalid.");
    const unsigned int separator = parent == root ? root : getSeparator(parent);
    TOV_ASSERT(separator != 0, "The given property is not an object having children.");
    if (oldName == nullptr || oldLength == 0 || !validKey || separator == 0) {
        return 0;
    }
    unsigned int oldChild;
    unsigned int oldChildValue;
    findValueNode(separator, oldName, oldLength, oldChild, oldChildValue);
    TOV_ASSERT(oldChild != 0, "The given property has no child named '" << String(oldName, oldLength) << "'.");
    if (oldChild == 0) {
        return 0;
    }
    unsigned int newChild;
    unsigned int newChildValue;
    findValueNode(separator, newName, newLength, newChild, newChildValue);
    if (newChild == oldChild) {
        return newChild;
    }
    TOV_ASSERT(newChild == 0, "The given property already has a child named '" << String(newName, newLength) << "'");
    if (newChild != 0) {
        return 0;
    }
    bool newChildInserted = false;
    DynamicObjectNode* newValue = addProperty(separator, newName, newLength, newChildInserted, newChild, newChildValue);
    TOV_ASSERT(newChildInserted, "Can't add to the given property a child named " << String(newName, newLength));
    const DynamicObjectNode* oldValue = getNode(oldChildValue);
    *newValue = *oldValue;
    moveChildren(oldChild, *oldValue, newChild);
    eraseRenamedChild(separator, oldName, oldLength);
    return newChild;
}

unsigned int* DynamicObject::findChildrenLink(unsigned int property, char separatorChar)
{
    // The children hang below the separator character on the `greater` side of the property's split node.
    unsigned int handle = property;
    while (handle != 0) {
        DynamicObjectNode* node = getNode(handle);
        TOV_ASSERT(!node->trie.isValue, "unclean state during trie search - detected leaf node");
        if (node->trie.isValue) {
            return nullptr;
        }
        if (node->trie.splitChar == separatorChar) {
            return &node->trie.equal;
        }
        handle = separatorChar < node->trie.splitChar ? node->trie.less : node->trie.greater;
    }
    return nullptr;
}

void DynamicObject::hangChildren(unsigned int property, char separatorChar, unsigned int subtree)
{
    // The property's split node may be one left behind by an erased property, whose `greater` link still
    // carries siblings that extend its name: the separator goes into that tree at its place, or takes over
    // a dead separator of the same character there, instead of replacing the link.
    unsigned int* slot = &getNode(property)->trie.greater;
    while (*slot != 0) {
        DynamicObjectNode* node = getNode(*slot);
        if (node->trie.splitChar == separatorChar) {
            break;
        }
        slot = separatorChar < node->trie.splitChar ? &node->trie.less : &node->trie.greater;
    }
    DynamicObjectNode* separatorNode = *slot != 0 ? getNode(*slot) : allocateNode(separatorChar, *slot);
    separatorNode->trie.equal = subtree;
}

void DynamicObject::moveChildren(unsigned int from, const DynamicObjectNode& value, unsigned int to)
{
    const char separatorChar = value.leaf.type == type::array ? '[' : (value.leaf.type == type::object ? '.' : '\0');
    if (separatorChar == '\0') {
        return;
    }
    unsigned int* link = findChildrenLink(from, separatorChar);
    const unsigned int subtree = link != nullptr ? *link : 0;
    TOV_ASSERT((subtree != 0) == (value.leaf.value.bits != 0), "Children links and count do not match");
    if (subtree != 0) {
        hangChildren(to, separatorChar, subtree);
        *link = 0;
    }
}

// QUIRK(rename-leaves-split-nodes): the old name's split node goes only when nothing else hangs on it;
// one that still carries siblings' links stays until clear, as every erase leaves it.
void DynamicObject::eraseRenamedChild(unsigned int separator, const char* name, unsigned int length)
{
    unsigned int separatorLink = separator;
    bool matchErased = false;
    eraseProperty(&separatorLink, name, length, matchErased);
    TOV_ASSERT(matchErased, "Can't remove from the given property its child named " << String(name, length));
}

void DynamicObject::resetProperty(unsigned int property)
{
    if (property == 0) {
        return;
    }
    DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return;
    }
    const unsigned int type = value->leaf.type;
    if (type == type::array) {
        resize(property, 0);
    } else if (type == type::object) {
        // Children are erased one at a time by the names a fresh walk gives, as the walk cannot go on
        // over a changed trie. A walk also yields the tails of siblings whose names extend this one by a
        // character below "." (their nodes lie on the same links): no child answers to those, so they
        // are passed over.
        // QUIRK(reset-leaves-unreachable): a walk that erases nothing ends the loop,
        // the smallest safe thing, instead of repeating forever; children it cannot reach stay.
        while (findValueNode(property)->leaf.value.bits > 0) {
            bool erased = false;
            for (DynamicObjectIterator walk(*this, property, 1); !walk.end(); walk.next()) {
                if (walk.getKeyLength() != 0 && eraseChild(property, walk.getKey(), walk.getKeyLength())) {
                    erased = true;
                    break;
                }
            }
            if (!erased) {
                break;
            }
        }
    } else if (type > type::object) {
        TOV_ASSERT(false, "is an unknown tov::utils::type.");
    }
    value = findValueNode(property);
    value->leaf.value.bits = 0;
    value->leaf.type = type::null;
}

void DynamicObject::resetProperty(const char* key)
{
    resetProperty(getProperty(key, lengthOf(key)));
}

void DynamicObject::resetProperty(const char* key, unsigned int length)
{
    resetProperty(getProperty(key, length));
}

} // namespace utils
} // namespace tov
