#include <basutl/BuCharacter.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <compare>
#include <limits>
#include <random>
#include <string>

namespace {

// Texts over two letters are short of variety on purpose: they overlap and repeat.
std::wstring RandomText(std::mt19937& random, std::size_t limit)
{
    std::wstring text(random() % (limit + 1), L'a');
    for (wchar_t& c : text)
        c = L"ab"[random() % 2];
    return text;
}

TEST(BuString, ConvertsNarrowTextBothWays)
{
    std::string ascii;
    for (int byte = 1; byte < 128; ++byte)
        ascii += static_cast<char>(byte);
    for (const std::string& narrow : {std::string(), ascii, std::string("gr\x81\xFF")})
        EXPECT_EQ(BuString(narrow.c_str()).ToNarrow(), narrow);
    EXPECT_EQ(BuString(ascii.c_str()).GetAt(64), L'A');
    EXPECT_STREQ(BuString(static_cast<const char*>(nullptr)), L"");
    EXPECT_STREQ(BuString(static_cast<const wchar_t*>(nullptr)), L"");
}

TEST(BuString, JoinsAndTakesApart)
{
    BuString text = L"bolt";
    text += L'_';
    text += text;
    text += static_cast<const wchar_t*>(nullptr);
    text += text.GetText() + 8;
    EXPECT_STREQ(text, L"bolt_bolt_t_");
    text = text.GetText() + 5;
    EXPECT_STREQ(text + L"." + text.Left(4), L"bolt_t_.bolt");
    EXPECT_STREQ(L'<' + text + L'>', L"<bolt_t_>");
    EXPECT_STREQ(text.Mid(-3, 2), L"bo");
    EXPECT_STREQ(text.Mid(4, 100), L"_t_");
    EXPECT_STREQ(text.Mid(7, 1), L"");
    EXPECT_STREQ(text.Mid(2, -1), L"");
    EXPECT_EQ(text.GetAt(-1), L'\0');
    EXPECT_EQ(text.GetAt(7), L'\0');
}

TEST(BuString, FindsAndReplacesAsTheStandardStringDoes)
{
    std::mt19937 random(1);
    for (int i = 0; i < 5000; ++i) {
        const std::wstring text = RandomText(random, 16);
        const std::wstring part = L"a" + RandomText(random, 2);
        const std::wstring to = RandomText(random, 4);
        const int start = static_cast<int>(random() % 20) - 2;
        const auto from = static_cast<std::size_t>(std::max(start, 0));
        BuString ours(text.c_str());
        ASSERT_EQ(ours.Find(part.c_str(), start), static_cast<int>(text.find(part, from))) << i;
        ASSERT_EQ(ours.Find(L"", start), static_cast<int>(text.find(L"", from))) << i;
        ASSERT_EQ(ours.Find(L'b', start), static_cast<int>(text.find(L'b', from))) << i;
        ASSERT_EQ(ours.FindOneOf(part.c_str(), start), static_cast<int>(text.find_first_of(part, from))) << i;
        ASSERT_EQ(ours.ReverseFind(L'b'), static_cast<int>(text.rfind(L'b'))) << i;

        std::wstring expected = text;
        int count = 0;
        for (std::size_t at = 0; (at = expected.find(part, at)) != expected.npos; at += to.size(), ++count)
            expected.replace(at, part.size(), to);
        ASSERT_EQ(ours.Replace(part.c_str(), to.c_str()), count) << i;
        ASSERT_EQ(ours.GetText(), expected) << i;
    }
    BuString text = L"a-b-c";
    EXPECT_EQ(text.Find(static_cast<const wchar_t*>(nullptr)) + text.FindOneOf(nullptr), -2);
    EXPECT_EQ(text.Replace(L"", L"x") + text.Replace(nullptr, L"x"), 0);
    EXPECT_EQ(text.Replace(L"-", nullptr), 2);
    EXPECT_EQ(text.Replace(text, text), 1);
    EXPECT_STREQ(text, L"abc");
}

TEST(BuString, InsertsInsideTheText)
{
    BuString text = L"ad";
    EXPECT_EQ(text.Insert(1, L"bc"), 4);
    EXPECT_EQ(text.Insert(-5, L'<'), 5);
    EXPECT_EQ(text.Insert(99, L'>'), 6);
    EXPECT_EQ(text.Insert(1, text.GetText() + 4), 8);
    EXPECT_EQ(text.Insert(1, nullptr), 8);
    EXPECT_STREQ(text, L"<d>abcd>");
}

TEST(BuString, TrimsWhiteSpaceOnly)
{
    BuString text = L" \t\n\v\f\r\xA0 x \xA0 \r\n";
    EXPECT_STREQ(text.TrimLeft().TrimRight(), L"\xA0 x \xA0");
    BuString blank = L" \t ";
    EXPECT_STREQ(BuString(blank).TrimLeft(), L"");
    EXPECT_STREQ(BuString(blank).TrimRight(), L"");
}

TEST(BuString, ExtractsLines)
{
    const wchar_t* const rows[][2] = {// each line followed by '|'
                                      {L"", L""},
                                      {L"one\r\n\n two", L"one\r|| two|"},
                                      {L"one\n", L"one|"},
                                      {L"\n\n", L"||"}};
    for (const auto& [text, joined] : rows) {
        const BuString whole(text);
        BuString lines, line;
        for (int position = -1; whole.ExtractLine(position, line);)
            lines += line + L'|';
        EXPECT_STREQ(lines, joined);
        EXPECT_TRUE(line.IsEmpty());
    }
}

TEST(BuString, ExtractsWords)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* delimiters;
        wchar_t quote;
        const wchar_t* joined;  // each word followed by '|'
    } rows[] = {{L"RGB 1 2 3", L" ", 0, L"RGB|1|2|3|"},
                {L"  a ,b,, c ", L" ,", 0, L"a|b|c|"},
                {L" , ", L" ,", 0, L""},
                {L"a b", nullptr, 0, L"a b|"},
                {L"1 'a b'2 ''x'", L" ", L'\'', L"1|a b|2||x||"},
                {L"'open  end ", L" ", L'\'', L"open  end |"},
                {L"a'b;c'", L";'", L'\'', L"a|b;c|"},
                {L"'a b'", L" ", 0, L"'a|b'|"}};
    for (const auto& row : rows) {
        BuObjectArrayTempl<BuString> words;
        words.Add(L"old");
        const int count = BuString(row.text).ExtractWords(words, row.delimiters, row.quote);
        BuString joined;
        for (const BuString& word : words)
            joined += word + L'|';
        EXPECT_STREQ(joined, row.joined) << row.text;
        EXPECT_EQ(count, words.GetCount()) << row.text;
    }
}

