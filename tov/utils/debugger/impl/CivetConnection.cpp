#include <tov/utils/debugger/impl/CivetConnection.h>

#include <civetweb.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

const char* orEmpty(const char* text)
{
    return text != nullptr ? text : "";
}

} // namespace

// The older interface of the server called the decoded path `uri`; this one calls it `local_uri` (the
// decoded path with its dot segments resolved) and keeps `request_uri` for the target as it was sent.
CivetConnection::CivetConnection(mg_connection* connection) : connection(connection)
{
    const mg_request_info* information = mg_get_request_info(connection);
    method = orEmpty(information != nullptr ? information->request_method : nullptr);
    path = orEmpty(information != nullptr ? information->local_uri : nullptr);
    query = orEmpty(information != nullptr ? information->query_string : nullptr);
}

const char* CivetConnection::getMethod() const
{
    return method;
}

const char* CivetConnection::getPath() const
{
    return path;
}

const char* CivetConnection::getQuery() const
{
    return query;
}

const char* CivetConnection::getHeader(const char* name) const
{
    return mg_get_header(connection, name);
}

int CivetConnection::read(char* buffer, unsigned int size)
{
    return mg_read(connection, buffer, size);
}

int CivetConnection::write(const char* data, unsigned int size)
{
    return mg_write(connection, data, size);
}

// Messages about the listening ports come before any request, on a stand-in connection whose request
// information is null: the context still knows the user data.
void* CivetConnection::getUserData(const mg_connection* connection)
{
    if (connection == nullptr) {
        return nullptr;
    }
    const mg_request_info* information = mg_get_request_info(connection);
    if (information != nullptr && information->user_data != nullptr) {
        return information->user_data;
    }
    mg_context* context = mg_get_context(connection);
    return context != nullptr ? mg_get_user_data(context) : nullptr;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
