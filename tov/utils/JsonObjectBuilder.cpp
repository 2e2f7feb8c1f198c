#include <tov/utils/JsonObjectBuilder.h>

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/Logging.h>
#include <tov/utils/impl/YajlAllocation.h>

#include <yajl/yajl_gen.h>

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstring>

namespace tov {
namespace utils {

// The state of one build: the generator exists from begin to end. The builder reads it through get(): the
// record is made by the constructor and never null, and the null check of the owner's operator-> is not
// inlined, a call for every piece written.
struct JsonGeneration {
    explicit JsonGeneration(AbstractDataInputOutput& stream) : stream(stream) {}

    AbstractDataInputOutput& stream;
    yajl_gen generator = nullptr;
    AbstractLogger* logger = nullptr;
    // yajl's depth is unsigned and underflows on a close without an open, after which it indexes its
    // state array out of bounds; closes are therefore counted against opens here.
    unsigned int openContainers = 0;
    // Whether reals may be written by std::to_chars: it writes the bytes of "%.20g" where the locale's
    // decimal point is ".".
    bool pointDecimal = false;
};

namespace {

const char* const notBuildingText = "The Json building was already ended or has never begun.";

// What the generator writes goes straight to the stream; a failing write is not noticed here.
void printToStream(void* context, const char* text, size_t length)
{
    JsonGeneration& generation = *static_cast<JsonGeneration*>(context);
    static_cast<void>(generation.stream.write(text, static_cast<unsigned int>(length), generation.logger));
}

const char* describeStatus(yajl_gen_status status)
{
    switch (status) {
    case yajl_gen_keys_must_be_strings:
        return "No current property";
    case yajl_max_depth_exceeded:
        return "Maximum generation depth exceeded";
    case yajl_gen_in_error_state:
        return "Tried to continue the build while in error";
    case yajl_gen_generation_complete:
        return "Unexpected YAJL returned status: yajl_gen_generation_complete";
    case yajl_gen_invalid_number:
        return "Unexpected YAJL returned status: yajl_gen_invalid_number";
    case yajl_gen_no_buf:
        return "Unexpected YAJL returned status: yajl_gen_no_buf";
    case yajl_gen_invalid_string:
        return "Unexpected YAJL returned status: yajl_gen_invalid_string";
    default:
        return "Unknown YAJL returned status.";
    }
}

// Out of line, so that accept, called for every piece written, stays small enough to be inlined.
[[gnu::noinline, gnu::cold]] bool refuse(yajl_gen_status status, AbstractLogger* logger)
{
    TOV_LOG_ERROR(logger, error::invalidOperation, describeStatus(status));
    return false;
}

// checkRoot's refusal, out of line as refuse is.
[[gnu::noinline, gnu::cold]] bool refuseOutsideRoot(bool building, AbstractLogger* logger)
{
    if (!building) {
        TOV_LOG_ERROR(logger, error::invalidOperation, notBuildingText);
    } else {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Expected object or array");
    }
    return false;
}

// The builder's logger is asked for only when there is something to report.
inline bool accept(yajl_gen_status status, const AbstractObjectBuilder& builder)
{
    return status == yajl_gen_status_ok || refuse(status, builder.getLogger());
}

} // namespace

// Scalars need a container around them. A call outside begin and end has no generator to go to: it
// is refused with the message of a build that is not running rather than handed to yajl as null.
inline bool JsonObjectBuilder::checkRoot()
{
    return (implementation.get()->generator != nullptr && rootBegun) ||
           refuseOutsideRoot(implementation.get()->generator != nullptr, getLogger());
}

JsonObjectBuilder::JsonObjectBuilder(AbstractDataInputOutput& stream, bool beautify)
    : implementation(TOV_NEW JsonGeneration(stream)), rootBegun(false), beautify(beautify)
{
}

JsonObjectBuilder::~JsonObjectBuilder()
{
    if (implementation.get()->generator != nullptr) {
        yajl_gen_free(implementation.get()->generator);
    }
}

void JsonObjectBuilder::setLogger(AbstractLogger* logger)
{
    AbstractObjectBuilder::setLogger(logger);
    implementation.get()->logger = logger;
}

bool JsonObjectBuilder::begin()
{
    if (implementation.get()->generator != nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "The Json building has already begun");
        return false;
    }
    yajl_alloc_funcs allocation = impl::makeYajlAllocationFunctions();
    implementation.get()->generator = yajl_gen_alloc(&allocation);
    if (implementation.get()->generator == nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "Unable to instanciate YAJL Json generator.");
        return false;
    }
    yajl_gen_config(implementation.get()->generator, yajl_gen_print_callback, &printToStream, implementation.get());
    yajl_gen_config(implementation.get()->generator, yajl_gen_beautify, beautify ? 1 : 0);
    const char* decimalPoint = std::localeconv()->decimal_point;
    implementation.get()->pointDecimal = decimalPoint != nullptr && std::strcmp(decimalPoint, ".") == 0;
    return true;
}

