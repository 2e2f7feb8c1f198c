// Arbitrary keys through the path parser, the setters and the builder of DynamicObject. Every use is one
// that a caller may make without checking the key first; an assertion reached is a finding. After each
// operation the object must stay consistent: every property that a walk yields is found again by its key,
// with the same handle, a known type, and arrays whose elements are all there.
#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/DynamicObjectIterator.h>
#include <tov/utils/StringTable.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

using tov::utils::DynamicObject;
using tov::utils::DynamicObjectBuilder;
using tov::utils::DynamicObjectIterator;
namespace type = tov::utils::type;

void abortOnAssertion(const char* file, unsigned int line, const char* message)
{
    std::fprintf(stderr, "%s(%u): [assertion failed] %s\n", file, line, message);
    std::abort();
}

void check(bool condition, const char* what, const std::string& key)
{
    if (!condition) {
        std::fprintf(stderr, "inconsistent object: %s at '%s'\n", what, key.c_str());
        std::abort();
    }
}

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data(data), size(size) {}
    bool empty() const { return position >= size; }
    unsigned int byte() { return position < size ? data[position++] : 0; }
    // A key of up to 63 bytes, any bytes.
    std::string key()
    {
        const unsigned int length = byte() % 64;
        std::string text;
        while (text.size() < length && position < size) {
            text.push_back(static_cast<char>(data[position++]));
        }
        return text;
    }

private:
    const std::uint8_t* data;
    std::size_t size;
    std::size_t position = 0;
};

// The name rule of child keys, so that the operations that take one name get one.
bool isName(const std::string& name)
{
    return !name.empty() && name.find_first_of(std::string(".[]\0", 4)) == std::string::npos;
}

void checkConsistency(const DynamicObject& object)
{
    for (DynamicObjectIterator it(object, 0); !it.end(); it.next()) {
        const std::string key(it.getKey(), it.getKeyLength());
        check(std::strlen(it.getKey()) == it.getKeyLength(), "key not terminated at its length", key);
        check(object.getProperty(key.data(), static_cast<unsigned int>(key.size())) == it.getProperty(),
              "walked property not found again by its key", key);
        const type::Type kind = object.getType(it.getProperty());
        check(kind >= type::null && kind <= type::object, "unknown type", key);
        if (kind == type::array) {
            const unsigned int count = object.countChildren(it.getProperty());
            for (unsigned int i = 0; i < count; ++i) {
                check(object.getChild(it.getProperty(), i) != 0, "array element missing", key);
            }
        }
    }
}

