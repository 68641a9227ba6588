// Values printed by magnitude against swprintf, and the check for a float against strtof.
#include <TuvoUtil/NumberText.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t Values = 1024;

// ---- Values by magnitude -------------------------------------------------------------------------------------------

// From 1 to 100: all with four decimals.
std::vector<double> SomeValues()
{
    std::mt19937 random(1);
    std::vector<double> values(Values);
    for (double& value : values)
        value = 1.0 + static_cast<double>(random() % 98'000'000) * 1e-6;
    return values;
}

BuString PrintByMagnitude(double value)
{
    return TuvoUtilFormatDoubleValue(value, nullptr);
}

BuString PrintBySwprintf(double value)
{
    wchar_t text[40];
    std::swprintf(text, std::size(text), L"%.4f", value);
    return text;
}

void RunPrint(benchmark::State& state, BuString (*print)(double value))
{
    const std::vector<double> values = SomeValues();
    for (const double value : values)
        if (!(print(value) == PrintBySwprintf(value)))
            state.SkipWithError("not what swprintf prints");
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(print(values[i++ % Values]));
}

// ---- The check for a float -----------------------------------------------------------------------------------------

int CheckByStrtof(char* text)
{
    char* end = nullptr;
    const float value = std::strtof(text, &end);
    return end != text && *end == '\0' && std::isfinite(value) ? 0 : 1;
}

void RunCheck(benchmark::State& state, int (*check)(char* text))
{
    std::vector<std::string> texts;
    for (const double value : SomeValues())
        texts.push_back(std::to_string(value) + (texts.size() % 4 == 0 ? "x" : ""));
    for (std::string& text : texts)
        if (check(text.data()) != UtlIsFloatValue(text.data()))
            state.SkipWithError("not what strtof tells");
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(check(texts[i++ % Values].data()));
}

[[maybe_unused]] const bool g_registered = [] {
    benchmark::RegisterBenchmark("NumberText/value by magnitude/ours", RunPrint, PrintByMagnitude);
    benchmark::RegisterBenchmark("NumberText/value by magnitude/swprintf", RunPrint, PrintBySwprintf);
    benchmark::RegisterBenchmark("NumberText/is a float/ours", RunCheck, UtlIsFloatValue);
    benchmark::RegisterBenchmark("NumberText/is a float/strtof", RunCheck, CheckByStrtof);
    return true;
}();

}  // namespace
