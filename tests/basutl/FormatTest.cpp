#include <basutl/BuCharacter.h>
#include <basutl/BuString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

template <typename... Arguments>
std::wstring Formatted(const wchar_t* text, Arguments... arguments)
{
    BuString result(L"before");
    const int length = result.Format(text, arguments...);
    EXPECT_EQ(length, result.GetLength());
    return result.GetText();
}

// ---- Numbers, against printf itself --------------------------------------------------------------------------------

class FormatAgainstPrintf : public testing::Test
{
protected:
    struct Row
    {
        BuString actual;
        std::string expected, what;
    };
    static inline std::mt19937_64 s_random{20240607};
    static inline std::vector<Row> s_rows;

    static unsigned Below(unsigned limit) { return static_cast<unsigned>(s_random() % limit); }

    // All magnitudes, few and many digits, ties, denormals, and values at the edges of a notation.
    static double AnyDouble()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double edges[] = {0.0, -0.0, 0.5, 9.5, 999999.4, 0.0001, 0.00009999995, 1.7e308, -infinity, infinity};
        const double any = std::bit_cast<double>(s_random());
        const double choices[] = {(static_cast<double>(Below(200'001)) - 100'000) / 8,
                                  std::ldexp(Below(1000), static_cast<int>(Below(80)) - 40),
                                  std::bit_cast<double>(s_random() >> 12), edges[Below(std::size(edges))],
                                  std::isnan(any) ? 1.0 : any};
        return choices[Below(std::size(choices))];
    }

    // Prints a value with some of the flags and a width or precision among the arguments, both ways. Left out is what C
    // libraries disagree on: '0' beside '-', and how %a rounds ties.
    template <typename Value>
    static void Print(const char* flags, const std::string& conversion, Value value)
    {
        const bool isWidth = Below(3) == 0 || BuToLower(conversion.back()) == 'a';
        std::string format = Below(2) == 0 ? "%-" : isWidth ? "%" : "%0";
        for (const char* flag = flags; *flag != '\0'; ++flag)
            if (Below(3) == 0)
                format += *flag;
        const int count = Below(50) == 0 ? 1200 : static_cast<int>(Below(60)) - 10;
        const int width = isWidth ? std::abs(count) : 1 + static_cast<int>(Below(40));
        format += (isWidth ? "*" : std::to_string(width) + ".*") + conversion;
        char expected[3000];
        if (std::snprintf(expected, sizeof expected, format.c_str(), count, value) < width)
            return;  // some C libraries print a %g without its width
        BuString actual;
        actual.Format(BuString(format.c_str()), count, value);
        s_rows.push_back(
            {actual, expected, format + " of " + std::to_string(value) + " with " + std::to_string(count)});
    }

    // Before the test itself: some C libraries keep memory that they took to print floating-point numbers.
    static void SetUpTestSuite()
    {
        const std::string intLengths[] = {"hh", "h", ""};
        const std::string longLengths[] = {"ll", "j", "z", "t"};
        for (int i = 0; i < 8'000; ++i) {
            const unsigned kind = Below(6);
            const std::string letter(1, "diuoxX"[kind]);
            const char* const flags = kind < 2 ? "+ " : kind == 2 ? "" : "#";  // others mean nothing to the letter
            const auto magnitude = static_cast<long long>(s_random() >> Below(64));
            const long long value = Below(2) == 0 ? magnitude : -magnitude;
            Print(flags, intLengths[Below(3)] + letter, static_cast<int>(value));
            Print(flags, longLengths[Below(4)] + letter, value);
            Print(flags, "l" + letter, static_cast<long>(value));
        }
        for (int i = 0; i < 20'000; ++i)
            Print("+ #", std::string(1, "eEfFgGaA"[Below(8)]), AnyDouble());
    }
    static void TearDownTestSuite() { s_rows.clear(); }
};

TEST_F(FormatAgainstPrintf, PrintsNumbersOfEveryKind)
{
    for (const Row& row : s_rows)
        ASSERT_EQ(row.actual.ToNarrow(), row.expected) << row.what;
}

TEST(Format, PrintsAndReadsNumbersWithoutTheLocale)
{
    const char* const names[] = {"de_DE.UTF-8", "de_DE", "German_Germany.1252"};
    const bool isSet = std::any_of(std::begin(names), std::end(names),
                                   [](auto name) { return std::setlocale(LC_ALL, name) != nullptr; });
    const std::wstring actual = Formatted(L"%g %.2f %d", BuString(L"1234.5").ToDouble(), 0.125, 1234567);
    std::setlocale(LC_ALL, "C");
    if (!isSet)
        GTEST_SKIP() << "no locale with a decimal comma on this machine";
    EXPECT_EQ(actual, L"1234.5 0.12 1234567");
}

TEST(Format, PrintsEveryDigitThatIsAskedFor)
{
    // Rounding to the next power of ten keeps the zeros that '#' asks for, which some C libraries forget.
    EXPECT_EQ(Formatted(L"%#g %g %#.2g", 999999.5, 999999.5, 9.96e8), L"1.00000e+06 1e+06 1.0e+09");
    EXPECT_EQ(Formatted(L"%010.9g", 524288000.0), L"0524288000");
    EXPECT_EQ(Formatted(L"%.1300f", 0.5), L"0.5" + std::wstring(1299, L'0'));
    EXPECT_EQ(Formatted(L"%#.1300g", 1e-300).size(), std::wstring(L"1.e-300").size() + 1299);
    EXPECT_EQ(Formatted(L"%010f|%+f|%F|%5f", std::nan(""), std::nan(""), -std::numeric_limits<double>::infinity(),
                        -std::nan("")),
              L"       nan|+nan|-INF|  nan");
    EXPECT_EQ(Formatted(L"%.1Lf|%-06.1f|%0-10a|%.0a|%.1a|%.2A|", 2.5L, 2.5, 1.5, 1.5, 1.09375, 0x1.238p1),
              L"2.5|2.5   |0x1.8p+0  |0x2p+0|0x1.2p+0|0X1.24P+1|");
}

// ---- Text and what else is not a number ----------------------------------------------------------------------------

TEST(Format, TakesWideAndNarrowText)
{
    EXPECT_EQ(Formatted(L"%s %ls %ws %S %hs %hS %lS", L"1", L"2", L"3", "4", "5", "6", L"7"), L"1 2 3 4 5 6 7");
    EXPECT_EQ(Formatted(L"%c%lc%C%hc", L'\x3B1', L'z', 'y', 'x'), L"\x3B1zyx");
    EXPECT_EQ(Formatted(L"[%5s][%-5S][%3c][%.2s][%.*S]", L"ab", "cd", L'e', L"fghi", -1, "jkl"),
              L"[   ab][cd   ][  e][fg][jkl]");
    constexpr const wchar_t* none = nullptr;
    EXPECT_EQ(Formatted(L"[%s%S%3s]", none, none, none), L"[   ]");
    const char bytes[] = {'a', 'b'};  // a precision makes a NUL needless
    const wchar_t characters[] = {L'c', L'd'};
    EXPECT_EQ(Formatted(L"%.2S%.*s", bytes, 2, characters), L"abcd");
}

TEST(Format, TakesTheLengthsOfWindows)
{
    constexpr long long big = 0x1'0000'0002;
    EXPECT_EQ(Formatted(L"%I64d %I64X %Iu %I32d %td", big, big, big, -2, std::ptrdiff_t{-3}),
              L"4294967298 100000002 4294967298 -2 -3");
    EXPECT_EQ(Formatted(L"%p|%-18p|%18p", reinterpret_cast<void*>(0xABC), nullptr, nullptr),
              L"0000000000000ABC|0000000000000000  |  0000000000000000");
}

TEST(Format, CopiesWhatIsNoConversion)
{
    EXPECT_EQ(Formatted(L"%%|%5%|%y|%-3k|%*q|%d", 7), L"%|%|%y|%-3k|%*q|7");
    EXPECT_EQ(Formatted(L"%"), L"%");
    EXPECT_EQ(Formatted(L"100%5.2"), L"100%5.2");
    int untouched = 5;
    EXPECT_EQ(Formatted(L"a%nb%d", &untouched, 6), L"ab6");
    EXPECT_EQ(untouched, 5);
    EXPECT_EQ(Formatted(nullptr), L"");
}

TEST(Format, TakesItsOwnTextAndTextOfAnyLength)
{
    BuString text(L"0123456789");
    for (int i = 0; i < 8; ++i)
        text.Format(L"%s%s", text.GetText(), text.GetText());
    ASSERT_EQ(text.GetLength(), 2560);
    EXPECT_EQ(text.Format(L"%s%5000d|%-5000d|", text.GetText(), 1, 2), 2560 + 10'002);
    EXPECT_STREQ(text.Mid(2555, 5), L"56789");
    EXPECT_EQ(text.Find(L"1|2"), 2560 + 4999);
}

TEST(Format, RefusesWhatIsLongerThanAnInt)
{
    BuString text(L"kept");
    EXPECT_EQ(text.Format(L"x%2147483647d", 1), -1);
    EXPECT_EQ(text.Format(L"%99999999999s", L""), -1);
    EXPECT_EQ(text.Format(L"%*d", INT_MIN, 1), -1);
    EXPECT_EQ(text.Format(L"%.2147483647f", 1.0), -1);
    EXPECT_STREQ(text, L"kept");
}

TEST(Format, WithoutArgumentsReadsNone)
{
    BuString text;
    EXPECT_EQ(text.FormatWithoutArguments(L"50%% of %s%5.2f%n%*.*d%S|%y|%"), 12);
    EXPECT_STREQ(text, L"50% of |%y|%");
    EXPECT_EQ(text.FormatWithoutArguments(nullptr), 0);
}

}  // namespace
