#pragma once

#include <tov/utils/debugger/RequestRegistry.h>

namespace tov {
namespace utils {
namespace debugger {

template <typename Request>
unsigned int InspectionFramework::subscribe(AbstractEventListener& listener, AbstractEventFilter* const* filters,
                                            unsigned int filterCount)
{
    AbstractEventListener* const listeners[] = {&listener, &getDebuggerListener()};
    return getRegistry().subscribe<Request>(listeners, 2, filters, filterCount);
}

} // namespace debugger
} // namespace utils
} // namespace tov
