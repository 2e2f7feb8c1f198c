#include <tov/utils/debugger/EntitiesFilter.h>

#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

#include <algorithm>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(EntitiesFilter, AbstractEventFilter, "tov::utils::debugger::EntitiesFilter",
                                 "7466a2e4-e4e5-4b18-9716-d8232f781e42")

EntitiesFilter::EntitiesFilter(const unsigned int* entities, unsigned int count)
{
    if (count != 0) {
        this->entities.assign(entities, entities + count);
    }
}

EntitiesFilter::~EntitiesFilter() = default;

void EntitiesFilter::update() {}

void EntitiesFilter::accept(AbstractEventFilterVisitor& visitor) const
{
    visitor.visit(*this);
}

bool EntitiesFilter::operator()(unsigned int entity) const
{
    return std::find(entities.begin(), entities.end(), entity) != entities.end();
}

const Vector<unsigned int>& EntitiesFilter::getEntities() const
{
    return entities;
}

} // namespace debugger
} // namespace utils
} // namespace tov
