#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include "support/ChildProcess.h"
#include "support/GuardedBuffer.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

// The values of numbers stand in a block of the process, which is there before any test looks for leaks.
[[maybe_unused]] const int g_sharedValues = [] {
    char text[] = "1";
    void* values = nullptr;
    return UtlBreakStringToGivenDataType(text, &values, 0);
}();

// Copies the fields of a text and frees their array.
Strings TakeFields(int count, char** fields)
{
    Strings copy(fields, fields + count);
    VBuFree(fields, __FILE__, __LINE__);
    return copy;
}

// Copies a list and frees it.
Strings TakeList(int count, char** list)
{
    Strings copy(list, list + count);
    UtlFreeStringList(count, list);
    EXPECT_EQ(count, 0);
    return copy;
}

// A text that is divided in place, without a byte to spare.
struct Divided
{
    Strings fields;
    std::string text;  // what it has become

    template <typename Divide>
    Divided(const std::string& original, Divide divide)
    {
        const GuardedBuffer buffer(original);
        char** array = nullptr;
        const int count = divide(buffer.Data(), &array);
        fields = TakeFields(count, array);
        text.assign(buffer.Data(), original.size());
    }
};

Divided IntoStrings(const std::string& text, const char* delimiters)
{
    return {text, [&](char* copy, char*** fields) {
                return UtlBreakStringIntoStringsDbg(copy, fields, delimiters, __FILE__, __LINE__);
            }};
}

Divided IntoVariables(const std::string& text, const char* delimiters)
{
    return {text, [&](char* copy, char*** fields) {
                return UtlBreakStringIntoStringsAndVariables(copy, fields, delimiters);
            }};
}

Strings IntoChars(const std::string& text, const char* delimiter)
{
    const GuardedBuffer buffer(text);
    char** list = nullptr;
    const int count = UtlBreakStringIntoChars(buffer.Data(), &list, delimiter);
    EXPECT_EQ(buffer.Data(), text);
    return TakeList(count, list);
}

Strings Tokens(const std::string& text, std::string delimiters)
{
    const GuardedBuffer buffer(text);
    char* cursor = buffer.Data();
    Strings tokens;
    while (char* const token = UtlTokenize(&cursor, delimiters.data())) {
        tokens.emplace_back(token);
        VBuFree(token, __FILE__, __LINE__);
    }
    EXPECT_EQ(cursor, buffer.Data() + text.size());
    return tokens;
}

// Texts whose ends and delimiters fall everywhere in the blocks that are scanned at once.
template <typename Visit>
void ForEachLongText(Visit visit)
{
    std::mt19937 random(1);
    for (const std::size_t length : {63u, 64u, 65u, 129u, 300u, 4095u, 4096u, 4097u, 4200u, 9000u})
        for (const unsigned int density : {1u, 2u, 8u, 1000u}) {
            std::string text(length, ',');
            for (char& c : text)
                if (random() % density != 0 || density == 1000)
                    c = "ab;\xE9"[random() % 4];
            visit(text);
        }
}

// ---- Fixed widths --------------------------------------------------------------------------------------------------

