#include <tov/utils/debugger/impl/RequestGuard.h>

#include <tov/utils/debugger/HttpSettings.h>

#include <cctype>
#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

String toLower(const char* text, std::size_t length)
{
    String lower(text, length);
    for (char& c : lower) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return lower;
}

String toLower(const String& text)
{
    return toLower(text.data(), text.size());
}

// Origins are compared as their lower-case text; a trailing slash in the settings is forgiven.
String normalizeOrigin(const String& origin)
{
    String lower = toLower(origin);
    if (!lower.empty() && lower.back() == '/') {
        lower.pop_back();
    }
    return lower;
}

// The time taken does not tell how much of a guessed token was right.
bool equalInConstantTime(const String& left, const char* right, std::size_t rightLength)
{
    unsigned char difference = left.size() == rightLength ? 0 : 1;
    for (std::size_t i = 0; i < rightLength; ++i) {
        difference |= static_cast<unsigned char>(left[i % (left.empty() ? 1 : left.size())] ^ right[i]);
    }
    return difference == 0 && !left.empty();
}

} // namespace

RequestGuard::Verdict::Verdict() : code(0) {}

RequestGuard::RequestGuard(const HttpSettings& settings, const String& listeningHostName) : token(settings.accessToken)
{
    hosts.push_back("localhost");
    hosts.push_back("127.0.0.1");
    hosts.push_back("[::1]");
    hosts.push_back(toLower(listeningHostName));
    for (const String& host : settings.allowedHosts) {
        hosts.push_back(toLower(host));
    }
    for (const String& origin : settings.allowedOrigins) {
        origins.push_back(normalizeOrigin(origin));
    }
}

String RequestGuard::extractHostName(const char* host)
{
    const char* end = host[0] == '[' ? std::strchr(host, ']') : std::strchr(host, ':');
    if (end == nullptr) {
        end = host + std::strlen(host);
    } else if (host[0] == '[') {
        ++end;
    }
    return toLower(host, static_cast<std::size_t>(end - host));
}

bool RequestGuard::isAllowedHost(const String& name) const
{
    for (const String& allowed : hosts) {
        if (allowed == name) {
            return true;
        }
    }
    return false;
}

// The server's own origin is the scheme and the authority that the Host header names.
bool RequestGuard::isAllowedOrigin(const char* origin, const char* host) const
{
    const String lowerOrigin = toLower(origin, std::strlen(origin));
    if (host != nullptr && lowerOrigin == "http://" + toLower(host, std::strlen(host))) {
        return true;
    }
    for (const String& allowed : origins) {
        if (allowed == lowerOrigin) {
            return true;
        }
    }
    return false;
}

RequestGuard::Verdict RequestGuard::admit(const char* host, const char* origin) const
{
    Verdict verdict;
    if (host != nullptr && !isAllowedHost(extractHostName(host))) {
        verdict.code = 403;
        verdict.message = "HTTP request: host '" + String(host) + "' is not allowed.";
    } else if (origin != nullptr && !isAllowedOrigin(origin, host)) {
        verdict.code = 403;
        verdict.message = "HTTP request: origin '" + String(origin) + "' is not allowed.";
    }
    return verdict;
}

RequestGuard::Verdict RequestGuard::authorize(const char* authorization) const
{
    Verdict verdict;
    if (token.empty()) {
        return verdict;
    }
    static const char scheme[] = "bearer ";
    const std::size_t schemeLength = sizeof(scheme) - 1;
    if (authorization == nullptr || std::strlen(authorization) < schemeLength ||
        toLower(authorization, schemeLength) != scheme ||
        !equalInConstantTime(token, authorization + schemeLength, std::strlen(authorization + schemeLength))) {
        verdict.code = 401;
        verdict.message = "HTTP request: a valid access token is required (Authorization: Bearer <token>).";
    }
    return verdict;
}

String RequestGuard::getCorsHeaders(const char* origin) const
{
    String headers = "Vary: Origin\r\n";
    if (origin != nullptr) {
        headers += "Access-Control-Allow-Origin: " + String(origin) + "\r\n";
    }
    return headers;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
