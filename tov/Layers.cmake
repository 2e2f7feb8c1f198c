# The subsystems of libtov_utils, lowest first: the one table of which file belongs where. The build makes
# one static library per subsystem from it (tov/CMakeLists.txt), and the include check
# (cmake/CheckLayerIncludes.cmake) reads it to refuse an #include that runs upward.
#
# A subsystem lists the classes it holds, as paths under tov/utils/ without extension: each name stands for
# the .h, .cpp, .inl and .proto of that name that exist. A new class pair is one name added here.
# TOV_LAYER_<name>_USES names the subsystems it may include and call, and is what its library links.

set(TOV_LAYERS_DIR ${CMAKE_CURRENT_LIST_DIR})
set(TOV_LAYERS foundation dynamic serialization types random uri inspection)

# Memory, strings, containers, logging and assertions, threads and time, files, UUIDs, the string table.
set(TOV_LAYER_foundation_USES "")
set(TOV_LAYER_foundation_CLASSES
  AbstractDataInputOutput AbstractLogger AbstractObjectBuilder AssertingLogger Assertion BlockAllocator
  BufferLogger Condition Containers CreatorAbstractFactory ErrorType Export FileInputOutput FileUtils HashTable
  Logging Memory MemoryInputOutput Mutex OstreamLogger Quaternion ScopedMutex ScopedPtr Singleton String
  StringPool StringTable Thread Time Timer Uuid Vector2 Vector3 details/Remainder)

# The dynamic property tree: objects, values, iterators, builders, readers and predicates.
set(TOV_LAYER_dynamic_USES foundation)
set(TOV_LAYER_dynamic_CLASSES
  DynamicObject DynamicObjectArrays DynamicObjectBuilder DynamicObjectCompositePredicate DynamicObjectIterator
  DynamicObjectProperties DynamicObjectPropertyComparison DynamicObjectReader DynamicObjectValues DynamicType
  DynamicValue details/ChildWalk details/DynamicObjectNode details/NodeTable details/PathCursor details/PathMemo impl/DynamicKey
  impl/DynamicObjectNodes)

# JSON (on yajl) and the protobuf text save format of dynamic objects.
set(TOV_LAYER_serialization_USES dynamic foundation)
set(TOV_LAYER_serialization_CLASSES
  DynamicObjectSerialization JsonObjectBuilder JsonSerialization
  impl/DynamicObject impl/LibraryVersion impl/ProtobufDynamicObjectBuilder impl/ProtobufText impl/YajlAllocation)

# The run-time type registry, properties and static objects.
# DynamicObjectTypeCompatibility is the upward call of dynamic objects into the type registry: declared in
# DynamicObject.h with TypeManager declared ahead, defined here, so the dynamic library needs no types.
set(TOV_LAYER_types_USES dynamic foundation)
set(TOV_LAYER_types_CLASSES
  DynamicObjectTypeCompatibility Property StaticObject TypeManager
  details/AbstractPropertyHolder details/MemberPropertyHolder details/PropertyHolder
  details/PutInspectableObjectHelper details/TypeId details/TypeMetadata)

# Random streams, their manager and its saved form (through the protobuf text format).
set(TOV_LAYER_random_USES serialization foundation)
set(TOV_LAYER_random_CLASSES
  Random RandomManager RandomManagerSerialization
  impl/Random impl/RandomAlgorithms impl/RandomEngine impl/RandomMixers)

# URIs: parsing, the request grammar, text forms; a query fills any AbstractObjectBuilder (its tests use a
# DynamicObjectBuilder).
set(TOV_LAYER_uri_USES dynamic foundation)
set(TOV_LAYER_uri_CLASSES
  Uri UriRequest UriText
  impl/UriCharacters impl/UriGrammarParser impl/UriMessages)

# The inspector (debugger, its event engine, the HTTP server, the viewer) and the assembly points on top:
# System (initialize, terminate, the library's types) and Facilities (the process-wide services), which
# put every subsystem together, and the umbrella header All.h.
set(TOV_LAYER_inspection_USES uri random types serialization dynamic foundation)
set(TOV_LAYER_inspection_CLASSES
  All Facilities System
  debugger/AbstractContext debugger/AbstractContextFactory debugger/AbstractContextVisitor debugger/AbstractEngine
  debugger/AbstractEventFilter debugger/AbstractEventFilterFactory debugger/AbstractEventFilterVisitor
  debugger/AbstractEventListener debugger/AbstractEventRequest debugger/AbstractEventRequestVisitor debugger/All
  debugger/BreakpointRequest debugger/BreakpointRequestVisitor debugger/DebuggerFramework
  debugger/EngineDebuggerFacade debugger/EntitiesFilter debugger/EntitiesFilterVisitor
  debugger/EntityRegistrationRequest debugger/EntityRegistrationRequestVisitor debugger/EntityUnregistrationRequest
  debugger/EntityUnregistrationRequestVisitor debugger/ExecutionController debugger/HitCountFilter
  debugger/HitCountFilterVisitor debugger/HttpSettings debugger/InitializationRequest
  debugger/InitializationRequestVisitor debugger/InspectionFramework debugger/LocationBreakpointVisitor
  debugger/LocationFilter debugger/LocationFilterVisitor debugger/RequestIterator debugger/RequestRegistry
  debugger/ResourceStatus debugger/TargetDisconnectRequest debugger/TargetDisconnectRequestVisitor
  debugger/TargetSuspendRequest debugger/TargetSuspendRequestVisitor debugger/TerminationRequest
  debugger/TerminationRequestVisitor
  debugger/impl/BufferedConnection debugger/impl/BuilderContextVisitor debugger/impl/CivetConnection
  debugger/impl/ConfiguredRequestHandler debugger/impl/EntitiesFilterFactory debugger/impl/EntityTable
  debugger/impl/EventFramework debugger/impl/HTTPConnection debugger/impl/HTTPLinkInput debugger/impl/HTTPServer
  debugger/impl/HTTPServerRequest debugger/impl/HitCountFilterFactory debugger/impl/InspectionFrameworkImpl
  debugger/impl/InspectionFrameworkImplEntities debugger/impl/JsonHttpReply
  debugger/impl/ListeningAddress debugger/impl/ListeningSockets debugger/impl/LocationFilterFactory
  debugger/impl/LocationText debugger/impl/MainContext debugger/impl/MainContextFactory debugger/impl/PathSegment
  debugger/impl/RequestGuard debugger/impl/ViewerFiles debugger/impl/WarningLogger)

# The assembly points: System and Facilities create, register and hold the services of every subsystem.
# Code below them uses the Facilities it is handed; only these classes reach the process-wide instance
# (Facilities::instance()) on purpose: the event registry asks the run's type manager whether a type is an
# event request, and a breakpoint that fires suspends the run's debugger.
set(TOV_ASSEMBLY_POINTS System Facilities)
set(TOV_FACILITIES_INSTANCE_CALLERS debugger/RequestRegistry debugger/LocationBreakpointVisitor)

# The existing files of the given class names of tov/utils, in <var>.
function(tov_layer_files var)
  set(files "")
  foreach(class IN LISTS ARGN)
    foreach(extension h cpp inl proto)
      if(EXISTS ${TOV_LAYERS_DIR}/utils/${class}.${extension})
        list(APPEND files ${TOV_LAYERS_DIR}/utils/${class}.${extension})
      endif()
    endforeach()
  endforeach()
  set(${var} ${files} PARENT_SCOPE)
endfunction()
