#include "apps/dap/FrameReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using tov::dap::FrameReader;

namespace {

struct Cut {
    std::vector<std::string> bodies;
    std::vector<std::string> problems;
};

// Feeds `stream` in pieces of `piece` bytes, as reads from a pipe may split it anywhere.
Cut cut(const std::string& stream, std::size_t piece)
{
    FrameReader reader;
    FrameReader::Frame frame;
    Cut result;
    const auto take = [&result, &frame] {
        if (!frame.problem.empty()) result.problems.push_back(frame.problem);
        if (!frame.body.empty()) result.bodies.push_back(frame.body);
    };
    for (std::size_t at = 0; at < stream.size(); at += piece) {
        reader.append(stream.data() + at, std::min(piece, stream.size() - at));
        while (reader.next(frame))
            take();
    }
    while (reader.finish(frame))
        take();
    return result;
}

std::string frame(const std::string& body, std::size_t length)
{
    return "Content-Length: " + std::to_string(length) + "\r\n\r\n" + body;
}

std::string frame(const std::string& body)
{
    return frame(body, body.size());
}

const std::string first = R"({"seq":1,"command":"initialize"})";
const std::string second = R"({"seq":2,"command":"threads"})";

} // namespace

TEST(FrameReader, MessagesComeWholeHoweverTheStreamIsSplit)
{
    const std::string stream = frame(first) + "content-length: 29\nContent-Type: application/json\n\n" + second +
                               "Content-Type: x\r\n" + frame("{}");
    for (std::size_t piece : {1u, 2u, 7u, 4096u}) {
        const Cut result = cut(stream, piece);
        EXPECT_EQ(result.bodies, (std::vector<std::string>{first, second, "{}"})) << "pieces of " << piece;
        EXPECT_TRUE(result.problems.empty()) << "pieces of " << piece << ": " << result.problems.front();
    }
}

TEST(FrameReader, MalformedStreamsAreReportedAndTheNextMessageStillComes)
{
    struct Case {
        const char* what;
        std::string stream;
        std::vector<std::string> bodies;
    };
    const std::vector<Case> cases = {
        {"a length that is no number", "Content-Length: abc\r\n\r\n" + frame(first), {first}},
        {"a length beyond the limit", "Content-Length: 99999999999\r\n\r\n" + frame(first), {first}},
        {"noise before a header", "hello there\r\n" + frame(first), {first}},
        {"a length too short", frame(first, 10) + frame(second), {first, second}},
        {"a length too long", frame(first, first.size() + 300) + frame(second), {first, second}},
        {"a stream that ends inside a body", frame(first) + frame(second, 500), {first, second}},
    };
    for (const Case& entry : cases) {
        const Cut result = cut(entry.stream, entry.stream.size());
        EXPECT_EQ(result.bodies, entry.bodies) << entry.what;
        EXPECT_EQ(result.problems.size(), 1u) << entry.what;
    }
}
