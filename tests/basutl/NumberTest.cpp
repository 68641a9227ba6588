#include <basutl/BuNumber.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// Numbers of all notations, many of them near the limits of a double, some then spoilt.
class RandomNumbers
{
public:
    std::string Next()
    {
        const double any = std::bit_cast<double>(m_random());
        const double tiny = std::bit_cast<double>(m_random() >> (12 + Below(30)));
        const std::string choices[] = {"0x" + Digits("0123456789abcdefABCDEF", 18) + Exponent("p", 1100),
                                       Pick({"inf", "INFINITY", "nan", "NaN", "infinit", "na"}),
                                       Near(any),
                                       Near(tiny),
                                       Digits("0123456789", 24) + Exponent("e", 330),
                                       Digits("0123456789", 800) + Exponent("e", 330)};
        std::string text = Pick({"", "", " ", "\t\n "}) + Pick({"", "", "-", "+"}) +
                           choices[Below(std::size(choices))] + Pick({"", "", " mm", "e", "x"});
        if (Below(4) == 0 && !text.empty())
            text[Below(text.size())] = " +-.019eExXpPaFiInNfty"[Below(22)];
        return text;
    }

private:
    std::size_t Below(std::size_t limit) { return m_random() % limit; }
    std::string Pick(std::initializer_list<const char*> choices) { return choices.begin()[Below(choices.size())]; }
    std::string Digits(const std::string& digits, std::size_t limit)
    {
        std::string text(Below(3) == 0 ? Below(4) : 0, '0');
        for (std::size_t count = Below(limit); count > 0; --count)
            text += digits[Below(digits.size())];
        return Below(2) == 0 ? text : text.insert(Below(text.size() + 1), ".");
    }
    std::string Exponent(const std::string& letter, std::size_t limit)
    {
        return Below(2) == 0 ? "" : letter + Pick({"", "-", "+"}) + std::to_string(Below(limit));
    }
    // The value half-way to the next double: exactly, cut to some digits, or a trifle more.
    std::string Near(double value)
    {
        if (!std::isfinite(value))
            return "1e309";
        const long double between = (static_cast<long double>(value) + std::nextafter(value, Infinity)) / 2;
        char text[1200];
        std::snprintf(text, sizeof text, "%.*Le", Below(3) == 0 ? 20 : 1100, between);
        const std::string result = text;
        return Below(3) != 0 ? result : std::string(result).insert(result.find('e'), "1");
    }

    std::mt19937_64 m_random{7};
};

std::uint64_t Bits(double value)
{
    return std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value);
}

struct Row
{
    std::string text;
    double value;
    std::ptrdiff_t length;
};

class BuReadDoubleAgainstStrtod : public testing::Test
{
protected:
    static inline std::vector<Row> s_rows;

