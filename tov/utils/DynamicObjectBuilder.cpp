#include <tov/utils/DynamicObjectBuilder.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Logging.h>
#include <tov/utils/String.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/impl/DynamicKey.h>

#include <cstring>

namespace tov {
namespace utils {

namespace {

const char* const noCurrentProperty = "No current property.";
const char* const unexpectedType = "The current property is not of the expected type";
const char* const notAnObject = "The current property is not an object.";
const char* const notAnArray = "The current property is not an array.";

} // namespace

DynamicObjectBuilder::DynamicObjectBuilder(DynamicObject& object, unsigned int property) : object(object)
{
    const unsigned int target = property != 0 ? property : object.getRoot();
    properties.push_back(target);
    values.push_back(0);
    types.push_back(object.getType(target));
}

DynamicObjectBuilder::~DynamicObjectBuilder() {}

bool DynamicObjectBuilder::begin()
{
    return true;
}

bool DynamicObjectBuilder::end()
{
    return true;
}

bool DynamicObjectBuilder::null()
{
    if (!beginScalar(type::null)) {
        return false;
    }
    if (!writeScalar(type::null, 0)) {
        object.resetProperty(properties.back());
    }
    return endScalar(type::null);
}

bool DynamicObjectBuilder::boolean(bool value)
{
    if (!beginScalar(type::boolean)) {
        return false;
    }
    // Stored inverted, as the object stores booleans.
    if (!writeScalar(type::boolean, value ? 0 : 1)) {
        object.setBool(properties.back(), value);
    }
    return endScalar(type::boolean);
}

bool DynamicObjectBuilder::integer(long long value)
{
    if (!beginScalar(type::integer)) {
        return false;
    }
    if (!writeScalar(type::integer, static_cast<unsigned long long>(value))) {
        object.setInt(properties.back(), value);
    }
    return endScalar(type::integer);
}

bool DynamicObjectBuilder::real(double value)
{
    if (!beginScalar(type::real)) {
        return false;
    }
    unsigned long long bits;
    std::memcpy(&bits, &value, sizeof bits);
    if (!writeScalar(type::real, bits)) {
        object.setReal(properties.back(), value);
    }
    return endScalar(type::real);
}

bool DynamicObjectBuilder::string(const char* text, unsigned int length)
{
    if (!beginScalar(type::string)) {
        return false;
    }
    if (text == nullptr || values.back() == 0 ||
        !writeScalar(type::string, object.getStringTable().add(text, length, nullptr))) {
        object.setString(properties.back(), text, length);
    }
    return endScalar(type::string);
}

bool DynamicObjectBuilder::beginObject()
{
    return beginProperty(type::object);
}

bool DynamicObjectBuilder::objectChild(const char* key, unsigned int length)
{
    if (properties.empty()) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, noCurrentProperty);
        return false;
    }
    const unsigned int current = properties.back();
    // The property itself is checked too: a key given twice may have made it a value of another kind,
    // and adding a child to that would assert. Keys come from outside (JSON, saved files, queries): one
    // that addChild would refuse is refused, before its assertion can end the host.
    bool notObject = types.back() != type::object;
    unsigned int childValue = 0;
    const unsigned int child = notObject ? 0 : object.addCheckedChild(current, key, length, notObject, childValue);
    if (notObject) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, notAnObject);
        return false;
    }
    if (child == 0) {
        return reportChildFailure(key, length);
    }
    properties.push_back(child);
    values.push_back(childValue);
    types.push_back(type::null);
    return true;
}

bool DynamicObjectBuilder::endObject()
{
    return endProperty(type::object);
}

bool DynamicObjectBuilder::beginArray()
{
    return beginProperty(type::array);
}

bool DynamicObjectBuilder::arrayChild()
{
    if (properties.empty()) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, noCurrentProperty);
        return false;
    }
    const unsigned int current = properties.back();
    bool full = false;
    unsigned int childValue = 0;
    const unsigned int child = types.back() == type::array ? object.appendElement(current, full, childValue) : 0;
    if (full) {
        // The element that would make the array reach its maximum size is refused; going on would push a
        // missing element, whose first write asserts.
        TOV_LOG_ERROR(getLogger(), error::invalidOperation,
                      "The current array property ("
                          << current << ") reached its maximum size: " << DynamicObject::getMaximumArraySize() << ".");
        return false;
    }
    if (child == 0) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, notAnArray);
        return false;
    }
    properties.push_back(child);
    values.push_back(childValue);
    types.push_back(type::null);
    return true;
}

bool DynamicObjectBuilder::endArray()
{
    return endProperty(type::array);
}

bool DynamicObjectBuilder::beginProperty(type::Type type)
{
    TOV_ASSERT(properties.size() == types.size(), "Invalid state");
    if (properties.empty() || types.empty()) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, noCurrentProperty);
        return false;
    }
    if (types.back() != type::null && types.back() != type) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, unexpectedType);
        return false;
    }
    types.back() = type;
    return true;
}

bool DynamicObjectBuilder::endProperty(type::Type type)
{
    TOV_ASSERT(properties.size() == types.size(), "Invalid state");
    const bool expected = !types.empty() && types.back() == type;
    TOV_ASSERT(expected, "Invalid call sequence");
    if (!expected || properties.empty()) {
        return false;
    }
    properties.pop_back();
    types.pop_back();
    values.pop_back();
    return true;
}

bool DynamicObjectBuilder::beginScalar(type::Type type)
{
    // QUIRK(builder-overwrites-other-kind): a value of an unexpected kind is written all the same, the
    // check only reports it, so a reader goes on with what the text held instead of stopping there.
    beginProperty(type);
    // With no current property there is nothing to write to.
    return !properties.empty();
}

bool DynamicObjectBuilder::endScalar(type::Type type)
{
    // The property now holds a value of this kind whatever its slot expected. The slot is closed as such:
    // a scalar from outside (a JSON document loaded over an object that already has a type) must not
    // reach the framing assertion, which would end the host.
    types.back() = type;
    endProperty(type);
    return true;
}

bool DynamicObjectBuilder::writeScalar(type::Type type, unsigned long long bits)
{
    return values.back() != 0 && object.writeScalar(values.back(), type, bits);
}

bool DynamicObjectBuilder::reportChildFailure(const char* key, unsigned int length)
{
    AbstractLogger* logger = getLogger();
    if (logger == nullptr) {
        return false;
    }
    const String name(key, length);
    const char invalid = impl::findPathCharacter(key, length);
    if (invalid != '\0') {
        TOV_LOG_ERROR(logger, error::invalidArgument,
                      "Unable to create a child named " << name << " to the current property, invalid character '"
                                                        << invalid << "' found.");
    } else {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Unable to create a child named " << name << " to the current property.");
    }
    return false;
}

} // namespace utils
} // namespace tov
