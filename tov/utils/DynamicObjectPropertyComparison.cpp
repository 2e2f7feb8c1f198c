#include <tov/utils/DynamicObjectPropertyComparison.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Logging.h>

#include <cstring>

namespace tov {
namespace utils {

namespace {

template <typename T>
bool compare(const T& left, DynamicObjectPropertyComparison::Comparator comparator, const T& right)
{
    switch (comparator) {
    case DynamicObjectPropertyComparison::equal:
        return left == right;
    case DynamicObjectPropertyComparison::notEqual:
        return left != right;
    case DynamicObjectPropertyComparison::greater:
        return left > right;
    case DynamicObjectPropertyComparison::less:
        return left < right;
    case DynamicObjectPropertyComparison::greaterOrEqual:
        return left >= right;
    case DynamicObjectPropertyComparison::lessOrEqual:
        return left <= right;
    }
    TOV_ASSERT(false, "unexpected comparator detected " << static_cast<int>(comparator));
    return false;
}

} // namespace

DynamicObjectPropertyComparison::DynamicObjectPropertyComparison(const char* key, Comparator comparator,
                                                                 const DynamicValue& value)
    : key(), comparator(comparator), value(value)
{
    TOV_ASSERT(key != nullptr, "null pointer not allowed as key when creating a simple condition");
    if (key != nullptr) {
        this->key = key;
    }
}

const String& DynamicObjectPropertyComparison::getKey() const
{
    return key;
}

DynamicObjectPropertyComparison::Comparator DynamicObjectPropertyComparison::getComparator() const
{
    return comparator;
}

const DynamicValue& DynamicObjectPropertyComparison::getValue() const
{
    return value;
}

bool DynamicObjectPropertyComparison::evaluate(const DynamicObject& object, AbstractLogger* logger) const
{
    const unsigned int property = object.getProperty(key.c_str(), static_cast<unsigned int>(key.size()));
    if (property == 0) {
        TOV_LOG_ERROR(logger, error::invalidArgument,
                      "object has no property " << key << ", unable to evaluate condition");
        return false;
    }
    switch (value.getType()) {
    case type::integer:
        return compare(object.getInt(property), comparator, value.getInt());
    case type::real:
        return compare(object.getReal(property), comparator, value.getReal());
    case type::string: {
        const char* text = object.getString(property);
        return compare(std::strcmp(text != nullptr ? text : "", value.getString()), comparator, 0);
    }
    case type::boolean:
        return compare(object.getBool(property), comparator, value.getBool());
    default:
        break;
    }
    TOV_ASSERT(false, "unexpected value type detected " << static_cast<int>(value.getType()));
    return false;
}

} // namespace utils
} // namespace tov
