#include <tov/utils/System.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/Logging.h>

namespace tov {
namespace utils {

const char* const uriScheme = "tov";
const Uuid uniqueId = Uuid::create("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9");
const unsigned int invalidIndex = 0xFFFFFFFFu;

namespace {

// The registrations of the library's types, attempted in order and stopping at the first failure.
// They join this chain as the type system arrives; until then there is nothing to register.
bool registerTypes(AbstractLogger* /*logger*/)
{
    return true;
}

bool areTypesRegistered()
{
    return true;
}

void unregisterTypes() {}

} // namespace

bool initialize(AbstractLogger* logger)
{
    if (isInitialized()) {
        return true;
    }
    Facilities::create();
    bool result = true;
    if (Facilities::isSet()) {
        TOV_LOG_INFO(logger, "Initializing the runtime utils systems.");
    } else {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Unable to create the facilities singleton.");
        result = false;
    }
    // Reached on the failure path as well, where Facilities::instance fails its own assertion.
    Facilities::instance();
    return registerTypes(logger) && result;
}

bool isInitialized()
{
    return Facilities::isSet() && areTypesRegistered();
}

bool terminate(AbstractLogger* logger)
{
    if (!isInitialized()) {
        return true;
    }
    TOV_LOG_INFO(logger, "Terminating the runtime utils systems.");
    unregisterTypes();
    if (Facilities::isSet()) {
        Facilities::destroy();
    }
    return true;
}

} // namespace utils
} // namespace tov

const char* getVersionTOV_UTILS()
{
    return "0.4.0";
}

namespace tov_utils {

bool check_0()
{
    return true;
}

bool check_0_4()
{
    return true;
}

} // namespace tov_utils
