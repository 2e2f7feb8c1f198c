#include <tov/utils/StaticObject.h>

namespace tov {
namespace utils {

TOV_STATIC_OBJECT_DEFINE_ROOT(StaticObject, "tov::utils::StaticObject", "7027fee4-32de-4a3a-a634-65811d6429e2")

StaticObject::~StaticObject() = default;

} // namespace utils
} // namespace tov
