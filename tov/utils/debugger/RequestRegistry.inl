#pragma once

#include <tov/utils/Memory.h>
#include <tov/utils/ScopedMutex.h>

namespace tov {
namespace utils {
namespace debugger {

template <typename Request>
unsigned int RequestRegistry::subscribe(AbstractEventListener* const* listeners, unsigned int listenerCount,
                                        AbstractEventFilter* const* filters, unsigned int filterCount)
{
    ScopedMutex guard(mutex);
    if (!isRequestClass(Request::getClassTypeId())) {
        return 0;
    }
    Request* request = TOV_NEW Request(nextHandle);
    ++nextHandle;
    return doSubscribe(request, listeners, listenerCount, filters, filterCount);
}

} // namespace debugger
} // namespace utils
} // namespace tov
