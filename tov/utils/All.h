#pragma once
// Every public class and function of tov::utils outside the debugger, for a host that wants one include.
//   #include <tov/utils/All.h>

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/AbstractLogger.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/AssertingLogger.h>
#include <tov/utils/BlockAllocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/Condition.h>
#include <tov/utils/Containers.h>
#include <tov/utils/CreatorAbstractFactory.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/FileInputOutput.h>
#include <tov/utils/FileUtils.h>
#include <tov/utils/HashTable.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/OstreamLogger.h>
#include <tov/utils/Random.h>
#include <tov/utils/RandomManager.h>
#include <tov/utils/RandomManagerSerialization.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/ScopedPtr.h>
#include <tov/utils/String.h>
#include <tov/utils/StringPool.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/System.h>
#include <tov/utils/Thread.h>
#include <tov/utils/Time.h>
#include <tov/utils/Timer.h>
#include <tov/utils/Uri.h>
#include <tov/utils/Uuid.h>
