// The sections of an analysis, timed by a clock of the example's own so that every run is the same.
#include <TuvoUtil/Benchmark.h>
#include <basutl/BuChrono.h>
#include <basutl/BuLogger.h>

#include <cstdio>

using namespace tuvo::benchmark;

namespace {

long long g_ticks = 0;

void Work(double seconds)
{
    g_ticks += static_cast<long long>(seconds * 1e9);
}

void Run(const wchar_t* name, double seconds)
{
    const Benchmark section(name, BENCH_LEVEL_0);
    Work(seconds);
}

void Solve()
{
    Benchmark section(L"solve", BENCH_LEVEL_0);
    for (int increment = 1; increment <= 2; ++increment) {
        Run(L"assemble", 1.25);
        Run(L"factor", 1.0 + increment);
        Work(0.75);
        section.RecordElapsedTime(L"increment %d", increment);
    }
    Work(0.75);
}

}  // namespace

int main()
{
    BuSetTickSource([] { return g_ticks; });
    BuLogger::GetInstance().SetSink(
        [](int, const wchar_t* text, void*) { std::fputs(BuString(text).ToNarrow().c_str(), stdout); }, nullptr);

    const Benchmark first(L"program", BENCH_LEVEL_0);  // the first section of a process is never timed
    const Benchmark analysis(L"analysis", BENCH_LEVEL_0);
    Run(L"read deck", 1.5);
    Solve();
    Run(L"write results", 0.75);
    Work(0.5);
}
