#pragma once
// MainContextFactory: makes the bottom frame that the debugger pushes for an entity when it registers.
// Private to the library.
//   MainContextFactory factory;
//   AbstractContext* bottom = factory.create();   // a MainContext at "tov:simulation"

#include <tov/utils/debugger/AbstractContextFactory.h>

namespace tov {
namespace utils {
namespace debugger {

class MainContextFactory : public AbstractContextFactory {
public:
    AbstractContext* create() override;
};

} // namespace debugger
} // namespace utils
} // namespace tov
