#pragma once
// AbstractEventRequest: one subscription to one kind of debugger event, with its handle, the listeners
// to tell and, for breakpoints and suspensions, the filters that narrow it. A RequestRegistry owns it.
//   unsigned int handle = registry.subscribe<TerminationRequest>(listeners, 1, nullptr, 0);
//   registry.accept(visitor);   // a visitor made for one request class acts on requests of that class

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/StaticObject.h>

namespace tov {
namespace utils {
namespace debugger {

class AbstractEventFilter;
class AbstractEventListener;
class AbstractEventRequestVisitor;

class TOV_UTILS_API AbstractEventRequest : public StaticObject {
    TOV_STATIC_OBJECT

public:
    explicit AbstractEventRequest(unsigned int handle);
    ~AbstractEventRequest() override;
    // A request owns its filters: a copy would release them twice.
    AbstractEventRequest(const AbstractEventRequest&) = delete;
    AbstractEventRequest& operator=(const AbstractEventRequest&) = delete;

    // Takes ownership in every case: a filter that the request does not keep is destroyed at once, and
    // the result is false. Null is refused.
    virtual bool addFilter(AbstractEventFilter* filter) = 0;
    // Lets the filters count one more pass.
    virtual void update() = 0;
    // Hands the request to `visitor` as an AbstractEventRequest&.
    virtual void accept(AbstractEventRequestVisitor& visitor) = 0;

    unsigned int getHandle() const;
    // Appends; a listener registered twice is told twice.
    void registerListener(AbstractEventListener& listener);
    // Removes every occurrence of `listener`.
    void unregisterListener(AbstractEventListener& listener);

protected:
    // Not owned. A firing walks them by index, so that a listener added meanwhile does not invalidate it.
    const Vector<AbstractEventListener*>& getListeners() const;

private:
    const unsigned int handle;
    Vector<AbstractEventListener*> listeners;
};

} // namespace debugger
} // namespace utils
} // namespace tov
