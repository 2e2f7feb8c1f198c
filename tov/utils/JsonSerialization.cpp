#include <tov/utils/JsonSerialization.h>

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/Containers.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/JsonObjectBuilder.h>
#include <tov/utils/Logging.h>
#include <tov/utils/String.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/details/ChildWalk.h>
#include <tov/utils/impl/YajlAllocation.h>

#include <yajl/yajl_parse.h>

#include <cerrno>
#include <charconv>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace tov {
namespace utils {

namespace {

// Deeper documents are refused while they are read: the generator writes no more than this many
// levels, and a walk over a deeper tree would only risk the stack of the thread that makes it.
const unsigned int maximumJsonDepth = 128;

bool serializeValue(const DynamicObject& object, unsigned int property, const details::DynamicObjectNode* value,
                    AbstractObjectBuilder& builder, details::ChildWalk::Room& room);

bool serializeArray(const DynamicObject& object, unsigned int property, const details::DynamicObjectNode& value,
                    AbstractObjectBuilder& builder, details::ChildWalk::Room& room)
{
    if (!builder.beginArray()) {
        return false;
    }
    // The elements are found in one walk of the array's nodes; the short arrays, most of them, keep them
    // on the stack. An array's value node keeps its count.
    const unsigned int count = static_cast<unsigned int>(value.leaf.value.bits);
    unsigned int shortList[16];
    Vector<unsigned int> longList;
    unsigned int* elements = shortList;
    if (count > sizeof shortList / sizeof shortList[0]) {
        longList.resize(count);
        elements = longList.data();
    }
    object.getElements(property, elements, count);
    for (unsigned int index = 0; index < count; ++index) {
        const unsigned int element = elements[index];
        if (!builder.arrayChild() ||
            !serializeValue(object, element, details::ChildWalk::findValueNode(object, element), builder, room)) {
            return false;
        }
    }
    return builder.endArray();
}

// Members come in the order of an iterator that stops at the direct children, which ChildWalk gives in
// fewer steps, with their value nodes; the walks of one document share their room.
bool serializeObject(const DynamicObject& object, unsigned int property, const details::DynamicObjectNode& value,
                     AbstractObjectBuilder& builder, details::ChildWalk::Room& room)
{
    if (!builder.beginObject()) {
        return false;
    }
    for (details::ChildWalk member(object, property, value, room); member.next();) {
        if (!builder.objectChild(member.getKey(), member.getKeyLength()) ||
            !serializeValue(object, member.getProperty(), &member.getValueNode(), builder, room)) {
            return false;
        }
    }
    return builder.endObject();
}

// Reads the value node as the getters read a value of its own kind (see DynamicObjectNode::Leaf); a
// property without one is null, as getType has it.
bool serializeValue(const DynamicObject& object, unsigned int property, const details::DynamicObjectNode* value,
                    AbstractObjectBuilder& builder, details::ChildWalk::Room& room)
{
    const type::Type kind = value != nullptr ? static_cast<type::Type>(value->leaf.type) : type::null;
    switch (kind) {
    case type::null:
        // QUIRK(empty-container-null): an object or array that never got a child, or lost its last one,
        // is null in the trie and written as null; readers of the JSON form know it.
        return builder.null();
    case type::integer:
        return builder.integer(value->leaf.value.integer);
    case type::real:
        return builder.real(value->leaf.value.real);
    case type::boolean:
        return builder.boolean(value->leaf.value.bits == 0);
    case type::string: {
        const char* text = object.getStringTable().retrieve(value->leaf.value.bits, nullptr);
        return builder.string(text, static_cast<unsigned int>(std::strlen(text)));
    }
    case type::array:
        return serializeArray(object, property, *value, builder, room);
    case type::object:
        return serializeObject(object, property, *value, builder, room);
    }
    TOV_LOG_ERROR(builder.getLogger(), error::invalidData,
                  "Error while serializing dynamic object - unexpected property type " << static_cast<int>(kind));
    return false;
}

// What the parser's callbacks work on: the builder, and for each open container whether it is an
// array, so that a value inside an array is announced by arrayChild first.
struct ParseContext {
    explicit ParseContext(AbstractObjectBuilder& builder) : builder(builder) { isArray.push_back(false); }

