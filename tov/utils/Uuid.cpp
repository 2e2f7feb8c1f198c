#include <tov/utils/Uuid.h>

#include <tov/utils/AssertingLogger.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/Logging.h>
#include <tov/utils/String.h>

#include <cctype>
#include <cstdio>
#include <cstring>
#include <ostream>

namespace tov {
namespace utils {

namespace {

const Uuid invalidUuid;
const unsigned int uuidTextLength = 36;

// Reads `count` characters at `offset` as one hexadecimal number. The stream's error state is cleared
// for the next group, so a bad group is not reported; the value is what the stream gave.
unsigned int readHexGroup(IStringStream& stream, const char* text, unsigned int offset, unsigned int count)
{
    stream.clear();
    stream.str(String(text + offset, count));
    unsigned int value = 0;
    stream >> value;
    stream.clear();
    return value;
}

} // namespace

Uuid::Uuid()
{
    clear();
}

void Uuid::clear()
{
    std::memset(this, 0, sizeof(Uuid));
}

bool Uuid::isValid() const
{
    return *this != invalidUuid;
}

bool Uuid::set(const char* text, AbstractLogger* logger)
{
    if (text == nullptr) {
        TOV_LOG_ERROR(logger, error::invalidArgument, "The given string parameter is NULL");
        clear();
        return false;
    }
    if (std::strlen(text) != uuidTextLength) {
        TOV_LOG_ERROR(
            logger, error::invalidArgument,
            "The given string '"
                << text
                << "' doesn't have the right format of 36 characters (\"12345678-9ABC-DEF1-2345-6789ABCDEF12\").");
        clear();
        return false;
    }
    IStringStream stream;
    stream >> std::hex;
    data1 = readHexGroup(stream, text, 0, 8);
    data2 = static_cast<unsigned short>(readHexGroup(stream, text, 9, 4));
    data3 = static_cast<unsigned short>(readHexGroup(stream, text, 14, 4));
    data4[0] = static_cast<unsigned char>(readHexGroup(stream, text, 19, 2));
    data4[1] = static_cast<unsigned char>(readHexGroup(stream, text, 21, 2));
    for (unsigned int i = 0; i < 6; ++i) {
        data4[2 + i] = static_cast<unsigned char>(readHexGroup(stream, text, 24 + 2 * i, 2));
    }
    return true;
}

void Uuid::computeString(char* buffer) const
{
    std::snprintf(buffer, uuidTextLength + 1, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", data1, data2, data3,
                  data4[0], data4[1], data4[2], data4[3], data4[4], data4[5], data4[6], data4[7]);
    for (unsigned int i = 0; i < uuidTextLength; ++i) {
        buffer[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(buffer[i])));
    }
}

unsigned int Uuid::getStringLength()
{
    return uuidTextLength;
}

Uuid Uuid::create(const char* text)
{
    AssertingLogger logger;
    Uuid uuid;
    // A refused text asserts through `logger`; should the assertion return, the id stays invalid.
    static_cast<void>(uuid.set(text, &logger));
    return uuid;
}

bool Uuid::operator==(const Uuid& other) const
{
    return std::memcmp(this, &other, sizeof(Uuid)) == 0;
}

bool Uuid::operator!=(const Uuid& other) const
{
    return !(*this == other);
}

bool Uuid::operator<(const Uuid& other) const
{
    return std::memcmp(this, &other, sizeof(Uuid)) < 0;
}

std::ostream& operator<<(std::ostream& stream, const Uuid& uuid)
{
    char text[37];
    uuid.computeString(text);
    return stream.write(text, uuidTextLength);
}

} // namespace utils
} // namespace tov
