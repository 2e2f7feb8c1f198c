#include <tov/utils/details/PropertyHolder.h>

namespace tov {
namespace utils {
namespace details {

PropertyHolder::PropertyHolder(unsigned char accessors) : accessors(accessors) {}

PropertyHolder::~PropertyHolder() = default;

unsigned char PropertyHolder::getAccessors() const
{
    return accessors;
}

} // namespace details
} // namespace utils
} // namespace tov
