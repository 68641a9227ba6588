#include <TuvoUtil/StringBreak.h>
#include <TuvoUtil/StringClean.h>
#include <TuvoUtil/StringMatch.h>
#include <basutl/BuString.h>

#include "support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// ---- Helpers -------------------------------------------------------------------------------------------------------

std::string ReplaceRuns(const std::string& text, const std::string& delimiters, const std::string& replacement)
{
    return Taken(UtlReplaceString(text.c_str(), delimiters.c_str(), replacement.c_str()));
}

std::string ReplaceWords(std::string text, std::string word, std::string replacement)
{
    return Taken(UtlSearchAndReplaceByMatchWholeWord(text.data(), word.data(), replacement.data()));
}

std::string Replace(const std::string& text, const std::string& pattern, const std::string& replacement,
                    int caseSensitive, int wholeWord)
{
    return Taken(
        UtlReplaceStringWithString(text.c_str(), pattern.c_str(), replacement.c_str(), caseSensitive, wholeWord));
}

std::string Remove(const std::string& text, const std::string& pattern, int caseSensitive)
{
    return Taken(UtlReplaceStringWithNothing(text.c_str(), pattern.c_str(), caseSensitive));
}

std::vector<int> Positions(const std::string& text, const std::string& pattern)
{
    BuArrayTempl<int> positions;
    positions.Add(-7);
    const int count = UtlFindSubstringLocationsInString(text.c_str(), pattern.c_str(), positions);
    EXPECT_EQ(count, positions.GetCount());
    return {positions.begin(), positions.end()};
}