TEST(BreakString, CopiesFieldsOfGivenWidths)
{
    const struct
    {
        const char* source;
        std::vector<int> widths;
        Strings fields;
        int size, fastSize;  // bytes of the buffer
    } rows[] = {
        {"abcdefg", {2, 3}, {"ab", "cde"}, 7, 7},
        {"a", {2, 3}, {"a", ""}, 5, 7},
        {"ab", {2, 3, 0}, {"ab", "", ""}, 6, 8},
        {"abc", {-1, 0, 9}, {"", "", "abc"}, 7, 12},
        {"", {1, 1}, {"", ""}, 4, 4},
        {"abc", {0, 1}, {"", "a"}, 3, 3},
        {"\xE9\xFF", {1, 1}, {"\xE9", "\xFF"}, 4, 4},
    };
    for (const auto& row : rows) {
        std::vector<int> widths = row.widths;
        const int count = static_cast<int>(widths.size());
        for (const bool fast : {false, true}) {
            const GuardedBuffer source(row.source);
            const GuardedBuffer buffer(static_cast<std::size_t>(fast ? row.fastSize : row.size));
            std::vector<char*> fields(widths.size());
            const int length = static_cast<int>(std::strlen(row.source));
            EXPECT_EQ(UtlOptimizeBreakString(count, fields.data(), source.Data(), widths.data(), buffer.Data(),
                                             fast ? length : length + 1),
                      count);
            EXPECT_EQ(Strings(fields.begin(), fields.end()), row.fields) << row.source;
            if (!fast) {
                EXPECT_EQ(UtlBreakString(count, fields.data(), source.Data(), widths.data(), buffer.Data()), count);
            }
            EXPECT_EQ(Strings(fields.begin(), fields.end()), row.fields) << row.source;
        }
    }
    // A record without a NUL.
    const GuardedBuffer record(5);
    std::memcpy(record.Data(), "abcde", 5);
    char buffer[7];
    char* fields[2];
    int widths[] = {2, 3};
    UtlBreakString(2, fields, record.Data(), widths, buffer);
    EXPECT_STREQ(fields[1], "cde");
    UtlOptimizeBreakString(2, fields, record.Data(), widths, buffer, 5);
    EXPECT_STREQ(fields[1], "cde");
    EXPECT_EQ(UtlBreakString(0, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(UtlOptimizeBreakString(-3, nullptr, nullptr, nullptr, nullptr, 0), -3);
    EXPECT_EQ(UtlBreakString(1, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(UtlOptimizeBreakString(1, nullptr, nullptr, nullptr, nullptr, 0), 0);
}

// ---- Numbers -------------------------------------------------------------------------------------------------------

TEST(BreakStringToGivenDataType, ReadsFieldsAsNumbers)
{
    char text[] = "  1\t2.5  -3e1x\n";
    void* values = nullptr;
    ASSERT_EQ(UtlBreakStringToGivenDataType(text, &values, 2), 3);
    EXPECT_EQ(std::vector<double>(static_cast<double*>(values), static_cast<double*>(values) + 3),
              (std::vector{1.0, 2.5, -30.0}));
    EXPECT_EQ(std::string(text, sizeof text), std::string("  1\0002.5\0 -3e1x\0\0", sizeof text));

    char ints[] = "99999999999 0x10 .5";
    ASSERT_EQ(UtlBreakStringToGivenDataType(ints, &values, 0), 3);
    EXPECT_EQ(std::vector<int>(static_cast<int*>(values), static_cast<int*>(values) + 3),
              (std::vector{1215752191, 0, 0}));
    char floats[] = "0.1 1d5";
    ASSERT_EQ(UtlBreakStringToGivenDataType(floats, &values, 1), 2);
    EXPECT_EQ(static_cast<float*>(values)[0], 0.1F);
    EXPECT_EQ(static_cast<float*>(values)[1], 1.0F);

    for (const char* const nothing : {"", " \t\v\f\r\n"}) {
        std::string empty = nothing;
        ASSERT_EQ(UtlBreakStringToGivenDataType(empty.data(), &values, 0), 1);
        EXPECT_EQ(*static_cast<int*>(values), 0);
    }
    char other[] = "1 2";
    EXPECT_EQ(UtlBreakStringToGivenDataType(other, &values, 3), 2);
    EXPECT_NE(values, nullptr);
    EXPECT_EQ(UtlBreakStringToGivenDataType(nullptr, &values, 0), 0);
    EXPECT_EQ(values, nullptr);
}

TEST(BreakStringToGivenDataType, TakesAnyNumberOfFields)
{
    std::string text;
    for (int i = 0; i < 10'000; ++i)
        text += std::to_string(i) + (i % 3 == 0 ? "\n" : "  ");
    void* values = nullptr;
    ASSERT_EQ(UtlBreakStringToGivenDataType(text.data(), &values, 2), 10'000);
    for (int i = 0; i < 10'000; ++i)
        ASSERT_EQ(static_cast<double*>(values)[i], i);
}

// ---- Delimiters ----------------------------------------------------------------------------------------------------

// The rules in terms of the C library's own splitter. Bytes between fields count as well.
void ExpectAsStrtok(const std::string& text, const char* delimiters)
{
    std::string copy = text;
    Strings expected;
    char* start = copy.data();
    if (*start != '\0' && std::strchr(delimiters, *start) != nullptr) {
        expected.emplace_back(" ");
        ++start;
    }
    std::vector<const char*> fields = {start};
    for (std::strtok(start, delimiters); const char* const field = std::strtok(nullptr, delimiters);)
        fields.push_back(field);
    expected.insert(expected.end(), fields.begin(), fields.end());

    const Divided divided = IntoStrings(text, delimiters);
    ASSERT_EQ(divided.fields, expected) << '"' << text << "\" at \"" << delimiters << '"';
    ASSERT_EQ(divided.text, copy) << '"' << text << "\" at \"" << delimiters << '"';
}

TEST(BreakStringIntoStrings, DividesAsStrtokDoes)
{
    ForEachText("a,;", 7, [](const std::string& text) {
        ExpectAsStrtok(text, ",");
        ExpectAsStrtok(text, ",;");
    });
    ForEachLongText([](const std::string& text) {
        ExpectAsStrtok(text, ",");
        ExpectAsStrtok(text, ",;\xE9");
        ExpectAsStrtok(text, "0123456789ABCDEFGHI,;\xE9");
        ExpectAsStrtok(text, "");
    });
}

TEST(BreakStringIntoStrings, LeavesTheCallersStrtokAlone)
{
    char callers[] = "1 2 3";
    std::strtok(callers, " ");
    EXPECT_EQ(IntoStrings("a b", " ").fields, (Strings{"a", "b"}));
    IntoVariables("a b", " ");
    EXPECT_STREQ(std::strtok(nullptr, " "), "2");
}

TEST(BreakStringIntoStrings, GivesOneConstantForNothingInFront)
{
    char texts[2][4] = {",a", ",b"};
    char** fields[2] = {};
    UtlBreakStringIntoStringsDbg(texts[0], &fields[0], ",", __FILE__, __LINE__);
    UtlBreakStringIntoStringsAndVariables(texts[1], &fields[1], ",");
    EXPECT_EQ(fields[0][0], fields[1][0]);
    VBuFree(fields[0], __FILE__, __LINE__);
    VBuFree(fields[1], __FILE__, __LINE__);
}

// In a process of its own: the array of the inner call stays allocated.
CHILD_SCENARIO(NewStringsOfFields)
{
    for (const char* const text : {"a,b;;c", ",,a", ",", "", ";x,\xE9"}) {
        std::string copy = text;
        char** list = nullptr;
        int count = -1;
        const int result = VbUtlBreakStringIntoStringsDbg(copy.data(), &count, &list, ",;", __FILE__, __LINE__);
        EXPECT_EQ(result, count);
        EXPECT_EQ(copy, IntoStrings(text, ",;").text);
        EXPECT_EQ(TakeList(count, list), IntoStrings(text, ",;").fields);
    }
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(BreakStringIntoStrings, GivesNewStringsAsWell)
{
    const ChildResult result = RunChild("NewStringsOfFields");
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
}

// Law: fields joined by the delimiter are the text. And new strings are the same fields, with " " for nothing.
void ExpectEachField(const std::string& text)
{
    const GuardedBuffer buffer(text);
    char** fields = nullptr;
    const int count = UtlStringTok(buffer.Data(), &fields, ",;");
    const auto divisions = std::count(text.begin(), text.end(), ',');
    const bool endsAtDelimiter = !text.empty() && text.back() == ',';
    ASSERT_EQ(count, divisions + 1 - endsAtDelimiter);
    Strings parts = TakeFields(static_cast<int>(divisions) + 1, fields);
    std::string joined = parts[0];
    for (std::size_t i = 1; i < parts.size(); ++i)
        joined += ',' + parts[i];
    ASSERT_EQ(joined, text);

    parts.resize(text.empty() ? 0 : static_cast<std::size_t>(count));
    std::replace(parts.begin(), parts.end(), std::string(), std::string(" "));
    ASSERT_EQ(IntoChars(text, ",;"), parts) << text;
}

TEST(StringTok, LeavesNothingOut)
{
    ForEachText("a,;", 7, ExpectEachField);
    ForEachLongText(ExpectEachField);
    const std::string longField(6000, 'x');
    EXPECT_EQ(IntoChars(longField + ",,b", ","), (Strings{longField, " ", "b"}));
    EXPECT_EQ(IntoChars("a,b", ""), (Strings{"a,b"}));
    EXPECT_EQ(IntoChars("a,b", nullptr), (Strings{"a,b"}));
    EXPECT_EQ(IntoStrings("a,b", nullptr).fields, (Strings{"a,b"}));
}

TEST(Tokenize, GivesWordsAndDelimiters)
{
    EXPECT_EQ(Tokens("x = (1,2)", " =(),"), (Strings{"x", "=", "(", "1", ",", "2", ")"}));
    EXPECT_EQ(Tokens("\t a\t,b  ", " \t,"), (Strings{"a", ",", "b"}));
    EXPECT_EQ(Tokens(" a b ", ","), (Strings{" a b "}));
    EXPECT_EQ(Tokens("\n a", "\n"), (Strings{"\n", " a"}));
    // Law: only blanks that divide are lost, and a token holds no delimiter but itself.
    ForEachText("ab ,", 6, [](const std::string& text) {
        std::string kept = text;
        kept.erase(std::remove(kept.begin(), kept.end(), ' '), kept.end());
        std::string joined;
        for (const std::string& token : Tokens(text, ", ")) {
            ASSERT_TRUE(token == "," || token.find_first_of(", ") == std::string::npos) << text;
            joined += token;
        }
        ASSERT_EQ(joined, kept);
    });
    char* cursor = nullptr;
    EXPECT_EQ(UtlTokenize(&cursor, nullptr), nullptr);
    EXPECT_EQ(UtlTokenize(nullptr, nullptr), nullptr);
}

// ---- Groups --------------------------------------------------------------------------------------------------------

TEST(BreakStringIntoStringsAndVariables, KeepsGroupsWhole)
{
    const struct
    {
        const char *text, *delimiters;
        Strings fields;
    } rows[] = {
        {"set  x [a b]  'c d'", " ", {"set", "x", "[a b]", "'c d'"}},
        {"{a b} <p q> [x  # y]", " ", {"{a b}", "<p q>", "[x  # y]"}},
        {"[a (b> c] d", " ", {"[a (b>", "c]", "d"}},  // any closing character ends a group
        {"'a [b] c' d", " ", {"'a [b]", "c'", "d"}},
        {"[a b", " ", {"[a b"}},
        {"a  'b  c'", " ", {"a", "'b  c'"}},
        {"x  <p  q>", " ", {"x", "<p q>"}},
        {"x <p  q>", " ", {"x", "<p  q>"}},
        {" \t a\t\t", " ", {" ", "a\t"}},
        {"[a\tb]", "\t", {"[a", "b]"}},
        {"a#b [c#d`] e`", " ", {"a b", "[c#d#]", "e#"}},
        {"a`b [c]", " ", {"a`b", "[c]"}},
        {"a.'b.c'.[d.e].~", ".", {"a", "'b.c'", "[d", "e]", "."}},
        {"'b.c'.~", ",.", {"'b", "c'", "~"}},
        {",,a,b", ",", {" ", ",a", "b"}},
        {",", ",", {" ", ""}},
        {"a b", "", {"a b"}},
        {"a  b", nullptr, {"a b"}},
        {"\xE9 \xFF", "\xE9", {" ", " \xFF"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(IntoVariables(row.text, row.delimiters).fields, row.fields) << row.text;

    char** fields = reinterpret_cast<char**>(&fields);
    char empty[] = "";
    EXPECT_EQ(UtlBreakStringIntoStringsAndVariables(empty, &fields, " "), 0);
    EXPECT_EQ(UtlBreakStringIntoStringsAndVariables(nullptr, &fields, " "), 0);
    EXPECT_EQ(fields, reinterpret_cast<char**>(&fields));
}

// White space shrinks as if the rest of the text moved left by one, again and again.
std::string CollapsedByDefinition(std::string text)
{
    bool isInside = false, isQuoted = false;
    const auto step = [&](char c, const char* opening, const char* closing) {
        if (std::strchr(opening, c) != nullptr || std::strchr(closing, c) != nullptr)
            isInside = std::strchr(opening, c) != nullptr;
        if (c == '\'')
            isInside = isQuoted = !isQuoted;
    };
    const auto isSpace = [](char c) { return std::strchr(" \t\n\v\f\r", c) != nullptr; };
    bool afterSpace = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        step(text[i], "[<{", "]>}");
        const bool isBlank = !isInside && isSpace(text[i]);
        if (isBlank && afterSpace) {
            while (i < text.size() && isSpace(text[i]))
                text.erase(i, 1);
            if (i < text.size())
                step(text[i], "[{", "]}");
        }
        afterSpace = isBlank && i < text.size() && isSpace(text[i]);
    }
    return text;
}

TEST(BreakStringIntoStringsAndVariables, ShrinksWhiteSpaceOutsideGroups)
{
    ForEachText("a <]'", 6, [](const std::string& text) {
        const Strings expected = {CollapsedByDefinition(text)};
        ASSERT_EQ(IntoVariables(text, nullptr).fields, text.empty() ? Strings() : expected) << text;
    });
}

class ContinuousDelimiters : public testing::Test
{
protected:
    ContinuousDelimiters() { Use(m_comma); }
    ~ContinuousDelimiters() override { UtlSetBreakContinuousDelimsOption(0, m_blank); }
    static void Use(char* delimiters) { UtlSetBreakContinuousDelimsOption(1, delimiters); }

    char m_comma[2] = ",";
    char m_blank[2] = " ";
};

TEST_F(ContinuousDelimiters, MakeFieldsOfNothingVisible)
{
    const struct
    {
        const char *text, *delimiters;
        Strings fields;
    } rows[] = {
        {"1, ,3", ",", {"1", " ", "3"}},
        {"1,,3", ";", {"1", " ", "3"}},
        {"a b,[c d]", ",", {"a", "b", "[c d]"}},
        {",,,,1", ",", {" ", "  ", " ", "1"}},  // the first field keeps its comma, which becomes a blank
        {",,,,,,,,", ",", {" ", "  ", " ", " ", " ", " ", " "}},
        {"a b", ",", {"a b"}},  // without the option's delimiter nothing is rewritten
        {"a b", " ", {"a", "b"}},
        {",", ",", {" ", ""}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(IntoVariables(row.text, row.delimiters).fields, row.fields) << row.text;
    Use(nullptr);
    EXPECT_EQ(IntoVariables("1,,3", ",").fields, (Strings{"1", "3"}));
    char word[] = "::";
    Use(word);
    EXPECT_EQ(IntoVariables("1 ::2", ",").fields, (Strings{"1", " ", "2"}));
}

TEST_F(ContinuousDelimiters, RewriteLongTextsInLinearTime)
{
    const std::string text(1'000'000, ',');
    EXPECT_EQ(IntoVariables(text, ";").fields.size(), 999'999U);  // one begins at the first comma
}

TEST(ResolvedContinuousDelimString, IsRewritten)
{
    const struct
    {
        const wchar_t* text;
        const char* delimiter;
        const wchar_t* expected;  // null: not found
    } rows[] = {
        {L"1, ,3", ",", L"1, ,3"}, {L"1 2,,3", ",", L"1,2, ,3"}, {L",,,", ",", L", , ,"},
        {L"a b", " ", L"a b"},     {L"a     b", " ", L"a   b"},  {L"a -- b c", "--", L"a- -b- -c"},
        {L"a b", ",", nullptr},    {L"a", "", nullptr},          {L"a", nullptr, nullptr},
        {L"", ",", nullptr},
    };
    for (const auto& [text, delimiter, expected] : rows) {
        BuString result(text);
        EXPECT_EQ(UtlStrGetResolvedContinuousDelimString(result, delimiter), expected != nullptr ? 1 : 0);
        EXPECT_EQ(result, BuString(expected != nullptr ? expected : text));
    }
}

// ---- Segments and lists --------------------------------------------------------------------------------------------

TEST(StringsIncludedInDelimiters, AreCopied)
{
    const struct
    {
        const char* text;
        char open, close;
        Strings segments;
    } rows[] = {
        {"f(a)(b", '(', ')', {"a"}},
        {"(((a)b)", '(', ')', {"((a"}},
        {"()x()", '(', ')', {"", ""}},
        {"'a'b'c'd'", '\'', '\'', {"a", "c"}},
        {"", '(', ')', {}},
        {")(", '(', ')', {}},
        {"(a)", '\0', ')', {}},
        {"(a)", '(', '\0', {}},
    };
    for (const auto& row : rows) {
        char** segments = reinterpret_cast<char**>(&segments);
        const int count = UtlGetStringsIncludedInDelimiters(row.text, row.open, row.close, &segments);
        EXPECT_EQ(segments == nullptr, row.segments.empty());
        EXPECT_EQ(TakeList(count, segments), row.segments) << row.text;
    }
}

TEST(StringList, IsFreedByItsCount)
{
    const auto array = [] { return static_cast<char**>(VBuCalloc(2, sizeof(char*), __FILE__, __LINE__)); };
    int count = 0;
    char** list = array();
    UtlFreeStringList(count, list);
    list[0] = VBuStrDup("still there", __FILE__, __LINE__);
    count = 2;
    UtlFreeStringList(count, list);
    EXPECT_EQ(count, 0);
    count = -5;
    UtlFreeStringList(count, array());
    EXPECT_EQ(count, 0);
    count = 3;
    UtlFreeStringList(count, nullptr);
    EXPECT_EQ(count, 0);
}

TEST(TrimStrings, CutsAtTheMarker)
{
    char texts[3][8] = {"ab//c//", "//", "a/b"};
    char* strings[] = {texts[0], nullptr, texts[1], texts[2]};
    char marker[] = "//";
    UtlTrimStrings(4, strings, marker + 2);
    UtlTrimStrings(4, strings, nullptr);
    UtlTrimStrings(4, nullptr, marker);
    EXPECT_STREQ(texts[0], "ab//c//");
    UtlTrimStrings(4, strings, marker);
    EXPECT_STREQ(texts[0], "ab");
    EXPECT_STREQ(texts[1], "");
    EXPECT_STREQ(texts[2], "a/b");

    const std::string slashes(1'000'000, '/');  // which take a search by trial for ever
    std::string text = slashes + slashes + 'b', late = slashes + 'b';
    strings[0] = text.data();
    UtlTrimStrings(1, strings, late.data());
    EXPECT_EQ(std::strlen(text.c_str()), slashes.size());
}

TEST(StringBreak, GivesNothingWithoutTextOrOutput)
{
    char text[] = "a,b";
    char** fields = reinterpret_cast<char**>(text);
    EXPECT_EQ(UtlStringTok(nullptr, &fields, ","), 0);
    EXPECT_EQ(fields, nullptr);
    EXPECT_EQ(UtlBreakStringIntoChars(nullptr, &fields, ","), 0);
    EXPECT_EQ(UtlBreakStringIntoStringsDbg(nullptr, &fields, ",", __FILE__, __LINE__), 0);
    EXPECT_EQ(VbUtlBreakStringIntoStringsDbg(nullptr, nullptr, &fields, ",", __FILE__, __LINE__), 0);
    EXPECT_EQ(UtlGetStringsIncludedInDelimiters(nullptr, '(', ')', &fields), 0);
    EXPECT_EQ(UtlStringTok(text, nullptr, ","), 0);
    EXPECT_EQ(UtlBreakStringIntoChars(text, nullptr, ","), 0);
    EXPECT_EQ(UtlBreakStringIntoStringsDbg(text, nullptr, ",", __FILE__, __LINE__), 0);
    EXPECT_EQ(VbUtlBreakStringIntoStringsDbg(text, nullptr, nullptr, ",", __FILE__, __LINE__), 0);
    EXPECT_EQ(UtlBreakStringIntoStringsAndVariables(text, nullptr, ","), 0);
    EXPECT_EQ(UtlGetStringsIncludedInDelimiters(text, 'a', 'b', nullptr), 0);
    EXPECT_EQ(UtlBreakStringToGivenDataType(text, nullptr, 0), 0);
    EXPECT_STREQ(text, "a,b");
}

}  // namespace
