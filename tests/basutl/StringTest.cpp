#include <basutl/BuCharacter.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

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
    for (const char* narrow : {"", "plain", "1 2\t3", "gr\x81\xFF"})
        EXPECT_EQ(BuString(narrow).ToNarrow(), narrow);
    std::string every;
    for (int byte = 1; byte < 128; ++byte)
        every += static_cast<char>(byte);
    const BuString wide(every.c_str());
    EXPECT_EQ(wide.ToNarrow(), every);
    EXPECT_EQ(wide.GetAt(64), L'A');
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

TEST(BuString, FindsAsTheStandardStringDoes)
{
    std::mt19937 random(1);
    for (int i = 0; i < 5000; ++i) {
        const std::wstring text = RandomText(random, 12);
        const std::wstring part = RandomText(random, 3);
        const int start = static_cast<int>(random() % 16) - 2;
        const auto from = static_cast<std::size_t>(std::max(start, 0));
        const BuString ours(text.c_str());
        ASSERT_EQ(ours.Find(part.c_str(), start), static_cast<int>(text.find(part, from))) << i;
        ASSERT_EQ(ours.Find(L'b', start), static_cast<int>(text.find(L'b', from))) << i;
        ASSERT_EQ(ours.FindOneOf(part.c_str(), start), static_cast<int>(text.find_first_of(part, from))) << i;
        ASSERT_EQ(ours.ReverseFind(L'b'), static_cast<int>(text.rfind(L'b'))) << i;
    }
    EXPECT_EQ(BuString(L"abc").Find(static_cast<const wchar_t*>(nullptr)), -1);
    EXPECT_EQ(BuString(L"abc").FindOneOf(nullptr), -1);
}

TEST(BuString, ReplacesLikeSplitAndJoin)
{
    std::mt19937 random(2);
    for (int i = 0; i < 5000; ++i) {
        const std::wstring text = RandomText(random, 16);
        const std::wstring from = L"a" + RandomText(random, 2);
        const std::wstring to = RandomText(random, 4);
        std::wstring expected;
        int count = 0;
        for (std::size_t at = 0; at < text.size();) {
            const bool matches = text.compare(at, from.size(), from) == 0;
            expected += matches ? to : text.substr(at, 1);
            at += matches ? from.size() : 1;
            count += matches;
        }
        BuString ours(text.c_str());
        ASSERT_EQ(ours.Replace(from.c_str(), to.c_str()), count) << i;
        ASSERT_EQ(ours.GetText(), expected) << i;
    }
    BuString text = L"a-b-c";
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

std::vector<std::wstring> Lines(const wchar_t* text)
{
    const BuString whole(text);
    std::vector<std::wstring> lines;
    BuString line;
    int position = -1;
    while (whole.ExtractLine(position, line))
        lines.push_back(line.GetText());
    EXPECT_TRUE(line.IsEmpty());
    return lines;
}

TEST(BuString, ExtractsLines)
{
    using List = std::vector<std::wstring>;
    EXPECT_EQ(Lines(L""), List{});
    EXPECT_EQ(Lines(L"one\r\n\n two"), (List{L"one\r", L"", L" two"}));
    EXPECT_EQ(Lines(L"one\n"), (List{L"one"}));
    EXPECT_EQ(Lines(L"\n\n"), (List{L"", L""}));
}

TEST(BuString, ExtractsWords)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* delimiters;
        wchar_t quote;
        const wchar_t* joined;  // each word followed by '|'
    } rows[] = {
        {L"RGB 1 2 3", L" ", 0, L"RGB|1|2|3|"},
        {L"  a ,b,, c ", L" ,", 0, L"a|b|c|"},
        {L" , ", L" ,", 0, L""},
        {L"a b", nullptr, 0, L"a b|"},
        {L"1 'a b'2 ''x'", L" ", L'\'', L"1|a b|2||x||"},
        {L"'open  end ", L" ", L'\'', L"open  end |"},
        {L"a'b;c'", L";'", L'\'', L"a|b;c|"},
        {L"'a b'", L" ", 0, L"'a|b'|"},
    };
    for (const auto& row : rows) {
        BuObjectArrayTempl<BuString> words;
        words.Add(L"old");
        const int count = BuString(row.text).ExtractWords(words, row.delimiters, row.quote);
        BuString joined;
        for (const BuString& word : words)
            joined += word + L"|";
        EXPECT_STREQ(joined, row.joined) << row.text;
        EXPECT_EQ(count, words.GetCount()) << row.text;
    }
}