    AbstractObjectBuilder& builder;
    Vector<bool> isArray;
    // Whether the reals of the text may be read without strtod: std::from_chars reads them as strtod does
    // where the locale's decimal point is ".".
    bool pointDecimal = false;
};

ParseContext& contextOf(void* context)
{
    return *static_cast<ParseContext*>(context);
}

int announceValue(ParseContext& context)
{
    return !context.isArray.back() || context.builder.arrayChild() ? 1 : 0;
}

int openContainer(ParseContext& context, bool array)
{
    if (context.isArray.size() > maximumJsonDepth) {
        TOV_LOG_ERROR(context.builder.getLogger(), error::invalidData,
                      "The JSON document is nested deeper than " << maximumJsonDepth << " levels.");
        return 0;
    }
    if (!announceValue(context) || !(array ? context.builder.beginArray() : context.builder.beginObject())) {
        return 0;
    }
    context.isArray.push_back(array);
    return 1;
}

int closeContainer(ParseContext& context, bool array)
{
    if (!(array ? context.builder.endArray() : context.builder.endObject())) {
        return 0;
    }
    context.isArray.pop_back();
    return 1;
}

int onNull(void* context)
{
    ParseContext& parse = contextOf(context);
    return announceValue(parse) && parse.builder.null() ? 1 : 0;
}

int onBoolean(void* context, int value)
{
    ParseContext& parse = contextOf(context);
    return announceValue(parse) && parse.builder.boolean(value != 0) ? 1 : 0;
}

int onInteger(void* context, long long value)
{
    ParseContext& parse = contextOf(context);
    return announceValue(parse) && parse.builder.integer(value) ? 1 : 0;
}

int onDouble(void* context, double value)
{
    ParseContext& parse = contextOf(context);
    return announceValue(parse) && parse.builder.real(value) ? 1 : 0;
}

// yajl reads an integer as a positive number of 63 bits, and a sign: it refuses -2^63 too. It reads a
// real with strtod and refuses only an overflow. std::from_chars gives the same double as strtod for every
// text that it reads (and does so several times faster); what it refuses, in or out of range, is read by
// strtod as yajl would. A refusal stops the parse, as the error of yajl did.
int onNumber(void* context, const char* text, size_t length)
{
    ParseContext& parse = contextOf(context);
    const char* const end = text + length;
    if (std::memchr(text, '.', length) == nullptr && std::memchr(text, 'e', length) == nullptr &&
        std::memchr(text, 'E', length) == nullptr) {
        long long value = 0;
        const std::from_chars_result read = std::from_chars(text, end, value);
        if (read.ec != std::errc() || read.ptr != end || value == LLONG_MIN) {
            return 0;
        }
        return onInteger(context, value);
    }
    double value = 0;
    if (parse.pointDecimal) {
        const std::from_chars_result read = std::from_chars(text, end, value);
        if (read.ec == std::errc() && read.ptr == end) {
            return onDouble(context, value);
        }
    }
    char shortText[64];
    String longText;
    char* terminated = shortText;
    if (length + 1 > sizeof shortText) {
        longText.assign(text, length);
        terminated = &longText[0];
    } else {
        std::memcpy(shortText, text, length);
        shortText[length] = '\0';
    }
    errno = 0;
    value = std::strtod(terminated, nullptr);
    if ((value == HUGE_VAL || value == -HUGE_VAL) && errno == ERANGE) {
        return 0;
    }
    return onDouble(context, value);
}

int onString(void* context, const unsigned char* text, size_t length)
{
    ParseContext& parse = contextOf(context);
    return announceValue(parse) &&
                   parse.builder.string(reinterpret_cast<const char*>(text), static_cast<unsigned int>(length))
               ? 1
               : 0;
}

int onStartMap(void* context)
{
    return openContainer(contextOf(context), false);
}

int onMapKey(void* context, const unsigned char* key, size_t length)
{
    return contextOf(context).builder.objectChild(reinterpret_cast<const char*>(key), static_cast<unsigned int>(length))
               ? 1
               : 0;
}

int onEndMap(void* context)
{
    return closeContainer(contextOf(context), false);
}

int onStartArray(void* context)
{
    return openContainer(contextOf(context), true);
}

int onEndArray(void* context)
{
    return closeContainer(contextOf(context), true);
}

} // namespace

bool serializeDynamicObject(const DynamicObject& object, AbstractObjectBuilder& builder)
{
    details::ChildWalk::Room room;
    const unsigned int root = object.getRoot();
    return builder.begin() &&
           serializeValue(object, root, details::ChildWalk::findValueNode(object, root), builder, room) &&
           builder.end();
}

bool serializeDynamicObjectToJson(const DynamicObject& object, AbstractDataInputOutput& stream, AbstractLogger* logger)
{
    JsonObjectBuilder builder(stream, false);
    builder.setLogger(logger);
    return serializeDynamicObject(object, builder);
}

bool deserializeJson(AbstractObjectBuilder& builder, AbstractDataInputOutput& stream)
{
    yajl_alloc_funcs allocationFunctions = impl::makeYajlAllocationFunctions();
    // Numbers arrive as their text, read by onNumber as yajl would read them.
    const yajl_callbacks callbacks = {&onNull,     &onBoolean, nullptr,   nullptr,       &onNumber,  &onString,
                                      &onStartMap, &onMapKey,  &onEndMap, &onStartArray, &onEndArray};
    ParseContext context(builder);
    const char* decimalPoint = std::localeconv()->decimal_point;
    context.pointDecimal = decimalPoint != nullptr && std::strcmp(decimalPoint, ".") == 0;
    yajl_handle parser = yajl_alloc(&callbacks, &allocationFunctions, &context);

    // QUIRK(json-read-full-pieces): each piece goes to the parser at the buffer's full size, whatever
    // the read returned: the bytes behind a short last piece are left from the piece before and only
    // follow the complete value. The buffer starts zeroed so that those bytes are at least never
    // indeterminate.
    // QUIRK(json-read-always-true): the statuses are not looked at, a failure shows as the builder's
    // messages and what was read stays; callers judge by the builder, as the HTTP body reader does.
    // The loop also ends on a read that succeeds with nothing: a file stream keeps succeeding at its
    // end, and would otherwise keep the loop going for ever.
    unsigned char buffer[256] = {};
    for (;;) {
        unsigned int readSize = sizeof buffer;
        if (!stream.read(reinterpret_cast<char*>(buffer), readSize, builder.getLogger()) || readSize == 0) {
            break;
        }
        yajl_parse(parser, buffer, sizeof buffer);
    }
    yajl_complete_parse(parser);
    yajl_free(parser);
    return true;
}

bool deserializeDynamicObjectFromJson(DynamicObject& object, AbstractDataInputOutput& stream, AbstractLogger* logger)
{
    DynamicObjectBuilder builder(object, object.getRoot());
    builder.setLogger(logger);
    return deserializeJson(builder, stream);
}

} // namespace utils
} // namespace tov
