// Finding a debug parameter by name among few and many, against std::unordered_map, and what reading a file costs as it
// grows.

#include <TuvoUtil/DebugConfig.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr int ModuleCount = 10;

// The same parameters in modules and in a map, and their names in the order in which they are asked for.
struct Parameters
{
    explicit Parameters(int count)
    {
        for (int i = 0; i < count; ++i) {
            const BuString module = (L"Module" + std::to_wstring(i % ModuleCount)).c_str();
            const std::wstring name = L"TraceLevel" + std::to_wstring(i);
            modules.CheckAndAddParamWithValue(&module, name.c_str(), std::to_wstring(i).c_str());
            map.emplace(name, i);
            keys.push_back(name);
            names.emplace_back(name.c_str());
        }
        std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
        std::shuffle(names.begin(), names.end(), std::mt19937(1));
    }

    int Ours(std::size_t i)
    {
        int value = -1;
        modules.GetCustomConfigInfo(nullptr, names[i], &value, nullptr, nullptr);
        return value;
    }
    int Peer(std::size_t i) const { return map.find(keys[i])->second; }

    UtlParamInfo modules;
    std::unordered_map<std::wstring, int> map;
    std::vector<std::wstring> keys;
    std::vector<BuString> names;
};

template <typename Find>
void Time(benchmark::State& state, int count, Find find)
{
    Parameters parameters(count);
    for (std::size_t i = 0; i < parameters.keys.size(); ++i)
        if (parameters.Ours(i) != parameters.Peer(i))
            return state.SkipWithError("ours and the peer differ");
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(find(parameters, i));
        i = i + 1 < parameters.keys.size() ? i + 1 : 0;
    }
}

void Ours(benchmark::State& state, int count)
{
    Time(state, count, [](Parameters& parameters, std::size_t i) { return parameters.Ours(i); });
}

void Peer(benchmark::State& state, int count)
{
    Time(state, count, [](Parameters& parameters, std::size_t i) { return parameters.Peer(i); });
}

void Read(benchmark::State& state, int lines)
{
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "tuvo-bench.config";
    {
        std::ofstream file(path);
        for (int i = 0; i < lines; ++i)
            file << "TraceLevel" << i << " : " << i << '\n';
    }
    const BuString name = path.wstring().c_str();
    for (auto _ : state) {
        UtlParamInfo parameters;
        if (parameters.ReadParamsWithValues(L"M", name, 0, 0) != 0)
            return state.SkipWithError("the file is not read");
    }
    std::filesystem::remove(path);
}

BENCHMARK_CAPTURE(Ours, 10, 10)->Name("DebugConfig/find among 10/ours");
BENCHMARK_CAPTURE(Peer, 10, 10)->Name("DebugConfig/find among 10/unordered_map");
BENCHMARK_CAPTURE(Ours, 1000, 1000)->Name("DebugConfig/find among 1000/ours");
BENCHMARK_CAPTURE(Peer, 1000, 1000)->Name("DebugConfig/find among 1000/unordered_map");
BENCHMARK_CAPTURE(Ours, 10000, 10'000)->Name("DebugConfig/find among 10000/ours");
BENCHMARK_CAPTURE(Peer, 10000, 10'000)->Name("DebugConfig/find among 10000/unordered_map");
BENCHMARK_CAPTURE(Ours, 1x, 10)->Name("DebugConfig/find/1x");
BENCHMARK_CAPTURE(Ours, 10x, 1000)->Name("DebugConfig/find/10x");
BENCHMARK_CAPTURE(Ours, 100x, 10'000)->Name("DebugConfig/find/100x");
BENCHMARK_CAPTURE(Read, 1x, 100)->Name("DebugConfig/read/1x");
BENCHMARK_CAPTURE(Read, 10x, 1000)->Name("DebugConfig/read/10x");
BENCHMARK_CAPTURE(Read, 100x, 10'000)->Name("DebugConfig/read/100x");

}  // namespace
