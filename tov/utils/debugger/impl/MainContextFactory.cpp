#include <tov/utils/debugger/impl/MainContextFactory.h>

#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/impl/MainContext.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractContext* MainContextFactory::create()
{
    return TOV_NEW MainContext(Uri::create("tov:simulation"));
}

} // namespace debugger
} // namespace utils
} // namespace tov
