#include <tov/utils/debugger/AbstractContext.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_ROOT(AbstractContext, "tov::utils::debugger::AbstractContext",
                              "2de10931-583e-4114-9c9b-349ff9368296")

AbstractContext::~AbstractContext() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
