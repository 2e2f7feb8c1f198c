#pragma once
// ProtobufDynamicObjectBuilder: builds the saved-form message of a dynamic object from the calls of
// AbstractObjectBuilder and prints it as protobuf text to a stream at `end`. Serves one build.
//   ProtobufDynamicObjectBuilder saved(stream);
//   serializeDynamicObject(object, saved);

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Containers.h>
#include <tov/utils/DynamicType.h>

namespace tov {
namespace utils {

class AbstractDataInputOutput;

namespace proto {
class DynamicObject;
class Property;
} // namespace proto

namespace impl {

class ProtobufDynamicObjectBuilder : public AbstractObjectBuilder {
public:
    explicit ProtobufDynamicObjectBuilder(AbstractDataInputOutput& stream);
    // Also releases the message of a build that was begun and never ended.
    ~ProtobufDynamicObjectBuilder() override;
    ProtobufDynamicObjectBuilder(const ProtobufDynamicObjectBuilder&) = delete;
    ProtobufDynamicObjectBuilder& operator=(const ProtobufDynamicObjectBuilder&) = delete;

    bool begin() override;
    // Prints the message with the version of the library; the message goes, but stays counted as
    // begun, so a second begin is refused.
    bool end() override;
    bool null() override;
    bool boolean(bool value) override;
    bool integer(long long value) override;
    bool real(double value) override;
    using AbstractObjectBuilder::string;
    bool string(const char* text, unsigned int length) override;
    bool beginObject() override;
    using AbstractObjectBuilder::objectChild;
    bool objectChild(const char* key, unsigned int length) override;
    bool endObject() override;
    bool beginArray() override;
    bool arrayChild() override;
    bool endArray() override;

private:
    proto::Property* beginProperty(type::Type type);
    bool endProperty();

    AbstractDataInputOutput& stream;
    proto::DynamicObject* message;
    // Point into the message tree, which owns them; the top is the property being written.
    Vector<proto::Property*> properties;
    bool ended;
};

} // namespace impl
} // namespace utils
} // namespace tov
