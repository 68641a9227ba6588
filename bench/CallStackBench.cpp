// Capturing the present call stack, and writing it as text, against backtrace and backtrace_symbols of the C library. These
// know neither lines nor demangled names, which the text of the library has.

#include <TuvoUtil/CallStack.h>

#include <benchmark/benchmark.h>

#include <execinfo.h>

#include <cstdlib>
#include <string>

namespace {

constexpr int LargestDepth = 128;

int CaptureByProvider()
{
    int depth = -1;
    char** frames = nullptr;
    TuvoCallStackProvider(&depth, &frames);
    std::free(static_cast<void*>(frames));
    return depth;
}

// What has to be kept of a stack is kept, as the provider does.
int CaptureByBacktrace()
{
    void* addresses[LargestDepth];
    const int depth = backtrace(addresses, LargestDepth);
    void** const kept = static_cast<void**>(std::malloc(static_cast<std::size_t>(depth) * sizeof(void*)));
    for (int i = 0; i < depth; ++i)
        kept[i] = addresses[i];
    benchmark::DoNotOptimize(kept);
    std::free(static_cast<void*>(kept));
    return depth;
}

std::size_t TextByLibrary()
{
    std::string text;
    tuvo::utl::GetCallStack(text, 0);
    return text.size();
}

std::size_t TextBySymbols()
{
    void* addresses[LargestDepth];
    const int depth = backtrace(addresses, LargestDepth);
    char** const names = backtrace_symbols(addresses, depth);
    std::string text;
    for (int i = 0; i < depth; ++i)
        text.append(names[i]).append("\n");
    std::free(static_cast<void*>(names));
    return text.size();
}

// So many calls deeper.
template <typename Work>
[[gnu::noinline]] std::size_t Deeper(int calls, Work work)
{
    std::size_t result = calls == 0 ? static_cast<std::size_t>(work()) : Deeper(calls - 1, work);
    benchmark::DoNotOptimize(result);
    return result;
}

template <typename Work>
void Run(benchmark::State& state, Work work)
{
    if (Deeper(20, work) <= Deeper(0, work))
        state.SkipWithError("the deeper stack is not the larger one");
    for (auto _ : state)
        Deeper(10, work);
}

[[maybe_unused]] const bool g_registered = [] {
    benchmark::RegisterBenchmark("CallStack/capture/ours", [](auto& state) { Run(state, CaptureByProvider); });
    benchmark::RegisterBenchmark("CallStack/capture/backtrace", [](auto& state) { Run(state, CaptureByBacktrace); });
    benchmark::RegisterBenchmark("CallStack/text/ours", [](auto& state) { Run(state, TextByLibrary); });
    benchmark::RegisterBenchmark("CallStack/text/backtrace_symbols", [](auto& state) { Run(state, TextBySymbols); });
    return true;
}();

}  // namespace
