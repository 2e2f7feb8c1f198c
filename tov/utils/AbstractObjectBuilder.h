#pragma once
// AbstractObjectBuilder: the event interface through which a tree of values is written. A producer calls
// begin, one value, end; a value is a scalar, or beginObject (objectChild + value)* endObject, or
// beginArray (arrayChild + value)* endArray. A false result stops the producer. Every value kind that a
// builder does not override is refused with a message to its logger.
//   builder.begin(); builder.beginObject(); builder.objectChild("x"); builder.integer(3);
//   builder.endObject(); builder.end();
// A builder that overrides the counted string(text, length) or objectChild(key, length) brings the
// terminated forms back into scope with `using AbstractObjectBuilder::string;` (and objectChild).

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractLogger;

class TOV_UTILS_API AbstractObjectBuilder {
public:
    AbstractObjectBuilder();
    AbstractObjectBuilder(const AbstractObjectBuilder& other);
    AbstractObjectBuilder& operator=(const AbstractObjectBuilder& other);
    virtual ~AbstractObjectBuilder() = 0;

    // Failures are reported to the logger; null (the default) keeps them silent. Not owned.
    virtual void setLogger(AbstractLogger* logger);
    virtual AbstractLogger* getLogger() const;

    virtual bool begin();
    virtual bool end();
    virtual bool null();
    virtual bool boolean(bool value);
    virtual bool integer(long long value);
    virtual bool real(double value);
    // Takes the length and calls the counted form through the virtual table.
    virtual bool string(const char* text);
    virtual bool string(const char* text, unsigned int length);
    virtual bool beginObject();
    // Takes the length and calls the counted form through the virtual table.
    virtual bool objectChild(const char* key);
    virtual bool objectChild(const char* key, unsigned int length);
    virtual bool endObject();
    virtual bool beginArray();
    virtual bool arrayChild();
    virtual bool endArray();

private:
    bool unsupported(const char* message);

    AbstractLogger* logger;
};

} // namespace utils
} // namespace tov
