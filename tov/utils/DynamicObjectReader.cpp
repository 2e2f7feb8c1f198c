#include <tov/utils/DynamicObjectReader.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/Logging.h>

namespace tov {
namespace utils {

namespace {

// The one place the reader's messages are written: "'count' is a string, not an integer".
bool refuse(AbstractLogger* logger, const char* key, type::Type found, const char* expected)
{
    const char* name = toString(found);
    const bool vowel = found == type::integer || found == type::array || found == type::object;
    const char* article = found == type::null ? "" : vowel ? "an " : "a ";
    TOV_LOG_ERROR(logger, error::invalidData,
                  "'" << (key != nullptr ? key : "the value") << "' is " << article
                      << (found == type::null ? "absent" : name) << ", not " << expected);
    return false;
}

} // namespace

DynamicObjectReader::DynamicObjectReader(const DynamicObject& object) : object(object) {}

unsigned int DynamicObjectReader::find(const char* key) const
{
    return key != nullptr && object.hasProperty(key) ? object.getProperty(key) : 0;
}

bool DynamicObjectReader::has(const char* key) const
{
    const unsigned int property = find(key);
    return property != 0 && object.getType(property) != type::null;
}

bool DynamicObjectReader::readInt(const char* key, long long& value, AbstractLogger* logger) const
{
    return readInt(find(key), key, value, logger);
}

bool DynamicObjectReader::readReal(const char* key, double& value, AbstractLogger* logger) const
{
    return readReal(find(key), key, value, logger);
}

bool DynamicObjectReader::readBool(const char* key, bool& value, AbstractLogger* logger) const
{
    return readBool(find(key), key, value, logger);
}

bool DynamicObjectReader::readString(const char* key, const char*& value, AbstractLogger* logger) const
{
    return readString(find(key), key, value, logger);
}

bool DynamicObjectReader::readInt(unsigned int property, long long& value, AbstractLogger* logger) const
{
    return readInt(property, nullptr, value, logger);
}

bool DynamicObjectReader::readReal(unsigned int property, double& value, AbstractLogger* logger) const
{
    return readReal(property, nullptr, value, logger);
}

bool DynamicObjectReader::readBool(unsigned int property, bool& value, AbstractLogger* logger) const
{
    return readBool(property, nullptr, value, logger);
}

bool DynamicObjectReader::readString(unsigned int property, const char*& value, AbstractLogger* logger) const
{
    return readString(property, nullptr, value, logger);
}

type::Type DynamicObjectReader::kindOf(unsigned int property) const
{
    return property == 0 ? type::null : object.getType(property);
}

bool DynamicObjectReader::readInt(unsigned int property, const char* key, long long& value,
                                  AbstractLogger* logger) const
{
    const type::Type kind = kindOf(property);
    if (kind != type::integer) {
        return refuse(logger, key, kind, "an integer");
    }
    value = object.getInt(property);
    return true;
}

bool DynamicObjectReader::readReal(unsigned int property, const char* key, double& value, AbstractLogger* logger) const
{
    const type::Type kind = kindOf(property);
    if (kind != type::real && kind != type::integer) {
        return refuse(logger, key, kind, "a number");
    }
    value = kind == type::real ? object.getReal(property) : static_cast<double>(object.getInt(property));
    return true;
}

bool DynamicObjectReader::readBool(unsigned int property, const char* key, bool& value, AbstractLogger* logger) const
{
    const type::Type kind = kindOf(property);
    if (kind != type::boolean) {
        return refuse(logger, key, kind, "a boolean");
    }
    value = object.getBool(property);
    return true;
}

bool DynamicObjectReader::readString(unsigned int property, const char* key, const char*& value,
                                     AbstractLogger* logger) const
{
    const type::Type kind = kindOf(property);
    const char* text = kind == type::string ? object.getString(property) : nullptr;
    if (text == nullptr) {
        return refuse(logger, key, kind, "a string");
    }
    value = text;
    return true;
}

} // namespace utils
} // namespace tov
