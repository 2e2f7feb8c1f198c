#pragma once
// DynamicObjectCompositePredicate: the conjunction of property comparisons, evaluated in order up to the
// first that fails. An empty predicate holds for every object.
//   DynamicObjectCompositePredicate moving;
//   moving.addPredicate(DynamicObjectPropertyComparison("speed", DynamicObjectPropertyComparison::greater, DynamicValue(0.0)));
//   moving.evaluate(object, logger);

#include <tov/utils/Containers.h>
#include <tov/utils/DynamicObjectPropertyComparison.h>
#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractLogger;
class DynamicObject;

class TOV_UTILS_API DynamicObjectCompositePredicate {
public:
    DynamicObjectCompositePredicate();

    void addPredicate(const DynamicObjectPropertyComparison& predicate);
    unsigned int countPredicates() const;
    // An index at or beyond the count breaks the contract.
    const DynamicObjectPropertyComparison& getPredicate(unsigned int index) const;

    [[nodiscard]] bool evaluate(const DynamicObject& object, AbstractLogger* logger) const;

private:
    Vector<DynamicObjectPropertyComparison> predicates;
};

} // namespace utils
} // namespace tov
