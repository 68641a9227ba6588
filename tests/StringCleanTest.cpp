#include <TuvoUtil/StringClean.h>
#include <basutl/BuCharacter.h>

#include "support/GuardedBuffer.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using Edge = GuardedBuffer::Edge;
using Strings = std::vector<std::string>;

// What a function with a source and a target makes of a text, with the target `shift` bytes behind the source's first
// byte in one buffer; the function may touch nothing outside it.
template <typename Function>
std::string Overlapping(Function function, const std::string& source, int shift, Edge edge = Edge::End)
{
    const GuardedBuffer buffer(source.size() + 1 + static_cast<std::size_t>(std::abs(shift)), edge);
    char* const from = buffer.Data() + std::max(-shift, 0);
    source.copy(from, source.size());
    from[source.size()] = '\0';
    function(from, from + shift);
    return from + shift;
}

template <typename Function>
std::string TwoBuffers(Function function, const std::string& source)
{
    const GuardedBuffer from(source), to(source.size() + 1);
    function(from.Data(), to.Data());
    EXPECT_EQ(std::string(from.Data()), source) << "the source stays";
    return to.Data();
}

const struct
{
    const char* name;
    void (*function)(const char*, char*);
    const char* source;
    const char* expected;
} CleaningRows[] = {
    {"all", UtlRemoveAllBlanks, " a\t b\v\f\r\n c ", "abc"},
    {"all", UtlRemoveAllBlanks, " \n", ""},
    {"all", UtlRemoveAllBlanks, "\xA0 \x85", "\xA0\x85"},  // no blanks in any locale
    {"embedded", UtlRemoveAllEmbeddedBlanks, "a b/c d", "ab/c d"},
    {"embedded", UtlRemoveAllEmbeddedBlanks, " / x\t/ y z", "/x/ y z"},
    {"embedded", UtlRemoveAllEmbeddedBlanks, "a b", "a b"},
    {"excess", UtlRemoveEmbeddedExcessBlanks, "  a   b ", " a b "},
    {"excess", UtlRemoveEmbeddedExcessBlanks, "a\t\n b \xA0 \r", "a\tb \xA0 "},
    {"excess", UtlRemoveEmbeddedExcessBlanks, "0123456789abcde  \t 0123456789abcdef  ",
     "0123456789abcde 0123456789abcdef "},
    {"tabs", UtlRemoveEmbeddedExcessTabs, "\t\ta \t \t\t\n\t", "\ta \t \t\n\t"},
    {"leading", UtlRemoveLeadingBlanks, " \t a b ", "a b "},
    {"leading", UtlRemoveLeadingBlanks, " \t ", ""},
    {"beside", [](const char* s, char* t) { UtlRemoveBlanksBesideDelimiter(s, t, ','); }, " a , b\t,c,\n d ",
     " a,b,c,d "},
    {"beside", [](const char* s, char* t) { UtlRemoveBlanksBesideDelimiter(s, t, ','); }, " , , ", ",,"},
    {"beside", [](const char* s, char* t) { UtlRemoveBlanksBesideDelimiter(s, t, ' '); }, "a \t b\t", "a  b\t"},
    {"beside", [](const char* s, char* t) { UtlRemoveBlanksBesideDelimiter(s, t, '\0'); }, " a ", " a "},
    {"quotes", UtlRemoveQuotes, "\"it's\" 'so'", "its so"},
    {"control", UtlRemoveCtrlCharacters, "a\r\nb\r\t\r", "a\nb\t"},
    {"copy", [](const char* s, char* t) { EXPECT_EQ(Utilstrcpy(t, s), 0); }, " a b", " a b"},
};

TEST(StringClean, RemovesWhatItsRuleNames)
{
    for (const auto& [name, function, source, expected] : CleaningRows) {
        EXPECT_EQ(TwoBuffers(function, source), expected) << name << ": " << source;
        EXPECT_EQ(TwoBuffers(function, ""), "") << name;
        char target[] = "xyz";
        function(nullptr, target);
        EXPECT_STREQ(target, "") << name;
        function(source, nullptr);
    }
}