void build(DynamicObject& object, unsigned int property, Input& input)
{
    // As a JSON document or a query would: keys from outside, values of any kind, over what is there.
    DynamicObjectBuilder builder(object, property);
    builder.begin();
    const bool asArray = input.byte() % 2 == 0;
    if (asArray ? !builder.beginArray() : !builder.beginObject()) {
        return;
    }
    const unsigned int members = input.byte() % 4;
    for (unsigned int i = 0; i < members; ++i) {
        const std::string key = input.key();
        if (asArray ? !builder.arrayChild() : !builder.objectChild(key.data(), static_cast<unsigned int>(key.size()))) {
            return;
        }
        switch (input.byte() % 5) {
        case 0:
            builder.null();
            break;
        case 1:
            builder.integer(static_cast<long long>(input.byte()) - 100);
            break;
        case 2:
            builder.string(key.data(), static_cast<unsigned int>(key.size()));
            break;
        case 3:
            builder.beginObject();
            builder.endObject();
            break;
        default:
            builder.boolean(true);
            break;
        }
    }
    asArray ? builder.endArray() : builder.endObject();
    builder.end();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tov::utils::setAssertionFailedFunction(abortOnAssertion);
    std::unique_ptr<DynamicObject> object(new DynamicObject());
    Input input(data, size);
    while (!input.empty()) {
        const unsigned int operation = input.byte() % 16;
        const std::string key = input.key();
        const unsigned int length = static_cast<unsigned int>(key.size());
        switch (operation) {
        case 0:
            object->addProperty(key.data(), length);
            break;
        case 1:
            if (const unsigned int property = object->addProperty(key.data(), length)) {
                object->setInt(property, static_cast<long long>(input.byte()) << 40);
            }
            break;
        case 2:
            if (const unsigned int property = object->addProperty(key.data(), length)) {
                object->setString(property, key.data(), length);
            }
            break;
        case 3:
            if (const unsigned int property = object->addProperty(key.data(), length)) {
                if (input.byte() % 2 == 0) {
                    object->setBool(property, true);
                } else {
                    object->setReal(property, 1e300 * input.byte());
                }
            }
            break;
        case 4:
            if (const unsigned int property = object->getProperty(key.data(), length)) {
                object->hasChild(property, key.data(), length);
                object->getChild(property, input.byte() % 8);
                if (object->isTypeCompatible(property, type::integer) && object->getType(property) != type::null) {
                    object->getInt(property);
                }
            }
            break;
        case 5: {
            const unsigned int parent = object->getProperty(key.data(), length);
            const std::string name = input.key();
            if (parent != 0 && isName(name)) {
                object->eraseChild(parent, name.data(), static_cast<unsigned int>(name.size()));
            }
            break;
        }
        case 6:
            if (const unsigned int property = object->getProperty(key.data(), length)) {
                if (object->isTypeCompatible(property, type::array)) {
                    object->resize(property, input.byte() % 24);
                }
            }
            break;
        case 7:
            if (const unsigned int property = object->getProperty(key.data(), length)) {
                const type::Type kind = object->getType(property);
                if (kind == type::null || kind == type::array) {
                    object->eraseChild(property, input.byte() % 8);
                }
            }
            break;
        case 8:
            object->resetProperty(key.data(), length);
            break;
        case 9: {
            const unsigned int parent = object->getProperty(key.data(), length);
            const std::string oldName = input.key();
            const std::string newName = input.key();
            if (parent != 0 && (parent == object->getRoot() || object->getType(parent) == type::object) &&
                isName(oldName) && isName(newName) &&
                object->hasChild(parent, oldName.data(), static_cast<unsigned int>(oldName.size())) &&
                !object->hasChild(parent, newName.data(), static_cast<unsigned int>(newName.size()))) {
                object->renameChild(parent, oldName.data(), static_cast<unsigned int>(oldName.size()), newName.data(),
                                    static_cast<unsigned int>(newName.size()));
            }
            break;
        }
        case 10:
        case 11:
            build(*object, object->getProperty(key.data(), length), input);
            break;
        case 12: {
            DynamicObjectIterator walk(*object, object->getProperty(key.data(), length), input.byte() % 4);
            while (!walk.end()) {
                walk.next();
            }
            break;
        }
        case 13:
            if (input.byte() % 2 == 0) {
                object.reset(new DynamicObject(*object));
            } else {
                tov::utils::StringTable table(100);
                DynamicObject::NodeAllocator nodes(1 + input.byte() % 40);
                DynamicObject other(nodes, table);
                other = *object;
                if (const unsigned int property = other.addProperty(key.data(), length)) {
                    other.setInt(property, 1);
                }
                object.reset(new DynamicObject(other));
            }
            break;
        case 14: {
            // A copy sharing allocator and table walks the same.
            const DynamicObject copy{DynamicObject::Ref(*object)};
            DynamicObjectIterator original(*object, 0);
            DynamicObjectIterator copied(copy, 0);
            for (; !original.end() && !copied.end(); original.next(), copied.next()) {
                check(original.getProperty() == copied.getProperty(), "copy walks otherwise", original.getKey());
            }
            check(original.end() && copied.end(), "copy walks otherwise", key);
            break;
        }
        default:
            if (input.byte() % 8 == 0) {
                object->clear();
            }
            break;
        }
        checkConsistency(*object);
    }
    return 0;
}
