// DynamicObject against what a user would pick instead for a tree of values addressed by path:
// nlohmann::json with json_pointer and RapidJSON's DOM with its Pointer, all on the same 10,000 records
// (items[i].name, .id, .active, .pos.x, .pos.y, .pos.z). Names read "<comparison>|<side>"; the side "tov"
// is this library, and scripts/bench_report.py prints each peer's cost over ours.
#include <tov/allocator/Allocator.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectIterator.h>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/pointer.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

using tov::utils::DynamicObject;
using tov::utils::DynamicObjectIterator;

namespace {

const unsigned int recordCount = 10000;
const unsigned int valuesPerRecord = 6;
const unsigned int readCount = 1024;

// The same paths in the two syntaxes, written once so that no side pays for formatting them.
struct Paths {
    std::vector<std::string> tov;
    std::vector<std::string> pointer;
};

enum Field { Name, Id, Active, X, Y, Z };
const char* const tovFields[] = {".name", ".id", ".active", ".pos.x", ".pos.y", ".pos.z"};
const char* const pointerFields[] = {"/name", "/id", "/active", "/pos/x", "/pos/y", "/pos/z"};

const Paths& recordPaths()
{
    static const Paths paths = [] {
        Paths built;
        for (unsigned int i = 0; i < recordCount; ++i) {
            for (unsigned int field = 0; field < valuesPerRecord; ++field) {
                built.tov.push_back("items[" + std::to_string(i) + "]" + tovFields[field]);
                built.pointer.push_back("/items/" + std::to_string(i) + pointerFields[field]);
            }
        }
        return built;
    }();
    return paths;
}

// Positions of the reads: the x of records spread over the whole array, in an order that defeats caches,
// or of the first records in order.
const std::vector<unsigned int>& readPositions(bool inOrder)
{
    static const std::vector<unsigned int> spread = [] {
        std::vector<unsigned int> built;
        unsigned int record = 7;
        for (unsigned int i = 0; i < readCount; ++i) {
            record = (record * 7919u + 13u) % recordCount;
            built.push_back(record * valuesPerRecord + X);
        }
        return built;
    }();
    static const std::vector<unsigned int> ordered = [] {
        std::vector<unsigned int> built;
        for (unsigned int i = 0; i < readCount; ++i) {
            built.push_back(i * valuesPerRecord + X);
        }
        return built;
    }();
    return inOrder ? ordered : spread;
}

std::string nameOf(unsigned int record)
{
    return "item" + std::to_string(record);
}

double coordinate(unsigned int record, unsigned int field)
{
    return record * 0.5 + field;
}

void buildTov(DynamicObject& object)
{
    const Paths& paths = recordPaths();
    for (unsigned int i = 0; i < recordCount; ++i) {
        const std::string* path = &paths.tov[i * valuesPerRecord];
        object.setString(path[Name].c_str(), nameOf(i).c_str());
        object.setInt(path[Id].c_str(), i);
        object.setBool(path[Active].c_str(), i % 2 == 0);
        object.setReal(path[X].c_str(), coordinate(i, X));
        object.setReal(path[Y].c_str(), coordinate(i, Y));
        object.setReal(path[Z].c_str(), coordinate(i, Z));
    }
}

template <typename Json>
void buildNlohmann(Json& json)
{
    const Paths& paths = recordPaths();
    for (unsigned int i = 0; i < recordCount; ++i) {
        const std::string* path = &paths.pointer[i * valuesPerRecord];
        json[typename Json::json_pointer(path[Name])] = nameOf(i);
        json[typename Json::json_pointer(path[Id])] = i;
        json[typename Json::json_pointer(path[Active])] = i % 2 == 0;
        json[typename Json::json_pointer(path[X])] = coordinate(i, X);
        json[typename Json::json_pointer(path[Y])] = coordinate(i, Y);
        json[typename Json::json_pointer(path[Z])] = coordinate(i, Z);
    }
}

// What a user of nlohmann writes with the path known at compile time: one chained lookup per level.
void buildNlohmannChained(nlohmann::json& json)
{
    for (unsigned int i = 0; i < recordCount; ++i) {
        json["items"][i]["name"] = nameOf(i);
        json["items"][i]["id"] = i;
        json["items"][i]["active"] = i % 2 == 0;
        json["items"][i]["pos"]["x"] = coordinate(i, X);
        json["items"][i]["pos"]["y"] = coordinate(i, Y);
        json["items"][i]["pos"]["z"] = coordinate(i, Z);
    }
}

template <typename Document>
void buildRapidJson(Document& document)
{
    using Pointer = rapidjson::GenericPointer<typename Document::ValueType>;
    const Paths& paths = recordPaths();
    auto& allocator = document.GetAllocator();
    for (unsigned int i = 0; i < recordCount; ++i) {
        const std::string* path = &paths.pointer[i * valuesPerRecord];
        const std::string name = nameOf(i);
        Pointer(path[Name].c_str()).Set(document, name.c_str(), allocator);
        Pointer(path[Id].c_str()).Set(document, i, allocator);
        Pointer(path[Active].c_str()).Set(document, i % 2 == 0, allocator);
        Pointer(path[X].c_str()).Set(document, coordinate(i, X), allocator);
        Pointer(path[Y].c_str()).Set(document, coordinate(i, Y), allocator);
        Pointer(path[Z].c_str()).Set(document, coordinate(i, Z), allocator);
    }
}

const DynamicObject& builtTov()
{
    static const DynamicObject* object = [] {
        DynamicObject* built = new DynamicObject();
        buildTov(*built);
        return built;
    }();
    return *object;
}

const nlohmann::json& builtNlohmann()
{
    static const nlohmann::json* json = [] {
        nlohmann::json* built = new nlohmann::json();
        buildNlohmann(*built);
        return built;
    }();
    return *json;
}

const rapidjson::Document& builtRapidJson()
{
    static const rapidjson::Document* document = [] {
        rapidjson::Document* built = new rapidjson::Document();
        buildRapidJson(*built);
        return built;
    }();
    return *document;
}

// Building by path.

void BuildByPathTov(benchmark::State& state)
{
    for (auto _ : state) {
        DynamicObject object;
        buildTov(object);
        benchmark::DoNotOptimize(object.getRoot());
    }
    state.SetItemsProcessed(state.iterations() * recordCount * valuesPerRecord);
    state.counters["target:nlohmann by chained keys"] = 0.5;
}

void BuildByPathNlohmann(benchmark::State& state)
{
    for (auto _ : state) {
        nlohmann::json json;
        buildNlohmann(json);
        benchmark::DoNotOptimize(json.size());
    }
    state.SetItemsProcessed(state.iterations() * recordCount * valuesPerRecord);
}

void BuildByChainedKeysNlohmann(benchmark::State& state)
{
    for (auto _ : state) {
        nlohmann::json json;
        buildNlohmannChained(json);
        benchmark::DoNotOptimize(json.size());
    }
    state.SetItemsProcessed(state.iterations() * recordCount * valuesPerRecord);
}

void BuildByPathRapidJson(benchmark::State& state)
{
    for (auto _ : state) {
        rapidjson::Document document;
        buildRapidJson(document);
        benchmark::DoNotOptimize(document.IsObject());
    }
    state.SetItemsProcessed(state.iterations() * recordCount * valuesPerRecord);
}

// Reading by a path given at run time: the path text is parsed on every read, on every side.

void ReadByPathTov(benchmark::State& state, bool inOrder)
{
    const DynamicObject& object = builtTov();
    const Paths& paths = recordPaths();
    double sum = 0;
    for (auto _ : state) {
        for (unsigned int position : readPositions(inOrder)) {
            const std::string& path = paths.tov[position];
            sum += object.getReal(object.getProperty(path.data(), static_cast<unsigned int>(path.size())));
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * readCount);
    state.counters["target:nlohmann"] = 1.0;
}

void ReadByPathNlohmann(benchmark::State& state, bool inOrder)
{
    const nlohmann::json& json = builtNlohmann();
    const Paths& paths = recordPaths();
    double sum = 0;
    for (auto _ : state) {
        for (unsigned int position : readPositions(inOrder)) {
            sum += json.at(nlohmann::json::json_pointer(paths.pointer[position])).get<double>();
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * readCount);
}

void ReadByPathRapidJson(benchmark::State& state, bool inOrder)
{
    const rapidjson::Document& document = builtRapidJson();
    const Paths& paths = recordPaths();
    double sum = 0;
    for (auto _ : state) {
        for (unsigned int position : readPositions(inOrder)) {
            const std::string& path = paths.pointer[position];
            sum += rapidjson::Pointer(path.data(), path.size()).Get(document)->GetDouble();
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * readCount);
}

// A full walk: every value and its key.

void FullWalkTov(benchmark::State& state)
{
    const DynamicObject& object = builtTov();
    for (auto _ : state) {
        std::size_t seen = 0;
        for (DynamicObjectIterator it(object, 0); !it.end(); it.next()) {
            seen += it.getKeyLength() + object.getType(it.getProperty());
        }
        benchmark::DoNotOptimize(seen);
    }
    state.counters["target:nlohmann"] = 0.5;
}

std::size_t walk(const nlohmann::json& json)
{
    std::size_t seen = json.type() == nlohmann::json::value_t::null ? 0 : 1;
    if (json.is_object()) {
        for (auto it = json.begin(); it != json.end(); ++it) {
            seen += it.key().size() + walk(it.value());
        }
    } else if (json.is_array()) {
        for (const nlohmann::json& element : json) {
            seen += walk(element);
        }
    }
    return seen;
}

void FullWalkNlohmann(benchmark::State& state)
{
    const nlohmann::json& json = builtNlohmann();
    for (auto _ : state) {
        benchmark::DoNotOptimize(walk(json));
    }
}

std::size_t walk(const rapidjson::Value& value)
{
    std::size_t seen = value.GetType();
    if (value.IsObject()) {
        for (auto member = value.MemberBegin(); member != value.MemberEnd(); ++member) {
            seen += member->name.GetStringLength() + walk(member->value);
        }
    } else if (value.IsArray()) {
        for (const rapidjson::Value& element : value.GetArray()) {
            seen += walk(element);
        }
    }
    return seen;
}

void FullWalkRapidJson(benchmark::State& state)
{
    const rapidjson::Document& document = builtRapidJson();
    for (auto _ : state) {
        benchmark::DoNotOptimize(walk(document));
    }
}

// A whole-object copy. The copy constructor of a DynamicObject copies its string table too; a copy from a
// Ref shares it, as objects of one subsystem usually do.

void CopyTov(benchmark::State& state)
{
    const DynamicObject& object = builtTov();
    for (auto _ : state) {
        DynamicObject copy(object); // NOLINT(performance-unnecessary-copy-initialization): the copy is measured
        benchmark::DoNotOptimize(copy.getRoot());
    }
    state.counters["target:nlohmann"] = 10.0;
}

void CopySharedTableTov(benchmark::State& state)
{
    DynamicObject& object = const_cast<DynamicObject&>(builtTov());
    for (auto _ : state) {
        DynamicObject copy{DynamicObject::Ref(object)};
        benchmark::DoNotOptimize(copy.getRoot());
    }
    state.counters["target:nlohmann"] = 10.0;
}

void CopyNlohmann(benchmark::State& state)
{
    const nlohmann::json& json = builtNlohmann();
    for (auto _ : state) {
        nlohmann::json copy(json); // NOLINT(performance-unnecessary-copy-initialization): the copy is measured
        benchmark::DoNotOptimize(copy.size());
    }
}

void CopyRapidJson(benchmark::State& state)
{
    const rapidjson::Document& document = builtRapidJson();
    for (auto _ : state) {
        rapidjson::Document copy;
        copy.CopyFrom(document, copy.GetAllocator());
        benchmark::DoNotOptimize(copy.IsObject());
    }
}

// Bytes held per value, counted as asked of the allocator: the memory service for this library, a
// counting allocator for the peers. What is measured is a copy of the tree built by path, so that what a
// builder left behind (RapidJSON's pool keeps every array it outgrew) does not count.

std::int64_t peerBytes = 0;

template <typename T>
struct CountingAllocator {
    using value_type = T;
    CountingAllocator() = default;
    template <typename U>
    CountingAllocator(const CountingAllocator<U>&)
    {
    }
    T* allocate(std::size_t count)
    {
        peerBytes += static_cast<std::int64_t>(count * sizeof(T));
        return static_cast<T*>(::operator new(count * sizeof(T)));
    }
    void deallocate(T* pointer, std::size_t count)
    {
        peerBytes -= static_cast<std::int64_t>(count * sizeof(T));
        ::operator delete(pointer);
    }
    template <typename U>
    bool operator==(const CountingAllocator<U>&) const
    {
        return true;
    }
    template <typename U>
    bool operator!=(const CountingAllocator<U>&) const
    {
        return false;
    }
};

using CountedJson = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t, std::uint64_t, double,
                                         CountingAllocator>;

// The base of RapidJSON's pool: keeps the size in front of each chunk, as Free is not told it.
struct CountingBaseAllocator {
    [[maybe_unused]] static const bool kNeedFree = true; // read by RapidJSON's pool
    void* Malloc(std::size_t size)
    {
        if (size == 0) {
            return nullptr;
        }
        peerBytes += static_cast<std::int64_t>(size);
        std::size_t* block = static_cast<std::size_t*>(std::malloc(size + sizeof(std::max_align_t)));
        *block = size;
        return reinterpret_cast<char*>(block) + sizeof(std::max_align_t);
    }
    void* Realloc(void* original, std::size_t originalSize, std::size_t newSize)
    {
        void* resized = Malloc(newSize);
        if (original != nullptr && resized != nullptr) {
            std::memcpy(resized, original, originalSize < newSize ? originalSize : newSize);
        }
        Free(original);
        return resized;
    }
    static void Free(void* pointer)
    {
        if (pointer == nullptr) {
            return;
        }
        std::size_t* block = reinterpret_cast<std::size_t*>(static_cast<char*>(pointer) - sizeof(std::max_align_t));
        peerBytes -= static_cast<std::int64_t>(*block);
        std::free(block);
    }
};

using CountedDocument =
    rapidjson::GenericDocument<rapidjson::UTF8<>, rapidjson::MemoryPoolAllocator<CountingBaseAllocator>,
                               CountingBaseAllocator>;

void setBytesPerValue(benchmark::State& state, std::int64_t bytes)
{
    state.counters["cost"] = static_cast<double>(bytes) / (recordCount * valuesPerRecord);
}

void BytesPerValueTov(benchmark::State& state)
{
    tov::allocator::Allocator& service = tov::allocator::Allocator::instance();
    std::int64_t held = 0;
    for (auto _ : state) {
        DynamicObject object;
        buildTov(object);
        const unsigned long long before = service.getLiveBytes();
        DynamicObject copy(object);
        held = static_cast<std::int64_t>(service.getLiveBytes() - before);
    }
    setBytesPerValue(state, held);
}

void BytesPerValueNlohmann(benchmark::State& state)
{
    std::int64_t held = 0;
    for (auto _ : state) {
        CountedJson json;
        buildNlohmann(json);
        const std::int64_t before = peerBytes;
        CountedJson copy(json);
        held = peerBytes - before;
    }
    setBytesPerValue(state, held);
}

void BytesPerValueRapidJson(benchmark::State& state)
{
    std::int64_t held = 0;
    for (auto _ : state) {
        CountedDocument document;
        buildRapidJson(document);
        const std::int64_t before = peerBytes;
        CountedDocument copy;
        copy.CopyFrom(document, copy.GetAllocator());
        held = peerBytes - before;
    }
    setBytesPerValue(state, held);
}

} // namespace

BENCHMARK(BuildByPathTov)->Name("build 10000 records by path|tov")->Unit(benchmark::kMillisecond);
BENCHMARK(BuildByPathNlohmann)->Name("build 10000 records by path|nlohmann")->Unit(benchmark::kMillisecond);
BENCHMARK(BuildByChainedKeysNlohmann)
    ->Name("build 10000 records by path|nlohmann by chained keys")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BuildByPathRapidJson)->Name("build 10000 records by path|rapidjson")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadByPathTov, spread, false)
    ->Name("read 1024 values by run-time path|tov")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadByPathNlohmann, spread, false)
    ->Name("read 1024 values by run-time path|nlohmann")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadByPathRapidJson, spread, false)
    ->Name("read 1024 values by run-time path|rapidjson")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadByPathTov, ordered, true)
    ->Name("read 1024 values by run-time path, records in order|tov")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadByPathNlohmann, ordered, true)
    ->Name("read 1024 values by run-time path, records in order|nlohmann")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadByPathRapidJson, ordered, true)
    ->Name("read 1024 values by run-time path, records in order|rapidjson")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(FullWalkTov)->Name("full walk|tov")->Unit(benchmark::kMillisecond);
