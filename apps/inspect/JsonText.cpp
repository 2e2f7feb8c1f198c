#include "apps/inspect/JsonText.h"

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/JsonSerialization.h>

#include <charconv>
#include <cstdio>
#include <vector>

namespace tov {
namespace inspect {

namespace {

// Hands a text to the JSON reader piece by piece.
class TextInput : public utils::AbstractDataInputOutput {
public:
    explicit TextInput(const std::string& text) : text(text) {}
    bool isWritable() const override { return false; }
    bool write(const char*, unsigned int, utils::AbstractLogger*) override { return false; }
    bool isReadable() const override { return true; }
    bool read(char* buffer, unsigned int& size, utils::AbstractLogger*) override
    {
        const std::size_t count = std::min<std::size_t>(size, text.size() - position);
        text.copy(buffer, count, position);
        position += count;
        size = static_cast<unsigned int>(count);
        return true;
    }

private:
    const std::string& text;
    std::size_t position = 0;
};

// Passes every call on to another builder and watches the nesting, because the JSON reader reports a
// syntax error only by calling nothing more: a value is whole when the root's value closed.
class WholeValueCheck : public utils::AbstractObjectBuilder {
public:
    explicit WholeValueCheck(utils::AbstractObjectBuilder& target) : target(target) {}

    bool isWhole() const { return whole && !refused; }

    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;
    bool begin() override { return pass(target.begin()); }
    bool end() override { return pass(target.end()); }
    bool null() override { return scalar(target.null()); }
    bool boolean(bool value) override { return scalar(target.boolean(value)); }
    bool integer(long long value) override { return scalar(target.integer(value)); }
    bool real(double value) override { return scalar(target.real(value)); }
    bool string(const char* text, unsigned int length) override { return scalar(target.string(text, length)); }
    bool beginObject() override { return open(target.beginObject()); }
    bool objectChild(const char* key, unsigned int length) override { return pass(target.objectChild(key, length)); }
    bool endObject() override { return close(target.endObject()); }
    bool beginArray() override { return open(target.beginArray()); }
    bool arrayChild() override { return pass(target.arrayChild()); }
    bool endArray() override { return close(target.endArray()); }

private:
    bool pass(bool accepted)
    {
        refused = refused || !accepted;
        return accepted;
    }
    bool scalar(bool accepted)
    {
        whole = whole || depth == 0;
        return pass(accepted);
    }
    bool open(bool accepted)
    {
        ++depth;
        return pass(accepted);
    }
    bool close(bool accepted)
    {
        whole = whole || --depth == 0;
        return pass(accepted);
    }

    utils::AbstractObjectBuilder& target;
    int depth = 0;
    bool whole = false;
    bool refused = false;
};

// Writes indented JSON into a string.
class IndentingWriter : public utils::AbstractObjectBuilder {
public:
    explicit IndentingWriter(std::string& out) : out(out) {}

    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;
    bool begin() override { return true; }
    bool end() override { return true; }
    bool null() override { return put("null"); }
    bool boolean(bool value) override { return put(value ? "true" : "false"); }
    bool integer(long long value) override { return put(std::to_string(value)); }
    bool real(double value) override
    {
        char digits[64];
        const std::to_chars_result written = std::to_chars(digits, digits + sizeof(digits), value);
        std::string text(digits, written.ptr);
        // A whole real keeps a fraction, so that it reads back as a real.
        if (text.find_first_of(".eE") == std::string::npos) {
            text += ".0";
        }
        return put(text);
    }
    bool string(const char* text, unsigned int length) override { return put(quoteJson(std::string(text, length))); }
    bool beginObject() override { return open('{'); }
    bool objectChild(const char* key, unsigned int length) override
    {
        member();
        out += quoteJson(std::string(key, length)) + ": ";
        return true;
    }
    bool endObject() override { return close('}'); }
    bool beginArray() override { return open('['); }
    bool arrayChild() override
    {
        member();
        return true;
    }
    bool endArray() override { return close(']'); }

private:
    bool put(const std::string& text)
    {
        out += text;
        return true;
    }
    void newLine(std::size_t level) { out += "\n" + std::string(2 * level, ' '); }
    void member()
    {
        if (counts.back()++ > 0) {
            out += ',';
        }
        newLine(counts.size());
    }
    bool open(char bracket)
    {
        out += bracket;
        counts.push_back(0);
        return true;
    }
    bool close(char bracket)
    {
        const bool hadMembers = counts.back() > 0;
        counts.pop_back();
        if (hadMembers) {
            newLine(counts.size());
        }
        out += bracket;
        return true;
    }

    std::string& out;
    std::vector<unsigned int> counts;   // members written so far, one count per open container
};

} // namespace

std::string quoteJson(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        switch (c) {
        case '"': quoted += "\\\""; break;
        case '\\': quoted += "\\\\"; break;
        case '\n': quoted += "\\n"; break;
        case '\r': quoted += "\\r"; break;
        case '\t': quoted += "\\t"; break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof(escaped), "\\u%04x", static_cast<unsigned int>(c));
                quoted += escaped;
            } else {
                quoted += c;
            }
        }
    }
    return quoted + "\"";
}

bool indentJson(const std::string& text, std::string& indented)
{
    std::string out;
    IndentingWriter writer(out);
    WholeValueCheck check(writer);
    TextInput input(text);
    utils::deserializeJson(check, input);
    if (!check.isWhole()) {
        return false;
    }
    indented = out;
    return true;
}

bool readJson(const std::string& text, utils::DynamicObject& object)
{
    utils::DynamicObjectBuilder builder(object);
    WholeValueCheck check(builder);
    TextInput input(text);
    utils::deserializeJson(check, input);
    return check.isWhole();
}

} // namespace inspect
} // namespace tov
