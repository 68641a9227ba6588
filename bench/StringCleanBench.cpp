// Blank cleanup against the loop over bytes that it stands for, formatted text against snprintf, and the growth of the
// cleanup on long texts.
#include <TuvoUtil/StringClean.h>
#include <basutl/BuCharacter.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

// Words of a deck, up to 9 letters and 5 blanks each.
std::string Words(std::size_t size)
{
    std::mt19937 random(1);
    std::string text;
    while (text.size() < size) {
        text.append(random() % 9 + 1, static_cast<char>('a' + random() % 26));
        text.append(random() % 5 + 1, random() % 8 == 0 ? '\t' : ' ');
    }
    text.resize(size);
    return text;
}

// ---- Blank cleanup -------------------------------------------------------------------------------------------------

using Clean = void (*)(const char* source, char* target);

void CleanByBytes(const char* source, char* target)
{
    bool afterBlank = false;
    for (; *source != '\0'; ++source) {
        const bool isBlank = BuIsSpace(*source);
        if (!(isBlank && afterBlank))
            *target++ = *source;
        afterBlank = isBlank;
    }
    *target = '\0';
}

void RunClean(benchmark::State& state, Clean clean, std::size_t size)
{
    const std::string text = Words(size);
    std::string target(size, '\0'), expected(size, '\0');
    clean(text.data(), target.data());
    CleanByBytes(text.data(), expected.data());
    if (std::strcmp(target.data(), expected.data()) != 0)
        state.SkipWithError("not what the loop over bytes gives");
    for (auto _ : state) {
        clean(text.data(), target.data());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

// ---- Formatted text ------------------------------------------------------------------------------------------------

using Print = int (*)(char* target, std::size_t size, const char* format, ...);

void RunPrint(benchmark::State& state, Print print)
{
    char target[100], expected[100];
    const auto length = std::snprintf(expected, sizeof expected, "%8d %s %g", 1234, "bolt", 0.625);
    if (print(target, sizeof target, "%8d %s %g", 1234, "bolt", 0.625) != length || std::strcmp(target, expected) != 0)
        state.SkipWithError("not what snprintf prints");
    int number = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(print(target, sizeof target, "%8d %s %g", ++number & 0xFFFF, "bolt", 0.625));
        benchmark::ClobberMemory();
    }
}

[[maybe_unused]] const bool g_registered = [] {
    constexpr std::size_t mebibyte = 1 << 20;
    benchmark::RegisterBenchmark("StringClean/runs to one/ours", RunClean, UtlRemoveEmbeddedExcessBlanks, mebibyte);
    benchmark::RegisterBenchmark("StringClean/runs to one/byte loop", RunClean, CleanByBytes, mebibyte);
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark(("StringClean/long texts/" + std::to_string(times) + "x").c_str(), RunClean,
                                     UtlRemoveEmbeddedExcessBlanks, times * 1'000'000);
    benchmark::RegisterBenchmark("StringClean/formatted text/ours", RunPrint, UtlSnprintf);
    benchmark::RegisterBenchmark("StringClean/formatted text/snprintf", RunPrint, std::snprintf);
    return true;
}();

}  // namespace
