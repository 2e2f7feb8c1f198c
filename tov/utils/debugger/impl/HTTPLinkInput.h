#pragma once
// HTTPLinkInput: the body of an HTTP request as a read-only stream, for the JSON reader, up to a size.
//   HTTPLinkInput body(connection, 1 << 18);
//   deserializeDynamicObjectFromJson(object, body, logger);

#include <tov/utils/AbstractDataInputOutput.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class HTTPConnection;

class HTTPLinkInput : public AbstractDataInputOutput {
public:
    // Reading past `maximumSize` bytes fails: the JSON reader takes time in the square of the length of
    // a token that spans its pieces, so an unbounded body would hold the server for as long as a client
    // likes.
    HTTPLinkInput(HTTPConnection& connection, unsigned int maximumSize);
    ~HTTPLinkInput() = default;

    bool isWritable() const override;
    [[nodiscard]] bool write(const char* buffer, unsigned int size, AbstractLogger* logger) override;
    bool isReadable() const override;
    // False at the end of the body (nothing read), and with an error when the link fails or the body
    // grows past the maximum size.
    [[nodiscard]] bool read(char* buffer, unsigned int& size, AbstractLogger* logger) override;

private:
    HTTPConnection& connection;
    unsigned int maximumSize;
    unsigned int sizeRead;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
