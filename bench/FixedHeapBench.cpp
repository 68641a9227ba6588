// The block heap against the allocators that are used where malloc is too slow, in the patterns that small objects make.
#include <TuvoUtil/FixedHeap.h>

#include <benchmark/benchmark.h>

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

struct Allocator
{
    const char* name;
    void* (*allocate)(std::size_t size);
    void (*release)(void* block);
};

// A peer with its own symbols, so that it does not replace malloc for everybody.
void AddPeer(std::vector<Allocator>& allocators, const char* name, const char* library, const char* prefix)
{
    void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
    void* const allocate = handle != nullptr ? dlsym(handle, (std::string(prefix) + "malloc").c_str()) : nullptr;
    void* const release = handle != nullptr ? dlsym(handle, (std::string(prefix) + "free").c_str()) : nullptr;
    if (allocate == nullptr || release == nullptr) {
        std::fprintf(stderr, "FixedHeapBench: peer %s skipped: %s\n", name, dlerror());
        return;
    }
    allocators.push_back(
        {name, reinterpret_cast<void* (*)(std::size_t)>(allocate), reinterpret_cast<void (*)(void*)>(release)});
}

std::vector<Allocator> Allocators()
{
    std::vector<Allocator> allocators = {{"ours", VxMalloc, VxFree}, {"glibc", std::malloc, std::free}};
    AddPeer(allocators, "mimalloc", "libmimalloc.so.2", "mi_");
    AddPeer(allocators, "jemalloc", "libjemalloc.so.2", "");
    AddPeer(allocators, "tcmalloc", "libtcmalloc_minimal.so.4", "tc_");
    return allocators;
}

constexpr std::size_t BatchSize = 1000;
constexpr std::size_t LiveBlocks = 60'000;

std::mt19937 Generator()
{
    return std::mt19937(12345);
}

// The lists of what to do are kept small, so that the caches are left to the blocks.
using Numbers = std::vector<std::uint16_t>;

// Sizes of 1 to 128 bytes, as many for each size class of the block heap, which no class runs out of then.
Numbers MixedSizes(std::size_t count)
{
    static constexpr unsigned int classes[] = {0, 8, 16, 32, 40, 48, 64, 96, 128};
    std::mt19937 generator = Generator();
    Numbers sizes(count);
    for (std::uint16_t& size : sizes) {
        const unsigned int* const below = classes + generator() % 8;
        size = static_cast<std::uint16_t>(below[0] + 1 + generator() % (below[1] - below[0]));
    }
    return sizes;
}

Numbers RandomPlaces(std::size_t count)
{
    std::mt19937 generator = Generator();
    Numbers places(count);
    for (std::uint16_t& place : places)
        place = static_cast<std::uint16_t>(generator() % LiveBlocks);
    return places;
}

// Blocks that are live together neither overlap nor lose their content.
void CheckContents(const Allocator& allocator)
{
    const auto sizes = MixedSizes(LiveBlocks);
    std::vector<unsigned char*> blocks;
    for (std::size_t i = 0; i < LiveBlocks; ++i) {
        blocks.push_back(static_cast<unsigned char*>(allocator.allocate(sizes[i])));
        std::memset(blocks[i], static_cast<int>(i % 251), sizes[i]);
    }
    for (std::size_t i = 0; i < LiveBlocks; ++i) {
        for (std::size_t at = 0; at < sizes[i]; ++at)
            if (blocks[i][at] != i % 251) {
                std::fprintf(stderr, "FixedHeapBench: %s hands out blocks that overlap\n", allocator.name);
                std::exit(1);
            }
        allocator.release(blocks[i]);
    }
}

void* Touched(void* block)
{
    *static_cast<char*>(block) = 1;
    return block;
}

void Pair(benchmark::State& state, Allocator allocator)
{
    for (auto _ : state)
        allocator.release(Touched(allocator.allocate(32)));
}

enum class Order
{
    Lifo,
    Fifo,
    Random
};

Numbers OrderOfRelease(Order order)
{
    Numbers indices(BatchSize);
    std::iota(indices.begin(), indices.end(), std::uint16_t{0});
    if (order == Order::Lifo)
        std::reverse(indices.begin(), indices.end());
    if (order == Order::Random)
        std::shuffle(indices.begin(), indices.end(), Generator());
    return indices;
}

