#pragma once
// An HTTP connection in memory: the request is given whole, the reply is collected in `written`, and
// `broken` makes every read fail as a dropped client's does.
//   MemoryConnection connection("POST", "/debugger/threads", "", "{}");
//   handler.handle(connection);   // connection.written holds the reply

#include <tov/utils/debugger/impl/HTTPConnection.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace tov {
namespace testing {

class MemoryConnection : public utils::debugger::impl::HTTPConnection {
public:
    MemoryConnection(std::string method, std::string path, std::string query = "", std::string body = "")
        : method(std::move(method)), path(std::move(path)), query(std::move(query)), body(std::move(body))
    {
    }

    const char* getMethod() const override { return method.c_str(); }
    const char* getPath() const override { return path.c_str(); }
    const char* getQuery() const override { return query.c_str(); }
    int read(char* buffer, unsigned int size) override
    {
        const std::size_t count = std::min<std::size_t>(size, body.size() - position);
        if (count != 0) {
            std::memcpy(buffer, body.data() + position, count);
        }
        position += count;
        return broken ? -1 : static_cast<int>(count);
    }
    int write(const char* data, unsigned int size) override
    {
        written.append(data, size);
        return static_cast<int>(size);
    }

    bool broken = false;
    std::string written;

private:
    std::string method, path, query, body;
    std::size_t position = 0;
};

} // namespace testing
} // namespace tov
