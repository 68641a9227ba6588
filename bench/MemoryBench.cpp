// Tracked allocation with the checker off, against the block heap called directly and against plain malloc.

#include "AllocationPatterns.h"

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Memory.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

struct Ours
{
    static void* Allocate(std::size_t size) { return VBuMalloc(size, "MemoryBench", 1, 0); }
    static void Free(void* block) { VBuFree(block, "MemoryBench", 1); }
};

struct Heap
{
    static void* Allocate(std::size_t size) { return VxMalloc(size); }
    static void Free(void* block) { VxFree(block); }
};

struct Plain
{
    static void* Allocate(std::size_t size) { return std::malloc(size); }
    static void Free(void* block) { std::free(block); }
};

// Elements appended one by one.
void Append(benchmark::State& state)
{
    for (auto _ : state) {
        int count = 0;
        void** array = nullptr;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            void* element = &array;
            VBuBlockAllocAndAppend(&count, &array, sizeof element, 1, &element, 0, "MemoryBench", 1);
        }
        benchmark::DoNotOptimize(array[count - 1]);
        VBU_FREE(array, "MemoryBench", 1);
    }
}
BENCHMARK(Append)->Name("Memory/append/1x")->Arg(1'000);
BENCHMARK(Append)->Name("Memory/append/10x")->Arg(10'000);
BENCHMARK(Append)->Name("Memory/append/100x")->Arg(100'000);

[[maybe_unused]] const bool g_registered = [] {
    InitVxHeap();
    using patterns::KeepsContent;
    if (!KeepsContent<Ours>() || !KeepsContent<Heap>() || !KeepsContent<Plain>())
        std::abort();
    patterns::Register<Ours>("Memory/", "ours");
    patterns::Register<Heap>("Memory/", "heap");
    patterns::Register<Plain>("Memory/", "plain");
    return true;
}();

}  // namespace
