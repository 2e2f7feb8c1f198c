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

#include <initializer_list>

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
};

template <typename T>
bool registerClass(TypeManager& typeManager, AbstractLogger* logger)
{
    return typeManager.registerType<T>(logger);
}

// A row of the tables below: TOV_CLASS_REGISTRATION(debugger::MainContext).
#define TOV_CLASS_REGISTRATION(Class) ClassRegistration{&registerClass<Class>, &Class::getClassTypeId}

// In the order of registration, behind the base types: a class comes after the bases that its metadata
// names. isInitialized is true only while every one of them is registered.
const std::initializer_list<ClassRegistration> registrationTable = {
    TOV_CLASS_REGISTRATION(debugger::AbstractContext),
    TOV_CLASS_REGISTRATION(debugger::AbstractEventFilter),
    TOV_CLASS_REGISTRATION(debugger::AbstractEventRequest),
    TOV_CLASS_REGISTRATION(debugger::MainContext),
    TOV_CLASS_REGISTRATION(debugger::EntitiesFilter),
    TOV_CLASS_REGISTRATION(debugger::HitCountFilter),
    TOV_CLASS_REGISTRATION(debugger::LocationFilter),
    TOV_CLASS_REGISTRATION(debugger::BreakpointRequest),
    TOV_CLASS_REGISTRATION(debugger::EntityRegistrationRequest),
    TOV_CLASS_REGISTRATION(debugger::EntityUnregistrationRequest),
    TOV_CLASS_REGISTRATION(debugger::InitializationRequest),
    TOV_CLASS_REGISTRATION(debugger::TargetDisconnectRequest),
    TOV_CLASS_REGISTRATION(debugger::TargetSuspendRequest),
    TOV_CLASS_REGISTRATION(debugger::TerminationRequest),
};

// The order of terminate, which need not be the reverse of the registration order.
const std::initializer_list<const Uuid& (*)()> unregistrationOrder = {
    &debugger::EntityRegistrationRequest::getClassTypeId,
    &debugger::EntityUnregistrationRequest::getClassTypeId,
    &debugger::BreakpointRequest::getClassTypeId,
    &debugger::TargetSuspendRequest::getClassTypeId,
    &debugger::TargetDisconnectRequest::getClassTypeId,
    &debugger::InitializationRequest::getClassTypeId,
    &debugger::TerminationRequest::getClassTypeId,
    &debugger::LocationFilter::getClassTypeId,
    &debugger::HitCountFilter::getClassTypeId,
    &debugger::EntitiesFilter::getClassTypeId,
    &debugger::MainContext::getClassTypeId,
    &debugger::AbstractEventRequest::getClassTypeId,
    &debugger::AbstractEventFilter::getClassTypeId,
    &debugger::AbstractContext::getClassTypeId,
};

#undef TOV_CLASS_REGISTRATION

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
    for (const auto getClassTypeId : unregistrationOrder) {
        typeManager.unregisterType(getClassTypeId());
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
