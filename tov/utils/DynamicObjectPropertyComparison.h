#pragma once
// DynamicObjectPropertyComparison: compares one property of a DynamicObject, named by its path, with a
// constant. The constant's type chooses the reader, so the property must be of a compatible kind.
//   DynamicObjectPropertyComparison fast("ship.speed", DynamicObjectPropertyComparison::greater, DynamicValue(10.0));
//   if (fast.evaluate(object, logger)) { ... }   // false, with a message, when the property is missing

#include <tov/utils/DynamicValue.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {

class AbstractLogger;
class DynamicObject;

class TOV_UTILS_API DynamicObjectPropertyComparison {
public:
    // The property's value is on the left, the constant on the right.
    // A fixed underlying type: a number outside the list is a value that evaluate can refuse.
    enum Comparator : int { equal = 0, notEqual = 1, greater = 2, less = 3, greaterOrEqual = 4, lessOrEqual = 5 };

    // A null key breaks the contract; the comparison then has the empty key.
    DynamicObjectPropertyComparison(const char* key, Comparator comparator, const DynamicValue& value);

    const String& getKey() const;
    Comparator getComparator() const;
    const DynamicValue& getValue() const;

    // Strings compare by strcmp, booleans with false below true, reals with no order for NaN.
    [[nodiscard]] bool evaluate(const DynamicObject& object, AbstractLogger* logger) const;

private:
    String key;
    Comparator comparator;
    DynamicValue value;
};

} // namespace utils
} // namespace tov