bool JsonObjectBuilder::end()
{
    if (implementation.get()->generator == nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, notBuildingText);
        return false;
    }
    yajl_gen_free(implementation.get()->generator);
    implementation.get()->generator = nullptr;
    implementation.get()->openContainers = 0;
    rootBegun = false;
    return true;
}

bool JsonObjectBuilder::null()
{
    // A null document is written as an empty object, so that every document has a container root.
    if (!rootBegun) {
        return beginObject() && endObject();
    }
    return accept(yajl_gen_null(implementation.get()->generator), *this);
}

bool JsonObjectBuilder::boolean(bool value)
{
    return checkRoot() && accept(yajl_gen_bool(implementation.get()->generator, value ? 1 : 0), *this);
}

bool JsonObjectBuilder::integer(long long value)
{
    if (!checkRoot()) {
        return false;
    }
    // The text of yajl_gen_integer ("%lld"), made by std::to_chars and handed over as a number: the
    // generator checks its state for a number as it does for an integer.
    char text[24];
    const std::to_chars_result written = std::to_chars(text, text + sizeof text, value);
    return accept(yajl_gen_number(implementation.get()->generator, text, static_cast<std::size_t>(written.ptr - text)),
                  *this);
}

bool JsonObjectBuilder::real(double value)
{
    if (!checkRoot()) {
        return false;
    }
    // QUIRK(json-reals-20g): reals are written as yajl_gen_double writes them, so that the JSON form stays
    // byte for byte what it was (0.1 reads 0.10000000000000000555).
    // The text of yajl_gen_double ("%.20g", and ".0" after a text of digits only), made by std::to_chars in a
    // quarter of the time of sprintf and handed over as a number. Infinities and NaN still go to
    // yajl_gen_double, which refuses them after the checks of its state.
    yajl_gen_status status;
    char text[40];
    if (implementation.get()->pointDecimal && std::isfinite(value)) {
        const std::to_chars_result written =
            std::to_chars(text, text + sizeof text - 2, value, std::chars_format::general, 20);
        char* end = written.ptr;
        *end = '\0';
        if (std::strspn(text, "0123456789-") == static_cast<std::size_t>(end - text)) {
            *end++ = '.';
            *end++ = '0';
        }
        status = yajl_gen_number(implementation.get()->generator, text, static_cast<std::size_t>(end - text));
    } else {
        status = yajl_gen_double(implementation.get()->generator, value);
    }
    if (status == yajl_gen_invalid_number) {
        TOV_LOG_ERROR(getLogger(), error::invalidArgument, "Invalid real value passed: " << value);
        return false;
    }
    return accept(status, *this);
}

bool JsonObjectBuilder::string(const char* text, unsigned int length)
{
    if (!checkRoot()) {
        return false;
    }
    const yajl_gen_status status =
        yajl_gen_string(implementation.get()->generator, reinterpret_cast<const unsigned char*>(text), length);
    if (status == yajl_gen_invalid_string) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "Invalid string value passed: " << String(text, length));
        return false;
    }
    return accept(status, *this);
}

bool JsonObjectBuilder::beginObject()
{
    return openContainer(true);
}

bool JsonObjectBuilder::objectChild(const char* key, unsigned int length)
{
    if (!checkRoot()) {
        return false;
    }
    const yajl_gen_status status =
        yajl_gen_string(implementation.get()->generator, reinterpret_cast<const unsigned char*>(key), length);
    switch (status) {
    case yajl_gen_keys_must_be_strings:
        TOV_LOG_ERROR(getLogger(), error::invalidOperation,
                      "Unexpected YAJL returned status: yajl_gen_keys_must_be_strings");
        return false;
    case yajl_gen_invalid_string:
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, "Invalid object child key passed: " << String(key, length));
        return false;
    default:
        return accept(status, *this);
    }
}

bool JsonObjectBuilder::endObject()
{
    return closeContainer(true);
}

bool JsonObjectBuilder::beginArray()
{
    return openContainer(false);
}

bool JsonObjectBuilder::arrayChild()
{
    return true;
}

bool JsonObjectBuilder::endArray()
{
    return closeContainer(false);
}

bool JsonObjectBuilder::openContainer(bool object)
{
    if (implementation.get()->generator == nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, notBuildingText);
        return false;
    }
    yajl_gen generator = implementation.get()->generator;
    if (!accept(object ? yajl_gen_map_open(generator) : yajl_gen_array_open(generator), *this)) {
        return false;
    }
    ++implementation.get()->openContainers;
    rootBegun = true;
    return true;
}

bool JsonObjectBuilder::closeContainer(bool object)
{
    if (implementation.get()->generator == nullptr) {
        TOV_LOG_ERROR(getLogger(), error::invalidOperation, notBuildingText);
        return false;
    }
    if (implementation.get()->openContainers == 0) {
        return accept(yajl_gen_generation_complete, *this);
    }
    yajl_gen generator = implementation.get()->generator;
    if (!accept(object ? yajl_gen_map_close(generator) : yajl_gen_array_close(generator), *this)) {
        return false;
    }
    --implementation.get()->openContainers;
    return true;
}

} // namespace utils
} // namespace tov
