// Reading id lists and dropping their duplicates against the same with abseil's flat_hash_set, printing them against
// fmt::format_int, and the growth of both up to ten million ids.
#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <absl/container/flat_hash_set.h>
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <charconv>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Ids = std::vector<int>;

constexpr int Million = 1'000'000;

// ---- The texts -----------------------------------------------------------------------------------------------------

// Ranges of a hundred ids in any order; every tenth reaches into its neighbour.
std::string Ranges(int count)
{
    std::mt19937 random(1);
    Ids starts(static_cast<std::size_t>(count / 100));
    for (std::size_t i = 0; i < starts.size(); ++i)
        starts[i] = static_cast<int>(i) * 100 + 1;
    std::shuffle(starts.begin(), starts.end(), random);
    std::string text;
    for (const int start : starts)
        text += std::to_string(start) + '-' + std::to_string(start + (start % 1000 == 1 ? 150 : 99)) + ',';
    return text;
}

// The ids 1 to `count` in any order, each tenth one twice.
Ids DenseIds(int count)
{
    std::mt19937 random(2);
    Ids ids(static_cast<std::size_t>(count));
    std::iota(ids.begin(), ids.end(), 1);
    for (std::size_t i = 0; i < ids.size(); i += 10)
        ids[i] = static_cast<int>(random() % static_cast<unsigned>(count)) + 1;
    std::shuffle(ids.begin(), ids.end(), random);
    return ids;
}

// Ids of up to nine digits, each tenth one twice.
Ids SparseIds(int count)
{
    std::mt19937 random(3);
    Ids ids(static_cast<std::size_t>(count));
    for (int& id : ids)
        id = static_cast<int>(random() % 999'999'999) + 1;
    for (std::size_t i = 10; i < ids.size(); i += 10)
        ids[i] = ids[random() % i];
    return ids;
}

std::string TextOf(const Ids& ids)
{
    std::string text;
    for (const int id : ids)
        text += std::to_string(id) + ',';
    return text;
}

std::string Dense(int count)
{
    return TextOf(DenseIds(count));
}

std::string Sparse(int count)
{
    return TextOf(SparseIds(count));
}

// ---- Reading -------------------------------------------------------------------------------------------------------

// A parser of items divided by commas and its set of ids seen.
Ids ReadWithAbseil(const std::string& text)
{
    Ids ids;
    absl::flat_hash_set<int> seen;
    const char* const last = text.data() + text.size();
    for (const char* next = text.data(); next != last; ++next) {
        int lower = 0;
        next = std::from_chars(next, last, lower).ptr;
        int upper = lower;
        if (*next == '-')
            next = std::from_chars(next + 1, last, upper).ptr;
        for (int id = lower; id <= upper; ++id)
            if (seen.insert(id).second)
                ids.push_back(id);
    }
    return ids;
}

int ReadOurs(const std::string& text, int** ids)
{
    return UtlGenerateIdListFromString(text.c_str(), ids, 0);
}

void StrictOurs(benchmark::State& state, std::string (*makeText)(int count))
{
    const std::string text = makeText(Million);
    const Ids expected = ReadWithAbseil(text);
    int* ids = nullptr;
    const int count = ReadOurs(text, &ids);
    if (Ids(ids, ids + count) != expected)
        state.SkipWithError("not what the peer reads");
    VBuFree(ids, "bench", __LINE__);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ReadOurs(text, &ids));
        VBuFree(ids, "bench", __LINE__);
    }
}

void StrictAbseil(benchmark::State& state, std::string (*makeText)(int count))
{
    const std::string text = makeText(Million);
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadWithAbseil(text));
}

// ---- Printing ------------------------------------------------------------------------------------------------------

std::string PrintWithFmt(const Ids& ids)
{
    std::string text;
    for (const int id : ids) {
        if (!text.empty())
            text += ',';
        const fmt::format_int digits(id);
        text.append(digits.data(), digits.size());
    }
    return text;
}

