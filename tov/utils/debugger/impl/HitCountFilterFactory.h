#pragma once
// HitCountFilterFactory: the "hitcount" filter of a breakpoint subscription, from an integer: hits from
// that pass on. Private to the library.
//   HitCountFilterFactory make;
//   AbstractEventFilter* filter = make(query, property);   // 3 gives HitCountFilter(3, atLeast)

#include <tov/utils/debugger/AbstractEventFilterFactory.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class HitCountFilterFactory : public AbstractEventFilterFactory {
public:
    // Null when the property is no integer.
    AbstractEventFilter* operator()(const DynamicObject& object, unsigned int property) const override;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
