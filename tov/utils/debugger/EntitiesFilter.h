#pragma once
// EntitiesFilter: lets through the events of the entities that it lists. Several of them on one request
// combine by OR; an empty list lets nothing through.
//   const unsigned int ids[] = {4, 9};
//   request.addFilter(TOV_NEW EntitiesFilter(ids, 2));

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventFilter.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API EntitiesFilter : public AbstractEventFilter {
    TOV_STATIC_OBJECT

public:
    // Copies the `count` ids; `entities` may be null when `count` is 0.
    EntitiesFilter(const unsigned int* entities, unsigned int count);
    ~EntitiesFilter() override;

    // Nothing to count.
    void update() override;
    void accept(AbstractEventFilterVisitor& visitor) const override;

    bool operator()(unsigned int entity) const;
    const Vector<unsigned int>& getEntities() const;

private:
    Vector<unsigned int> entities;
};

} // namespace debugger
} // namespace utils
} // namespace tov
