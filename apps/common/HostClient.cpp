#include "apps/common/HostClient.h"

#include <curl/curl.h>
#include <nlohmann/json.hpp>

namespace tov {
namespace client {

namespace {

std::size_t collect(char* data, std::size_t size, std::size_t count, void* target)
{
    static_cast<std::string*>(target)->append(data, size * count);
    return size * count;
}

// libcurl's global set-up, once for the process, before any thread could race for it.
struct CurlGlobal {
    CurlGlobal() { curl_global_init(CURL_GLOBAL_DEFAULT); }
    ~CurlGlobal() { curl_global_cleanup(); }
};

std::string authorityOf(const std::string& base)
{
    const std::size_t scheme = base.find("://");
    return scheme == std::string::npos ? base : base.substr(scheme + 3);
}

} // namespace

std::string HostReply::getErrorText() const
{
    const nlohmann::json document = nlohmann::json::parse(body, nullptr, false);
    if (document.is_object() && document.contains("error") && document["error"].is_string()) {
        return document["error"].get<std::string>();
    }
    return std::string();
}

HostClient::HostClient(std::string base, std::string token, long timeoutMilliseconds)
    : base(std::move(base)), token(std::move(token)), timeoutMilliseconds(timeoutMilliseconds)
{
    static CurlGlobal global;
    handle = curl_easy_init();
}

HostClient::~HostClient()
{
    curl_easy_cleanup(static_cast<CURL*>(handle));
}

bool HostClient::exchange(const std::string& method, const std::string& path, const std::string& body, HostReply& reply)
{
    CURL* curl = static_cast<CURL*>(handle);
    failure = none;
    error.clear();
    reply = HostReply();
    if (curl == nullptr) {
        failure = broken;
        error = "libcurl could not start";
        return false;
    }
    curl_easy_reset(curl);
    const std::string url = base + "/api/" + path;
    char curlError[CURL_ERROR_SIZE] = "";
    curl_slist* headers = nullptr;
    if (!token.empty()) {
        headers = curl_slist_append(headers, ("Authorization: Bearer " + token).c_str());
    }
    if (!body.empty()) {
        headers = curl_slist_append(headers, "Content-Type: application/json");
    }
    // The host closes every connection after its reply; a POST on engines even answers twice on it,
    // and only the first reply counts, which libcurl reads by its Content-Length.
    headers = curl_slist_append(headers, "Expect:");
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, method.c_str());
    if (method == "POST" || !body.empty()) {
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.c_str());
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    }
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &collect);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &reply.body);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, curlError);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, timeoutMilliseconds);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, timeoutMilliseconds);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(curl, CURLOPT_USERAGENT, "tov-client");
    const CURLcode result = curl_easy_perform(curl);
    curl_slist_free_all(headers);
    if (result != CURLE_OK) {
        const std::string detail = curlError[0] != '\0' ? curlError : curl_easy_strerror(result);
        switch (result) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_CONNECT:
        case CURLE_URL_MALFORMAT:
            failure = unreachable;
            error = "cannot connect to " + authorityOf(base) + ": " + detail;
            break;
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_UNSUPPORTED_PROTOCOL:
            failure = malformed;
            error = method + " /api/" + path + ": what came back is no HTTP reply (" + detail + ")";
            break;
        default:
            failure = broken;
            error = method + " /api/" + path + ": the exchange with " + authorityOf(base) + " failed: " + detail;
            break;
        }
        return false;
    }
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &reply.status);
    return true;
}

std::string HostClient::encodePath(const std::string& path)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : path) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte <= 0x20 || byte >= 0x7f || std::string("\"#<>\\^`{|}").find(c) != std::string::npos) {
            encoded += '%';
            encoded += digits[byte >> 4];
            encoded += digits[byte & 15];
        } else {
            encoded += c;
        }
    }
    return encoded;
}

} // namespace client
} // namespace tov
