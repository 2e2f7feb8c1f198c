#pragma once
// MainContext: the bottom frame of every entity that the debugger knows, at "tov:simulation". It has no
// content to show but an empty object. Private to the library.
//   MainContextFactory factory;
//   AbstractContext* bottom = factory.create();   // bottom->getLocation() reads "tov:simulation"

#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractContext.h>

namespace tov {
namespace utils {
namespace debugger {

class MainContext : public AbstractContext {
    TOV_STATIC_OBJECT

public:
    explicit MainContext(const Uri& location);
    ~MainContext() override;

    const Uri& getLocation() const override;
    void invalidate() override;
    // Hands over one empty object shared by every MainContext; nothing at all once invalidated.
    void accept(AbstractContextVisitor& visitor) const override;

private:
    Uri location;
    bool valid;
};

} // namespace debugger
} // namespace utils
} // namespace tov