TEST(StringClean, CleansInPlaceAndOverlappingAndOnlyOnce)
{
    std::mt19937 random(1);
    const std::string alphabet = "ab/,\"'  \t\n\r\xA0";
    for (int round = 0; round < 100; ++round) {
        std::string source(random() % 70, ' ');
        std::generate(source.begin(), source.end(), [&] { return alphabet[random() % alphabet.size()]; });
        for (const auto& [name, function, unused, unusedToo] : CleaningRows) {
            const std::string expected = TwoBuffers(function, source);
            for (const int shift : {0, -1, -20, 1, 7, 20})
                ASSERT_EQ(Overlapping(function, source, shift), expected) << name << ' ' << shift << ": " << source;
            ASSERT_EQ(Overlapping(function, source, 0, Edge::Start), expected) << name << ": " << source;
            ASSERT_EQ(TwoBuffers(function, expected), expected) << name << " is done once: " << source;
        }
    }
}

TEST(StringClean, ShrinksRunsInTextsOfAnyLength)
{
    const std::string run(100'000, '\t');
    EXPECT_EQ(TwoBuffers(UtlRemoveEmbeddedExcessBlanks, run), "\t");
    EXPECT_EQ(TwoBuffers(UtlRemoveEmbeddedExcessBlanks, "a" + run + "b" + run), "a\tb\t");
}

TEST(StringClean, CutsTrailingBlanksByTheSourcesLength)
{
    char target[] = "xyzw";
    UtlRemoveTrailingBlanks("ab  ", target);
    EXPECT_STREQ(target, "xy");
    EXPECT_EQ(Overlapping(UtlRemoveTrailingBlanks, " a b \t\n", 0), " a b");
    EXPECT_EQ(Overlapping(UtlRemoveTrailingBlanks, "\n  ", 0, Edge::Start), "");
    UtlRemoveTrailingBlanks(nullptr, target);
    EXPECT_STREQ(target, "");
}

TEST(StringClean, FindsTheTextBetweenTheBlanksAtItsEnds)
{
    const GuardedBuffer text(" \ta b\n ", Edge::Start), blank("\t ", Edge::Start);
    char* start = nullptr;
    UtlRemoveBlanksAtEnds(text.Data(), start);
    EXPECT_EQ(start - text.Data(), 2);
    EXPECT_EQ(std::string(text.Data(), 7), std::string(" \ta b\0\0", 7));
    UtlRemoveBlanksAtEnds(blank.Data(), start);
    EXPECT_STREQ(start, "");
    EXPECT_EQ(std::string(blank.Data(), 2), std::string(2, '\0'));
    UtlRemoveBlanksAtEnds(nullptr, start);
    EXPECT_EQ(start, nullptr);

    EXPECT_EQ(Taken(VStrUtlGetStringWithNoSpacesAtEnds(" \ta b\n ")), "a b");
    EXPECT_EQ(Taken(VStrUtlGetStringWithNoSpacesAtEnds(" \n")), "");
    EXPECT_EQ(VStrUtlGetStringWithNoSpacesAtEnds(nullptr), nullptr);
}

TEST(StringClean, ClearsLineEndsAndQuotes)
{
    const auto cleared = [](const char* text) {
        return Overlapping([](const char*, char* target) { UtlClearString(target); }, text, 0, Edge::Start);
    };
    EXPECT_EQ(cleared(" a\nb\nc\nd\r\n"), "a b c\nd") << "two line ends, and those at the end";
    EXPECT_EQ(cleared("a\rb\rc"), "a b\rc") << "one when there is no other kind";
    EXPECT_EQ(cleared("a\rb\nc"), "a\rb c");
    EXPECT_EQ(cleared("\n \n"), "");
    UtlClearString(nullptr);

    const struct
    {
        const char *text, *unquoted, *python;
    } rows[] = {
        {"\"x y\"", "x y", "\"x y\""},
        {"\"x y", "\"x y", "\"x y"},
        {"\"", "", "\""},
        {"\"\"", "", "\"\""},
        {"r\"x\n\"", "r\"x\n\"", "x"},
        {"r\"", "r\"", ""},
        {"", "", ""},
        {" \"x\"", " \"x\"", " \"x\""},
        {"\" x\n\"y\"", "x \"y", "\" x\n\"y\""},
    };
    for (const auto& [text, unquoted, python] : rows) {
        EXPECT_EQ(Taken(UtlClearDoubleQuotesFromString(text)), unquoted) << text;
        EXPECT_EQ(Taken(UtlClearPythonString(text)), python) << text;
    }
    EXPECT_EQ(UtlClearDoubleQuotesFromString(nullptr), nullptr);
    EXPECT_EQ(UtlClearPythonString(nullptr), nullptr);
}

TEST(StringClean, GivesCopiesWithoutADelimiterOrCarriageReturns)
{
    const auto without = [](const char* text, const char* delimiter) {
        char* result = nullptr;
        UtlRemoveFirstAppearenceOfDelimeter(text, delimiter, &result);
        return Taken(result);
    };
    EXPECT_EQ(without("a--b--c", "--"), "ab--c");
    EXPECT_EQ(without("ab", "ab"), "");
    EXPECT_EQ(without("ab", "abc"), "ab");
    EXPECT_EQ(without("ab", ""), "ab");
    EXPECT_EQ(without("ab", nullptr), "ab");
    EXPECT_EQ(without(nullptr, "a"), "(null)");
    const std::string half(1'000'000, 'a');  // which takes a search by trial for ever
    EXPECT_EQ(without((half + half).c_str(), (half + 'b').c_str()), half + half);

    const auto withoutReturns = [](const char* text) {
        char* result = nullptr;
        UtlStrRemoveCarriageReturn(text, &result);
        return Taken(result);
    };
    EXPECT_EQ(withoutReturns("a\r\n\rb"), "a\nb");
    EXPECT_EQ(withoutReturns("\r"), "");
    EXPECT_EQ(withoutReturns(""), "(null)");
    EXPECT_EQ(withoutReturns(nullptr), "(null)");
}

TEST(StringClean, ReplacesCharacters)
{
    char text[] = "a\\b/c\\\xE9";
    UtlReplaceChar(text, "\\\xE9", "/-");
    EXPECT_STREQ(text, "a/b/c//");
    UtlReplaceChar(text, "", "x");
    UtlReplaceChar(text, nullptr, "x");
    UtlReplaceChar(text, "a", nullptr);
    EXPECT_STREQ(text, "a/b/c//");
    UtlReplaceChar(text, "/", "");
    EXPECT_EQ(std::string(text, 8), std::string("a\0b\0c\0\0\0", 8)) << "over the whole length";
}

TEST(StringClean, KnowsTheAcceptedLatinBytes)
{
    std::string accepted;
    for (int code = 128; code < 256; ++code)
        if (UtlIsAscii(static_cast<char>(code)) == 1)
            accepted += static_cast<char>(code);
    EXPECT_EQ(accepted, "\xA1\xB0\xB2\xBF\xC1\xC4\xC9\xCD\xD1\xD3\xD6\xDA\xDC\xDF\xE1\xE4\xE9\xED\xF1\xF3\xF6\xFA\xFC");
    EXPECT_EQ(UtlIsAscii('\0') + UtlIsAscii('a') + UtlIsAscii('\x7F'), 3);
}

// ---- Copies --------------------------------------------------------------------------------------------------------

TEST(StringCopies, OfBoundedLengthStayInTheirBuffer)
{
    const struct
    {
        const char* source;
        int size, result;
        std::string target;  // five x before
    } rows[] = {
        {"ab", 5, 3, {"ab\0\0x", 5}}, {"ab", 3, 3, {"ab\0xx", 5}}, {"ab", 2, 2, "abxxx"},
        {"abc", 2, 2, "abxxx"},       {"", 5, 1, {"\0\0xxx", 5}},  {"ab", 0, 0, "xxxxx"},
        {"ab", -1, 0, "xxxxx"},       {nullptr, 0, 0, "xxxxx"},    {nullptr, 5, 0, {"\0xxxx", 5}},
    };
    for (const auto& row : rows) {
        std::string target = "xxxxx";
        EXPECT_EQ(UtlStrncpy(target.data(), row.source, row.size), row.result);
        EXPECT_EQ(target, row.target) << row.size;
    }
    const GuardedBuffer unterminated(3);
    std::fill_n(unterminated.Data(), 3, 'q');
    std::string target = "xxxx";
    EXPECT_EQ(UtlStrncpy(target.data(), unterminated.Data(), 3), 3) << "no NUL is looked for behind";
    EXPECT_EQ(Utilstrncpy(target.data() + 1, unterminated.Data(), 3), 0);
    EXPECT_EQ(target, "qqqq");

    char source[] = "ab";
    Utilstrncpy(target.data(), source, -1);
    EXPECT_EQ(target, "qqqq");
    Utilstrncpy(target.data(), source, 4);
    EXPECT_EQ(target, std::string("ab\0\0", 4));
    Utilstrncpy(target.data(), nullptr, 1);
    EXPECT_EQ(target, std::string("\0b\0\0", 4));
    UtlStrFillChar(target.data(), '\xE9', 3);
    UtlStrFillChar(target.data(), 'z', -3);
    EXPECT_EQ(target, std::string("\xE9\xE9\xE9\0", 4));
}

TEST(StringCopies, TakeCaseFromAsciiAlone)
{
    int length = -1;
    EXPECT_EQ(Taken(UtlStrDup("aZ\xE9", &length)), "aZ\xE9");
    EXPECT_EQ(length, 3);
    EXPECT_EQ(Taken(UtlToUpperStrDup("abz{\xE9", &length)), "ABZ{\xE9");
    EXPECT_EQ(length, 5);
    EXPECT_EQ(Taken(UtlStrDup("", nullptr)) + Taken(UtlToUpperStrDup("a", nullptr)), "A");
    EXPECT_EQ(UtlStrDup(nullptr, &length), nullptr);
    EXPECT_EQ(UtlToUpperStrDup(nullptr, &length), nullptr);
    EXPECT_EQ(length, 5);
    EXPECT_EQ(Taken(UtlStrToLower("AZ[\xC9")), "az[\xC9");
    EXPECT_EQ(Taken(UtlStrToUpper("az{\xE9")), "AZ{\xE9");
    EXPECT_EQ(UtlStrToLower(nullptr), nullptr);
    EXPECT_EQ(UtlStrToUpper(nullptr), nullptr);
    EXPECT_EQ(Taken(UtlStrGetStringBlank(3)), "   ");
    EXPECT_EQ(Taken(UtlStrGetStringBlank(0)), "");
    EXPECT_EQ(UtlStrGetStringBlank(-1), nullptr);
}

TEST(StringCopies, OfFileNames)
{
    EXPECT_STREQ(UtlStrBaseName("a/b\\c"), "b\\c");
    EXPECT_STREQ(UtlStrBaseName("a\\b\\c"), "c");
    EXPECT_STREQ(UtlStrBaseName("a/"), "");
    EXPECT_STREQ(UtlStrBaseName("c"), "c");
    EXPECT_EQ(UtlStrBaseName(nullptr), nullptr);

    EXPECT_EQ(Taken(UtlReplaceInvalidCharsInFileName("<a>:\"b/c\\d|e?f*\n\x1F.\xC3\xA9", '_')),
              "_a___b_c_d_e_f___.\xC3\xA9");
    EXPECT_EQ(Taken(UtlReplaceInvalidCharsInFileName("a:b", '*')), "ab");
    EXPECT_EQ(Taken(UtlReplaceInvalidCharsInFileName("a:b", '\0')), "ab");
    EXPECT_EQ(UtlReplaceInvalidCharsInFileName(nullptr, '_'), nullptr);
    EXPECT_EQ(Taken(UtlUrlStrReplaceFilePathSep("C:\\a\\b/c")), "C:/a/b/c");
    EXPECT_EQ(UtlUrlStrReplaceFilePathSep(nullptr), nullptr);
}

TEST(StringCopies, OfPathsAreCutShort)
{
    const struct
    {
        const char* path;
        int length;
        const char* expected;
    } rows[] = {
        {"C:\\models\\wing\\spar.inp", 18, "C:\\mod...\\spar.inp"},
        {"C:\\models\\wing\\spar.inp", 12, "...\\spar.inp"},
        {"C:\\models\\wing\\spar.inp", 11, "...spar.inp"},
        {"/models/wing/spar.inp", 21, "/models/wing/spar.inp"},
        {"spar_of_the_wing.inp", 10, "...ing.inp"},
        {"spar.inp", 3, "inp"},
        {"spar.inp", 0, ""},
        {"\xC3\xA9\xC3\xA9\xC3\xA9/a", 6, ".../a"},  // one byte is left, which is no character
        {"a\xE2\x82\xAC\xE2\x82\xAC", 5, "..."},
        {"", 0, ""},
    };
    for (const auto& [path, length, expected] : rows)
        EXPECT_EQ(Taken(UtlCutShortFileName(path, length)), expected) << path << " in " << length;
    EXPECT_EQ(UtlCutShortFileName(nullptr, 5), nullptr);
    EXPECT_EQ(UtlCutShortFileName("a", -1), nullptr);

    const std::string path = "\x80\x81/\x82\x83\x84\x85\x86\x87\x88 text\\\xBF\xBF\xBF\xBF\xBF";
    for (std::size_t length = 0; length <= path.size(); ++length) {
        const std::string cut = Taken(UtlCutShortFileName(path.c_str(), static_cast<int>(length)));
        EXPECT_TRUE(cut.size() <= length && cut.size() + 3 >= length) << length << ": " << cut;
    }
}

// ---- Fixed fields --------------------------------------------------------------------------------------------------

TEST(FixedFields, ReadIntegers)
{
    const struct
    {
        const char* text;
        int column, width, result, value;
    } rows[] = {
        {"  -12  99", 1, 6, 0, -12},
        {"12345", 2, 3, 0, 234},
        {"  +7\t", 1, 99, 0, 7},
        {"12\n34", 1, 5, 0, 12},
        {"12\r34", 3, 3, 1, 0},
        {"12  34", 3, 2, 1, 0},
        {"12", 3, 1, 1, 0},
        {"", 1, 1, 1, 0},
        {"12", 0, 2, 1, 0},
        {"12", 1, 0, 1, 0},
        {"12", INT_MIN, -1, 1, 0},
        {nullptr, 1, 1, 1, 0},
        {"1x2", 1, 3, 2, 0},
        {"+-1", 1, 3, 2, 0},
        {"+", 1, 1, 2, 0},
        {"1 2", 1, 3, 2, 0},
        {"2147483648", 1, 10, 2, 0},
        {"-2147483648", 1, 11, 0, INT_MIN},
        {"7", INT_MAX, INT_MAX, 1, 0},
    };
    for (const auto& [text, column, width, result, value] : rows) {
        int read = 99;
        EXPECT_EQ(UtlReadInt(text, column, width, &read), result) << text << ' ' << column;
        EXPECT_EQ(read, value) << text;
        EXPECT_EQ(VStrUtlReadInt(text, column, width, nullptr), result);
    }
    const GuardedBuffer unterminated(3);
    std::fill_n(unterminated.Data(), 3, '4');
    int read = 0;
    EXPECT_EQ(UtlReadInt(unterminated.Data(), 2, 2, &read), 0) << "nothing behind the field is read";
    EXPECT_EQ(read, 44);
}

TEST(FixedFields, ReadPoints)
{
    const struct
    {
        const char* text;
        int column, width, result;
        double x, y, z;
    } rows[] = {
        {"P1    1.0   -2.5   3e2", 5, 6, 0, 1.0, -2.5, 300.0},
        {"  1.0         3.0", 1, 6, 1, 1.0, 0.0, 3.0},
        {"  1.0   2,5", 1, 6, 2, 1.0, 0.0, 0.0},
        {"123", 1, 1, 0, 1.0, 2.0, 3.0},
        {nullptr, 1, 1, 1, 0.0, 0.0, 0.0},
        {"123", -1, 2, 1, 0.0, 0.0, 0.0},
        {"123", 3, INT_MAX, 1, 3.0, 0.0, 0.0},
    };
    for (const auto& [text, column, width, result, x, y, z] : rows) {
        _TvPoint3Str point = {9.0, 9.0, 9.0};
        EXPECT_EQ(UtlReadPoint3(text, column, width, &point), result) << text;
        EXPECT_EQ((std::vector{point.x, point.y, point.z}), (std::vector{x, y, z})) << text;
        EXPECT_EQ(UtlReadPoint3(text, column, width, nullptr), result);
    }
}

TEST(FixedFields, ReadTexts)
{
    const struct
    {
        const char* text;
        int column, width, result;
        const char* value;
    } rows[] = {
        {"GRID   bolt M8 next", 5, 11, 0, "bolt M8"},
        {"ab", 2, 9, 0, "b"},
        {"ab \n", 3, 9, 1, ""},
        {"ab", 3, 1, 1, ""},
        {nullptr, 1, 1, 1, ""},
    };
    for (const auto& [text, column, width, result, expected] : rows) {
        char target[16] = "before";
        EXPECT_EQ(UtlReadString(text, column, width, target), result);
        EXPECT_STREQ(target, expected);
        EXPECT_EQ(UtlReadString(text, column, width, nullptr), result);
        char* value = target;
        EXPECT_EQ(VStrUtlReadString(text, column, width, &value), result);
        EXPECT_EQ(Taken(value), result == 0 ? expected : "(null)");
        EXPECT_EQ(VStrUtlReadString(text, column, width, nullptr), result);
    }
}

// ---- Sorting -------------------------------------------------------------------------------------------------------

Strings Sorted(void (*sort)(int, char**), Strings strings)
{
    std::vector<char*> pointers;
    for (std::string& text : strings)
        pointers.push_back(text == "(null)" ? nullptr : text.data());
    sort(static_cast<int>(pointers.size()), pointers.data());
    Strings sorted;
    for (const char* const text : pointers)
        sorted.emplace_back(text != nullptr ? text : "(null)");
    return sorted;
}

TEST(Sorting, GoesByLettersOrByNumbersToo)
{
    const Strings names = {"b10", "(null)", "B9", "b", "b9", "a", "\xE9", "b010", "_", "", "b9c", "B9A", "b1"};
    EXPECT_EQ(Sorted(UtlSortStringInAlphabaticOrder, names),
              (Strings{"", "_", "a", "b", "b010", "b1", "b10", "B9", "b9", "B9A", "b9c", "\xE9", "(null)"}));
    EXPECT_EQ(Sorted(UtlSortStringInAlphaNumricOrder, names),
              (Strings{"", "_", "a", "b", "b1", "B9", "b9", "B9A", "b9c", "b10", "b010", "\xE9", "(null)"}));
    const std::string nines(400, '9');
    EXPECT_EQ(Sorted(UtlSortStringInAlphaNumricOrder,
                     {"1" + nines, nines + "x", "0" + nines + "a", "0", "00", "1.10", "1.9"}),
              (Strings{"0", "00", "1.9", "1.10", "0" + nines + "a", nines + "x", "1" + nines}));
    UtlSortStringInAlphabaticOrder(3, nullptr);
    UtlSortStringInAlphaNumricOrder(-1, nullptr);
}

// All strings of up to three characters that matter: every order of the input gives the same, equal ones aside.
TEST(Sorting, ComparesEveryPairAlike)
{
    Strings strings = {""};
    for (std::size_t i = 0; strings[i].size() < 3; ++i)
        for (const char c : {'0', '1', '2', 'a', ' '})
            strings.push_back(strings[i] + c);
    const Strings sorted = Sorted(UtlSortStringInAlphaNumricOrder, strings);
    for (std::size_t i = 0; i < sorted.size(); ++i)
        for (std::size_t j = i + 1; j < sorted.size(); ++j)
            ASSERT_EQ(Sorted(UtlSortStringInAlphaNumricOrder, {sorted[i], sorted[j]})[0], sorted[i]) << sorted[j];
}

TEST(Sorting, OrdersRowsByAColumnAndKeepsEqualOnes)
{
    char ten[] = "10", nine[] = "9", a[] = "a", b[] = "b", c[] = "c";
    char *first[] = {a, ten}, *second[] = {b, nine}, *third[] = {c, ten}, *empty[] = {a, nullptr};
    char** rows[] = {nullptr, first, empty, second, third};
    UtlSortColumnArrayGivenColumnIndex(5, rows, 1);
    EXPECT_EQ(std::vector(rows, rows + 5), (std::vector<char**>{second, first, third, nullptr, empty}));
    UtlSortColumnArrayGivenColumnIndex(5, rows, -1);
    UtlSortColumnArrayGivenColumnIndex(5, nullptr, 0);
    EXPECT_EQ(rows[0], second);
}

// ---- Formatted text ------------------------------------------------------------------------------------------------

template <typename... Arguments>
void ExpectPrinted(const char* format, Arguments... arguments)
{
    char expected[2000];
    const int length = std::snprintf(expected, sizeof expected, format, arguments...);
    const auto needed = static_cast<std::size_t>(length) + 1;
    for (const std::size_t size : {std::size_t{1}, needed - needed / 2, needed, needed + 9}) {
        const GuardedBuffer target(size);
        EXPECT_EQ(UtlSnprintf(target.Data(), size, format, arguments...), length);
        EXPECT_EQ(std::string(target.Data()), std::string(expected).substr(0, size - 1));
    }
    EXPECT_EQ(UtlSnprintf(nullptr, 7, format, arguments...), length);
    const GuardedBuffer target(needed);
    EXPECT_EQ(UtlSprintf(target.Data(), format, arguments...), length);
    EXPECT_STREQ(target.Data(), expected);
}

TEST(FormattedText, IsWhatPrintfWrites)
{
    ExpectPrinted("%5d|%-8.3f|%s %c %%", -12, 2.0 / 3.0, "bolt", 'x');
    ExpectPrinted("%e %g %a %zu %lld", 1e300, 1e-5, 1.5, sizeof(int), LLONG_MIN);
    ExpectPrinted("%.600f %*s", 0.1, 500, "wide");
    char target[] = "xyz";
    EXPECT_EQ(UtlSnprintf(target, 4, nullptr), 0);
    EXPECT_STREQ(target, "");
    EXPECT_EQ(UtlSnprintf(target, SIZE_MAX, "%d", 17), 2);
    EXPECT_STREQ(target, "17");
}

TEST(FormattedText, KnowsNoLocale)
{
    const char* const names[] = {"de_DE.UTF-8", "de_DE", "German_Germany.1252"};
    const bool isSet = std::any_of(std::begin(names), std::end(names),
                                   [](auto name) { return std::setlocale(LC_ALL, name) != nullptr; });
    char target[40], after[40];
    UtlSprintf(target, "%g", 0.5);
    std::snprintf(after, sizeof after, "%g", 0.5);
    std::setlocale(LC_ALL, "C");
    if (!isSet)
        GTEST_SKIP() << "no locale with a decimal comma on this machine";
    EXPECT_STREQ(target, "0.5");
    EXPECT_STREQ(after, "0,5") << "the host's locale is as it was";
}

}  // namespace
