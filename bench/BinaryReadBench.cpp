// Arrays of int32 turned round in place against memcpy of as many bytes, and values read one by one, the bytes of each
// reversed, against plain fread.
#include <TuvoUtil/BinaryRead.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

// ---- Arrays --------------------------------------------------------------------------------------------------------

std::vector<int> Numbers(std::size_t count)
{
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 1'000'000);
    return numbers;
}

int Reversed(int value)
{
    std::array<char, sizeof value> bytes;
    std::memcpy(bytes.data(), &value, sizeof value);
    std::reverse(bytes.begin(), bytes.end());
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

void RunConvert(benchmark::State& state, std::size_t size)
{
    const std::vector<int> numbers = Numbers(size / sizeof(int));
    std::vector<int> turned = numbers;
    const int count = static_cast<int>(turned.size());
    UtlConvert4byteInt(turned.data(), count);
    if (!std::equal(turned.begin(), turned.end(), numbers.begin(), [](int l, int r) { return l == Reversed(r); }))
        state.SkipWithError("the bytes of a number are not reversed");
    for (auto _ : state) {
        UtlConvert4byteInt(turned.data(), count);
        benchmark::DoNotOptimize(turned.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void RunCopy(benchmark::State& state, std::size_t size)
{
    const std::vector<int> numbers = Numbers(size / sizeof(int));
    std::vector<int> copy(numbers.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), numbers.data(), size);
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    if (copy != numbers)
        state.SkipWithError("nothing was copied");
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

// ---- Values from a file --------------------------------------------------------------------------------------------

using ReadValue = int (*)(std::FILE* file);

int ReadOurs(std::FILE* file)
{
    return UtlRead4byteInt(file, 1);
}

int ReadPlain(std::FILE* file)
{
    unsigned value = 0;
    if (std::fread(&value, sizeof value, 1, file) != 1)
        return 0;
    return static_cast<int>(__builtin_bswap32(value));
}

void RunRead(benchmark::State& state, ReadValue read, std::size_t count)
{
    const std::vector<int> numbers = Numbers(count);
    std::FILE* const file = std::tmpfile();
    if (file == nullptr || std::fwrite(numbers.data(), sizeof(int), count, file) != count) {
        state.SkipWithError("no temporary file");
        return;
    }
    std::rewind(file);
    if (!std::all_of(numbers.begin(), numbers.end(), [&](int number) { return read(file) == Reversed(number); }))
        state.SkipWithError("not what the file holds");
    for (auto _ : state) {
        std::rewind(file);
        for (std::size_t i = 0; i < count; ++i)
            benchmark::DoNotOptimize(read(file));
    }
    std::fclose(file);
}

[[maybe_unused]] const bool g_registered = [] {
    for (const auto& [work, size] : {std::pair("BinaryRead/order of 32 KB", std::size_t{32} << 10),
                                     std::pair("BinaryRead/order of 64 MB", std::size_t{64} << 20)}) {
        benchmark::RegisterBenchmark((std::string(work) + "/ours").c_str(), RunConvert, size);
        benchmark::RegisterBenchmark((std::string(work) + "/memcpy").c_str(), RunCopy, size);
    }
    constexpr std::size_t values = 100'000;
    benchmark::RegisterBenchmark("BinaryRead/values one by one/ours", RunRead, ReadOurs, values);
    benchmark::RegisterBenchmark("BinaryRead/values one by one/fread", RunRead, ReadPlain, values);
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark(("BinaryRead/long files/" + std::to_string(times) + "x").c_str(), RunRead,
                                     ReadOurs, times * 20'000);
    return true;
}();

}  // namespace
