#include <tov/utils/debugger/impl/BufferedConnection.h>

#include <chrono>
#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

BufferedConnection::BufferedConnection(HTTPConnection& client) : client(client), bodyOffset(0) {}

BufferedConnection::~BufferedConnection() = default;

// Each read of the client is bounded by the server's own time-out; the deadline here also bounds a
// client that sends its body a byte at a time.
BufferedConnection::BodyResult BufferedConnection::readBody(unsigned int maximumSize, unsigned int timeoutMilliseconds)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    char chunk[16 * 1024];
    for (;;) {
        const int count = client.read(chunk, sizeof(chunk));
        if (count < 0) {
            return Broken;
        }
        if (count == 0) {
            return Complete;
        }
        if (static_cast<unsigned int>(count) > maximumSize - body.size()) {
            return TooLarge;
        }
        body.append(chunk, static_cast<String::size_type>(count));
        if (std::chrono::steady_clock::now() > deadline) {
            return TooSlow;
        }
    }
}

void BufferedConnection::flush()
{
    if (!reply.empty()) {
        client.write(reply.data(), static_cast<unsigned int>(reply.size()));
        reply.clear();
    }
}

const char* BufferedConnection::getMethod() const
{
    return client.getMethod();
}

const char* BufferedConnection::getPath() const
{
    return client.getPath();
}

const char* BufferedConnection::getQuery() const
{
    return client.getQuery();
}

const char* BufferedConnection::getHeader(const char* name) const
{
    return client.getHeader(name);
}

int BufferedConnection::read(char* buffer, unsigned int size)
{
    const String::size_type count = std::min<String::size_type>(size, body.size() - bodyOffset);
    std::memcpy(buffer, body.data() + bodyOffset, count);
    bodyOffset += count;
    return static_cast<int>(count);
}

int BufferedConnection::write(const char* data, unsigned int size)
{
    reply.append(data, size);
    return static_cast<int>(size);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
