// DynamicObject: reading and writing values, copies between objects and the dump of the raw trie.
#include <tov/utils/DynamicObject.h>

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObjectIterator.h>
#include <tov/utils/DynamicValue.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/impl/DynamicKey.h>
#include <tov/utils/impl/DynamicObjectNodes.h>

#include <cstring>

namespace tov {
namespace utils {

using details::DynamicObjectNode;

using impl::invalidPropertyMessage;
using impl::lengthOf;
using impl::nullKeyMessage;
using impl::unknownTypeMessage;

// Readers.

long long DynamicObject::getInt(unsigned int property) const
{
    const DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return 0;
    }
    switch (value->leaf.type) {
    case type::integer:
        return value->leaf.value.integer;
    case type::real:
        return impl::truncateToInteger(value->leaf.value.real);
    case type::null:
    case type::string:
    case type::boolean:
    case type::array:
    case type::object:
        TOV_ASSERT(false, "Not an integer or a compatible type");
        return 0;
    }
    TOV_ASSERT(false, static_cast<int>(value->leaf.type) << unknownTypeMessage);
    return 0;
}

long long DynamicObject::getInt(const char* key) const
{
    return getInt(getPropertyAsserts(key, lengthOf(key)));
}

long long DynamicObject::getInt(const char* key, unsigned int length) const
{
    return getInt(getPropertyAsserts(key, length));
}

double DynamicObject::getReal(unsigned int property) const
{
    const DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return 0.0;
    }
    switch (value->leaf.type) {
    case type::integer:
        return static_cast<double>(value->leaf.value.integer);
    case type::real:
        return value->leaf.value.real;
    case type::null:
    case type::string:
    case type::boolean:
    case type::array:
    case type::object:
        TOV_ASSERT(false, "Not a real or a compatible type");
        return 0.0;
    }
    TOV_ASSERT(false, static_cast<int>(value->leaf.type) << unknownTypeMessage);
    return 0.0;
}

double DynamicObject::getReal(const char* key) const
{
    return getReal(getPropertyAsserts(key, lengthOf(key)));
}

double DynamicObject::getReal(const char* key, unsigned int length) const
{
    return getReal(getPropertyAsserts(key, length));
}

bool DynamicObject::getBool(unsigned int property) const
{
    const DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return false;
    }
    switch (value->leaf.type) {
    case type::boolean:
        // Stored inverted: 0 is true.
        return value->leaf.value.bits == 0;
    case type::null:
    case type::integer:
    case type::real:
    case type::string:
    case type::array:
    case type::object:
        TOV_ASSERT(false, "Not a boolean or a compatible type");
        return false;
    }
    TOV_ASSERT(false, static_cast<int>(value->leaf.type) << unknownTypeMessage);
    return false;
}

bool DynamicObject::getBool(const char* key) const
{
    return getBool(getPropertyAsserts(key, lengthOf(key)));
}

bool DynamicObject::getBool(const char* key, unsigned int length) const
{
    return getBool(getPropertyAsserts(key, length));
}

unsigned long long DynamicObject::getStringHash(unsigned int property) const
{
    const DynamicObjectNode* value = findValueNode(property);
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return 0;
    }
    switch (value->leaf.type) {
    case type::string:
        return value->leaf.value.bits;
    case type::null:
    case type::integer:
    case type::real:
    case type::boolean:
    case type::array:
    case type::object:
        TOV_ASSERT(false, "Not a string or a compatible type");
        return 0;
    }
    TOV_ASSERT(false, static_cast<int>(value->leaf.type) << unknownTypeMessage);
    return 0;
}

unsigned long long DynamicObject::getStringHash(const char* key) const
{
    return getStringHash(getPropertyAsserts(key, lengthOf(key)));
}

unsigned long long DynamicObject::getStringHash(const char* key, unsigned int length) const
{
    return getStringHash(getPropertyAsserts(key, length));
}

const char* DynamicObject::getString(unsigned int property) const
{
    return stringTable->retrieve(getStringHash(property), nullptr);
}

const char* DynamicObject::getString(const char* key) const
{
    return getString(getPropertyAsserts(key, lengthOf(key)));
}

const char* DynamicObject::getString(const char* key, unsigned int length) const
{
    return getString(getPropertyAsserts(key, length));
}

// Writers.

namespace {

// The value node of a property about to receive a scalar, with its subtree dropped; null for a bad handle.
DynamicObjectNode* prepareScalar(DynamicObject& object, DynamicObjectNode* value, unsigned int property)
{
    TOV_ASSERT(value != nullptr, invalidPropertyMessage);
    if (value == nullptr) {
        return nullptr;
    }
    if ((value->leaf.type == type::array || value->leaf.type == type::object) && value->leaf.value.bits > 0) {
        object.resetProperty(property);
    }
    return value;
}

} // namespace

void DynamicObject::setInt(unsigned int property, long long number)
{
    DynamicObjectNode* value = prepareScalar(*this, findValueNode(property), property);
    if (value != nullptr) {
        value->leaf.type = type::integer;
        value->leaf.value.integer = number;
    }
}

