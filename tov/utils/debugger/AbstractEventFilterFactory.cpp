#include <tov/utils/debugger/AbstractEventFilterFactory.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractEventFilterFactory::~AbstractEventFilterFactory() = default;

AbstractEventFilter* AbstractEventFilterFactory::operator()(const DynamicObject&, unsigned int) const
{
    return nullptr;
}

} // namespace debugger
} // namespace utils
} // namespace tov
