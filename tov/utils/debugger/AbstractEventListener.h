#pragma once
// AbstractEventListener: told of the debugger events that a subscription asked for, on the thread that
// fires them. Each operation gets the handle of the subscription first.
//   class Printer : public AbstractEventListener { void onRegistration(unsigned int, unsigned int e) override {...} ... };

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class Uri;

namespace debugger {

class TOV_UTILS_API AbstractEventListener {
public:
    virtual ~AbstractEventListener();

    virtual void onInitialization(unsigned int requestId) = 0;
    virtual void onTermination(unsigned int requestId) = 0;
    virtual void onSuspension(unsigned int requestId, unsigned int entity) = 0;
    virtual void onDisconnection(unsigned int requestId) = 0;
    virtual void onRegistration(unsigned int requestId, unsigned int entity) = 0;
    virtual void onUnregistration(unsigned int requestId, unsigned int entity) = 0;
    virtual void onBreakpoint(unsigned int requestId, unsigned int entity, const Uri& location) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
