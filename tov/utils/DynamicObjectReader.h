#pragma once
// DynamicObjectReader: reads the values of a DynamicObject that came from outside (a client's query or
// body, a file), where a value of the wrong kind is the sender's mistake and not a broken contract: each
// read gives false, with the reason to the logger, instead of asserting as DynamicObject's getters do.
//   DynamicObjectReader in(*query);
//   long long count = 10;                        // stays as it is when "count" is absent
//   if (in.has("count") && !in.readInt("count", count, logger)) return resources::Error;   // {"count":"x"}

#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractLogger;
class DynamicObject;

class TOV_UTILS_API DynamicObjectReader {
public:
    // The object is not copied: it must outlive the reader.
    explicit DynamicObjectReader(const DynamicObject& object);

    // Whether a value, of any kind but null, lies at the path.
    bool has(const char* key) const;

    // False, leaving `value` as it was, when nothing lies at the path or the value is of another kind.
    [[nodiscard]] bool readInt(const char* key, long long& value, AbstractLogger* logger) const;
    // An integer is read as a real too: JSON writes 2.0 as 2.
    [[nodiscard]] bool readReal(const char* key, double& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readBool(const char* key, bool& value, AbstractLogger* logger) const;
    // The text stays valid while the object keeps its string table and the value is not changed.
    [[nodiscard]] bool readString(const char* key, const char*& value, AbstractLogger* logger) const;

    // The same by handle, for the elements and members a caller walks (0 reads as absent).
    [[nodiscard]] bool readInt(unsigned int property, long long& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readReal(unsigned int property, double& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readBool(unsigned int property, bool& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readString(unsigned int property, const char*& value, AbstractLogger* logger) const;

private:
    // The handle at the path, 0 when the path is absent.
    unsigned int find(const char* key) const;
    type::Type kindOf(unsigned int property) const;
    // `key` names the value in the message, null for a read by handle.
    [[nodiscard]] bool readInt(unsigned int property, const char* key, long long& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readReal(unsigned int property, const char* key, double& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readBool(unsigned int property, const char* key, bool& value, AbstractLogger* logger) const;
    [[nodiscard]] bool readString(unsigned int property, const char* key, const char*& value,
                                  AbstractLogger* logger) const;

    const DynamicObject& object;
};

} // namespace utils
} // namespace tov
