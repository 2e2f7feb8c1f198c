// The string table against what a user would pick instead: a std::unordered_map from text to id, and
// MurmurHash64B against std::hash<std::string_view>. Names read "<comparison>|<side>"; the side "tov"
// is this library, its "target" counter the ratio (peer time / tov time) it must reach.
#include <tov/utils/StringTable.h>

#include "WordList.h"

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <unordered_map>

using tov::utils::StringTable;

namespace {

const std::vector<std::string>& words()
{
    static const std::vector<std::string> list = tov::bench::makeWords(10000);
    return list;
}

void addKnownTov(benchmark::State& state)
{
    StringTable table(100);
    for (const std::string& word : words()) {
        table.add(word.c_str(), nullptr);
    }
    for (auto _ : state) {
        for (const std::string& word : words()) {
            benchmark::DoNotOptimize(table.add(word.data(), static_cast<unsigned int>(word.size()), nullptr));
        }
    }
    state.SetItemsProcessed(state.iterations() * words().size());
    state.counters["target"] = 1.0;
}

void findKnownPeer(benchmark::State& state)
{
    std::unordered_map<std::string, unsigned long long> table;
    for (const std::string& word : words()) {
        table.emplace(word, table.size() + 1);
    }
    for (auto _ : state) {
        for (const std::string& word : words()) {
            benchmark::DoNotOptimize(table.find(word)->second);
        }
    }
    state.SetItemsProcessed(state.iterations() * words().size());
}

void addNewTov(benchmark::State& state)
{
    for (auto _ : state) {
        StringTable table(100);
        for (const std::string& word : words()) {
            benchmark::DoNotOptimize(table.add(word.data(), static_cast<unsigned int>(word.size()), nullptr));
        }
    }
    state.SetItemsProcessed(state.iterations() * words().size());
    state.counters["target"] = 1.0;
}

void emplaceNewPeer(benchmark::State& state)
{
    for (auto _ : state) {
        std::unordered_map<std::string, unsigned long long> table;
        for (const std::string& word : words()) {
            benchmark::DoNotOptimize(table.emplace(word, table.size() + 1));
        }
    }
    state.SetItemsProcessed(state.iterations() * words().size());
}

void retrieveTov(benchmark::State& state)
{
    StringTable table(100);
    std::vector<unsigned long long> hashes;
    for (const std::string& word : words()) {
        hashes.push_back(table.add(word.c_str(), nullptr));
    }
    for (auto _ : state) {
        for (unsigned long long hash : hashes) {
            benchmark::DoNotOptimize(table.retrieve(hash, nullptr));
        }
    }
    state.SetItemsProcessed(state.iterations() * hashes.size());
}

void retrievePeer(benchmark::State& state)
{
    // Keyed by the same 64-bit hashes as the table, so both look up the same scattered keys.
    std::unordered_map<unsigned long long, std::string> table;
    std::vector<unsigned long long> ids;
    for (const std::string& word : words()) {
        ids.push_back(StringTable::computeHash(word.data(), static_cast<unsigned int>(word.size()), 100));
        table.emplace(ids.back(), word);
    }
    for (auto _ : state) {
        for (unsigned long long id : ids) {
            benchmark::DoNotOptimize(table.find(id)->second.c_str());
        }
    }
    state.SetItemsProcessed(state.iterations() * ids.size());
}

std::string inputOfSize(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>('a' + (i * 7) % 26);
    }
    return text;
}

void murmurTov(benchmark::State& state)
{
    const std::string input = inputOfSize(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(StringTable::computeHash(input.data(), static_cast<unsigned int>(input.size()), 100));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(input.size()));
}

void stdHashPeer(benchmark::State& state)
{
    const std::string input = inputOfSize(static_cast<std::size_t>(state.range(0)));
    const std::hash<std::string_view> hasher;
    for (auto _ : state) {
        benchmark::DoNotOptimize(hasher(std::string_view(input)));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(input.size()));
}

} // namespace

BENCHMARK(addKnownTov)->Name("StringTable add known text, 10k words|tov");
BENCHMARK(findKnownPeer)->Name("StringTable add known text, 10k words|std::unordered_map find");
BENCHMARK(addNewTov)->Name("StringTable fill with 10k new words|tov");
BENCHMARK(emplaceNewPeer)->Name("StringTable fill with 10k new words|std::unordered_map emplace");
BENCHMARK(retrieveTov)->Name("StringTable retrieve by hash, 10k words|tov");
BENCHMARK(retrievePeer)->Name("StringTable retrieve by hash, 10k words|std::unordered_map<id,string> find");
BENCHMARK(murmurTov)->Name("MurmurHash64B 16 B|tov")->Arg(16);
BENCHMARK(stdHashPeer)->Name("MurmurHash64B 16 B|std::hash<string_view>")->Arg(16);
BENCHMARK(murmurTov)->Name("MurmurHash64B 256 B|tov")->Arg(256);
BENCHMARK(stdHashPeer)->Name("MurmurHash64B 256 B|std::hash<string_view>")->Arg(256);
BENCHMARK(murmurTov)->Name("MurmurHash64B 64 KiB|tov")->Arg(65536);
BENCHMARK(stdHashPeer)->Name("MurmurHash64B 64 KiB|std::hash<string_view>")->Arg(65536);

BENCHMARK_MAIN();
