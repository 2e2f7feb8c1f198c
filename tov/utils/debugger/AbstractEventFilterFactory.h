#pragma once
// AbstractEventFilterFactory: turns one property of a subscription's JSON into a filter. The facade
// keeps one per filter name; an unknown name gets this base, which makes nothing.
//   AbstractEventFilter* filter = creators.getCreator("hitcount")(query, property);   // null: no filter

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class DynamicObject;

namespace debugger {

class AbstractEventFilter;

class TOV_UTILS_API AbstractEventFilterFactory {
public:
    AbstractEventFilterFactory() = default;
    // Virtual because the factory registry releases derived factories through this base.
    virtual ~AbstractEventFilterFactory();

    // A new filter for the caller to own, or null when the property does not describe one.
    virtual AbstractEventFilter* operator()(const DynamicObject& object, unsigned int property) const;
};

} // namespace debugger
} // namespace utils
} // namespace tov
