// Breaking strings against abseil and the C library, and the growth of every splitter up to 100 MB of text.
#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <absl/strings/str_split.h>
#include <absl/strings/string_view.h>
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using Views = std::vector<absl::string_view>;
using Strings = std::vector<std::string>;

constexpr std::size_t TextSize = 1 << 20;

// Fields of six characters that random ones of `delimiters` divide.
std::string Fields(std::size_t size, const std::string& delimiters)
{
    std::mt19937 random(1);
    std::string text(size, ' ');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = i % 7 == 6 ? delimiters[random() % delimiters.size()] : static_cast<char>('a' + random() % 26);
    return text;
}

std::string Numbers(std::size_t size)
{
    std::mt19937 random(2);
    std::string text;
    while (text.size() < size)
        text.append(std::to_string(random() % 1'000'000)).append(random() % 2 == 0 ? ".25 " : "  ");
    return text;
}

std::string CommandLine(std::size_t size)
{
    std::string text;
    while (text.size() < size)
        text += "set  x [a b]  'c d' ";
    return text;
}

// ---- Ways to break a text ------------------------------------------------------------------------------------------
//
// Each breaks a text, which it may change, and frees what it got; Fields() gives the fields for comparison.

Strings Copied(char** fields, int count)
{
    return Strings(fields, fields + count);
}

struct StringTok
{
    static constexpr bool Changes = true;
    char** fields = nullptr;
    int count = 0;
    explicit StringTok(std::string& text) { count = UtlStringTok(text.data(), &fields, ","); }
    ~StringTok() { VBuFree(fields, __FILE__, __LINE__); }
    Strings Fields() const { return Copied(fields, count); }
};

struct IntoStrings
{
    static constexpr bool Changes = true;
    char** fields = nullptr;
    int count = 0;
    IntoStrings(std::string& text, const char* delimiters = ",")
    {
        count = UtlBreakStringIntoStringsDbg(text.data(), &fields, delimiters, __FILE__, __LINE__);
    }
    ~IntoStrings() { VBuFree(fields, __FILE__, __LINE__); }
    Strings Fields() const { return Copied(fields, count); }
};

struct IntoStringsAtTwo : IntoStrings
{
    explicit IntoStringsAtTwo(std::string& text) : IntoStrings(text, ",;") {}
};

struct IntoChars
{
    static constexpr bool Changes = false;
    char** fields = nullptr;
    int count = 0;
    explicit IntoChars(std::string& text) { count = UtlBreakStringIntoChars(text.c_str(), &fields, ","); }
    ~IntoChars() { UtlFreeStringList(count, fields); }
    Strings Fields() const { return Copied(fields, count); }
};

struct Variables
{
    static constexpr bool Changes = true;
    char** fields = nullptr;
    int count = 0;
    explicit Variables(std::string& text) { count = UtlBreakStringIntoStringsAndVariables(text.data(), &fields, " "); }
    ~Variables() { VBuFree(fields, __FILE__, __LINE__); }
};

struct ContinuousVariables
{
    static constexpr bool Changes = true;
    char delimiter[2] = " ";
    explicit ContinuousVariables(std::string& text)
    {
        UtlSetBreakContinuousDelimsOption(1, delimiter);
        const Variables variables(text);
        UtlSetBreakContinuousDelimsOption(0, delimiter);
    }
};

struct Tokens
{
    static constexpr bool Changes = false;
    explicit Tokens(std::string& text)
    {
        char delimiters[] = " =(),";
        char* cursor = text.data();
        while (char* const token = UtlTokenize(&cursor, delimiters))
            VBuFree(token, __FILE__, __LINE__);
    }
};

struct Segments
{
    static constexpr bool Changes = false;
    char** segments = nullptr;
    int count = 0;
    explicit Segments(std::string& text)
    {
        count = UtlGetStringsIncludedInDelimiters(text.c_str(), '[', ']', &segments);
    }
    ~Segments() { UtlFreeStringList(count, segments); }
};

struct GivenDataType
{
    static constexpr bool Changes = true;
    int count = 0;
    void* values = nullptr;
    explicit GivenDataType(std::string& text) { count = UtlBreakStringToGivenDataType(text.data(), &values, 2); }
    std::vector<double> Fields() const
    {
        std::vector<double> numbers;
        for (int i = 0; i < count; ++i)
            numbers.push_back(static_cast<const double*>(values)[i]);
        return numbers;
    }
};

struct Strtod
{
    static constexpr bool Changes = false;
    std::vector<double> values;
    explicit Strtod(std::string& text)
    {
        char* end = nullptr;
        for (char* at = text.data();; at = end) {
            const double value = std::strtod(at, &end);
            if (end == at)
                break;
            values.push_back(value);
        }
    }
    std::vector<double> Fields() const { return values; }
};

struct AbseilViews
{
    static constexpr bool Changes = false;
    Views views;
    explicit AbseilViews(std::string& text) : views(absl::StrSplit(text, ',')) {}
    Strings Fields() const { return Strings(views.begin(), views.end()); }
};

struct AbseilTokens
{
    static constexpr bool Changes = false;
    Views views;
    explicit AbseilTokens(std::string& text) : views(absl::StrSplit(text, ',', absl::SkipEmpty())) {}
    Strings Fields() const { return Strings(views.begin(), views.end()); }
};

struct AbseilTokensAtTwo
{
    static constexpr bool Changes = false;
    Views views;
    explicit AbseilTokensAtTwo(std::string& text)
        : views(absl::StrSplit(text, absl::ByAnyChar(",;"), absl::SkipEmpty()))
    {}
    Strings Fields() const { return Strings(views.begin(), views.end()); }
};

