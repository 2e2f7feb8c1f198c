#include <tov/utils/debugger/impl/EntitiesFilterFactory.h>

#include <tov/utils/Containers.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Memory.h>
#include <tov/utils/debugger/EntitiesFilter.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

AbstractEventFilter* EntitiesFilterFactory::operator()(const DynamicObject& object, unsigned int property) const
{
    if (object.getType(property) != type::array) {
        return nullptr;
    }
    const unsigned int count = object.countChildren(property);
    Vector<unsigned int> entities;
    entities.reserve(count);
    for (unsigned int index = 0; index < count; ++index) {
        if (object.getType(object.getChild(property, index)) == type::integer) {
            // QUIRK(entities-filter-reads-zero): the value is read from the array itself, not from the
            // element, so every number reads 0 and the filter selects entity 0 only. That read is an
            // assertion, which would let a client end the host with any array holding a number; the
            // value it gives when the assertion returns, 0, is appended without it. Clients (tov-inspect
            // break) are written for it.
            entities.push_back(0);
        }
    }
    return TOV_NEW EntitiesFilter(entities.data(), static_cast<unsigned int>(entities.size()));
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
