#include <tov/utils/impl/ProtobufText.h>

#include <google/protobuf/io/tokenizer.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/message.h>
#include <google/protobuf/text_format.h>

#include <climits>
#include <string>

namespace tov {
namespace utils {
namespace impl {

namespace {

class StringOutput : public google::protobuf::io::CopyingOutputStream {
public:
    explicit StringOutput(String& text) : text(text) {}

    bool Write(const void* buffer, int size) override
    {
        text.append(static_cast<const char*>(buffer), static_cast<String::size_type>(size));
        return true;
    }

private:
    String& text;
};

// protobuf hands its messages over as std::string, its own string type; they are dropped here.
class QuietErrors : public google::protobuf::io::ErrorCollector {
public:
    void AddError(int, google::protobuf::io::ColumnNumber, const std::string&) override {}
    void AddWarning(int, google::protobuf::io::ColumnNumber, const std::string&) override {}
};

} // namespace

bool printProtobufText(const google::protobuf::Message& message, String& text)
{
    StringOutput output(text);
    google::protobuf::io::CopyingOutputStreamAdaptor adaptor(&output);
    const bool printed = google::protobuf::TextFormat::Print(message, &adaptor);
    return adaptor.Flush() && printed;
}

bool parseProtobufText(const char* buffer, unsigned int size, google::protobuf::Message& message)
{
    if (buffer == nullptr) {
        size = 0;
    }
    if (size > static_cast<unsigned int>(INT_MAX)) {
        message.Clear();
        return false; // protobuf's streams count in int
    }
    google::protobuf::io::ArrayInputStream input(buffer, static_cast<int>(size));
    QuietErrors errors;
    google::protobuf::TextFormat::Parser parser;
    parser.RecordErrorsTo(&errors);
    return parser.Parse(&input, &message);
}

} // namespace impl
} // namespace utils
} // namespace tov
