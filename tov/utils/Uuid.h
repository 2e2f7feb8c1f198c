#pragma once
// Uuid: the 16-byte identity of types and error categories; all zero means invalid.
//   tov::utils::Uuid id = tov::utils::Uuid::create("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9");
//   char text[37]; id.computeString(text);   // lower case, 36 characters

#include <tov/utils/Export.h>

#include <iosfwd>

namespace tov {
namespace utils {

class AbstractLogger;

class TOV_UTILS_API Uuid {
public:
    Uuid();

    void clear();
    bool isValid() const;

    // Reads the five hexadecimal groups by position. Only the length (36) is checked: the dashes are not
    // looked at and a group that is not hexadecimal keeps what the stream read.
    [[nodiscard]] bool set(const char* text, AbstractLogger* logger);
    // Writes 36 lower-case characters and a terminator into `buffer`, which holds 37 bytes.
    void computeString(char* buffer) const;

    static unsigned int getStringLength();
    // For literals in source code: a malformed text fails an assertion.
    static Uuid create(const char* text);

    // Byte order of the in-memory form; registries keyed by Uuid iterate in this order.
    bool operator==(const Uuid& other) const;
    bool operator!=(const Uuid& other) const;
    bool operator<(const Uuid& other) const;

    unsigned int data1;
    unsigned short data2;
    unsigned short data3;
    unsigned char data4[8];
};

TOV_UTILS_API std::ostream& operator<<(std::ostream& stream, const Uuid& uuid);

} // namespace utils
} // namespace tov
