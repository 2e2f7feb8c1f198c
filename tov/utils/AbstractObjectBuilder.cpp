#include <tov/utils/AbstractObjectBuilder.h>

#include <tov/utils/Logging.h>

#include <cstring>

namespace tov {
namespace utils {

namespace {

const char* const nullUnsupported = "Null properties not supported by this object builder.";
const char* const booleanUnsupported = "Boolean properties not supported by this object builder.";
const char* const integerUnsupported = "Integer properties not supported by this object builder.";
const char* const realUnsupported = "Real properties not supported by this object builder.";
const char* const stringUnsupported = "String properties not supported by this object builder.";
const char* const objectUnsupported = "Object properties not supported by this object builder.";
const char* const arrayUnsupported = "Array properties not supported by this object builder.";

} // namespace

AbstractObjectBuilder::AbstractObjectBuilder() : logger(nullptr) {}

AbstractObjectBuilder::AbstractObjectBuilder(const AbstractObjectBuilder& other) : logger(other.logger) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): copying the logger pointer onto itself is harmless.
AbstractObjectBuilder& AbstractObjectBuilder::operator=(const AbstractObjectBuilder& other)
{
    logger = other.logger;
    return *this;
}

AbstractObjectBuilder::~AbstractObjectBuilder() {}

void AbstractObjectBuilder::setLogger(AbstractLogger* newLogger)
{
    logger = newLogger;
}

AbstractLogger* AbstractObjectBuilder::getLogger() const
{
    return logger;
}

bool AbstractObjectBuilder::begin()
{
    return true;
}

bool AbstractObjectBuilder::end()
{
    return true;
}

bool AbstractObjectBuilder::null()
{
    return unsupported(nullUnsupported);
}

bool AbstractObjectBuilder::boolean(bool)
{
    return unsupported(booleanUnsupported);
}

bool AbstractObjectBuilder::integer(long long)
{
    return unsupported(integerUnsupported);
}

bool AbstractObjectBuilder::real(double)
{
    return unsupported(realUnsupported);
}

bool AbstractObjectBuilder::string(const char* text)
{
    return string(text, static_cast<unsigned int>(std::strlen(text)));
}

bool AbstractObjectBuilder::string(const char*, unsigned int)
{
    return unsupported(stringUnsupported);
}

bool AbstractObjectBuilder::beginObject()
{
    return unsupported(objectUnsupported);
}

bool AbstractObjectBuilder::objectChild(const char* key)
{
    return objectChild(key, static_cast<unsigned int>(std::strlen(key)));
}

bool AbstractObjectBuilder::objectChild(const char*, unsigned int)
{
    return unsupported(objectUnsupported);
}

bool AbstractObjectBuilder::endObject()
{
    return unsupported(objectUnsupported);
}

bool AbstractObjectBuilder::beginArray()
{
    return unsupported(arrayUnsupported);
}

bool AbstractObjectBuilder::arrayChild()
{
    return unsupported(arrayUnsupported);
}

bool AbstractObjectBuilder::endArray()
{
    return unsupported(arrayUnsupported);
}

bool AbstractObjectBuilder::unsupported(const char* message)
{
    TOV_LOG_ERROR(logger, error::invalidOperation, message);
    return false;
}

} // namespace utils
} // namespace tov
