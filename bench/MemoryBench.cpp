// Tracked allocation with the checker off, against the block heap called directly and against plain malloc.

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Memory.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

struct Ours
{
    static constexpr char Name[] = "ours";
    static void* Allocate(std::size_t size) { return VBuMalloc(size, "MemoryBench", 1, 0); }
    static void Free(void* block) { VBuFree(block, "MemoryBench", 1); }
};

struct Heap
{
    static constexpr char Name[] = "heap";
    static void* Allocate(std::size_t size) { return VxMalloc(size); }
    static void Free(void* block) { VxFree(block); }
};

struct Plain
{
    static constexpr char Name[] = "plain";
    static void* Allocate(std::size_t size) { return std::malloc(size); }
    static void Free(void* block) { std::free(block); }
};

constexpr std::size_t BatchSize = 1000;
constexpr std::size_t LiveBlocks = 60'000;

std::vector<std::size_t> RandomSizes(std::size_t count, std::size_t largest)
{
    std::mt19937 random(7);
    std::vector<std::size_t> sizes(count);
    std::generate(sizes.begin(), sizes.end(), [&] { return 1 + random() % largest; });
    return sizes;
}

// The order in which the blocks of a batch are freed.
std::vector<std::size_t> FirstInFirstOut()
{
    std::vector<std::size_t> order(BatchSize);
    std::iota(order.begin(), order.end(), std::size_t{0});
    return order;
}

std::vector<std::size_t> LastInFirstOut()
{
    std::vector<std::size_t> order = FirstInFirstOut();
    std::reverse(order.begin(), order.end());
    return order;
}

std::vector<std::size_t> Shuffled()
{
    std::vector<std::size_t> order = FirstInFirstOut();
    std::shuffle(order.begin(), order.end(), std::mt19937(11));
    return order;
}

// Whether blocks keep what is written into them while others come and go.
template <typename Allocator>
bool KeepsContent()
{
    const std::vector<std::size_t> sizes = RandomSizes(BatchSize, 128);
    std::vector<unsigned char*> blocks;
    for (const std::size_t size : sizes) {
        blocks.push_back(static_cast<unsigned char*>(Allocator::Allocate(size)));
        std::memset(blocks.back(), static_cast<int>(blocks.size() % 251), size);
    }
    bool isKept = true;
    for (const std::size_t i : Shuffled()) {
        isKept = isKept &&
                 std::count(blocks[i], blocks[i] + sizes[i], (i + 1) % 251) == static_cast<std::ptrdiff_t>(sizes[i]);
        Allocator::Free(blocks[i]);
    }
    return isKept;
}

template <typename Allocator>
void Pair(benchmark::State& state)
{
    for (auto _ : state) {
        void* block = Allocator::Allocate(32);
        benchmark::DoNotOptimize(block);
        Allocator::Free(block);
    }
}

template <typename Allocator>
void Batch(benchmark::State& state, const std::vector<std::size_t>& order)
{
    const std::vector<std::size_t> sizes = RandomSizes(BatchSize, 128);
    std::vector<void*> blocks(BatchSize);
    for (auto _ : state) {
        for (std::size_t i = 0; i < BatchSize; ++i)
            blocks[i] = Allocator::Allocate(sizes[i]);
        benchmark::ClobberMemory();
        for (const std::size_t i : order)
            Allocator::Free(blocks[i]);
    }
}

// One of many live blocks is replaced at random; sizes that the block heap has room for.
template <typename Allocator>
void Live(benchmark::State& state)
{
    const std::vector<std::size_t> sizes = RandomSizes(LiveBlocks, 64);
    std::vector<void*> blocks;
    for (const std::size_t size : sizes)
        blocks.push_back(Allocator::Allocate(size));
    std::mt19937 random(13);
    std::vector<std::uint32_t> picks(1 << 16);
    std::generate(picks.begin(), picks.end(), [&] { return static_cast<std::uint32_t>(random() % LiveBlocks); });
    std::size_t step = 0;
    for (auto _ : state) {
        const std::uint32_t pick = picks[step++ % picks.size()];
        Allocator::Free(blocks[pick]);
        blocks[pick] = Allocator::Allocate(sizes[(pick + step) % LiveBlocks]);
    }
    for (void* const block : blocks)
        Allocator::Free(block);
}

template <typename Allocator>
void Register()
{
    const auto name = [](const char* work) { return std::string("Memory/") + work + '/' + Allocator::Name; };
    benchmark::RegisterBenchmark(name("pair of 32 B").c_str(), Pair<Allocator>);
    benchmark::RegisterBenchmark(name("1000 LIFO").c_str(), Batch<Allocator>, LastInFirstOut());
    benchmark::RegisterBenchmark(name("1000 FIFO").c_str(), Batch<Allocator>, FirstInFirstOut());
    benchmark::RegisterBenchmark(name("1000 random").c_str(), Batch<Allocator>, Shuffled());
    benchmark::RegisterBenchmark(name("60000 live").c_str(), Live<Allocator>);
}

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
    if (!KeepsContent<Ours>() || !KeepsContent<Heap>() || !KeepsContent<Plain>())
        std::abort();
    Register<Ours>();
    Register<Heap>();
    Register<Plain>();
    return true;
}();

}  // namespace
