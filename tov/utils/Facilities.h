#pragma once
// Facilities: the process-wide services of the library (logger, string table ...), alive between
// initialize and terminate.
//   tov::utils::initialize(nullptr);
//   tov::utils::Facilities::instance().getStringTable().add("speed", nullptr);

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractLogger;
class RandomManager;
class StringTable;
class TypeManager;
struct FacilitiesData;

namespace debugger {
class InspectionFramework;
}

class TOV_UTILS_API Facilities {
public:
    // Makes the instance. Overwriting one asserts "trying to overwrite singleton instance".
    static void create();
    // Asserts "accessing uninitialized singleton" when there is none.
    static Facilities& instance();
    static bool isSet();
    // Deletes the instance; nothing happens when there is none.
    static void destroy();

    ~Facilities();
    Facilities(const Facilities&) = delete;
    Facilities& operator=(const Facilities&) = delete;

    AbstractLogger& getLogger();
    const AbstractLogger& getLogger() const;
    // The caller keeps `logger` alive until clearLogger or the end of the Facilities.
    void setLogger(AbstractLogger& logger);
    // Back to the default logger: errors to standard error, the other levels to standard output.
    void clearLogger();

    TypeManager& getTypeManager();
    const TypeManager& getTypeManager() const;

    StringTable& getStringTable();
    const StringTable& getStringTable() const;

    RandomManager& getRandomNumberGenerator();
    const RandomManager& getRandomNumberGenerator() const;

    // The inspector: engines, resources and the HTTP server.
    debugger::InspectionFramework& getInspectionFramework();
    const debugger::InspectionFramework& getInspectionFramework() const;

private:
    Facilities();

    FacilitiesData* data;
};

} // namespace utils
} // namespace tov
