#pragma once
// DynamicValue: one null, integer, real, string or boolean, detached from any DynamicObject; it owns
// its text. Values compare without conversion: DynamicValue(1) != DynamicValue(1.0).
//   tov::utils::DynamicValue speed(2.5);
//   object.setValue("speed", speed);   object.retrieveValue("speed", speed);

#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>

#include <ostream>

namespace tov {
namespace utils {

class TOV_UTILS_API DynamicValue {
public:
    DynamicValue();
    DynamicValue(int value);
    DynamicValue(long long value);
    DynamicValue(double value);
    DynamicValue(bool value);
    // A null text breaks the contract; the value is then an empty string.
    DynamicValue(const char* text);
    DynamicValue(const char* text, unsigned int length);
    DynamicValue(const DynamicValue& other);
    // Copies a string as a terminated text, so it ends at its first zero byte.
    DynamicValue& operator=(const DynamicValue& other);
    ~DynamicValue();

    type::Type getType() const;
    // A null value is compatible with every type; integers and reals with each other.
    bool isTypeCompatible(type::Type type) const;

    // Getters assert on a value of another kind (a real is truncated toward zero for getInt).
    long long getInt() const;
    double getReal() const;
    bool getBool() const;
    const char* getString() const;
    unsigned int getStringLength() const;

    void setInt(long long value);
    void setReal(double value);
    void setBool(bool value);
    // Reuses the held string, if any.
    void setString(const char* text);
    void setString(const char* text, unsigned int length);
    void reset();

    bool operator==(const DynamicValue& other) const;
    bool operator!=(const DynamicValue& other) const;

private:
    void releaseString();

    union {
        long long integer;
        double real;
        bool boolean;
        String* string;
    } value;
    unsigned long long type;
};

// Integer, real, text or bool as the stream writes them; "null" for a null value.
TOV_UTILS_API std::ostream& operator<<(std::ostream& stream, const DynamicValue& value);

} // namespace utils
} // namespace tov