// Takes 1000 blocks of mixed sizes and releases them in an order.
void Batch(benchmark::State& state, Allocator allocator, Order order)
{
    const auto sizes = MixedSizes(BatchSize);
    const auto release = OrderOfRelease(order);
    void* blocks[BatchSize];
    for (auto _ : state) {
        for (std::size_t i = 0; i < BatchSize; ++i)
            blocks[i] = Touched(allocator.allocate(sizes[i]));
        for (const std::uint16_t i : release)
            allocator.release(blocks[i]);
    }
}

// Replaces one of 60 000 live blocks of mixed sizes, chosen at random, 10 000 times.
void Live(benchmark::State& state, Allocator allocator)
{
    const auto sizes = MixedSizes(LiveBlocks);
    const auto places = RandomPlaces(LiveBlocks);
    std::vector<void*> blocks(LiveBlocks);
    for (std::size_t i = 0; i < LiveBlocks; ++i)
        blocks[i] = Touched(allocator.allocate(sizes[i]));
    std::size_t first = 0;
    for (auto _ : state) {
        for (std::size_t i = first; i < first + 10'000; ++i) {
            void*& block = blocks[places[i]];
            allocator.release(block);
            block = Touched(allocator.allocate(sizes[i]));
        }
        first = (first + 10'000) % LiveBlocks;
    }
    for (void* const block : blocks)
        allocator.release(block);
}

// A pool that grows to thousands of blocks and shrinks to nothing.
void GrowAndShrink(benchmark::State& state, std::size_t count)
{
    std::vector<void*> blocks(count);
    for (auto _ : state) {
        VFixedHeap pool(25, 16, 0, nullptr);
        for (void*& block : blocks)
            block = Touched(pool.Allocate());
        for (void* const block : blocks)
            pool.Free(block);
    }
}

constexpr char TimeOneInit[] = "--time-one-init";

int PrintTimeOfInit()
{
    const auto start = std::chrono::steady_clock::now();
    InitVxHeap();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return std::printf("%.9f\n", time.count()) > 0 && IsVxHeapEnabled() ? 0 : 1;
}

// Switching the heap on works once in a process, so each sample is one.
void Init(benchmark::State& state, const std::string& command)
{
    for (auto _ : state) {
        double seconds = 0;
        std::FILE* const child = popen(command.c_str(), "r");
        if (child == nullptr || std::fscanf(child, "%lf", &seconds) != 1)
            state.SkipWithError("cannot start a process of its own");
        if (child != nullptr)
            pclose(child);
        state.SetIterationTime(seconds);
    }
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount > 1 && std::strcmp(arguments[1], TimeOneInit) == 0)
        return PrintTimeOfInit();

    if (std::getenv("GLIBC_TUNABLES") == nullptr) {
        // jemalloc keeps more in thread-local storage than a library loaded late gets by default.
        setenv("GLIBC_TUNABLES", "glibc.rtld.optional_static_tls=8192", 1);
        execv("/proc/self/exe", arguments);
    }
    mallopt(M_TRIM_THRESHOLD, 1 << 30);  // what the process heap does with freed memory is not measured here
    InitVxHeap();
    for (const Allocator& allocator : Allocators()) {
        CheckContents(allocator);
        const auto add = [&](const char* work, auto... pattern) {
            benchmark::RegisterBenchmark(("FixedHeap/" + std::string(work) + '/' + allocator.name).c_str(), pattern...);
        };
        add("pair of 32 bytes", Pair, allocator);
        add("1000 mixed LIFO", Batch, allocator, Order::Lifo);
        add("1000 mixed FIFO", Batch, allocator, Order::Fifo);
        add("1000 mixed random", Batch, allocator, Order::Random);
        add("60000 live random", Live, allocator);
    }
    benchmark::RegisterBenchmark("FixedHeap/grow and shrink/1x", GrowAndShrink, 250);
    benchmark::RegisterBenchmark("FixedHeap/grow and shrink/10x", GrowAndShrink, 2'500);
    benchmark::RegisterBenchmark("FixedHeap/grow and shrink/100x", GrowAndShrink, 25'000);
    benchmark::RegisterBenchmark("FixedHeap/InitVxHeap/ours", Init, std::string(arguments[0]) + ' ' + TimeOneInit)
        ->UseManualTime()
        ->Iterations(30);

    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
