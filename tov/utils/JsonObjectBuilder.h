#pragma once
// JsonObjectBuilder: writes the calls of AbstractObjectBuilder as JSON text to a stream. A document has
// an object or an array at its root; a null root is written as {}. Several documents may follow one
// another on one stream, each framed by begin and end.
//   JsonObjectBuilder json(stream, false);
//   json.begin(); json.beginObject(); json.objectChild("speed"); json.real(1); json.endObject(); json.end();
//   // stream holds {"speed":1.0}

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Export.h>
#include <tov/utils/ScopedPtr.h>

namespace tov {
namespace utils {

class AbstractDataInputOutput;
struct JsonGeneration;

class TOV_UTILS_API JsonObjectBuilder : public AbstractObjectBuilder {
public:
    // `stream` is not owned and must outlive the builder. `beautify` indents with four blanks.
    JsonObjectBuilder(AbstractDataInputOutput& stream, bool beautify);
    ~JsonObjectBuilder() override;
    JsonObjectBuilder(const JsonObjectBuilder&) = delete;
    JsonObjectBuilder& operator=(const JsonObjectBuilder&) = delete;

    void setLogger(AbstractLogger* logger) override;

    bool begin() override;
    bool end() override;
    bool null() override;
    bool boolean(bool value) override;
    bool integer(long long value) override;
    // A whole number keeps a ".0"; NaN and infinities are refused.
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
    bool checkRoot();
    bool openContainer(bool object);
    bool closeContainer(bool object);

    ScopedPtr<JsonGeneration> implementation;
    bool rootBegun;
    bool beautify;
};

} // namespace utils
} // namespace tov
