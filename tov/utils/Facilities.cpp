#include <tov/utils/Facilities.h>

#include <tov/utils/Memory.h>
#include <tov/utils/OstreamLogger.h>
#include <tov/utils/RandomManager.h>
#include <tov/utils/ScopedPtr.h>
#include <tov/utils/Singleton.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/debugger/InspectionFramework.h>

#include <iostream>

namespace tov {
namespace utils {

// Members are built in this order and destroyed in the reverse one; the services join as they land.
struct FacilitiesData {
    FacilitiesData() : defaultLogger(&std::cerr, &std::cout, &std::cout, &std::cout), stringTable(0) {}

    unsigned int initializedMark = 0;
    AbstractLogger* logger = nullptr;
    OstreamLogger defaultLogger;
    TypeManager typeManager;
    StringTable stringTable;
    RandomManager randomManager;
    ScopedPtr<debugger::InspectionFramework> inspectionFramework;
};

void Facilities::create()
{
    Singleton<Facilities>::assertUnset();
    Singleton<Facilities>::set(TOV_NEW Facilities());
}

Facilities& Facilities::instance()
{
    return Singleton<Facilities>::get();
}

bool Facilities::isSet()
{
    return Singleton<Facilities>::isSet();
}

void Facilities::destroy()
{
    Singleton<Facilities>::destroy();
}

Facilities::Facilities() : data(TOV_NEW FacilitiesData())
{
    data->initializedMark = 1;
    data->logger = &data->defaultLogger;
    // Last, with every other service in place. The singleton is not set yet, so nothing that the
    // framework's constructor runs may call Facilities::instance.
    data->inspectionFramework.reset(TOV_NEW debugger::InspectionFramework(*this));
}

Facilities::~Facilities()
{
    TOV_DELETE(data);
    data = nullptr;
}

AbstractLogger& Facilities::getLogger()
{
    return *data->logger;
}

const AbstractLogger& Facilities::getLogger() const
{
    return *data->logger;
}

void Facilities::setLogger(AbstractLogger& logger)
{
    data->logger = &logger;
}

void Facilities::clearLogger()
{
    data->logger = &data->defaultLogger;
}

TypeManager& Facilities::getTypeManager()
{
    return data->typeManager;
}

const TypeManager& Facilities::getTypeManager() const
{
    return data->typeManager;
}

StringTable& Facilities::getStringTable()
{
    return data->stringTable;
}

const StringTable& Facilities::getStringTable() const
{
    return data->stringTable;
}

RandomManager& Facilities::getRandomNumberGenerator()
{
    return data->randomManager;
}

const RandomManager& Facilities::getRandomNumberGenerator() const
{
    return data->randomManager;
}

debugger::InspectionFramework& Facilities::getInspectionFramework()
{
    return *data->inspectionFramework;
}

const debugger::InspectionFramework& Facilities::getInspectionFramework() const
{
    return *data->inspectionFramework;
}

} // namespace utils
} // namespace tov
