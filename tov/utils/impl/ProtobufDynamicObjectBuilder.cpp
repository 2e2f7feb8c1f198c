#include <tov/utils/impl/ProtobufDynamicObjectBuilder.h>

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/impl/DynamicObject.pb.h>
#include <tov/utils/impl/LibraryVersion.h>

#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/text_format.h>

namespace tov {
namespace utils {
namespace impl {

namespace {

// Protobuf's output over a stream of the library; the stream's failures are reported by the stream.
class StreamOutput : public google::protobuf::io::CopyingOutputStream {
public:
    StreamOutput(AbstractDataInputOutput& stream, AbstractLogger* logger) : stream(stream), logger(logger) {}

    bool Write(const void* buffer, int size) override
    {
        return stream.write(static_cast<const char*>(buffer), static_cast<unsigned int>(size), logger);
    }

private:
    AbstractDataInputOutput& stream;
    AbstractLogger* logger;
};

proto::Property::ValueType savedType(type::Type type)
{
    switch (type) {
    case type::integer:
        return proto::Property::Int;
    case type::real:
        return proto::Property::Real;
    case type::string:
        return proto::Property::String;
    case type::boolean:
        return proto::Property::Bool;
    case type::array:
        return proto::Property::Array;
    case type::null: // a null property is saved as an object without members
    case type::object:
        return proto::Property::Object;
    }
    TOV_ASSERT(false, "Error while building a property dynamic object - unexpected property type.");
    return proto::Property::Object;
}

} // namespace

ProtobufDynamicObjectBuilder::ProtobufDynamicObjectBuilder(AbstractDataInputOutput& stream)
    : stream(stream), message(nullptr), ended(false)
{
}

ProtobufDynamicObjectBuilder::~ProtobufDynamicObjectBuilder()
{
    TOV_DELETE(message);
}

bool ProtobufDynamicObjectBuilder::begin()
{
    if (message != nullptr || ended || !properties.empty()) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "A build is already ongoing.");
        return false;
    }
    message = TOV_NEW proto::DynamicObject();
    return true;
}

bool ProtobufDynamicObjectBuilder::end()
{
    if (message == nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "No build is ongoing.");
        return false;
    }
    if (!properties.empty()) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "Build not finished");
        return false;
    }
    proto::Version& version = *message->mutable_version();
    version.set_major(libraryVersionMajor);
    version.set_minor(libraryVersionMinor);
    version.set_patch(libraryVersionPatch);
    bool printed;
    {
        // The adaptor hands its last block to the stream when it goes.
        StreamOutput output(stream, getLogger());
        google::protobuf::io::CopyingOutputStreamAdaptor adaptor(&output);
        printed = google::protobuf::TextFormat::Print(*message, &adaptor);
    }
    if (!printed) {
        TOV_LOG_ERROR(getLogger(), error::ioProblem,
                      "Unable to serialize the given dynamic object: " << message->DebugString().c_str());
    }
    TOV_DELETE(message);
    message = nullptr;
    properties.clear();
    ended = true;
    return printed;
}

bool ProtobufDynamicObjectBuilder::null()
{
    return beginProperty(type::null) != nullptr && endProperty();
}

bool ProtobufDynamicObjectBuilder::boolean(bool value)
{
    proto::Property* property = beginProperty(type::boolean);
    if (property == nullptr) {
        return false;
    }
    property->set_boolvalue(value);
    return endProperty();
}

bool ProtobufDynamicObjectBuilder::integer(long long value)
{
    proto::Property* property = beginProperty(type::integer);
    if (property == nullptr) {
        return false;
    }
    property->set_intvalue(value);
    return endProperty();
}

bool ProtobufDynamicObjectBuilder::real(double value)
{
    proto::Property* property = beginProperty(type::real);
    if (property == nullptr) {
        return false;
    }
    property->set_realvalue(value);
    return endProperty();
}

bool ProtobufDynamicObjectBuilder::string(const char* text, unsigned int length)
{
    proto::Property* property = beginProperty(type::string);
    if (property == nullptr) {
        return false;
    }
    property->set_stringvalue(text, length);
    return endProperty();
}

bool ProtobufDynamicObjectBuilder::beginObject()
{
    return beginProperty(type::object) != nullptr;
}

bool ProtobufDynamicObjectBuilder::objectChild(const char* key, unsigned int length)
{
    if (properties.empty() || properties.back()->type() != proto::Property::Object) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "The current property is not an object.");
        return false;
    }
    proto::Property::NamedProperty* member = properties.back()->add_objectvalue();
    member->set_key(key, length);
    properties.push_back(member->mutable_value());
    return true;
}

bool ProtobufDynamicObjectBuilder::endObject()
{
    return endProperty();
}

bool ProtobufDynamicObjectBuilder::beginArray()
{
    return beginProperty(type::array) != nullptr;
}

bool ProtobufDynamicObjectBuilder::arrayChild()
{
    if (properties.empty() || properties.back()->type() != proto::Property::Array) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "The current property is not an array.");
        return false;
    }
    properties.push_back(properties.back()->add_arrayvalue());
    return true;
}

bool ProtobufDynamicObjectBuilder::endArray()
{
    return endProperty();
}

// The root is framed on first use; every other property was pushed by objectChild or arrayChild.
// Values outside a build are refused rather than written through a null message.
proto::Property* ProtobufDynamicObjectBuilder::beginProperty(type::Type type)
{
    if (message == nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "No build is ongoing.");
        return nullptr;
    }
    if (properties.empty()) {
        properties.push_back(message->mutable_root());
    }
    proto::Property* property = properties.back();
    property->set_type(savedType(type));
    return property;
}

bool ProtobufDynamicObjectBuilder::endProperty()
{
    if (properties.empty()) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "No build is ongoing.");
        return false;
    }
    properties.pop_back();
    return true;
}

} // namespace impl
} // namespace utils
} // namespace tov
