// Formatting wide text against swprintf, reading numbers against std::from_chars and strtod, and the growth of both and
// of the operations on long texts.
#include <basutl/BuNumber.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

// ---- Formatting ----------------------------------------------------------------------------------------------------

constexpr std::size_t Values = 1024;

std::vector<double> Seconds()
{
    std::mt19937 random(1);
    std::vector<double> seconds(Values);
    for (double& value : seconds)
        value = static_cast<double>(random() % 10'000'000) * 1e-6;
    return seconds;
}

// A line of a benchmark report: a text and a number. swprintf names wide text %ls.
struct BenchmarkLine
{
    const std::vector<double> seconds = Seconds();

    int Ours(BuString& text, std::size_t i) const { return text.Format(L"Benchmark %s: %g s", L"Section", seconds[i]); }
    int Peer(wchar_t* text, std::size_t size, std::size_t i) const
    {
        return std::swprintf(text, size, L"Benchmark %ls: %g s", L"Section", seconds[i]);
    }
};

struct Integers
{
    int Ours(BuString& text, std::size_t i) const { return text.Format(L"%d of %5d", static_cast<int>(i), 123456); }
    int Peer(wchar_t* text, std::size_t size, std::size_t i) const
    {
        return std::swprintf(text, size, L"%d of %5d", static_cast<int>(i), 123456);
    }
};

template <typename Line>
void FormatOurs(benchmark::State& state)
{
    const Line line;
    BuString text;
    wchar_t expected[200];
    for (std::size_t i = 0; i < Values; ++i)
        if (line.Ours(text, i) != line.Peer(expected, std::size(expected), i) || text.Compare(expected) != 0)
            state.SkipWithError("not what swprintf prints");
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(line.Ours(text, i++ % Values));
}

template <typename Line>
void FormatPeer(benchmark::State& state)
{
    const Line line;
    wchar_t text[200];
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(line.Peer(text, std::size(text), i++ % Values));
}

// ---- Reading numbers -----------------------------------------------------------------------------------------------

// Numbers with a blank behind each, in the notations of model decks or with all the digits of a double.
std::string NumberText(const char* format)
{
    std::mt19937 random(2);
    std::string text;
    for (std::size_t i = 0; i < Values; ++i) {
        char number[40];
        std::snprintf(number, sizeof number, format, static_cast<double>(random()) / 65536.0 - 20000.0);
        text.append(number).append(" ");
    }
    return text;
}

const char* ReadOurs(const char* text, const char*, double& value)
{
    const char* end;
    value = BuReadDouble(text, &end);
    return end;
}

const char* ReadFromChars(const char* text, const char* last, double& value)
{
    return std::from_chars(text, last, value).ptr;
}

const char* ReadStrtod(const char* text, const char*, double& value)
{
    char* end;
    value = std::strtod(text, &end);
    return end;
}

using Reader = const char* (*)(const char* text, const char* last, double& value);

template <Reader Read>
double Sum(const std::string& text)
{
    const char* const last = text.data() + text.size();
    double sum = 0;
    for (const char* next = text.data(); next != last; ++next) {
        double value;
        next = Read(next, last, value);
        sum += value;
    }
    return sum;
}

template <Reader Read>
void ReadNumbers(benchmark::State& state, const char* format)
{
    const std::string text = NumberText(format);
    if (Sum<Read>(text) != Sum<ReadStrtod>(text))
        state.SkipWithError("not what strtod reads");
    for (auto _ : state)
        benchmark::DoNotOptimize(Sum<Read>(text));
}

void AddReaders(const std::string& work, const char* format)
{
    benchmark::RegisterBenchmark((work + "/ours").c_str(), ReadNumbers<ReadOurs>, format);
    benchmark::RegisterBenchmark((work + "/from_chars").c_str(), ReadNumbers<ReadFromChars>, format);
    benchmark::RegisterBenchmark((work + "/strtod").c_str(), ReadNumbers<ReadStrtod>, format);
}

// ---- Growth --------------------------------------------------------------------------------------------------------

constexpr std::size_t UnitOfText = 1000;

BuString Repeated(std::size_t times)
{
    BuString text;
    for (std::size_t i = 0; i < times; ++i)
        text += L"one, two\n";
    return text;
}

int FormatAll(const BuString& text)
{
    BuString result;
    return result.Format(L"%s%s", text.GetText(), text.GetText());
}

int ReplaceAll(const BuString& text)
{
    BuString result = text;
    return result.Replace(L"two", L"three");
}

int AllWords(const BuString& text)
{
    BuObjectArrayTempl<BuString> words;
    return text.ExtractWords(words, L", \n", L'"');
}

int AllLines(const BuString& text)
{
    int count = 0;
    int position = 0;
    for (BuString line; text.ExtractLine(position, line);)
        ++count;
    return count;
}

void Grow(benchmark::State& state, int (*work)(const BuString& text), std::size_t times)
{
    const BuString text = Repeated(times * UnitOfText);
    for (auto _ : state)
        benchmark::DoNotOptimize(work(text));
}

void AddGrowth(const std::string& work, int (*function)(const BuString& text))
{
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark((work + '/' + std::to_string(times) + 'x').c_str(), Grow, function, times);
}

[[maybe_unused]] const bool g_registered = [] {
    // How the process heap gives memory back to the system is not measured here.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    benchmark::RegisterBenchmark("Format/benchmark-line/ours", FormatOurs<BenchmarkLine>);
    benchmark::RegisterBenchmark("Format/benchmark-line/swprintf", FormatPeer<BenchmarkLine>);
    benchmark::RegisterBenchmark("Format/integers/ours", FormatOurs<Integers>);
    benchmark::RegisterBenchmark("Format/integers/swprintf", FormatPeer<Integers>);
    AddReaders("Format/read short numbers", "%.3f");
    AddReaders("Format/read long numbers", "%.16e");
    AddGrowth("Format/long text", FormatAll);
    AddGrowth("Format/replace", ReplaceAll);
    AddGrowth("Format/words", AllWords);
    AddGrowth("Format/lines", AllLines);
    return true;
}();

}  // namespace
