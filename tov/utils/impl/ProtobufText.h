#pragma once
// Protobuf's text format over the library's strings: printing appends to a String through a copying
// stream, parsing reads the caller's buffer in place, and parse errors stay off the console (the caller
// reports them through its logger).
// Debian's protobuf (3.21) keeps the texts of its messages in std::string and cannot be given another
// string type, so the library's String meets it here, at the boundary: saved texts go in and out through
// streams over the library's buffers, and only protobuf's own diagnostics (DebugString) are std::string.
//   String text;   printProtobufText(message, text);
//   parseProtobufText(text.data(), text.size(), copy);

#include <tov/utils/String.h>

namespace google {
namespace protobuf {
class Message;
}
} // namespace google

namespace tov {
namespace utils {
namespace impl {

// False when protobuf fails to print the message.
bool printProtobufText(const google::protobuf::Message& message, String& text);
// False unless the `size` bytes are a complete message of that type; the message then holds what was
// read before the failure. A null buffer reads as empty.
bool parseProtobufText(const char* buffer, unsigned int size, google::protobuf::Message& message);

} // namespace impl
} // namespace utils
} // namespace tov