TEST(BuString, TrimsANumberOffTheLeft)
{
    constexpr int none = 5;
    const struct
    {
        const wchar_t* text;
        int value;
        const wchar_t* rest;
    } rows[] = {{L"12", 12, L""},
                {L"-7mm", -7, L"mm"},
                {L"+007.5", 7, L".5"},
                {L"1e3", 1, L"e3"},
                {L"2147483648", 2147483647, L""},
                {L"-99999999999999999999x", -2147483647 - 1, L"x"},
                {L"", none, L""},
                {L" 1", none, L" 1"},
                {L"-", none, L"-"},
                {L"+-1", none, L"+-1"}};
    for (const auto& row : rows) {
        BuString text = row.text;
        int value = none;
        EXPECT_EQ(text.TrimLeftNumber(value), row.value != none) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_STREQ(text, row.rest);
    }
}

TEST(BuString, ReadsNumbers)
{
    EXPECT_EQ(BuString(L" \n-42abc").ToInt(), -42);
    EXPECT_EQ(BuString(L"99999999999").ToInt(), 1215752191);
    EXPECT_EQ(BuString(L"99999999999999999999").ToInt(), -1);  // the largest 64-bit value, cast
    EXPECT_EQ(BuString(L"zZ!").ToInt(36), 35 * 36 + 35);
    EXPECT_EQ(BuString(L"12").ToInt(1) + BuString(L"12").ToInt(37) + BuString(L"x").ToInt() + BuString(L"- 1").ToInt(),
              0);
    EXPECT_EQ(BuString(L"  1d5").ToDouble(), 1.0);
    EXPECT_EQ(BuString(L"-0x1.8p3 mm").ToDouble(), -12.0);
    EXPECT_EQ(BuString(L"1e-400\x3B1").ToDouble(), 0.0);
    EXPECT_EQ(BuString(L"INFINITY").ToDouble(), std::numeric_limits<double>::infinity());
}

TEST(BuString, WritesADoubleExactlyRounded)
{
    const struct
    {
        double value;
        int decimals;
        const wchar_t* text;
    } rows[] = {
        {0.125, 2, L"0.12"}, {2.5, -1, L"2"}, {1e22, 1, L"10000000000000000000000.0"}, {-std::nan(""), 3, L"nan"}};
    for (const auto& row : rows)
        EXPECT_STREQ(BuString::FromDouble(row.value, row.decimals), row.text);
    EXPECT_EQ(BuString::FromDouble(std::numeric_limits<double>::max(), 5000).GetLength(), 309 + 1 + 5000);
}

TEST(BuString, OrdersByUtf16Units)
{
    // Each is below the next: above U+FFFF a character begins with a unit of 0xD800 to 0xDBFF.
    const wchar_t* const ordered[] = {L"",           L"B",      L"Ba",         L"a",          L"ab",
                                      L"b",          L"\xD7FF", L"\U00010000", L"\U00010001", L"\xD801",
                                      L"\U0010FFFF", L"\xE000", L"\xFFFF"};
    for (int l = 0; l < 13; ++l)
        for (int r = 0; r < 13; ++r) {
            const BuString left = ordered[l];
            const BuString right = ordered[r];
            // Operators are to compare texts of both kinds, and no addresses.
            EXPECT_TRUE((left.Compare(right) <=> 0) == (l <=> r) && (left <=> right) == (l <=> r)) << l << ' ' << r;
            EXPECT_TRUE((left > right) == (l > r) && (ordered[l] < right) == (l < r)) << l << ' ' << r;
            EXPECT_TRUE((left == right) == (l == r) && (left == ordered[r]) == (l == r)) << l << ' ' << r;
        }
    EXPECT_EQ(BuString(L"").Compare(nullptr), 0);
    EXPECT_GT(BuString(L"a").Compare(nullptr), 0);
    EXPECT_EQ(BuString(L"\xDFzA").CompareNoCase(L"\xDFZa"), 0);
    EXPECT_LT(BuString(L"\xC4").CompareNoCase(L"\xE4"), 0);
    EXPECT_LT(BuString(L"ab").CompareNoCase(L"ABC"), 0);
    EXPECT_LT(BuCompareNoCase("aZ", "Az\xE4"), 0);
    EXPECT_LT(BuCompareNoCase("z", "\xE4"), 0);
}

}  // namespace
