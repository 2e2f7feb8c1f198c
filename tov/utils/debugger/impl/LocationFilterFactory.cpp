#include <tov/utils/debugger/impl/LocationFilterFactory.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/LocationFilter.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

AbstractEventFilter* LocationFilterFactory::operator()(const DynamicObject& object, unsigned int property) const
{
    if (object.getType(property) != type::string) {
        return nullptr;
    }
    const char* text = object.getString(property);
    // The text comes from a client: Uri::create would end the host on one that does not parse, so it
    // is read with the reporting setter, and a refused text gives no filter, like a value of the wrong
    // type.
    Uri location;
    if (text == nullptr || !location.set(text, nullptr)) {
        return nullptr;
    }
    return TOV_NEW LocationFilter(location);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
