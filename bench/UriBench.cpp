// Uri against what a user would write instead: the parts held in std::string fields and a
// std::vector<std::string> of segments, split by std::string_view::find (with no character checks, so
// it does less than Uri::set), and a request path cut at its first '/' with find.
// Names read "<comparison>|<side>"; the side "tov" is this library.
#include <tov/utils/Uri.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

using tov::utils::Uri;

namespace {

const char location[] = "tov:agents/forager.behavior?step=3#seek";
const char requestPath[] = "/api/debug/entities/0/contexts";

struct PlainUri {
    std::string scheme;
    std::vector<std::string> segments;
    std::string extension;
    std::string query;
    std::string fragment;

    bool operator==(const PlainUri& other) const
    {
        return scheme == other.scheme && segments == other.segments && extension == other.extension &&
               query == other.query && fragment == other.fragment;
    }
};

void parsePlain(std::string_view text, PlainUri& uri)
{
    const std::size_t colon = text.find(':');
    const std::size_t schemeEnd = colon != std::string_view::npos && colon < text.find_first_of("/?#") ? colon : 0;
    uri.scheme.assign(text.substr(0, schemeEnd));
    std::string_view rest = text.substr(schemeEnd == 0 ? 0 : schemeEnd + 1);
    const std::size_t hash = rest.find('#');
    uri.fragment.assign(hash == std::string_view::npos ? std::string_view() : rest.substr(hash + 1));
    rest = rest.substr(0, hash);
    const std::size_t question = rest.find('?');
    uri.query.assign(question == std::string_view::npos ? std::string_view() : rest.substr(question + 1));
    rest = rest.substr(0, question);
    const std::size_t dot = rest.rfind('.');
    uri.extension.assign(dot == std::string_view::npos ? std::string_view() : rest.substr(dot + 1));
    rest = rest.substr(0, dot);
    uri.segments.clear();
    while (!rest.empty()) {
        const std::size_t slash = rest.find('/');
        if (slash != 0) {
            uri.segments.emplace_back(rest.substr(0, slash));
        }
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
    }
}

void parseReusedTov(benchmark::State& state)
{
    Uri uri;
    const unsigned int length = static_cast<unsigned int>(std::strlen(location));
    for (auto _ : state) {
        benchmark::DoNotOptimize(uri.set(location, length, nullptr));
    }
}

void parseReusedPeer(benchmark::State& state)
{
    PlainUri uri;
    for (auto _ : state) {
        parsePlain(location, uri);
        benchmark::DoNotOptimize(uri.segments.data());
    }
}

void parseFreshTov(benchmark::State& state)
{
    const unsigned int length = static_cast<unsigned int>(std::strlen(location));
    for (auto _ : state) {
        Uri uri;
        benchmark::DoNotOptimize(uri.set(location, length, nullptr));
    }
}

void parseFreshPeer(benchmark::State& state)
{
    for (auto _ : state) {
        PlainUri uri;
        parsePlain(location, uri);
        benchmark::DoNotOptimize(uri.segments.data());
    }
}

void compareEqualTov(benchmark::State& state)
{
    const Uri first = Uri::create(location);
    const Uri second = Uri::create(location);
    for (auto _ : state) {
        benchmark::DoNotOptimize(first == second);
    }
}

void compareEqualPeer(benchmark::State& state)
{
    PlainUri first;
    PlainUri second;
    parsePlain(location, first);
    parsePlain(location, second);
    for (auto _ : state) {
        benchmark::DoNotOptimize(first == second);
    }
}

void firstSegmentTov(benchmark::State& state)
{
    const unsigned int size = static_cast<unsigned int>(std::strlen(requestPath));
    unsigned int offset = 0;
    unsigned int length = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Uri::retrieveFirstPathSegment(requestPath, size, offset, length));
        benchmark::DoNotOptimize(offset + length);
    }
}

void firstSegmentPeer(benchmark::State& state)
{
    const std::string_view path(requestPath);
    for (auto _ : state) {
        const std::size_t begin = path.empty() || path[0] != '/' ? 0 : 1;
        const std::size_t end = path.find('/', begin);
        benchmark::DoNotOptimize(path.substr(begin, end == std::string_view::npos ? path.size() - begin : end - begin));
    }
}

} // namespace

BENCHMARK(parseReusedTov)->Name("Uri parse a location into an existing value|tov");
BENCHMARK(parseReusedPeer)->Name("Uri parse a location into an existing value|std::string parts");
BENCHMARK(parseFreshTov)->Name("Uri parse a location into a new value|tov");
BENCHMARK(parseFreshPeer)->Name("Uri parse a location into a new value|std::string parts");
BENCHMARK(compareEqualTov)->Name("Uri compare two equal locations|tov");
BENCHMARK(compareEqualPeer)->Name("Uri compare two equal locations|std::string parts");
BENCHMARK(firstSegmentTov)->Name("Uri first segment of a request path|tov");
BENCHMARK(firstSegmentPeer)->Name("Uri first segment of a request path|string_view find");

BENCHMARK_MAIN();
