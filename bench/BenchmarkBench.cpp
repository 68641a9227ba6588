// Opening and closing a section against two readings of the clock, sections that are not timed, counting a call, and how
// reports grow.
#include <TuvoUtil/Benchmark.h>
#include <basutl/BuChrono.h>
#include <basutl/BuLogger.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

using namespace tuvo::benchmark;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr _Level Timed = BENCH_LEVEL_0;
constexpr _Level Untimed = BENCH_LEVEL_1;

// The tree of sections, as a derived class sees it.
struct Tree : Benchmark
{
    static int Sections() { return m_tiRoot.GetChildCount(); }
    static void Clear()
    {
        BuObjectArrayTempl<BuString> names;
        BuArrayTempl<float> times;
        BuArrayTempl<unsigned long long> counts;
        DumpChronoItemChildren(m_tiRoot, L"", names, times, counts);
    }
};

long long g_lines = 0;

[[maybe_unused]] const bool g_isSet = [] {
    for (const char* const variable : {"QD_BENCH_LEVEL", "QD_BENCH_TRACE"})
        unsetenv(variable);
    setenv("QD_BENCH_THRESHOLD_SEC", "1000", 1);
    BuLogger::GetInstance().SetSink([](int, const wchar_t*, void*) { ++g_lines; }, nullptr);
    const Benchmark first(L"first", Timed);
    return true;
}();

// Sections wait for a report until there are `Waiting` of them, as in a program that reports now and then. They are freed
// between the measurements.
void Section(benchmark::State& state)
{
    constexpr int Waiting = 100;
    while (state.KeepRunningBatch(Waiting)) {
        const Clock::time_point start = Clock::now();
        for (int i = 0; i < Waiting; ++i) {
            const Benchmark section(L"assemble stiffness", Timed);
            benchmark::ClobberMemory();
        }
        state.SetIterationTime(Seconds(Clock::now() - start).count());
        if (Tree::Sections() != Waiting)
            state.SkipWithError("sections were not timed");
        Tree::Clear();
    }
}
BENCHMARK(Section)->Name("Benchmark/section/ours")->UseManualTime();

void TwoReadings(benchmark::State& state)
{
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        benchmark::ClobberMemory();
        benchmark::DoNotOptimize(Clock::now() - start);
    }
}
BENCHMARK(TwoReadings)->Name("Benchmark/section/steady_clock");

void UntimedSection(benchmark::State& state)
{
    for (auto _ : state) {
        const Benchmark section(L"assemble stiffness", Untimed);
        benchmark::ClobberMemory();
    }
    if (Tree::Sections() != 0)
        state.SkipWithError("sections were timed");
}
BENCHMARK(UntimedSection)->Name("Benchmark/untimed/ours");

void Counting(benchmark::State& state)
{
    Counter counter(L"assemble stiffness", Timed);
    if (counter.IncrementCount(1) != 1)
        state.SkipWithError("calls are not counted");
    for (auto _ : state)
        benchmark::DoNotOptimize(counter.IncrementCount(1'000'000));
}
BENCHMARK(Counting)->Name("Benchmark/count/ours");

// The report of a section that holds more and more others, each with a name of its own.
void Reports(benchmark::State& state, int sections)
{
    static long long ticks = 0;
    BuSetTickSource([] { return ticks += 2'000'000'000'000; });
    g_lines = 0;
    for (auto _ : state) {
        auto outer = std::make_unique<Benchmark>(L"analysis", Timed);
        for (int i = 0; i < sections; ++i)
            const Benchmark section(std::to_wstring(i).c_str(), Timed);
        const Clock::time_point start = Clock::now();
        outer.reset();
        state.SetIterationTime(Seconds(Clock::now() - start).count());
    }
    BuSetTickSource(nullptr);
    if (g_lines != (7LL + 2 * sections) * static_cast<long long>(state.iterations()))
        state.SkipWithError("not one line for each section in history and summary");
}
BENCHMARK_CAPTURE(Reports, , 1'000)->Name("Benchmark/report/1x")->UseManualTime();
BENCHMARK_CAPTURE(Reports, , 10'000)->Name("Benchmark/report/10x")->UseManualTime();
BENCHMARK_CAPTURE(Reports, , 100'000)->Name("Benchmark/report/100x")->UseManualTime();

}  // namespace
