#include <tov/utils/DynamicObjectCompositePredicate.h>

#include <tov/utils/Assertion.h>

namespace tov {
namespace utils {

DynamicObjectCompositePredicate::DynamicObjectCompositePredicate() {}

void DynamicObjectCompositePredicate::addPredicate(const DynamicObjectPropertyComparison& predicate)
{
    predicates.push_back(predicate);
}

unsigned int DynamicObjectCompositePredicate::countPredicates() const
{
    return static_cast<unsigned int>(predicates.size());
}

const DynamicObjectPropertyComparison& DynamicObjectCompositePredicate::getPredicate(unsigned int index) const
{
    TOV_ASSERT(index < predicates.size(), "index out of bounds when accessing simple conditions");
    if (index >= predicates.size()) {
        // Something to hand back should the assertion function return.
        static const DynamicObjectPropertyComparison none("", DynamicObjectPropertyComparison::equal, DynamicValue());
        return none;
    }
    return predicates[index];
}

bool DynamicObjectCompositePredicate::evaluate(const DynamicObject& object, AbstractLogger* logger) const
{
    for (const DynamicObjectPropertyComparison& predicate : predicates) {
        if (!predicate.evaluate(object, logger)) {
            return false;
        }
    }
    return true;
}

} // namespace utils
} // namespace tov
