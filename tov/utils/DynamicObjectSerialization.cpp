#include <tov/utils/DynamicObjectSerialization.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/MemoryInputOutput.h>
#include <tov/utils/impl/DynamicObject.pb.h>
#include <tov/utils/impl/LibraryVersion.h>
#include <tov/utils/impl/ProtobufDynamicObjectBuilder.h>
#include <tov/utils/impl/ProtobufText.h>

#include <algorithm>

namespace tov {
namespace utils {

namespace {

bool replayProperty(const proto::Property& property, AbstractObjectBuilder& builder);

bool missingValue(AbstractObjectBuilder& builder, const char* message)
{
    TOV_LOG_ERROR(builder.getLogger(), error::fileFormatCorrupted, message);
    return false;
}

bool replayArray(const proto::Property& property, AbstractObjectBuilder& builder)
{
    if (!builder.beginArray()) {
        return false;
    }
    for (const proto::Property& element : property.arrayvalue()) {
        if (!builder.arrayChild() || !replayProperty(element, builder)) {
            return false;
        }
    }
    return builder.endArray();
}

bool replayObject(const proto::Property& property, AbstractObjectBuilder& builder)
{
    if (!builder.beginObject()) {
        return false;
    }
    for (const proto::Property::NamedProperty& member : property.objectvalue()) {
        if (!builder.objectChild(member.key().data(), static_cast<unsigned int>(member.key().size())) ||
            !replayProperty(member.value(), builder)) {
            return false;
        }
    }
    return builder.endObject();
}

bool replayProperty(const proto::Property& property, AbstractObjectBuilder& builder)
{
    switch (property.type()) {
    case proto::Property::Int:
        return property.has_intvalue()
                   ? builder.integer(property.intvalue())
                   : missingValue(builder, "Integer property not having an integer value in the protobuf file.");
    case proto::Property::Real:
        return property.has_realvalue()
                   ? builder.real(property.realvalue())
                   : missingValue(builder, "Real property not having a real value in the protobuf file.");
    case proto::Property::Bool:
        return property.has_boolvalue()
                   ? builder.boolean(property.boolvalue())
                   : missingValue(builder, "Boolean property not having a boolean value in the protobuf file.");
    case proto::Property::String:
        return property.has_stringvalue()
                   ? builder.string(property.stringvalue().data(),
                                    static_cast<unsigned int>(property.stringvalue().size()))
                   : missingValue(builder, "String property not having a string value in the protobuf file.");
    case proto::Property::Array:
        return replayArray(property, builder);
    case proto::Property::Object:
        return replayObject(property, builder);
    }
    TOV_LOG_ERROR(
        builder.getLogger(), error::invalidData,
        "Unexpected type indicator for property of a dynamic object found: " << static_cast<int>(property.type()));
    return false;
}

} // namespace

bool serializeDynamicObjectToProtobuf(const DynamicObject& object, AbstractDataInputOutput& stream,
                                      AbstractLogger* logger)
{
    impl::ProtobufDynamicObjectBuilder builder(stream);
    builder.setLogger(logger);
    return serializeDynamicObject(object, builder);
}

char* serializeDynamicObject(unsigned int& size, const DynamicObject& object, AbstractLogger* logger)
{
    MemoryInputOutput output;
    if (!serializeDynamicObjectToProtobuf(object, output, logger)) {
        return nullptr;
    }
    const String& text = output.getText();
    char* buffer = TOV_NEW_ARRAY(static_cast<unsigned int>(text.size()));
    std::copy(text.begin(), text.end(), buffer);
    size = static_cast<unsigned int>(text.size());
    return buffer;
}

bool deserializeDynamicObject(const char* buffer, unsigned int size, DynamicObject& object, AbstractLogger* logger)
{
    proto::DynamicObject saved;
    if (!impl::parseProtobufText(buffer, size, saved)) {
        TOV_LOG_ERROR(logger, error::invalidData,
                      "Unable to deserialize a dynamic object: " << saved.DebugString().c_str());
        return false;
    }
    const proto::Version& version = saved.version();
    // QUIRK(saved-form-major-only): only the major number is compared, so that texts saved by any 0.x
    // release load.
    if (version.major() != impl::libraryVersionMajor) {
        TOV_LOG_ERROR(logger, error::invalidData,
                      "Error while deserializing: The file originates from a version, v"
                          << version.major() << "." << version.minor() << "." << version.patch()
                          << ", that is not compatible with the current version, v" << impl::libraryVersionMajor << "."
                          << impl::libraryVersionMinor << "." << impl::libraryVersionPatch << ".");
        return false;
    }
    if (!saved.has_root()) {
        return true;
    }
    // The replay's builder has no logger: a refused value shows only in the result.
    DynamicObjectBuilder builder(object, object.getRoot());
    return replayProperty(saved.root(), builder);
}

} // namespace utils
} // namespace tov
