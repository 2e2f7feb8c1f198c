#pragma once
// BufferedConnection: a request held in memory. Its body is read whole from the client first, bounded
// in size and time, and its reply is kept until flush; so the work between the two never waits on a
// slow client.
//   BufferedConnection buffered(connection);
//   if (buffered.readBody(256 * 1024, 5000) == BufferedConnection::Complete) { handle(buffered); }
//   buffered.flush();

#include <tov/utils/String.h>
#include <tov/utils/debugger/impl/HTTPConnection.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class BufferedConnection : public HTTPConnection {
public:
    enum BodyResult { Complete, TooLarge, TooSlow, Broken };

    // `client` must outlive this object.
    explicit BufferedConnection(HTTPConnection& client);
    ~BufferedConnection() override;

    // Reads the client's body to its end: TooLarge past `maximumSize` bytes, TooSlow when it takes
    // longer than `timeoutMilliseconds`, Broken when the connection fails.
    BodyResult readBody(unsigned int maximumSize, unsigned int timeoutMilliseconds);
    // Sends what was written to the client.
    void flush();

    const char* getMethod() const override;
    const char* getPath() const override;
    const char* getQuery() const override;
    const char* getHeader(const char* name) const override;
    // From the body read before.
    int read(char* buffer, unsigned int size) override;
    // Kept until flush.
    int write(const char* data, unsigned int size) override;

private:
    HTTPConnection& client;
    String body;
    String::size_type bodyOffset;
    String reply;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
