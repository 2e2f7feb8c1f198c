#include <tov/utils/DynamicType.h>

namespace tov {
namespace utils {

const char* toString(type::Type type)
{
    switch (type) {
    case type::null:
        return "null";
    case type::integer:
        return "integer";
    case type::real:
        return "real";
    case type::string:
        return "string";
    case type::boolean:
        return "boolean";
    case type::array:
        return "array";
    case type::object:
        return "object";
    }
    return nullptr;
}

} // namespace utils
} // namespace tov