void DynamicObject::setInt(const char* key, long long number)
{
    setInt(addProperty(key, lengthOf(key)), number);
}

void DynamicObject::setInt(const char* key, unsigned int length, long long number)
{
    setInt(addProperty(key, length), number);
}

void DynamicObject::setReal(unsigned int property, double number)
{
    DynamicObjectNode* value = prepareScalar(*this, findValueNode(property), property);
    if (value != nullptr) {
        value->leaf.type = type::real;
        value->leaf.value.real = number;
    }
}

void DynamicObject::setReal(const char* key, double number)
{
    setReal(addProperty(key, lengthOf(key)), number);
}

void DynamicObject::setReal(const char* key, unsigned int length, double number)
{
    setReal(addProperty(key, length), number);
}

void DynamicObject::setBool(unsigned int property, bool flag)
{
    DynamicObjectNode* value = prepareScalar(*this, findValueNode(property), property);
    if (value != nullptr) {
        value->leaf.type = type::boolean;
        value->leaf.value.bits = flag ? 0 : 1;
    }
}

void DynamicObject::setBool(const char* key, bool flag)
{
    setBool(addProperty(key, lengthOf(key)), flag);
}

void DynamicObject::setBool(const char* key, unsigned int length, bool flag)
{
    setBool(addProperty(key, length), flag);
}

void DynamicObject::setString(unsigned int property, const char* text)
{
    setString(property, text, lengthOf(text));
}

void DynamicObject::setString(unsigned int property, const char* text, unsigned int textLength)
{
    TOV_ASSERT(text != nullptr, nullKeyMessage);
    if (text == nullptr) {
        return;
    }
    DynamicObjectNode* value = prepareScalar(*this, findValueNode(property), property);
    if (value != nullptr) {
        value->leaf.type = type::string;
        value->leaf.value.bits = stringTable->add(text, textLength, nullptr);
    }
}

void DynamicObject::setString(const char* key, const char* text)
{
    setString(addProperty(key, lengthOf(key)), text);
}

void DynamicObject::setString(const char* key, unsigned int keyLength, const char* text, unsigned int textLength)
{
    setString(addProperty(key, keyLength), text, textLength);
}

void DynamicObject::setValue(unsigned int property, const DynamicValue& value)
{
    switch (value.getType()) {
    case type::null:
        resetProperty(property);
        return;
    case type::integer:
        setInt(property, value.getInt());
        return;
    case type::real:
        setReal(property, value.getReal());
        return;
    case type::boolean:
        setBool(property, value.getBool());
        return;
    case type::string:
        setString(property, value.getString(), value.getStringLength());
        return;
    case type::array:
    case type::object:
        break;
    }
    TOV_ASSERT(false, static_cast<int>(value.getType()) << unknownTypeMessage);
    resetProperty(property);
}

void DynamicObject::setValue(const char* key, const DynamicValue& value)
{
    setValue(addProperty(key, lengthOf(key)), value);
}

void DynamicObject::setValue(const char* key, unsigned int length, const DynamicValue& value)
{
    setValue(addProperty(key, length), value);
}

void DynamicObject::retrieveValue(unsigned int property, DynamicValue& value) const
{
    const DynamicObjectNode* node = findValueNode(property);
    TOV_ASSERT(node != nullptr, invalidPropertyMessage);
    if (node == nullptr) {
        value.reset();
        return;
    }
    switch (node->leaf.type) {
    case type::null:
        value.reset();
        return;
    case type::integer:
        value.setInt(node->leaf.value.integer);
        return;
    case type::real:
        value.setReal(node->leaf.value.real);
        return;
    case type::boolean:
        value.setBool(node->leaf.value.bits == 0);
        return;
    case type::string:
        value.setString(stringTable->retrieve(node->leaf.value.bits, ""));
        return;
    }
    TOV_ASSERT(false, static_cast<int>(node->leaf.type) << unknownTypeMessage);
    value.reset();
}

void DynamicObject::retrieveValue(const char* key, DynamicValue& value) const
{
    retrieveValue(getPropertyAsserts(key, lengthOf(key)), value);
}

void DynamicObject::retrieveValue(const char* key, unsigned int length, DynamicValue& value) const
{
    retrieveValue(getPropertyAsserts(key, length), value);
}

// Copies between objects.

void DynamicObject::put(unsigned int property, const DynamicObject& source)
{
    put(property, source, source.root);
}

