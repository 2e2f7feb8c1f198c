#pragma once
// EntitiesFilterFactory: the "entities" filter of a breakpoint subscription, from an array. Private to
// the library.
//   EntitiesFilterFactory make;
//   AbstractEventFilter* filter = make(query, property);   // an EntitiesFilter, or null for no array

#include <tov/utils/debugger/AbstractEventFilterFactory.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class EntitiesFilterFactory : public AbstractEventFilterFactory {
public:
    // Null when the property is no array. Each integer element adds the entity 0, see the source.
    AbstractEventFilter* operator()(const DynamicObject& object, unsigned int property) const override;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
