#pragma once
// Every public class of tov::utils::debugger, for a host that wants one include.
//   #include <tov/utils/debugger/All.h>

#include <tov/utils/debugger/AbstractContext.h>
#include <tov/utils/debugger/AbstractContextFactory.h>
#include <tov/utils/debugger/AbstractContextVisitor.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventFilterFactory.h>
#include <tov/utils/debugger/AbstractEventFilterVisitor.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequest.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>
#include <tov/utils/debugger/BreakpointRequest.h>
#include <tov/utils/debugger/BreakpointRequestVisitor.h>
#include <tov/utils/debugger/EntitiesFilter.h>
#include <tov/utils/debugger/EntitiesFilterVisitor.h>
#include <tov/utils/debugger/EntityRegistrationRequest.h>
#include <tov/utils/debugger/EntityRegistrationRequestVisitor.h>
#include <tov/utils/debugger/EntityUnregistrationRequest.h>
#include <tov/utils/debugger/EntityUnregistrationRequestVisitor.h>
#include <tov/utils/debugger/HitCountFilter.h>
#include <tov/utils/debugger/HitCountFilterVisitor.h>
#include <tov/utils/debugger/InitializationRequest.h>
#include <tov/utils/debugger/InitializationRequestVisitor.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/LocationFilter.h>
#include <tov/utils/debugger/LocationFilterVisitor.h>
#include <tov/utils/debugger/RequestIterator.h>
#include <tov/utils/debugger/RequestRegistry.h>
#include <tov/utils/debugger/ResourceStatus.h>
#include <tov/utils/debugger/TargetDisconnectRequest.h>
#include <tov/utils/debugger/TargetDisconnectRequestVisitor.h>
#include <tov/utils/debugger/TargetSuspendRequest.h>
#include <tov/utils/debugger/TargetSuspendRequestVisitor.h>
#include <tov/utils/debugger/TerminationRequest.h>
#include <tov/utils/debugger/TerminationRequestVisitor.h>