    static void Add(const std::string& text)
    {
        char* end;
        const double value = std::strtod(text.c_str(), &end);
        s_rows.push_back({text, end == text.c_str() ? 0.0 : value, end - text.c_str()});
    }
    // Before the test itself: some C libraries keep memory that they took for their conversions.
    static void SetUpTestSuite()
    {
        for (const char* const text : {"1e",
                                       "1e+",
                                       "1d5",
                                       "0x",
                                       "0x.p1",
                                       "0x.8p1",
                                       "0x1p",
                                       ".",
                                       "5.",
                                       "5.e1",
                                       "-.e1",
                                       "",
                                       "  ",
                                       " +",
                                       "infinite",
                                       "-infinity",
                                       "nan(1",
                                       "9007199254740993",
                                       "1.5,5",
                                       "-0",
                                       "-1e-400",
                                       "18446744073709551616",
                                       "0x10000000000000000"})
            Add(text);
        Add("0." + std::string(5000, '0') + "1e5001");
        Add("1" + std::string(5000, '0') + "e-5000");
        RandomNumbers numbers;
        for (int i = 0; i < 40'000; ++i)
            Add(numbers.Next());
    }
    static void TearDownTestSuite() { s_rows.clear(); }
};

TEST_F(BuReadDoubleAgainstStrtod, Agrees)
{
    for (const Row& row : s_rows) {
        const char* end;
        ASSERT_EQ(Bits(BuReadDouble(row.text.c_str(), &end)), Bits(row.value)) << row.text;
        ASSERT_EQ(end - row.text.c_str(), row.length) << row.text;
        const std::string longer = row.text + "1e9";  // what stands behind the given end does not count
        ASSERT_EQ(Bits(BuReadDouble(longer.data(), longer.data() + row.text.size(), &end)), Bits(row.value))
            << row.text;
        ASSERT_EQ(end - longer.data(), row.length) << row.text;
    }
}

TEST(BuReadDouble, ReadsWhatCLibrariesDisagreeOn)
{
    const Row rows[] = {{"1e99999999999999999999", Infinity, 22},
                        {"-1e-99999999999999999999", -0.0, 24},
                        {"0e999999999", 0, 11},
                        {"0x1p99999999999", Infinity, 15},
                        {"0x0.1p-99999999999", 0, 18},
                        {"nan(1_zA)", std::nan(""), 9},
                        {"-NAN()x", std::nan(""), 6},
                        {"nan(-)", std::nan(""), 3},
                        {"0x1.e15309dEC5D7180000000p-1023", 0x1.e15309dec5d72p-1023, 31}};
    for (const auto& row : rows) {
        const char* end;
        EXPECT_EQ(Bits(BuReadDouble(row.text.c_str(), &end)), Bits(row.value)) << row.text;
        EXPECT_EQ(end - row.text.c_str(), row.length) << row.text;
    }
    const char* end = "";
    EXPECT_EQ(BuReadDouble(nullptr, &end), 0.0);
    EXPECT_EQ(end, nullptr);
}

TEST(BuReadInteger, AgreesWithStrtoll)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 50'000; ++i) {
        std::string text;
        for (std::size_t count = random() % 26; count > 0; --count)
            text += "0123456789abcxyzXYZ"[random() % 19];
        text = std::string(random() % 2, ' ') + std::string(random() % 2, "+-"[random() % 2]) + text;
        const int base = 2 + static_cast<int>(random() % 35);
        if (base == 16 && text.find_first_of("xX") != std::string::npos)
            continue;  // strtoll takes a prefix
        char* expectedEnd;
        const long long expected = std::strtoll(text.c_str(), &expectedEnd, base);
        const char* end;
        ASSERT_EQ(BuReadInteger(text.c_str(), &end, base), expected) << text << " in base " << base;
        ASSERT_EQ(end, expectedEnd) << text << " in base " << base;
    }
}

TEST(BuReadInteger, StopsBeforeTheGivenEnd)
{
    const std::string whole = " -1234z";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string part = whole.substr(0, length);
        const std::vector<char> unterminated(part.begin(), part.end());
        const char* const text = length == 0 ? whole.c_str() : unterminated.data();
        for (const int base : {10, 36, 99}) {
            const char* expectedEnd;
            const char* end;
            const long long expected = BuReadInteger(part.c_str(), &expectedEnd, base);
            EXPECT_EQ(BuReadInteger(text, text + length, &end, base), expected) << length;
            EXPECT_EQ(end - text, expectedEnd - part.c_str()) << length;
        }
    }
}

TEST(BuReadInteger, TakesNoPrefixNoOtherBaseAndStaysAtItsLimits)
{
    const char* end;
    EXPECT_EQ(BuReadInteger("0x10", &end, 16), 0);
    EXPECT_STREQ(end, "x10");
    for (const int base : {-1, 0, 1, 37}) {
        EXPECT_EQ(BuReadInteger("10", &end, base), 0);
        EXPECT_STREQ(end, "10");
    }
    EXPECT_EQ(BuReadInteger(nullptr), 0);
    EXPECT_EQ(BuReadInteger(nullptr, nullptr, nullptr), 0);
    using Limits = std::numeric_limits<long long>;
    for (const char* const text : {"9223372036854775807", "9223372036854775808", "99999999999999999999"})
        EXPECT_EQ(BuReadInteger(text), Limits::max());
    for (const char* const text : {"-9223372036854775808", "-9223372036854775809"})
        EXPECT_EQ(BuReadInteger(text), Limits::min());
    EXPECT_EQ(BuReadInt("99999999999"), 1215752191);
}

TEST(BuWriteInteger, AgreesWithSnprintf)
{
    std::vector<long long> values = {0, std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()};
    for (long long power = 1; power < std::numeric_limits<long long>::max() / 10; power *= 10)
        values.insert(values.end(), {power * 10 - 1, power * 10, -power * 10 + 1, -power * 10});
    std::mt19937_64 random(5);
    for (int i = 0; i < 50'000; ++i)
        values.push_back(static_cast<long long>(random()) >> (i % 64));
    for (long long i = 0; i < 20'000; ++i)
        values.push_back(i);
    for (const long long value : values) {
        char expected[32];
        std::snprintf(expected, sizeof expected, "%lld", value);
        const auto text = std::make_unique<char[]>(BuIntegerRoom);
        ASSERT_EQ(std::string(text.get(), BuWriteInteger(text.get(), value)), expected);
    }
}

}  // namespace
