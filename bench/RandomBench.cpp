// Random streams against the standard library's engines, which a user would pick instead: raw words per
// draw, bounded draws against std::uniform_int_distribution, and the cost of moving a stream by whole
// rounds of its state, backwards against forwards.
// Names read "<comparison>|<side>"; the side "tov" is this library, and a "target" counter on it is the
// ratio (peer cost / tov cost) that the comparison must reach.
#include <tov/utils/Random.h>
#include <tov/utils/impl/RandomEngine.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>

using namespace tov::utils;

namespace {

using Sfmt32 = impl::RandomEngine<impl::SFMT19937<impl::Random_u32>, impl::MixerSFMT>;
using Sfmt64 = impl::RandomEngine<impl::SFMT19937<impl::Random_u64>, impl::MixerSFMT>;
using Mt32 = impl::RandomEngine<impl::MT19937<impl::Random_u32>, impl::MixerMT0<impl::Random_u32>>;
using Mt64 = impl::RandomEngine<impl::MT19937<impl::Random_u64>, impl::MixerMT0<impl::Random_u64>>;

// Words per iteration: enough to pass several state rounds, so regeneration is in every figure.
const int batch = 4096;

template <class Generator>
void drawWords(benchmark::State& state, Generator& generator)
{
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (int i = 0; i < batch; ++i) {
            sum += generator();
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

void drawRandom(benchmark::State& state)
{
    Random random(5489);
    drawWords(state, random);
    state.counters["target"] = 1.3;
}

template <class Engine>
void drawEngine(benchmark::State& state)
{
    Engine engine(5489u);
    drawWords(state, engine);
}

template <class Engine>
void drawStandard(benchmark::State& state)
{
    Engine engine;
    drawWords(state, engine);
}

const unsigned int bounds[] = {6, 1000, 0x80000001u};

void boundedRandom(benchmark::State& state)
{
    const unsigned int n = bounds[state.range(0)];
    Random random(5489);
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (int i = 0; i < batch; ++i) {
            sum += random(n);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

void boundedStandard(benchmark::State& state)
{
    const unsigned int n = bounds[state.range(0)];
    std::mt19937 engine;
    std::uniform_int_distribution<unsigned int> distribution(0, n);
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (int i = 0; i < batch; ++i) {
            sum += distribution(engine);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

// Each iteration moves the count by this many rounds; the figure per iteration divides by it alike on
// both sides, so the ratio is that of one round.
const std::int64_t roundsPerMove = 64;

template <class Engine>
void moveForwards(benchmark::State& state)
{
    Engine engine(1u);
    engine.SetCount(0);
    for (auto _ : state) {
        engine.StepCount(roundsPerMove * Engine::N);
    }
    state.SetItemsProcessed(state.iterations() * roundsPerMove);
}

template <class Engine>
void moveBackwards(benchmark::State& state)
{
    Engine engine(1u);
    engine.SetCount(0);
    for (auto _ : state) {
        engine.StepCount(-roundsPerMove * static_cast<std::int64_t>(Engine::N));
    }
    state.SetItemsProcessed(state.iterations() * roundsPerMove);
    // Backwards may cost up to 3 times forwards: peer (forwards) / tov (backwards) >= 1/3.
    state.counters["target"] = 1.0 / 3.0;
}

} // namespace

BENCHMARK(drawRandom)->Name("Random() per 32-bit word|tov");
BENCHMARK(drawStandard<std::mt19937>)->Name("Random() per 32-bit word|std::mt19937");
BENCHMARK(drawEngine<Sfmt32>)->Name("SFMT 32-bit engine per word, inlined|tov");
BENCHMARK(drawStandard<std::mt19937>)->Name("SFMT 32-bit engine per word, inlined|std::mt19937");
BENCHMARK(drawEngine<Mt32>)->Name("MT 32-bit engine per word|tov");
BENCHMARK(drawStandard<std::mt19937>)->Name("MT 32-bit engine per word|std::mt19937");
BENCHMARK(drawEngine<Sfmt64>)->Name("SFMT 64-bit engine per word|tov");
BENCHMARK(drawStandard<std::mt19937_64>)->Name("SFMT 64-bit engine per word|std::mt19937_64");
BENCHMARK(drawEngine<Mt64>)->Name("MT 64-bit engine per word|tov");
BENCHMARK(drawStandard<std::mt19937_64>)->Name("MT 64-bit engine per word|std::mt19937_64");
BENCHMARK(boundedRandom)->Name("Random(6)|tov")->Arg(0);
BENCHMARK(boundedStandard)->Name("Random(6)|uniform_int_distribution+mt19937")->Arg(0);
BENCHMARK(boundedRandom)->Name("Random(1000)|tov")->Arg(1);
BENCHMARK(boundedStandard)->Name("Random(1000)|uniform_int_distribution+mt19937")->Arg(1);
BENCHMARK(boundedRandom)->Name("Random(2^31+1), half the words drawn again|tov")->Arg(2);
BENCHMARK(boundedStandard)->Name("Random(2^31+1), half the words drawn again|uniform_int_distribution+mt19937")->Arg(2);
BENCHMARK(moveBackwards<Sfmt32>)->Name("SetCount per round of 624 words, SFMT backwards vs forwards|tov");
BENCHMARK(moveForwards<Sfmt32>)->Name("SetCount per round of 624 words, SFMT backwards vs forwards|forwards");
BENCHMARK(moveBackwards<Mt32>)->Name("SetCount per round of 624 words, MT backwards vs forwards|tov");
BENCHMARK(moveForwards<Mt32>)->Name("SetCount per round of 624 words, MT backwards vs forwards|forwards");

BENCHMARK_MAIN();
