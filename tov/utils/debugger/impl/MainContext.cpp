#include <tov/utils/debugger/impl/MainContext.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/debugger/AbstractContextVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(MainContext, AbstractContext, "tov::utils::debugger::MainContext",
                                 "8f1372e9-e974-4dd9-b8e2-a1c776ec07df")

MainContext::MainContext(const Uri& location) : location(location), valid(true) {}

MainContext::~MainContext() = default;

const Uri& MainContext::getLocation() const
{
    return location;
}

void MainContext::invalidate()
{
    valid = false;
}

void MainContext::accept(AbstractContextVisitor& visitor) const
{
    if (!valid) {
        return;
    }
    // Built on first use and never changed, so that threads may read it side by side.
    static const DynamicObject empty;
    visitor.visit(empty);
}

} // namespace debugger
} // namespace utils
} // namespace tov
