// Wildcards against fnmatch, substring search against memmem, replacement against abseil, and the growth of everything
// that searches, on common texts and on those that are worst for it.
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringMatch.h>

#include <absl/strings/str_replace.h>
#include <benchmark/benchmark.h>

#include <fnmatch.h>
#include <malloc.h>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

// ---- Wildcards -----------------------------------------------------------------------------------------------------

using Match = bool (*)(const char* pattern, const char* text);

bool Ours(const char* pattern, const char* text)
{
    return UtlStrWildCmp(pattern, text) != 0;
}

bool Fnmatch(const char* pattern, const char* text)
{
    return fnmatch(pattern, text, 0) == 0;
}

// Names of the parts of a model, one behind the other.
class Names
{
public:
    Names()
    {
        const char* const kinds[] = {"bolt_", "Plate.Left.", "node_", "weld seam ", "PSHELL-", "surface_of_contact_"};
        std::mt19937 random(1);
        for (int i = 0; i < 100'000; ++i)
            m_text += kinds[random() % std::size(kinds)] + std::to_string(random() % 1'000'000) + '\0';
        for (const char* name = m_text.c_str(); *name != '\0'; name += std::strlen(name) + 1)
            m_names.push_back(name);
    }

    std::size_t CountMatches(Match match, const char* pattern) const
    {
        std::size_t count = 0;
        for (const char* const name : m_names)
            count += match(pattern, name);
        return count;
    }

private:
    std::string m_text;
    std::vector<const char*> m_names;
};

void MatchNames(benchmark::State& state, Match match, const char* pattern)
{
    const Names names;
    if (names.CountMatches(Ours, pattern) != names.CountMatches(Fnmatch, pattern))
        state.SkipWithError("not what fnmatch matches");
    for (auto _ : state)
        benchmark::DoNotOptimize(names.CountMatches(match, pattern));
}

void MatchHardCase(benchmark::State& state, Match match)
{
    const std::string text(60, 'a');
    for (auto _ : state) {
        const char* pattern = "a*a*a*a*a*b";
        benchmark::DoNotOptimize(pattern);
        bool matches = match(pattern, text.c_str());
        benchmark::DoNotOptimize(matches);
    }
}

// ---- Search and replacement ----------------------------------------------------------------------------------------

// A deck of lines; the words that are looked for stand in each.
std::string Deck(std::size_t lines)
{
    std::mt19937 random(2);
    std::string text;
    for (std::size_t i = 0; i < lines; ++i)
        text += "GRID, " + std::to_string(random() % 1'000'000) + ", 0.5, -17.25, steel plate, left\n";
    return text;
}

int LocateOurs(const std::string& text, const char* pattern)
{
    BuArrayTempl<int> positions;
    return UtlFindSubstringLocationsInString(text.c_str(), pattern, positions);
}

int LocateMemmem(const std::string& text, const char* pattern)
{
    BuArrayTempl<int> positions;
    const std::size_t length = std::strlen(pattern);
    const char* const end = text.data() + text.size();
    for (const char* at = text.data(); at != nullptr; ++at) {
        at = static_cast<const char*>(memmem(at, static_cast<std::size_t>(end - at), pattern, length));
        if (at == nullptr)
            break;
        positions.Add(static_cast<int>(at - text.data()));
    }
    return positions.GetCount();
}

void Locate(benchmark::State& state, int (*locate)(const std::string&, const char*))
{
    const std::string text = Deck(10'000);
    if (LocateOurs(text, "steel plate") != 10'000 || LocateMemmem(text, "steel plate") != 10'000)
        state.SkipWithError("not what memmem finds");
    for (auto _ : state)
        benchmark::DoNotOptimize(locate(text, "steel plate"));
}

struct Freed
{
    explicit Freed(char* given) : text(given) {}
    Freed(const Freed&) = delete;
    ~Freed() { VBuFree(text, "bench", __LINE__); }
    char* text;
};

void ReplaceOurs(benchmark::State& state)
{
    const std::string text = Deck(10'000);
    const Freed replaced(UtlReplaceStringWithString(text.c_str(), "steel plate", "titanium rod", 1, 0));
    if (replaced.text != absl::StrReplaceAll(text, {{"steel plate", "titanium rod"}}))
        state.SkipWithError("not what abseil replaces");
    for (auto _ : state)
        benchmark::DoNotOptimize(
            Freed(UtlReplaceStringWithString(text.c_str(), "steel plate", "titanium rod", 1, 0)).text);
}

void ReplaceAbseil(benchmark::State& state)
{
    const std::string text = Deck(10'000);
    for (auto _ : state)
        benchmark::DoNotOptimize(absl::StrReplaceAll(text, {{"steel plate", "titanium rod"}}));
}

// ---- Growth --------------------------------------------------------------------------------------------------------

void ReplaceFields(std::string& text)
{
    benchmark::DoNotOptimize(Freed(UtlReplaceString(text.c_str(), ", \n", "; ")).text);
}

void RemoveWithoutCase(std::string& text)
{
    benchmark::DoNotOptimize(Freed(UtlReplaceStringWithNothing(text.c_str(), "STEEL", 0)).text);
}

void ReplaceWords(std::string& text)
{
    char word[] = "left", replacement[] = "right";
    benchmark::DoNotOptimize(Freed(UtlSearchAndReplaceByMatchWholeWord(text.data(), word, replacement)).text);
}

void ComparePieces(std::string& text)
{
    benchmark::DoNotOptimize(UtlCompareStrings(text.c_str(), "GRID*STEEL*NOWHERE*", "*", 0));
}

void MatchWildcards(std::string& text)
{
    benchmark::DoNotOptimize(UtlStrMatchString(text.data(), text.c_str(), 1));
}

// The pattern grows with the text: half of it, with one character that does not occur.
void LocateWorst(std::string& text)
{
    const std::string pattern = std::string(text.size() / 2, 'a') + 'b';
    text.assign(text.size(), 'a');
    benchmark::DoNotOptimize(LocateOurs(text, pattern.c_str()));
}

void CompareWorst(std::string& text)
{
    std::string pattern;
    for (std::size_t i = 0; i < text.size() / 2; ++i)
        pattern += "a*";
    text.assign(text.size(), 'a');
    benchmark::DoNotOptimize(UtlCompareStrings(text.c_str(), pattern.c_str(), "*", 1));
}

void Grow(benchmark::State& state, void (*work)(std::string& text), std::size_t times)
{
    std::string text = Deck(times * 100);
    for (auto _ : state)
        work(text);
}

void AddGrowth(const std::string& work, void (*function)(std::string& text))
{
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark(("StringMatch/" + work + '/' + std::to_string(times) + 'x').c_str(), Grow,
                                     function, times);
}

[[maybe_unused]] const bool g_registered = [] {
    // How the process heap gives memory back to the system is not measured here.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    const struct
    {
        const char *work, *pattern;
    } names[] = {{"names by prefix", "node_*"},
                 {"names by suffix", "*17"},
                 {"names by middle", "*.Left.*"},
                 {"names by all", "?*_*1?*5"}};
    for (const auto& [work, pattern] : names) {
        const std::string start = std::string("StringMatch/") + work;
        benchmark::RegisterBenchmark((start + "/ours").c_str(), MatchNames, Ours, pattern);
        benchmark::RegisterBenchmark((start + "/fnmatch").c_str(), MatchNames, Fnmatch, pattern);
    }
    benchmark::RegisterBenchmark("StringMatch/hard case/ours", MatchHardCase, Ours);
    benchmark::RegisterBenchmark("StringMatch/positions/ours", Locate, LocateOurs);
    benchmark::RegisterBenchmark("StringMatch/positions/memmem", Locate, LocateMemmem);
    benchmark::RegisterBenchmark("StringMatch/replace/ours", ReplaceOurs);
    benchmark::RegisterBenchmark("StringMatch/replace/abseil", ReplaceAbseil);
    AddGrowth("replace fields", ReplaceFields);
    AddGrowth("remove without case", RemoveWithoutCase);
    AddGrowth("replace words", ReplaceWords);
    AddGrowth("compare pieces", ComparePieces);
    AddGrowth("wildcards", MatchWildcards);
    AddGrowth("worst positions", LocateWorst);
    AddGrowth("worst pieces", CompareWorst);
    return true;
}();

}  // namespace