std::string Repeated(const std::string& text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

// ---- Wildcards -----------------------------------------------------------------------------------------------------

// The definition of the language, slow and obvious.
bool MatchesByDefinition(const char* pattern, const char* text)
{
    if (*pattern == '\0')
        return *text == '\0';
    if (*pattern == '*')
        return MatchesByDefinition(pattern + 1, text) || (*text != '\0' && MatchesByDefinition(pattern, text + 1));
    return *text != '\0' && (*pattern == '?' || *pattern == *text) && MatchesByDefinition(pattern + 1, text + 1);
}

TEST(StringMatchWildcards, AgreeWithTheDefinitionOnAllShortStrings)
{
    ForEachText("aB*?", 5, [](std::string pattern) {
        std::string otherCase = pattern;
        for (char& c : otherCase)
            c = c == 'a' ? 'A' : c == 'B' ? 'b' : c;
        ForEachText("aB*", 5, [&](const std::string& text) {
            const int expected = MatchesByDefinition(pattern.c_str(), text.c_str()) ? 1 : 0;
            ASSERT_EQ(UtlStrWildCmp(pattern.c_str(), text.c_str()), expected) << pattern << " on " << text;
            ASSERT_EQ(UtlStrMatchString(pattern.data(), text.c_str(), 0), expected) << pattern << " on " << text;
            ASSERT_EQ(UtlStrMatchString(otherCase.data(), text.c_str(), 1), expected) << otherCase << " on " << text;
        });
    });
}

TEST(StringMatchWildcards, HoldOnBytesAndMissingTexts)
{
    char pattern[] = "A?C";
    EXPECT_EQ(UtlStrMatchString(pattern, "abc", 1), 1);
    EXPECT_EQ(UtlStrMatchString(pattern, "abc", 0), 0);
    char bytes[] = "*\xE9?[\x7F";
    EXPECT_EQ(UtlStrMatchString(bytes, "\xC9\xE9\xC9[\x7F", 1), 1);
    EXPECT_EQ(UtlStrMatchString(bytes, "\xC9\xC9\xC9[\x7F", 1), 0) << "the case of ASCII letters alone";
    EXPECT_EQ(UtlStrMatchString(bytes, "\xC9\xE9\xC9{\x7F", 1), 0) << "'{' is no lower-case '['";
    EXPECT_EQ(UtlStrWildCmp(nullptr, "") + UtlStrWildCmp("", nullptr) + UtlStrMatchString(nullptr, "", 1) +
                  UtlStrMatchString(bytes, nullptr, 1),
              0);
}

TEST(StringMatchWildcards, TakeManyStarsAndLongTexts)
{
    const std::string text(1'000'000, 'a');
    std::string stars(10'000, '*');
    EXPECT_EQ(UtlStrWildCmp(stars.c_str(), text.c_str()), 1);
    std::string pattern = Repeated("a*", 10'000) + 'b';
    EXPECT_EQ(UtlStrWildCmp(pattern.c_str(), text.c_str()), 0);
    EXPECT_EQ(UtlStrMatchString(pattern.data(), text.c_str(), 1), 0);
    pattern.back() = 'A';
    EXPECT_EQ(UtlStrMatchString(pattern.data(), text.c_str(), 1), 1);
}

// ---- Patterns in pieces --------------------------------------------------------------------------------------------

// The pieces of a pattern with '*' as its token, which UtlBreakStringIntoChars gives, the first one cleaned.
std::vector<std::string> PiecesByDefinition(const std::string& pattern)
{
    char** list = nullptr;
    int count = UtlBreakStringIntoChars(pattern.c_str(), &list, "*");
    if (count > 0)
        UtlClearString(list[0]);
    std::vector<std::string> pieces(list, list + count);
    UtlFreeStringList(count, list);
    return pieces;
}

int ComparedByDefinition(const std::string& text, const std::string& pattern, const std::vector<std::string>& pieces)
{
    if (text.empty() || pattern.empty() || text == pattern)
        return text.empty() || pattern.empty() ? 0 : 1;
    const bool endsWithToken = pattern.back() == '*';
    if ((pieces.size() > 1 && !endsWithToken && !text.ends_with(pieces.back())) || !text.starts_with(pieces[0]))
        return 0;
    std::size_t position = 0;
    for (std::size_t i = 1; i < pieces.size(); ++i)
        if ((position = text.find(pieces[i], position)) == std::string::npos)
            return 0;
    return pieces.size() > 1 || !pieces[0].empty() ? 1 : 0;
}

TEST(StringMatchPieces, AgreeWithTheDefinitionOnAllShortStrings)
{
    const auto expectOn = [](const std::string& alphabet) {
        return [alphabet](const std::string& pattern) {
            const std::vector<std::string> pieces = PiecesByDefinition(pattern);
            ForEachText(alphabet, 4, [&](const std::string& text) {
                ASSERT_EQ(UtlCompareStrings(text.c_str(), pattern.c_str(), "*", 1),
                          ComparedByDefinition(text, pattern, pieces))
                    << text << " with " << pattern;
            });
        };
    };
    ForEachText("aB*", 7, expectOn("aB "));
    ForEachText("a* \n\r", 4, expectOn("a \n\r"));
}

TEST(StringMatchPieces, TakeTokensAsTheyAre)
{
    const struct
    {
        const char *first, *second, *token;
        int caseSensitive, expected;
    } rows[] = {
        {"model_12.dat", "MODEL*.DAT", "*", 0, 1},
        {"model_12.txt", "MODEL*.DAT", "*", 0, 0},
        {"ab", "Axxb", "xx", 0, 0},  // the token is not brought to upper case
        {"ab", "AXXb", "XX", 0, 1},
        {"a<b", "a<<<b", "<<", 1, 1},  // the first two of three
        {"a*!b", "a<>*!<>", "<>", 1, 1},
        {"a@#$%^*`-!b", "a@#$%^*`<>!b", "<>", 1, 0},  // no character is left
        {"a@#$%^*`-b", "a@#$%^*`<>b", "<>", 1, 1},
        {"a", "a", "aa", 1, 0},  // longer than the pattern
        {"a", "a", "", 1, 0},
        {"a", "a", nullptr, 1, 0},
        {nullptr, "*", "*", 1, 0},
        {"a", nullptr, "*", 1, 0},
        {"a  \nc d", "a\n\n\nc*d", "*", 1, 1},  // two line feeds of the first piece are blanks,
        {"a \rc d", "a\r\rc*d", "*", 1, 1},     // without any one carriage return
        {"b\xC9", "B*\xE9", "*", 0, 0},         // the case of ASCII letters alone
    };
    for (const auto& [first, second, token, caseSensitive, expected] : rows)
        EXPECT_EQ(UtlCompareStrings(first, second, token, caseSensitive), expected) << first << " with " << second;
}

TEST(StringMatchPieces, MayBeWholeWords)
{
    const struct
    {
        const char *first, *second;
        int expected;
    } rows[] = {
        {"bolt, long, m8", "bolt*m8", 1},
        {"bolts m8", "bolt*m8", 0},
        {"bolt xm8", "bolt*m8", 0},
        {"abc", "a", 0},
        {"a bc", "a", 1},
        {"abc", "abc", 1},
        {"x", "x*x", 1},
        {"x_model", "x_*", 0},
        {"a \"b\" c", "a*b*c", 0},
        {"a c", "a**c", 1},
        {"bolt m8 xm8", "bolt*m8", 0},  // the one at the end counts,
        {"xx yx y", "*y*", 1},          // else a later one,
        {"va b a b a", "*a b a*", 1},   // even when it overlaps one inside a word
    };
    for (const auto& [first, second, expected] : rows)
        EXPECT_EQ(UtlCompareCompleteWord(first, second, "*", 1, 1), expected) << first << " with " << second;
    EXPECT_EQ(UtlCompareCompleteWord("Bolt-M8", "bolt*m8", "*", 0, 1), 1);
}

TEST(StringMatchPieces, TreatLongAndShortTokensAlike)
{
    ForEachText("aB*", 5, [](const std::string& pattern) {
        const std::string longer = Replace(pattern, "*", "<->", 1, 0);
        if (longer.size() < 3)
            return;
        ForEachText("ab ", 4, [&](const std::string& text) {
            ASSERT_EQ(UtlCompareStrings(text.c_str(), longer.c_str(), "<->", 0),
                      UtlCompareStrings(text.c_str(), pattern.c_str(), "*", 0))
                << text << " with " << pattern;
        });
    });
}

// ---- Order and lookup ----------------------------------------------------------------------------------------------

TEST(StrCompi, OrdersUpTo255Characters)
{
    const std::string a255(255, 'a'), b255(255, 'b'), a256(256, 'a'), b300(300, 'b');
    const struct
    {
        const char *first, *second;
        int expected;
    } rows[] = {
        {"Abc", "abd", -1},
        {"abd", "ABC", 1},
        {"STEEL", "steel", 0},
        {"ab", "abc", -1},
        {"", "", 0},
        {"z", "\xE9", -1},
        {"\xC9", "\xE9", -1},
        {"_", "A", -1},
        {"[", "a", -1},
        {nullptr, "", 0},
        {nullptr, "a", -1},
        {"a", nullptr, 1},
        {a255.c_str(), b255.c_str(), -1},
        {a256.c_str(), b300.c_str(), 0},
        {a256.c_str(), "b", 0},
        {"", b300.c_str(), 0},
    };
    for (const auto& [first, second, expected] : rows)
        EXPECT_EQ(UtlStrCompi(first, second), expected) << testing::PrintToString(first) << " and " << second;
}

TEST(FindStringInList, GivesTheFirstEqualEntry)
{
    char bolt[] = "bolt", nut[] = "nut", empty[] = "", upper[] = "NUT";
    char* list[] = {nullptr, bolt, nut, empty, nut};
    EXPECT_EQ(UtlFindStringInList(5, list, nut), 2);
    EXPECT_EQ(UtlFindStringInList(2, list, nut), -1);
    for (char* const text : {upper, empty, static_cast<char*>(nullptr)})
        EXPECT_EQ(UtlFindStringInList(5, list, text), -1);
    for (const int count : {0, -1})
        EXPECT_EQ(UtlFindStringInList(count, list, bolt), -1);
    EXPECT_EQ(UtlFindStringInList(3, nullptr, bolt), -1);
}

TEST(StrExtensionMatch, TakesWhatFollowsTheLastDot)
{
    const struct
    {
        const char *name, *extension;
        int expected;
    } rows[] = {
        {"a.b.txt", "txt", 1}, {"a.TXT", "txt", 0}, {"a.txt", ".txt", 0}, {"a.b.txt", "b.txt", 0},
        {"txt", "txt", 0},     {"a.", "", 1},       {"", "", 0},          {"a", "", 0},
        {nullptr, "", 0},      {"a.", nullptr, 0},  {".txt", "txt", 1},   {"d.e/f", "e/f", 1},
    };
    for (const auto& [name, extension, expected] : rows)
        EXPECT_EQ(UtlStrExtensionMatch(name, extension), expected) << name << " and " << extension;
}

TEST(StringHasOneofCharacter, LooksForCharacters)
{
    const struct
    {
        const char *text, *characters;
        int expected;
    } rows[] = {
        {"a-b", "+-", 1},  {"a-b", "+*", 0},  {"a", "", 0},
        {"", "a", 0},      {nullptr, "a", 0}, {"a", nullptr, 0},
        {"\xE9-", "-", 1}, {"\xE9-", "+", 0}, {"a\xC3\xA9", "x\xC3\xA9", 1},
    };
    for (const auto& [text, characters, expected] : rows)
        EXPECT_EQ(UtlStringHasOneofCharacter(text, characters), expected) << text << " and " << characters;
    // Not the bytes of characters, whatever the narrow text is.
    const std::string acute = BuString(L"\u00E9").ToNarrow(), grave = BuString(L"\u00E8").ToNarrow();
    EXPECT_EQ(UtlStringHasOneofCharacter(acute.c_str(), grave.c_str()), acute == grave ? 1 : 0);
}

// ---- Finding -------------------------------------------------------------------------------------------------------

std::vector<int> PositionsByDefinition(const std::string& text, const std::string& pattern)
{
    std::vector<int> positions;
    for (std::size_t at = text.find(pattern); at != std::string::npos; at = text.find(pattern, at + 1))
        positions.push_back(static_cast<int>(at));
    return positions;
}

// Removes occurrences one by one, none inside another.
std::string RemovedByDefinition(const std::string& text, const std::string& pattern)
{
    std::string result = text;
    for (std::size_t at = result.find(pattern); at != std::string::npos; at = result.find(pattern, at))
        result.erase(at, pattern.size()).insert(at, 1, '\1'), ++at;
    result.erase(std::remove(result.begin(), result.end(), '\1'), result.end());
    return result;
}

void ExpectAsDefined(const std::string& text, const std::string& pattern)
{
    ASSERT_EQ(Positions(text, pattern), PositionsByDefinition(text, pattern)) << pattern << " in " << text;
    ASSERT_EQ(Remove(text, pattern, 1), RemovedByDefinition(text, pattern)) << pattern << " in " << text;
}

TEST(StringMatchSearch, FindsAllOccurrencesOfAllShortPatterns)
{
    ForEachText("ab", 6, [](const std::string& pattern) {
        if (!pattern.empty())
            ForEachText("ab", 9, [&](const std::string& text) {
                if (!text.empty())
                    ExpectAsDefined(text, pattern);
            });
    });
}

TEST(StringMatchSearch, FindsLongPatternsOfEveryPeriod)
{
    std::mt19937 random(7);
    const auto letters = [&random](std::size_t length, const std::string& alphabet) {
        std::string text(length, ' ');
        for (char& c : text)
            c = alphabet[random() % alphabet.size()];
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        const std::string alphabet = round % 2 != 0 ? "ab" : "a\x80\xFF";
        const std::string unit = letters(1 + random() % 7, alphabet);
        std::string pattern = Repeated(unit, 1 + static_cast<int>(random() % 6)) + letters(random() % 4, alphabet);
        std::string text;
        while (text.size() < 200) {
            text += random() % 3 != 0 ? unit : letters(1 + random() % 5, alphabet);
            text += random() % 8 == 0 ? pattern : "";
        }
        ExpectAsDefined(text, pattern);
        ExpectAsDefined(pattern, pattern);
    }
}

TEST(StringMatchSearch, IsLinearOnTheWorstTexts)
{
    const std::string text(2'000'000, 'a');
    const std::string half(1'000'000, 'a');
    EXPECT_EQ(Positions(text, half).size(), 1'000'001u);
    EXPECT_TRUE(Positions(text, half + 'b').empty());
    EXPECT_TRUE(Positions(text, 'b' + half).empty());
    EXPECT_TRUE(Positions(text, half + 'b' + half.substr(1)).empty());
    EXPECT_EQ(Replace(text, half, "x", 1, 0), "xx");
    EXPECT_EQ(ReplaceWords(text, half, "x"), text);
    EXPECT_EQ(UtlCompareCompleteWord(text.c_str(), ("*" + half + "*").c_str(), "*", 1, 1), 0);
    EXPECT_EQ(UtlCompareStrings(text.c_str(), Repeated("a*", 500'000).c_str(), "*", 1), 1);
}

TEST(StringMatchSearch, GivesNoPositionsOfNothing)
{
    BuArrayTempl<int> positions;
    const std::pair<const char*, const char*> rows[] = {{"", "a"}, {"a", ""}, {nullptr, "a"}, {"a", nullptr}};
    for (const auto& [text, pattern] : rows) {
        positions.Add(1);
        EXPECT_EQ(UtlFindSubstringLocationsInString(text, pattern, positions), 0);
        EXPECT_TRUE(positions.IsEmpty());
    }
}

// ---- Replacement ---------------------------------------------------------------------------------------------------

// The rule told with strtok.
std::string ReplaceRunsWithStrtok(std::string text, const std::string& delimiters, const std::string& replacement)
{
    std::string result = text.compare(0, delimiters.size(), delimiters) == 0 ? replacement : "";
    char* start = text.data();
    if (*start != '\0' && delimiters.find(*start) != std::string::npos) {
        result += ' ' + replacement;
        ++start;
    }
    std::strtok(start, delimiters.c_str());
    result += start;
    while (const char* const field = std::strtok(nullptr, delimiters.c_str()))
        result += replacement + field;
    return result;
}

TEST(ReplaceString, AgreesWithStrtokOnAllShortStrings)
{
    for (const std::string delimiters : {"-", "-,", ",-", "--", "a-", "", "x"})
        ForEachText("a-,", 7, [&](const std::string& text) {
            ASSERT_EQ(ReplaceRuns(text, delimiters, "<+>"), ReplaceRunsWithStrtok(text, delimiters, "<+>"))
                << text << " at " << delimiters;
        });
}

TEST(ReplaceString, KeepsItsOddities)
{
    EXPECT_EQ(ReplaceRuns("a--b-", "-", "+"), "a+b");
    EXPECT_EQ(ReplaceRuns("-a-b", "-", "+"), "+ +a+b");
    EXPECT_EQ(ReplaceRuns("-a-b", "-,", "+"), " +a+b");
    EXPECT_EQ(ReplaceRuns("--a", "-", "+"), "+ +-a");
    EXPECT_EQ(ReplaceRuns("a\xE9\xE8z", "\xE8\xE9", ""), "az");
    EXPECT_EQ(Taken(UtlReplaceString("ab", nullptr, "+")), "+ab");
    EXPECT_EQ(Taken(UtlReplaceString("a b", " ", nullptr)), "ab");
    EXPECT_EQ(UtlReplaceString(nullptr, "-", "+"), nullptr);
}

TEST(ReplaceStringWithNothing, SearchesInUpperCase)
{
    const struct
    {
        const char *text, *pattern;
        int caseSensitive;
        const char* expected;
    } rows[] = {
        {"aXbX", "X", 0, "ab"}, {"axbX", "X", 0, "ab"}, {"axbx", "x", 0, "axbx"},  {"axbX", "X", 1, "axb"},
        {"xyXY", "XY", 0, ""},  {"aaa", "aa", 1, "a"},  {"abc", "", 1, ""},        {"", "a", 1, ""},
        {nullptr, "a", 1, ""},  {"a", nullptr, 0, ""},  {"\xE9q", "Q", 0, "\xE9"},
    };
    for (const auto& [text, pattern, caseSensitive, expected] : rows)
        EXPECT_EQ(Taken(UtlReplaceStringWithNothing(text, pattern, caseSensitive)), expected)
            << text << " without " << pattern;
}

TEST(WholeWordReplacement, LeavesOtherOccurrences)
{
    const struct
    {
        const char *text, *word, *replacement, *expected;
    } rows[] = {
        {"x+x_1 \"x\" x", "x", "y", "y+x_1 \"x\" y"},
        {"x", "x", "", ""},
        {"ax xa 1x x1 'x x' (x)\tx\r\nx", "x", "y", "ax xa 1x x1 'x x' (y)\ty\r\ny"},
        {"\xE9x\xE9", "x", "y", "\xE9y\xE9"},  // bytes above 127 separate
        {"Xx x", "x", "xx x", "Xx xx x"},      // not inside a replacement
        {"++", "+", "y", "y+"},                // which is the neighbour of what follows
        {"++", "+", "", ""},                   // or leaves the end of the text
        {"ba a a", "a a", "c", "ba a a"},      // the search goes on behind a rejected occurrence
        {"a a a", "a a", "c", "c a"},
        {"abc", "", "y", "abc"},
        {"", "x", "y", ""},
    };
    for (const auto& [text, word, replacement, expected] : rows) {
        EXPECT_EQ(ReplaceWords(text, word, replacement), expected) << word << " in " << text;
        EXPECT_EQ(Replace(text, word, replacement, 1, 1), expected) << word << " in " << text;
    }
    char text[] = "a x", word[] = "x";
    EXPECT_EQ(Taken(UtlSearchAndReplaceByMatchWholeWord(text, word, nullptr)), "a ");
    EXPECT_EQ(Taken(UtlSearchAndReplaceByMatchWholeWord(text, nullptr, word)), "a x");
    EXPECT_EQ(UtlSearchAndReplaceByMatchWholeWord(nullptr, word, word), nullptr);
}

TEST(ReplaceStringWithString, TakesCaseAndWords)
{
    EXPECT_EQ(Replace("Bolt bolts BOLT", "bOLt", "nut", 0, 0), "nut nuts nut");
    EXPECT_EQ(Replace("Bolt bolts BOLT", "bolt", "nut", 0, 1), "nut bolts nut");
    EXPECT_EQ(Replace("Bolt bolts BOLT", "BOLT", "nut", 1, 0), "Bolt bolts nut");
    EXPECT_EQ(Replace("aaa", "aa", "b", 1, 0), "ba");
    EXPECT_EQ(Replace("aaa", "", "b", 1, 0), "aaa");
    EXPECT_EQ(Taken(UtlReplaceStringWithString("aa", "a", nullptr, 0, 0)), "");
    EXPECT_EQ(Taken(UtlReplaceStringWithString("aa", nullptr, "b", 0, 0)), "aa");
    EXPECT_EQ(UtlReplaceStringWithString(nullptr, "a", "b", 0, 0), nullptr);
}

}  // namespace
