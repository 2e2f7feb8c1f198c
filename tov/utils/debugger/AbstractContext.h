#pragma once
// AbstractContext: one frame of an entity's execution, at a location. An engine derives its own frames,
// pushes them as the entity runs and owns what it pushed; the debugger lists them and shows their content.
//   class Step : public AbstractContext { const Uri& getLocation() const override { return where; } ... };
//   void accept(AbstractContextVisitor& v) const override { v.visit(locals); }   // one DynamicObject

#include <tov/utils/Export.h>
#include <tov/utils/StaticObject.h>

namespace tov {
namespace utils {

class Uri;

namespace debugger {

class AbstractContextVisitor;

class TOV_UTILS_API AbstractContext : public StaticObject {
    TOV_STATIC_OBJECT

public:
    AbstractContext() = default;
    AbstractContext(const AbstractContext&) = default;
    AbstractContext& operator=(const AbstractContext&) = default;
    ~AbstractContext() override;

    virtual const Uri& getLocation() const = 0;
    // The engine's data behind the frame is gone: the frame stops showing content.
    virtual void invalidate() = 0;
    // Shows the frame's content as one DynamicObject.
    virtual void accept(AbstractContextVisitor& visitor) const = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
