#include <tov/utils/System.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/Logging.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/debugger/AbstractContext.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventRequest.h>
#include <tov/utils/debugger/BreakpointRequest.h>
#include <tov/utils/debugger/EntitiesFilter.h>
#include <tov/utils/debugger/EntityRegistrationRequest.h>
#include <tov/utils/debugger/EntityUnregistrationRequest.h>
#include <tov/utils/debugger/HitCountFilter.h>
#include <tov/utils/debugger/InitializationRequest.h>
#include <tov/utils/debugger/LocationFilter.h>
#include <tov/utils/debugger/TargetDisconnectRequest.h>
#include <tov/utils/debugger/TargetSuspendRequest.h>
#include <tov/utils/debugger/TerminationRequest.h>
#include <tov/utils/debugger/impl/MainContext.h>

namespace tov {
namespace utils {

const char* const uriScheme = "tov";
const Uuid uniqueId = Uuid::create("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9");
const unsigned int invalidIndex = 0xFFFFFFFFu;

namespace {

// One of the library's own classes of the StaticObject pattern, as start and stop walk them.
struct ClassRegistration {
    bool (*registerClass)(TypeManager& typeManager, AbstractLogger* logger);
    const Uuid& (*getClassTypeId)();
    // Its place in the order of terminate, which need not be the reverse of the registration order.
    unsigned int unregistrationRank;
};

template <typename T>
bool registerClass(TypeManager& typeManager, AbstractLogger* logger)
{
    return typeManager.registerType<T>(logger);
}

// A row of the table below: TOV_CLASS_REGISTRATION(debugger::MainContext, 10).
#define TOV_CLASS_REGISTRATION(Class, unregistrationRank)                                                              \
    ClassRegistration                                                                                                  \
    {                                                                                                                  \
        &registerClass<Class>, &Class::getClassTypeId, unregistrationRank                                              \
    }

// In the order of registration, behind the base types: a class comes after the bases that its metadata
// names. isInitialized is true only while every one of them is registered. Terminate unregisters them
// by rank: the requests, the filters, MainContext, then the three abstract bases.
constexpr ClassRegistration registrationTable[] = {
    TOV_CLASS_REGISTRATION(debugger::AbstractContext, 13),
    TOV_CLASS_REGISTRATION(debugger::AbstractEventFilter, 12),
    TOV_CLASS_REGISTRATION(debugger::AbstractEventRequest, 11),
    TOV_CLASS_REGISTRATION(debugger::MainContext, 10),
    TOV_CLASS_REGISTRATION(debugger::EntitiesFilter, 9),
    TOV_CLASS_REGISTRATION(debugger::HitCountFilter, 8),
    TOV_CLASS_REGISTRATION(debugger::LocationFilter, 7),
    TOV_CLASS_REGISTRATION(debugger::BreakpointRequest, 2),
    TOV_CLASS_REGISTRATION(debugger::EntityRegistrationRequest, 0),
    TOV_CLASS_REGISTRATION(debugger::EntityUnregistrationRequest, 1),
    TOV_CLASS_REGISTRATION(debugger::InitializationRequest, 5),
    TOV_CLASS_REGISTRATION(debugger::TargetDisconnectRequest, 4),
    TOV_CLASS_REGISTRATION(debugger::TargetSuspendRequest, 3),
    TOV_CLASS_REGISTRATION(debugger::TerminationRequest, 6),
};

#undef TOV_CLASS_REGISTRATION

constexpr unsigned int classCount = sizeof(registrationTable) / sizeof(registrationTable[0]);

// Every rank from 0 to classCount - 1 once, so that terminate unregisters every class exactly once.
constexpr bool ranksAreAnOrder()
{
    for (unsigned int rank = 0; rank < classCount; ++rank) {
        unsigned int holders = 0;
        for (const ClassRegistration& registration : registrationTable) {
            holders += registration.unregistrationRank == rank ? 1 : 0;
        }
        if (holders != 1) {
            return false;
        }
    }
    return true;
}
static_assert(ranksAreAnOrder(), "the unregistration ranks must number the classes from 0, each once");

// Each step runs only while all the earlier ones succeeded.
bool registerTypes(TypeManager& typeManager, AbstractLogger* logger)
{
    if (!typeManager.registerBaseTypes(logger)) {
        return false;
    }
    for (const ClassRegistration& registration : registrationTable) {
        if (!registration.registerClass(typeManager, logger)) {
            return false;
        }
    }
    return true;
}

// The base types are not asked for: a host may have unregistered them.
bool areTypesRegistered(const TypeManager& typeManager)
{
    for (const ClassRegistration& registration : registrationTable) {
        if (!typeManager.isTypeRegistered(registration.getClassTypeId())) {
            return false;
        }
    }
    return true;
}

void unregisterTypes(TypeManager& typeManager)
{
    for (unsigned int rank = 0; rank < classCount; ++rank) {
        for (const ClassRegistration& registration : registrationTable) {
            if (registration.unregistrationRank == rank) {
                typeManager.unregisterType(registration.getClassTypeId());
            }
        }
    }
    typeManager.unregisterBaseTypes();
}

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
    TypeManager& typeManager = Facilities::instance().getTypeManager();
    return registerTypes(typeManager, logger) && result;
}

bool isInitialized()
{
    return Facilities::isSet() && areTypesRegistered(Facilities::instance().getTypeManager());
}

bool terminate(AbstractLogger* logger)
{
    if (!isInitialized()) {
        return true;
    }
    TOV_LOG_INFO(logger, "Terminating the runtime utils systems.");
    unregisterTypes(Facilities::instance().getTypeManager());
    if (Facilities::isSet()) {
        Facilities::destroy();
    }
    return true;
}

} // namespace utils
} // namespace tov

// The version is written once, in the project's CMakeLists.txt, and reaches this file as a definition.
const char* getVersionTOV_UTILS()
{
    return TOV_UTILS_VERSION_TEXT;
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
