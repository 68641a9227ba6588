// The patterns of allocation that are measured, for any allocator with Allocate(size) and Free(block). One that has to be
// made ready has Begin() as well.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace patterns {

inline constexpr std::size_t BatchSize = 1000;
inline constexpr std::size_t LiveBlocks = 60'000;

inline std::vector<std::size_t> RandomSizes(std::size_t count, std::size_t largest)
{
    std::mt19937 random(7);
    std::vector<std::size_t> sizes(count);
    std::generate(sizes.begin(), sizes.end(), [&] { return 1 + random() % largest; });
    return sizes;
}

// The order in which the blocks of a batch are freed.
inline std::vector<std::size_t> FirstInFirstOut()
{
    std::vector<std::size_t> order(BatchSize);
    std::iota(order.begin(), order.end(), std::size_t{0});
    return order;
}

inline std::vector<std::size_t> LastInFirstOut()
{
    std::vector<std::size_t> order = FirstInFirstOut();
    std::reverse(order.begin(), order.end());
    return order;
}

inline std::vector<std::size_t> Shuffled()
{
    std::vector<std::size_t> order = FirstInFirstOut();
    std::shuffle(order.begin(), order.end(), std::mt19937(11));
    return order;
}

template <typename Allocator>
void Begin()
{
    if constexpr (requires { Allocator::Begin(); })
        Allocator::Begin();
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
    Begin<Allocator>();
    for (auto _ : state) {
        void* block = Allocator::Allocate(32);
        benchmark::DoNotOptimize(block);
        Allocator::Free(block);
    }
}

template <typename Allocator>
void Batch(benchmark::State& state, const std::vector<std::size_t>& order)
{
    Begin<Allocator>();
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
    Begin<Allocator>();
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

// A name is the prefix, the work, a slash, and who does it.
template <typename Allocator>
void Register(const std::string& prefix, const std::string& who)
{
    const auto name = [&](const char* work) { return prefix + work + '/' + who; };
    benchmark::RegisterBenchmark(name("pair of 32 B").c_str(), Pair<Allocator>);
    benchmark::RegisterBenchmark(name("1000 LIFO").c_str(), Batch<Allocator>, LastInFirstOut());
    benchmark::RegisterBenchmark(name("1000 FIFO").c_str(), Batch<Allocator>, FirstInFirstOut());
    benchmark::RegisterBenchmark(name("1000 random").c_str(), Batch<Allocator>, Shuffled());
    benchmark::RegisterBenchmark(name("60000 live").c_str(), Live<Allocator>);
}

}  // namespace patterns
