// JSON into and out of a DynamicObject against what a user would pick instead: nlohmann::json,
// RapidJSON's DOM and, as the ceiling of this design, yajl itself: without callbacks, and with callbacks
// that do nothing fed as the library feeds it (parse), and fed recorded events (write). Names read
// "<comparison>|<side>"; the side "tov" is this library.
#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/MemoryInputOutput.h>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <yajl/yajl_gen.h>
#include <yajl/yajl_parse.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace tov::utils;

namespace {

const char* const documents[] = {"canada.json", "citm_catalog.json", "twitter.json"};

std::string readDocument(const char* name)
{
    std::ifstream file(std::string(TOV_SHARED_DATA_DIR) + "/json/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// The events of a walk, kept so that a bare generator can be fed the very same ones.
struct Event {
    enum Kind { Null, Boolean, Integer, Real, String, Key, OpenObject, CloseObject, OpenArray, CloseArray } kind;
    long long integer = 0;
    double real = 0;
    std::string text;
};

class EventRecorder : public AbstractObjectBuilder {
public:
    std::vector<Event> events;

    bool null() override { return add(Event::Null); }
    bool boolean(bool value) override { return add(Event::Boolean, value ? 1 : 0); }
    bool integer(long long value) override { return add(Event::Integer, value); }
    bool real(double value) override
    {
        events.push_back(Event{Event::Real, 0, value, {}});
        return true;
    }
    using AbstractObjectBuilder::string;
    bool string(const char* text, unsigned int length) override
    {
        events.push_back(Event{Event::String, 0, 0, std::string(text, length)});
        return true;
    }
    bool beginObject() override { return add(Event::OpenObject); }
    using AbstractObjectBuilder::objectChild;
    bool objectChild(const char* key, unsigned int length) override
    {
        events.push_back(Event{Event::Key, 0, 0, std::string(key, length)});
        return true;
    }
    bool endObject() override { return add(Event::CloseObject); }
    bool beginArray() override { return add(Event::OpenArray); }
    bool arrayChild() override { return true; }
    bool endArray() override { return add(Event::CloseArray); }

private:
    bool add(Event::Kind kind, long long value = 0)
    {
        events.push_back(Event{kind, value, 0, {}});
        return true;
    }
};

void appendOutput(void* context, const char* text, size_t length)
{
    static_cast<std::string*>(context)->append(text, length);
}

void feedGenerator(yajl_gen generator, const std::vector<Event>& events)
{
    for (const Event& event : events) {
        const unsigned char* text = reinterpret_cast<const unsigned char*>(event.text.data());
        switch (event.kind) {
        case Event::Null:
            yajl_gen_null(generator);
            break;
        case Event::Boolean:
            yajl_gen_bool(generator, static_cast<int>(event.integer));
            break;
        case Event::Integer:
            yajl_gen_integer(generator, event.integer);
            break;
        case Event::Real:
            yajl_gen_double(generator, event.real);
            break;
        case Event::String:
        case Event::Key:
            yajl_gen_string(generator, text, event.text.size());
            break;
        case Event::OpenObject:
            yajl_gen_map_open(generator);
            break;
        case Event::CloseObject:
            yajl_gen_map_close(generator);
            break;
        case Event::OpenArray:
            yajl_gen_array_open(generator);
            break;
        case Event::CloseArray:
            yajl_gen_array_close(generator);
            break;
        }
    }
}

// What this library must reach against each peer, by document: canada is almost all reals in arrays of
// two, where the trie's steps for every element weigh most, and where the bare generator spends its time
// in sprintf, which this library's writer must beat.
struct Targets {
    double parseNlohmann;
    double writeYajl;
};

const Targets targets[] = {{0.8, 1.5}, {1.0, 1.0 / 1.5}, {1.0, 1.0 / 1.5}};

void parseTov(benchmark::State& state, const std::string& text, Targets wanted)
{
    MemoryInputOutput input(text.data(), text.size());
    for (auto _ : state) {
        DynamicObject object;
        input.rewind();
        if (!deserializeDynamicObjectFromJson(object, input, nullptr)) {
            state.SkipWithError("the text is no JSON document");
            break;
        }
        benchmark::DoNotOptimize(object.getRoot());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
    state.counters["target:nlohmann"] = wanted.parseNlohmann;
    state.counters["target:yajl"] = 1.0 / 2.5;
}

void parseNlohmann(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(nlohmann::json::parse(text));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void parseRapidJson(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        rapidjson::Document document;
        document.Parse(text.data(), text.size());
        benchmark::DoNotOptimize(document.IsObject());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void parseBareYajl(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        yajl_handle parser = yajl_alloc(nullptr, nullptr, nullptr);
        yajl_parse(parser, reinterpret_cast<const unsigned char*>(text.data()), text.size());
        yajl_complete_parse(parser);
        yajl_free(parser);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

// The floor of the library's parse: yajl fed as deserializeJson feeds it, 256 bytes at a time, with
// callbacks that do nothing but make yajl convert every number and unescape every string, as the
// library's callbacks do. (Without callbacks, as above, yajl converts nothing.)
namespace emptyCallbacks {
int none(void*)
{
    return 1;
}
int boolean(void*, int)
{
    return 1;
}
int integer(void*, long long)
{
    return 1;
}
int real(void*, double)
{
    return 1;
}
int text(void*, const unsigned char*, std::size_t)
{
    return 1;
}
const yajl_callbacks all = {none, boolean, integer, real, nullptr, text, none, text, none, none, none};
} // namespace emptyCallbacks

void parseYajlInPieces(benchmark::State& state, const std::string& text)
{
    const std::size_t pieceSize = 256;
    char piece[pieceSize];
    for (auto _ : state) {
        yajl_handle parser = yajl_alloc(&emptyCallbacks::all, nullptr, nullptr);
        for (std::size_t at = 0; at < text.size(); at += pieceSize) {
            const std::size_t length = std::min(pieceSize, text.size() - at);
            std::copy_n(text.data() + at, length, piece);
            yajl_parse(parser, reinterpret_cast<const unsigned char*>(piece), length);
        }
        yajl_complete_parse(parser);
        yajl_free(parser);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void writeTov(benchmark::State& state, const std::string& text, Targets wanted)
{
    DynamicObject object;
    MemoryInputOutput input(text.data(), text.size());
    if (!deserializeDynamicObjectFromJson(object, input, nullptr)) {
        state.SkipWithError("the text is no JSON document");
        return;
    }
    for (auto _ : state) {
        MemoryInputOutput output;
        if (!serializeDynamicObjectToJson(object, output, nullptr)) {
            state.SkipWithError("the writer refused the object");
            break;
        }
        benchmark::DoNotOptimize(output.getText().size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
    state.counters["target:nlohmann"] = 1.0;
    state.counters["target:yajl"] = wanted.writeYajl;
}

void writeNlohmann(benchmark::State& state, const std::string& text)
{
    const nlohmann::json document = nlohmann::json::parse(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(document.dump().size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void writeRapidJson(benchmark::State& state, const std::string& text)
{
    rapidjson::Document document;
    document.Parse(text.data(), text.size());
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        document.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetSize());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void writeBareYajl(benchmark::State& state, const std::string& text)
{
    DynamicObject object;
    MemoryInputOutput input(text.data(), text.size());
    if (!deserializeDynamicObjectFromJson(object, input, nullptr)) {
        state.SkipWithError("the text is no JSON document");
        return;
    }
    EventRecorder recorder;
    serializeDynamicObject(object, recorder);
    for (auto _ : state) {
        std::string output;
        yajl_gen generator = yajl_gen_alloc(nullptr);
        yajl_gen_config(generator, yajl_gen_print_callback, &appendOutput, &output);
        feedGenerator(generator, recorder.events);
        yajl_gen_free(generator);
        benchmark::DoNotOptimize(output.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void registerAll()
{
    static std::vector<std::string> texts;
    for (const char* name : documents) {
        texts.push_back(readDocument(name));
        if (texts.back().empty()) {
            std::printf("skipping the JSON benchmarks: %s not found under %s/json\n", name, TOV_SHARED_DATA_DIR);
            texts.clear();
            return;
        }
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string parse = std::string("JSON parse ") + documents[i] + "|";
        const std::string write = std::string("JSON write ") + documents[i] + "|";
        const std::string& text = texts[i];
        benchmark::RegisterBenchmark((parse + "tov").c_str(), parseTov, text, targets[i]);
        benchmark::RegisterBenchmark((parse + "nlohmann").c_str(), parseNlohmann, text);
        benchmark::RegisterBenchmark((parse + "rapidjson").c_str(), parseRapidJson, text);
        benchmark::RegisterBenchmark((parse + "yajl").c_str(), parseBareYajl, text);
        benchmark::RegisterBenchmark((parse + "yajl with empty callbacks, 256-byte pieces").c_str(), parseYajlInPieces,
                                     text);
        benchmark::RegisterBenchmark((write + "tov").c_str(), writeTov, text, targets[i]);
        benchmark::RegisterBenchmark((write + "nlohmann").c_str(), writeNlohmann, text);
        benchmark::RegisterBenchmark((write + "rapidjson").c_str(), writeRapidJson, text);
        benchmark::RegisterBenchmark((write + "yajl").c_str(), writeBareYajl, text);
    }
}

} // namespace

int main(int argc, char** argv)
{
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
