// A report to listeners against calling them directly.

#include <TuvoUtil/Progress.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

class Counter : public ProgressListener
{
public:
    int OnProgress(const double& progress, const BuString&, double& value, int& flag) override
    {
        value += progress;
        return ++flag;
    }
};

struct Report
{
    double progress = 1.0;
    BuString message = L"meshing";
    double value = 0.0;
    int flag = 0;
};

// As many listeners as there are pointers; each is registered as often as its pointer stands there.
using Listeners = std::vector<ProgressListener*>;

void ByManager(const Listeners&, Report& report)
{
    ProgressManager::InvokeListeners(report.progress, report.message, report.value, report.flag);
}

void Direct(const Listeners& listeners, Report& report)
{
    for (ProgressListener* const listener : listeners)
        listener->OnProgress(report.progress, report.message, report.value, report.flag);
}

void Run(benchmark::State& state, void (*work)(const Listeners&, Report&), std::size_t count)
{
    Counter counter;
    const Listeners listeners(count, &counter);
    for (ProgressListener* const listener : listeners)
        ProgressManager::AddListener(listener);
    Report ours, direct;
    ByManager(listeners, ours);
    Direct(listeners, direct);
    if (ours.value != direct.value || ours.flag != static_cast<int>(count))
        state.SkipWithError("not every listener was called");
    Report report;
    for (auto _ : state) {
        work(listeners, report);
        benchmark::DoNotOptimize(report);
    }
    for (ProgressListener* const listener : listeners)
        ProgressManager::RemoveListener(listener);
}

[[maybe_unused]] const bool g_registered = [] {
    for (const std::size_t count : {std::size_t{1}, std::size_t{10}}) {
        const std::string work = "Progress/" + std::to_string(count) + (count == 1 ? " listener/" : " listeners/");
        benchmark::RegisterBenchmark((work + "ours").c_str(), Run, ByManager, count);
        benchmark::RegisterBenchmark((work + "virtual-call").c_str(), Run, Direct, count);
    }
    for (const std::size_t times : {std::size_t{1}, std::size_t{10}, std::size_t{100}})
        benchmark::RegisterBenchmark(("Progress/listeners/" + std::to_string(times) + 'x').c_str(), Run, ByManager,
                                     times * 10);
    return true;
}();

}  // namespace
