#include <tov/utils/debugger/impl/HitCountFilterFactory.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/Memory.h>
#include <tov/utils/debugger/HitCountFilter.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

AbstractEventFilter* HitCountFilterFactory::operator()(const DynamicObject& object, unsigned int property) const
{
    if (object.getType(property) != type::integer) {
        return nullptr;
    }
    return TOV_NEW HitCountFilter(static_cast<int>(object.getInt(property)));
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
