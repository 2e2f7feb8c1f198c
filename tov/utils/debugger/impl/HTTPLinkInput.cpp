#include <tov/utils/debugger/impl/HTTPLinkInput.h>

#include <tov/utils/Logging.h>
#include <tov/utils/debugger/impl/HTTPConnection.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

HTTPLinkInput::HTTPLinkInput(HTTPConnection& connection, unsigned int maximumSize)
    : connection(connection), maximumSize(maximumSize), sizeRead(0)
{
}

bool HTTPLinkInput::isWritable() const
{
    return false;
}

bool HTTPLinkInput::write(const char*, unsigned int, AbstractLogger*)
{
    return false;
}

bool HTTPLinkInput::isReadable() const
{
    return true;
}

bool HTTPLinkInput::read(char* buffer, unsigned int& size, AbstractLogger* logger)
{
    const int count = connection.read(buffer, size);
    if (count < 0) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Error reading from the underlying link.");
        return false;
    }
    if (static_cast<unsigned int>(count) > maximumSize - sizeRead) {
        TOV_LOG_ERROR(logger, error::invalidData, "The request body is longer than " << maximumSize << " bytes.");
        sizeRead = maximumSize;
        return false;
    }
    sizeRead += static_cast<unsigned int>(count);
    size = static_cast<unsigned int>(count);
    return count != 0;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