struct AbseilStrings
{
    static constexpr bool Changes = false;
    Strings strings;
    explicit AbseilStrings(std::string& text) : strings(absl::StrSplit(text, ',')) {}
    Strings Fields() const { return strings; }
};

struct Strtok
{
    static constexpr bool Changes = true;
    std::vector<char*> fields;
    Strtok(std::string& text, const char* delimiters = ",")
    {
        char* state = nullptr;
        for (char* at = text.data(); char* const field = strtok_r(at, delimiters, &state); at = nullptr)
            fields.push_back(field);
    }
    Strings Fields() const { return Strings(fields.begin(), fields.end()); }
};

struct StrtokAtTwo : Strtok
{
    explicit StrtokAtTwo(std::string& text) : Strtok(text, ",;") {}
};

struct Strsep
{
    static constexpr bool Changes = true;
    std::vector<char*> fields;
    explicit Strsep(std::string& text)
    {
        for (char* at = text.data(); char* const field = strsep(&at, ",");)
            fields.push_back(field);
    }
    Strings Fields() const { return Strings(fields.begin(), fields.end()); }
};

// ---- Measuring -----------------------------------------------------------------------------------------------------

template <typename Way>
void Time(benchmark::State& state, const std::string& original)
{
    std::string text = original;
    for (auto _ : state) {
        if constexpr (Way::Changes) {
            state.PauseTiming();
            std::memcpy(text.data(), original.data(), original.size());
            state.ResumeTiming();
        }
        const Way way(text);
        benchmark::DoNotOptimize(&way);
        benchmark::ClobberMemory();
    }
}

template <typename Ours, typename Peer>
void Compare(benchmark::State& state, const std::string& original)
{
    std::string ours = original, theirs = original;
    if (Ours(ours).Fields() != Peer(theirs).Fields())
        state.SkipWithError("not what the peer gives");
    else
        Time<Peer>(state, original);
}

std::string Named(const char* work, const char* who)
{
    return std::string("StringBreak/") + work + '/' + who;
}

template <typename Ours>
void Add(const char* work, const std::string& text)
{
    benchmark::RegisterBenchmark(Named(work, "ours").c_str(), Time<Ours>, text);
}

template <typename Ours, typename Peer>
void AddPeer(const char* work, const char* peer, const std::string& text)
{
    benchmark::RegisterBenchmark(Named(work, peer).c_str(), Compare<Ours, Peer>, text);
}

// Texts of a hundredth, a tenth or the whole of 100 MB, each broken in turn, the results of all of them alive: so the
// rows differ in the size of a text alone, and not in how much of it all stands in a cache.
template <typename Way>
void Grow(benchmark::State& state, const std::string& part, std::size_t times)
{
    std::string original;
    for (std::size_t i = 0; i < times; ++i)
        original += part;
    std::vector<std::string> texts(100 / times, original);
    std::vector<std::optional<Way>> results(texts.size());
    std::size_t next = 0;
    for (auto _ : state) {
        if (next == texts.size()) {
            state.PauseTiming();
            for (std::string& text : texts)
                std::memcpy(text.data(), original.data(), original.size());
            next = 0;
            state.ResumeTiming();
        }
        results[next].emplace(texts[next]);
        benchmark::ClobberMemory();
        ++next;
    }
}

template <typename Way>
void AddGrowth(const char* work, const std::string& part)
{
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark(Named(work, (std::to_string(times) + 'x').c_str()).c_str(), Grow<Way>, part,
                                     times);
}

[[maybe_unused]] const bool g_registered = [] {
    // How the process heap gives memory back to the system is not measured here.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    InitVxHeap();
    const std::string text = Fields(TextSize, ",");
    const std::string mixed = Fields(TextSize, ",;");
    const std::string numbers = Numbers(TextSize);
    Add<StringTok>("pointers in place", text);
    AddPeer<StringTok, AbseilViews>("pointers in place", "abseil", text);
    AddPeer<StringTok, Strsep>("pointers in place", "strsep", text);
    Add<IntoStrings>("tokens in place", text);
    AddPeer<IntoStrings, AbseilTokens>("tokens in place", "abseil", text);
    AddPeer<IntoStrings, Strtok>("tokens in place", "strtok", text);
    Add<IntoStringsAtTwo>("tokens at two delimiters", mixed);
    AddPeer<IntoStringsAtTwo, AbseilTokensAtTwo>("tokens at two delimiters", "abseil", mixed);
    AddPeer<IntoStringsAtTwo, StrtokAtTwo>("tokens at two delimiters", "strtok", mixed);
    Add<IntoChars>("new strings", text);
    AddPeer<IntoChars, AbseilStrings>("new strings", "abseil", text);
    Add<GivenDataType>("numbers", numbers);
    AddPeer<GivenDataType, Strtod>("numbers", "strtod", numbers);

    const std::string commands = CommandLine(TextSize);
    AddGrowth<StringTok>("growth of pointers", text);
    AddGrowth<IntoStrings>("growth of tokens", text);
    AddGrowth<IntoChars>("growth of new strings", text);
    AddGrowth<GivenDataType>("growth of numbers", numbers);
    AddGrowth<Tokens>("growth of the lexer", commands);
    AddGrowth<Variables>("growth of groups", commands);
    AddGrowth<ContinuousVariables>("growth of the option", commands);
    AddGrowth<Segments>("growth of segments", commands);
    return true;
}();

}  // namespace