void PrintOurs(benchmark::State& state, Ids (*makeIds)(int count))
{
    Ids ids = makeIds(Million);
    const auto print = [&] { return UtlGenerateStringFromIdList(ids.data(), Million, nullptr); };
    char* text = print();
    if (PrintWithFmt(ids) != text)
        state.SkipWithError("not what the peer prints");
    VBuFree(text, "bench", __LINE__);
    for (auto _ : state) {
        benchmark::DoNotOptimize(text = print());
        VBuFree(text, "bench", __LINE__);
    }
}

void PrintFmt(benchmark::State& state, Ids (*makeIds)(int count))
{
    const Ids ids = makeIds(Million);
    for (auto _ : state)
        benchmark::DoNotOptimize(PrintWithFmt(ids));
}

// ---- Growth --------------------------------------------------------------------------------------------------------

void GrowStrict(benchmark::State& state, std::string (*makeText)(int count), int size)
{
    const std::string text = makeText(size);
    for (auto _ : state) {
        int* ids = nullptr;
        benchmark::DoNotOptimize(ReadOurs(text, &ids));
        VBuFree(ids, "bench", __LINE__);
    }
}

void GrowLenient(benchmark::State& state, std::string (*makeText)(int count), int size)
{
    const std::string text = makeText(size);
    for (auto _ : state) {
        int* ids = nullptr;
        benchmark::DoNotOptimize(UtlGetIdListFromGivenSet(text.c_str(), &ids, ",", "-"));
        VBuFree(ids, "bench", __LINE__);
    }
}

void GrowCompact(benchmark::State& state, std::string (*makeText)(int count), int size)
{
    int* ids = nullptr;
    const int count = UtlGetIdListFromGivenSet(makeText(size).c_str(), &ids, ",", "-");
    for (auto _ : state) {
        char* text = UtlStrGenerateIdStringSafe(ids, count, nullptr);
        benchmark::DoNotOptimize(text);
        VBuFree(text, "bench", __LINE__);
    }
    VBuFree(ids, "bench", __LINE__);
}

void GrowFloats(benchmark::State& state, std::string (*makeText)(int count), int size)
{
    const std::string text = makeText(size);
    for (auto _ : state) {
        float* values = nullptr;
        const int count = UtlGetFloatListFromString(text.c_str(), &values, nullptr);
        char* printed = UtlGenerateStringFromFloatList(values, count, nullptr);
        benchmark::DoNotOptimize(printed);
        VBuFree(values, "bench", __LINE__);
        VBuFree(printed, "bench", __LINE__);
    }
}

using Growth = void (*)(benchmark::State& state, std::string (*makeText)(int count), int size);

void AddGrowth(const std::string& work, Growth growth, std::string (*makeText)(int count))
{
    for (const int times : {1, 10, 100})
        benchmark::RegisterBenchmark(("IdList/" + work + '/' + std::to_string(times) + 'x').c_str(), growth, makeText,
                                     times * (Million / 10));
}

void AddReading(const std::string& work, std::string (*makeText)(int count))
{
    benchmark::RegisterBenchmark(("IdList/" + work + "/ours").c_str(), StrictOurs, makeText);
    benchmark::RegisterBenchmark(("IdList/" + work + "/abseil").c_str(), StrictAbseil, makeText);
}

void AddPrinting(const std::string& work, Ids (*makeIds)(int count))
{
    benchmark::RegisterBenchmark(("IdList/" + work + "/ours").c_str(), PrintOurs, makeIds);
    benchmark::RegisterBenchmark(("IdList/" + work + "/fmt").c_str(), PrintFmt, makeIds);
}

[[maybe_unused]] const bool g_registered = [] {
    // How the process heap gives memory back to the system is not measured here.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    AddReading("ranges", Ranges);
    AddReading("dense singles", Dense);
    AddReading("sparse singles", Sparse);
    AddPrinting("print dense", DenseIds);
    AddPrinting("print sparse", SparseIds);
    AddGrowth("strict ranges", GrowStrict, Ranges);
    AddGrowth("strict dense", GrowStrict, Dense);
    AddGrowth("strict sparse", GrowStrict, Sparse);
    AddGrowth("lenient", GrowLenient, Sparse);
    AddGrowth("compact", GrowCompact, Ranges);
    AddGrowth("floats", GrowFloats, Sparse);
    return true;
}();

}  // namespace
