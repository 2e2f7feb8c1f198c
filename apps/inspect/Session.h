#pragma once
// Session: what the commands of tov-inspect share. It makes the exchanges with the host for one command,
// judges the replies, reports every failure in one line and keeps the exit status that follows from it.
//   Session session(settings, std::cout, std::cerr);
//   HttpReply reply;
//   if (session.call("GET", "debug/entities", "", reply)) { /* a 200, or a 500 that brings the resource */ }
//   return session.getStatus();

#include "apps/inspect/HttpClient.h"

#include <chrono>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace tov {
namespace utils {
class DynamicObject;
}

namespace inspect {

struct Settings {
    std::string host = "127.0.0.1";
    std::string port = "8000";
    bool json = false;
    bool help = false;
};

// What a command was given behind its name: positional words, and options by name with the value of
// each occurrence in order ("" for a flag).
struct Arguments {
    std::vector<std::string> positional;
    std::map<std::string, std::vector<std::string>> options;

    bool has(const char* name) const { return options.count(name) != 0; }
    const std::string& last(const char* name) const { return options.at(name).back(); }
};

class Session {
public:
    Session(const Settings& settings, std::ostream& out, std::ostream& err);

    std::ostream& out;
    std::ostream& err;
    const bool json;

    int getStatus() const { return status; }
    // Reports the line; the first failure decides the exit status. Returns the status.
    int fail(int exitStatus, const std::string& line);
    // The reply was not the document that the command expected.
    int unexpected(const char* method, const std::string& path);

    // One exchange on a path under /api/; false when no reply came.
    bool exchange(const char* method, const std::string& path, const std::string& body, HttpReply& reply);
    // Whether the reply brings the resource: a 200, or a 500 that still carries it (the host answers 500
    // to everything once it has logged an error, until it resets). Other replies are reported, with
    // `refusal` for a 400 and `absence` for a missing resource when they are given.
    bool accept(const char* method, const std::string& path, const HttpReply& reply, const std::string& refusal = "",
                const std::string& absence = "");
    // exchange and accept.
    bool call(const char* method, const std::string& path, const std::string& body, HttpReply& reply,
              const std::string& refusal = "", const std::string& absence = "");
    // call, and the reply read as JSON into `document`.
    bool callJson(const char* method, const std::string& path, const std::string& body, HttpReply& reply,
                  utils::DynamicObject& document, const std::string& refusal = "", const std::string& absence = "");
    bool read(const char* method, const std::string& path, const HttpReply& reply, utils::DynamicObject& document);

    // A reply's body as it came, one a line.
    void printRaw(const std::string& body);
    // Indented; as it came with --json, or when it is no JSON.
    void printDocument(const std::string& body);

private:
    HttpClient client;
    int status;
    bool errorsNoted = false;
};

// "tov-inspect: <message>" and a pointer to the usage; the exit status of a usage error.
int usageError(std::ostream& err, const std::string& message);

// Digits only, at most `maximum`.
bool parseNumber(const std::string& text, unsigned long long maximum, unsigned long long& value);
bool parseEntity(const std::string& text, unsigned int& entity);

// A path as typed, without its leading slashes, fit for a request line.
std::string encodePath(const std::string& path);

// Reading a reply's document. Every read checks the kind first: the reply comes from outside, and the
// object's readers assert on a value of another kind.
bool readInteger(const utils::DynamicObject& document, unsigned int parent, const char* name, long long& value);
bool readBoolean(const utils::DynamicObject& document, unsigned int parent, const char* name, bool& value);
bool readText(const utils::DynamicObject& document, unsigned int parent, const char* name, std::string& value);
// The elements of the root array; an empty array reads back as a null root.
bool readList(const utils::DynamicObject& document, std::vector<unsigned int>& elements);

// Waiting commands: sleeps for `period` in short slices, so that an interrupt is seen soon. False once
// interrupted.
bool pause(std::chrono::steady_clock::duration period);
bool isInterrupted();
void clearInterrupt();

} // namespace inspect
} // namespace tov
