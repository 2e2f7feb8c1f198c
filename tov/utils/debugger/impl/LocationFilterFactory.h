#pragma once
// LocationFilterFactory: the "location" filter of a breakpoint subscription, from a string that holds a
// Uri. Private to the library.
//   LocationFilterFactory make;
//   AbstractEventFilter* filter = make(query, property);   // "tov:simulation" gives a LocationFilter

#include <tov/utils/debugger/AbstractEventFilterFactory.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class LocationFilterFactory : public AbstractEventFilterFactory {
public:
    // Null when the property is no string or its text is no Uri.
    AbstractEventFilter* operator()(const DynamicObject& object, unsigned int property) const override;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
