#pragma once
// Session: what the commands of tov-inspect share. It makes the exchanges with the host for one command,
// judges the replies, reports every failure in one line (a JSON object with --json) and keeps the exit
// status that follows from it.
//   Session session(settings, std::cout, std::cerr);
//   nlohmann::json entities;
//   if (session.callJson("GET", "debug/entities", "", entities)) { ... }
//   return session.getStatus();

#include "apps/common/HostClient.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <ostream>
#include <string>

namespace tov {
namespace inspect {

using nlohmann::json;

struct Settings {
    std::string base;  // "http://127.0.0.1:8000"
    std::string token; // sent as a bearer token unless empty
    bool json = false;
    double timeoutSeconds = 10;
};

class Session {
public:
    Session(const Settings& settings, std::ostream& out, std::ostream& err);

    std::ostream& out;
    std::ostream& err;
    const bool json;

    int getStatus() const { return status; }
    // Reports the line (as {"error": line} with --json); the first failure decides the exit status.
    // Returns the status.
    int fail(int exitStatus, const std::string& line);
    // A refusal whose JSON object the host sent: passed through as it came with --json.
    int failWith(int exitStatus, const std::string& line, const client::HostReply& reply);
    // The reply was not the document that the command expected.
    int unexpected(const char* method, const std::string& path);

    // One exchange on a path under /api/; false when no reply came.
    bool exchange(const char* method, const std::string& path, const std::string& body, client::HostReply& reply);
    // Whether the reply brings the resource: a 200, or a 500 that still carries it (the host answers 500
    // to everything once it has logged an error, until it resets). Other replies are reported, with the
    // host's own reason where its body gives one, else `refusal` for a 400 and `absence` for a missing
    // resource when they are given.
    bool accept(const char* method, const std::string& path, const client::HostReply& reply,
                const std::string& refusal = "", const std::string& absence = "");
    bool call(const char* method, const std::string& path, const std::string& body, client::HostReply& reply,
              const std::string& refusal = "", const std::string& absence = "");
    // call, and the reply read as JSON.
    bool callJson(const char* method, const std::string& path, const std::string& body, nlohmann::json& document,
                  const std::string& refusal = "", const std::string& absence = "");

    // Compact on one line with --json, indented otherwise.
    void print(const nlohmann::json& document);
    // With --json only: the document on one line; true when it was printed.
    bool printJson(const nlohmann::json& document);

private:
    client::HostClient client;
    int status;
    bool errorsNoted = false;
};

// "tov-inspect: <message>"; the exit status of a usage error.
int usageError(std::ostream& err, const std::string& message);

// A list the host answered: an array, or null or {} for an empty one (the host writes an array that
// never got an element so). False for anything else.
bool readList(const nlohmann::json& document, nlohmann::json& elements);
// An integer member, false when absent or of another kind.
bool readInteger(const nlohmann::json& object, const char* name, long long& value);
// A text member, "" when absent or of another kind.
std::string readText(const nlohmann::json& object, const char* name);

// Waiting commands sleep in short slices, so that an interrupt is seen soon. False once interrupted.
bool pause(std::chrono::steady_clock::duration period);
bool isInterrupted();
void clearInterrupt();

} // namespace inspect
} // namespace tov