BENCHMARK(FullWalkNlohmann)->Name("full walk|nlohmann")->Unit(benchmark::kMillisecond);
BENCHMARK(FullWalkRapidJson)->Name("full walk|rapidjson")->Unit(benchmark::kMillisecond);
BENCHMARK(CopyTov)->Name("whole-object copy|tov")->Unit(benchmark::kMillisecond);
BENCHMARK(CopyNlohmann)->Name("whole-object copy|nlohmann")->Unit(benchmark::kMillisecond);
BENCHMARK(CopyRapidJson)->Name("whole-object copy|rapidjson")->Unit(benchmark::kMillisecond);
BENCHMARK(CopySharedTableTov)->Name("whole-object copy, string table shared|tov")->Unit(benchmark::kMillisecond);
BENCHMARK(CopyNlohmann)->Name("whole-object copy, string table shared|nlohmann")->Unit(benchmark::kMillisecond);
BENCHMARK(CopyRapidJson)->Name("whole-object copy, string table shared|rapidjson")->Unit(benchmark::kMillisecond);
BENCHMARK(BytesPerValueTov)->Name("bytes held per value|tov")->Iterations(1);
BENCHMARK(BytesPerValueNlohmann)->Name("bytes held per value|nlohmann")->Iterations(1);
BENCHMARK(BytesPerValueRapidJson)->Name("bytes held per value|rapidjson")->Iterations(1);

BENCHMARK_MAIN();