TEST(BuString, TrimsANumberOffTheLeft)
{
    const struct
    {
        const wchar_t* text;
        int value;
        const wchar_t* rest;
    } rows[] = {
        {L"12", 12, L""},
        {L"-7mm", -7, L"mm"},
        {L"+007.5", 7, L".5"},
        {L"1e3", 1, L"e3"},
        {L"2147483648", 2147483647, L""},
        {L"-99999999999999999999x", -2147483647 - 1, L"x"},
    };
    for (const auto& row : rows) {
        BuString text = row.text;
        int value = 5;
        EXPECT_TRUE(text.TrimLeftNumber(value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_STREQ(text, row.rest);
    }
    for (const wchar_t* none : {L"", L" 1", L"-", L"+-1", L"x1"}) {
        BuString text = none;
        int value = 5;
        EXPECT_FALSE(text.TrimLeftNumber(value)) << none;
        EXPECT_EQ(value, 5);
        EXPECT_STREQ(text, none);
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
    EXPECT_EQ(BuString(L"\x3B1"
                       L"1")
                  .ToDouble(),
              0.0);
}

TEST(BuString, WritesADoubleExactlyRounded)
{
    const struct
    {
        double value;
        int decimals;
        const wchar_t* text;
    } rows[] = {
        {0.125, 2, L"0.12"},
        {0.375, 2, L"0.38"},
        {2.5, 0, L"2"},
        {2.5, -1, L"2"},
        {1e22, 1, L"10000000000000000000000.0"},
        {-0.0, 1, L"-0.0"},
        {-std::nan(""), 3, L"nan"},
        {0.1, 20, L"0.10000000000000000555"},
        {-std::numeric_limits<double>::infinity(), 3, L"-inf"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(BuString::FromDouble(row.value, row.decimals), row.text);
    EXPECT_EQ(BuString::FromDouble(std::numeric_limits<double>::max(), 5000).GetLength(), 309 + 1 + 5000);
}

int SignOf(int order)
{
    return (order > 0) - (order < 0);
}

TEST(BuString, OrdersByUtf16Units)
{
    // Each is below the next: above U+FFFF a character begins with a unit of 0xD800 to 0xDBFF.
    const wchar_t* const ordered[] = {L"",           L"B",      L"Ba",         L"a",          L"ab",
                                      L"b",          L"\xD7FF", L"\U00010000", L"\U00010001", L"\xD801",
                                      L"\U0010FFFF", L"\xE000", L"\xFFFF"};
    for (int l = 0; l < 13; ++l)
        for (int r = 0; r < 13; ++r) {
            EXPECT_EQ(SignOf(BuString(ordered[l]).Compare(ordered[r])), SignOf(l - r)) << l << ' ' << r;
            const BuString left = ordered[l];
            const BuString right = ordered[r];
            // Both kinds; without operators of its own a text would compare by its address.
            EXPECT_TRUE((left < right) == (l < r) && (left < ordered[r]) == (l < r)) << l << ' ' << r;
            EXPECT_TRUE((left > right) == (l > r) && (ordered[l] > right) == (l > r)) << l << ' ' << r;
            EXPECT_TRUE((left == right) == (l == r) && (left == ordered[r]) == (l == r)) << l << ' ' << r;
        }
    EXPECT_EQ(BuString(L"").Compare(nullptr), 0);
    EXPECT_GT(BuString(L"a").Compare(nullptr), 0);
    EXPECT_EQ(BuString(L"Stra\xDF"
                       L"E")
                  .CompareNoCase(L"sTRA\xDF"
                                 L"e"),
              0);
    EXPECT_LT(BuString(L"\xC4").CompareNoCase(L"\xE4"), 0);
    EXPECT_LT(BuString(L"ab").CompareNoCase(L"ABC"), 0);
    EXPECT_LT(BuCompareNoCase("aZ", "Az\xE4"), 0);
    EXPECT_LT(BuCompareNoCase("z", "\xE4"), 0);
}

}  // namespace
