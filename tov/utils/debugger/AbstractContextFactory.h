#pragma once
// AbstractContextFactory: makes the frame that an engine pushes, so that the debugger decides under its
// lock when the frame comes into being.
//   class StepFactory : public AbstractContextFactory { AbstractContext* create() override { return TOV_NEW Step(at); } };

#include <tov/utils/Export.h>

namespace tov {
namespace utils {
namespace debugger {

class AbstractContext;

class TOV_UTILS_API AbstractContextFactory {
public:
    AbstractContextFactory() = default;
    AbstractContextFactory(const AbstractContextFactory&) = default;
    AbstractContextFactory& operator=(const AbstractContextFactory&) = default;
    virtual ~AbstractContextFactory();

    // A new frame, made by tracked new.
    virtual AbstractContext* create() = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
