#pragma once
// EntitiesFilterVisitor: judges one entity against the EntitiesFilters of a request. Several filters
// combine by OR: the entity passes when any of them lists it, or when there is none.
//   EntitiesFilterVisitor judge(entity);
//   filter.accept(judge);   // judge.isValid()

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API EntitiesFilterVisitor : public AbstractEventFilterVisitor {
public:
    explicit EntitiesFilterVisitor(unsigned int entity);
    ~EntitiesFilterVisitor() override;

    bool isValid() const override;
    bool visit(const AbstractEventFilter& filter) override;

private:
    unsigned int entity;
    bool valid;
    bool found;
};

} // namespace debugger
} // namespace utils
} // namespace tov
