#pragma once
// An HTTPConnection in memory, for tests of the request handler without sockets: the request is given
// as method, path, query and body, and everything written back is kept.

#include <tov/utils/debugger/impl/HTTPConnection.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace tov {
namespace testing {

class MemoryHttpConnection : public utils::debugger::impl::HTTPConnection {
public:
    MemoryHttpConnection(std::string method, std::string path, std::string query = "", std::string body = "")
        : method(std::move(method)), path(std::move(path)), query(std::move(query)), body(std::move(body))
    {
    }

    const char* getMethod() const override { return method.c_str(); }
    const char* getPath() const override { return path.c_str(); }
    const char* getQuery() const override { return query.c_str(); }
    int read(char* buffer, unsigned int size) override
    {
        if (failReads) {
            return -1;
        }
        const std::size_t count = std::min<std::size_t>(size, body.size() - position);
        std::memcpy(buffer, body.data() + position, count);
        position += count;
        return static_cast<int>(count);
    }
    int write(const char* data, unsigned int size) override
    {
        written.append(data, size);
        return static_cast<int>(size);
    }

    const std::string& getWritten() const { return written; }

    bool failReads = false;

private:
    std::string method;
    std::string path;
    std::string query;
    std::string body;
    std::size_t position = 0;
    std::string written;
};

} // namespace testing
} // namespace tov