void DynamicObject::put(unsigned int property, const DynamicObject& source, unsigned int sourceProperty)
{
    const type::Type type = source.getType(sourceProperty);
    switch (type) {
    case type::null:
        return;
    case type::integer:
        setInt(property, source.getInt(sourceProperty));
        return;
    case type::real:
        setReal(property, source.getReal(sourceProperty));
        return;
    case type::boolean:
        setBool(property, source.getBool(sourceProperty));
        return;
    case type::string: {
        const char* text = source.getString(sourceProperty);
        setString(property, text != nullptr ? text : "");
        return;
    }
    case type::array: {
        const unsigned int count = source.countChildren(sourceProperty);
        resize(property, count);
        for (unsigned int i = 0; i < count; ++i) {
            put(getChild(property, i), source, source.getChild(sourceProperty, i));
        }
        return;
    }
    case type::object:
        // Depth 0: the property and its direct children. What the target has already stays.
        for (DynamicObjectIterator child(source, sourceProperty, 0); !child.end(); child.next()) {
            if (child.getKeyLength() != 0) {
                put(addChild(property, child.getKey(), child.getKeyLength()), source, child.getProperty());
            }
        }
        return;
    }
    TOV_ASSERT(false, static_cast<int>(type) << unknownTypeMessage);
}

void DynamicObject::put(const char* key, const DynamicObject& source)
{
    put(addProperty(key, lengthOf(key)), source, source.root);
}

void DynamicObject::put(const char* key, unsigned int length, const DynamicObject& source)
{
    put(addProperty(key, length), source, source.root);
}

void DynamicObject::put(const char* key, const DynamicObject& source, const char* sourceKey)
{
    put(addProperty(key, lengthOf(key)), source, source.getPropertyAsserts(sourceKey, lengthOf(sourceKey)));
}

void DynamicObject::put(const char* key, unsigned int length, const DynamicObject& source, const char* sourceKey,
                        unsigned int sourceLength)
{
    put(addProperty(key, length), source, source.getPropertyAsserts(sourceKey, sourceLength));
}

void DynamicObject::retrieve(unsigned int property, DynamicObject& target) const
{
    // The walk starts with the property itself under the empty key, which is the target's root.
    for (DynamicObjectIterator entry(*this, property); !entry.end(); entry.next()) {
        const unsigned int handle = entry.getProperty();
        const char* key = entry.getKey();
        const unsigned int keyLength = entry.getKeyLength();
        switch (getType(handle)) {
        case type::null:
            break;
        case type::integer:
            target.setInt(key, keyLength, getInt(handle));
            break;
        case type::real:
            target.setReal(key, keyLength, getReal(handle));
            break;
        case type::boolean:
            target.setBool(key, keyLength, getBool(handle));
            break;
        case type::string: {
            const char* text = getString(handle);
            text = text != nullptr ? text : "";
            target.setString(key, keyLength, text, lengthOf(text));
            break;
        }
        case type::array:
            target.resize(target.addProperty(key, keyLength), countChildren(handle));
            break;
        case type::object:
            target.addProperty(key, keyLength);
            break;
        }
    }
}

void DynamicObject::retrieve(const char* key, DynamicObject& target) const
{
    retrieve(key, lengthOf(key), target);
}

void DynamicObject::retrieve(const char* key, unsigned int length, DynamicObject& target) const
{
    // QUIRK(retrieve-unknown-key-copies-root): an unknown key gives the handle 0, from which the walk
    // starts at the root and copies it all, as the handle form does for the handle 0.
    retrieve(getProperty(key, length), target);
}

// The raw trie.

bool DynamicObject::visitTrie(unsigned int handle, AbstractObjectBuilder& builder) const
{
    return builder.begin() && recursiveVisitTrie(handle, builder) && builder.end();
}

bool DynamicObject::recursiveVisitTrie(unsigned int handle, AbstractObjectBuilder& builder) const
{
    if (!builder.beginObject() || !builder.objectChild("handle") || !builder.integer(handle)) {
        return false;
    }
    const DynamicObjectNode* node = getNode(handle);
    if (node != nullptr && node->trie.isValue) {
        bool written = true;
        switch (node->leaf.type) {
        case type::null:
            written = builder.objectChild("value") && builder.null();
            break;
        case type::integer:
            written = builder.objectChild("value") && builder.integer(node->leaf.value.integer);
            break;
        case type::real:
            written = builder.objectChild("value") && builder.real(node->leaf.value.real);
            break;
        case type::string:
            written = builder.objectChild("value") &&
                      builder.string(stringTable->retrieve(node->leaf.value.bits, "unknown string"));
            break;
        case type::boolean:
            written = builder.objectChild("value") && builder.boolean(node->leaf.value.bits == 0);
            break;
        case type::array:
        case type::object:
            written =
                builder.objectChild("children count") && builder.integer(static_cast<long long>(node->leaf.value.bits));
            break;
        }
        if (!written) {
            return false;
        }
    } else if (node != nullptr) {
        const char name = static_cast<char>(node->trie.splitChar);
        const bool written =
            builder.objectChild(&name, 1) &&
            (node->trie.equal != 0 ? recursiveVisitTrie(node->trie.equal, builder) : builder.null()) &&
            builder.objectChild("greater") &&
            (node->trie.greater != 0 ? recursiveVisitTrie(node->trie.greater, builder) : builder.null()) &&
            builder.objectChild("less") &&
            (node->trie.less != 0 ? recursiveVisitTrie(node->trie.less, builder) : builder.null());
        if (!written) {
            return false;
        }
    }
    return builder.endObject();
}

} // namespace utils
} // namespace tov
