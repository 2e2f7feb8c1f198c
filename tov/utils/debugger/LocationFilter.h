#pragma once
// LocationFilter: lets through the events at one location, compared part by part as a Uri. Several of
// them on one request combine by AND, so two different locations let nothing through.
//   request.addFilter(TOV_NEW LocationFilter(Uri::create("tov:agents/forager.behavior")));

#include <tov/utils/Export.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEventFilter.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API LocationFilter : public AbstractEventFilter {
    TOV_STATIC_OBJECT

public:
    explicit LocationFilter(const Uri& location);
    ~LocationFilter() override;

    // Nothing to count.
    void update() override;
    void accept(AbstractEventFilterVisitor& visitor) const override;

    bool operator()(const Uri& location) const;
    const Uri& getLocation() const;

private:
    Uri location;
};

} // namespace debugger
} // namespace utils
} // namespace tov
