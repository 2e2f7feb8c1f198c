#include <tov/utils/DynamicValue.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>
#include <tov/utils/impl/DynamicKey.h>

#include <cstring>

namespace tov {
namespace utils {

namespace {

const char* const retrieveFailure = "Unable the retrieve this value of type ";

} // namespace

DynamicValue::DynamicValue() : type(type::null)
{
    value.integer = 0;
}

DynamicValue::DynamicValue(int number) : type(type::integer)
{
    value.integer = number;
}

DynamicValue::DynamicValue(long long number) : type(type::integer)
{
    value.integer = number;
}

DynamicValue::DynamicValue(double number) : type(type::real)
{
    value.real = number;
}

DynamicValue::DynamicValue(bool flag) : type(type::boolean)
{
    value.integer = 0;
    value.boolean = flag;
}

// A null text gives an empty string. It is reported before the string is made, so that an assertion
// function that throws leaves nothing behind; one that returns finds the value as it would otherwise be.
DynamicValue::DynamicValue(const char* text) : type(type::string)
{
    TOV_ASSERT(text != nullptr, "null pointer not allowed as string value initializer for DynamicValue");
    value.string = TOV_NEW String(text != nullptr ? text : "");
}

DynamicValue::DynamicValue(const char* text, unsigned int length) : type(type::string)
{
    TOV_ASSERT(text != nullptr, "null pointer not allowed as string value initializer for DynamicValue");
    value.string = text != nullptr ? TOV_NEW String(text, length) : TOV_NEW String();
}

DynamicValue::DynamicValue(const DynamicValue& other) : type(type::null)
{
    value.integer = 0;
    *this = other;
}

DynamicValue& DynamicValue::operator=(const DynamicValue& other)
{
    if (this == &other) {
        return *this;
    }
    switch (other.type) {
    case type::integer:
        setInt(other.value.integer);
        break;
    case type::real:
        setReal(other.value.real);
        break;
    case type::boolean:
        setBool(other.value.boolean);
        break;
    case type::string:
        setString(other.value.string->c_str());
        break;
    default:
        reset();
        break;
    }
    return *this;
}

DynamicValue::~DynamicValue()
{
    releaseString();
}

type::Type DynamicValue::getType() const
{
    return static_cast<type::Type>(type);
}

bool DynamicValue::isTypeCompatible(type::Type asked) const
{
    switch (type) {
    case type::null:
        return true;
    case type::integer:
    case type::real:
        return asked == type::integer || asked == type::real;
    case type::string:
    case type::boolean:
        return asked == static_cast<type::Type>(type);
    default:
        return false;
    }
}

long long DynamicValue::getInt() const
{
    if (type == type::integer) {
        return value.integer;
    }
    if (type == type::real) {
        return impl::truncateToInteger(value.real);
    }
    TOV_ASSERT(false, retrieveFailure << type << " as an int");
    return 0;
}

double DynamicValue::getReal() const
{
    if (type == type::integer) {
        return static_cast<double>(value.integer);
    }
    if (type == type::real) {
        return value.real;
    }
    TOV_ASSERT(false, retrieveFailure << type << " as a real");
    return 0.0;
}

bool DynamicValue::getBool() const
{
    if (type == type::boolean) {
        return value.boolean;
    }
    TOV_ASSERT(false, retrieveFailure << type << " as a bool");
    return false;
}

const char* DynamicValue::getString() const
{
    if (type == type::string) {
        return value.string->c_str();
    }
    TOV_ASSERT(false, retrieveFailure << type << " as a string");
    return nullptr;
}

unsigned int DynamicValue::getStringLength() const
{
    if (type == type::string) {
        return static_cast<unsigned int>(value.string->size());
    }
    TOV_ASSERT(false, retrieveFailure << type << " as a string");
    return 0;
}

void DynamicValue::setInt(long long number)
{
    releaseString();
    type = type::integer;
    value.integer = number;
}

void DynamicValue::setReal(double number)
{
    releaseString();
    type = type::real;
    value.real = number;
}

void DynamicValue::setBool(bool flag)
{
    releaseString();
    type = type::boolean;
    value.integer = 0;
    value.boolean = flag;
}

void DynamicValue::setString(const char* text)
{
    TOV_ASSERT(text != nullptr, "unable to set string value from null pointer");
    if (text == nullptr) {
        return;
    }
    setString(text, static_cast<unsigned int>(std::strlen(text)));
}

void DynamicValue::setString(const char* text, unsigned int length)
{
    TOV_ASSERT(text != nullptr, "unable to set string value from null pointer");
    if (text == nullptr) {
        return;
    }
    if (type == type::string) {
        value.string->assign(text, length);
        return;
    }
    type = type::string;
    value.string = TOV_NEW String(text, length);
}

void DynamicValue::reset()
{
    releaseString();
    type = type::null;
    value.integer = 0;
}

bool DynamicValue::operator==(const DynamicValue& other) const
{
    switch (type) {
    case type::integer:
        return other.type == type::integer && value.integer == other.value.integer;
    case type::real:
        return other.type == type::real && value.real == other.value.real;
    case type::string:
        return other.type == type::string && *value.string == *other.value.string;
    case type::boolean:
        return other.type == type::boolean && value.boolean == other.value.boolean;
    default:
        return other.type == type::null;
    }
}

bool DynamicValue::operator!=(const DynamicValue& other) const
{
    return !(*this == other);
}

void DynamicValue::releaseString()
{
    if (type == type::string) {
        TOV_DELETE(value.string);
        type = type::null;
        value.integer = 0;
    }
}

std::ostream& operator<<(std::ostream& stream, const DynamicValue& value)
{
    switch (value.getType()) {
    case type::integer:
        return stream << value.getInt();
    case type::real:
        return stream << value.getReal();
    case type::string:
        return stream.write(value.getString(), value.getStringLength());
    case type::boolean:
        return stream << value.getBool();
    default:
        return stream << "null";
    }
}

} // namespace utils
} // namespace tov
