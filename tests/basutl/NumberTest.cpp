#include <basutl/BuNumber.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

// Numbers of all notations, many of them near the limits of a double, some then spoilt.
class RandomNumbers
{
public:
    std::string Next()
    {
        std::string text = Pick({"", "", " ", "\t\n "}) + Pick({"", "", "-", "+"});
        switch (Below(8)) {
            case 0:
                text += "0x" + Digits("0123456789abcdefABCDEF", 18) + Exponent("p", 1100);
                break;
            case 1:
                text += Pick({"inf", "INFINITY", "nan", "NaN", "infinit", "na", "nan"});
                break;
            case 2:
                text += Near(std::bit_cast<double>(m_random()));
                break;
            case 3:
                text += Near(std::bit_cast<double>(m_random() >> (12 + Below(30))));
                break;
            default:
                text += Digits("0123456789", Below(10) == 0 ? 800 : 24) + Exponent("e", 330);
        }
        text += Pick({"", "", " mm", "e", "x"});
        for (unsigned changes = Below(8) / 6; changes > 0 && !text.empty(); --changes)
            text[Below(static_cast<unsigned>(text.size()))] = " +-.019eExXpPaFiInNfty"[Below(22)];
        return text;
    }

    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

private:
    std::string Pick(const std::vector<std::string>& choices)
    {
        return choices[Below(static_cast<unsigned>(choices.size()))];
    }
    std::string Digits(const std::string& digits, unsigned limit)
    {
        std::string text(Below(3) == 0 ? Below(4) : 0, '0');
        for (unsigned count = Below(limit); count > 0; --count)
            text += digits[Below(static_cast<unsigned>(digits.size()))];
        if (Below(2) == 0)
            text.insert(Below(static_cast<unsigned>(text.size()) + 1), ".");
        return text;
    }
    std::string Exponent(const std::string& letter, unsigned limit)
    {
        return Below(2) == 0 ? "" : letter + Pick({"", "-", "+"}) + std::to_string(Below(limit));
    }
    // The value half-way to the next double: exactly, cut to some digits, or a trifle more.
    std::string Near(double value)
    {
        if (!std::isfinite(value))
            return "1e309";
        const double next = std::nextafter(value, Infinity);
        const long double between = (static_cast<long double>(value) + next) / 2;
        char text[1200];
        std::snprintf(text, sizeof text, "%.*Le", Below(3) == 0 ? 20 : 1100, between);
        std::string result = text;
        if (Below(3) == 0)
            result.insert(result.find('e'), "1");
        return result;
    }

    std::mt19937_64 m_random{7};
};

std::uint64_t Bits(double value)
{
    return std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value);
}

class BuReadDoubleAgainstStrtod : public testing::Test
{
protected:
    struct Row
    {
        std::string text;
        double value;
        std::ptrdiff_t length;
    };
    static inline std::vector<Row> s_rows;

    // Before the test itself: some C libraries keep memory that they took for their conversions.
    static void SetUpTestSuite()
    {
        RandomNumbers numbers;
        for (int i = 0; i < 40'000; ++i) {
            const std::string text = numbers.Next();
            char* end;
            const double value = std::strtod(text.c_str(), &end);
            s_rows.push_back({text, end == text.c_str() ? 0.0 : value, end - text.c_str()});
        }
    }
    static void TearDownTestSuite() { s_rows.clear(); }
};

TEST_F(BuReadDoubleAgainstStrtod, Agrees)
{
    for (const Row& row : s_rows) {
        const char* end;
        const double value = BuReadDouble(row.text.c_str(), &end);
        ASSERT_EQ(end - row.text.c_str(), row.length) << row.text;
        ASSERT_EQ(Bits(value), Bits(row.value)) << row.text;
    }
}

TEST(BuReadDouble, StopsBeforeTheGivenEnd)
{
    RandomNumbers numbers;
    for (int i = 0; i < 20'000; ++i) {
        const std::string whole = numbers.Next();
        const std::size_t length = numbers.Below(static_cast<unsigned>(whole.size()) + 1);
        const std::string part = whole.substr(0, length);
        const std::vector<char> unterminated(part.begin(), part.end());
        const char* expectedEnd;
        const double expected = BuReadDouble(part.c_str(), &expectedEnd);
        const char* end;
        const char* const text = length == 0 ? whole.c_str() : unterminated.data();
        const double value = BuReadDouble(text, text + length, &end);
        ASSERT_EQ(end - text, expectedEnd - part.c_str()) << whole << " to " << length;
        ASSERT_EQ(Bits(value), Bits(expected)) << whole << " to " << length;
    }
}

TEST(BuReadDouble, ReadsWhatIsNearlyANumber)
{
    const struct
    {
        const char* text;
        double value;
        int length;
    } rows[] = {
        {"1e", 1, 1},
        {"1e+", 1, 1},
        {"1d5", 1, 1},
        {"0x", 0, 1},
        {"0x.p1", 0, 1},
        {"0x.8p1", 1, 6},
        {"0x1p", 1, 3},
        {".", 0, 0},
        {"5.", 5, 2},
        {"5.e1", 50, 4},
        {"-.e1", 0, 0},
        {"", 0, 0},
        {"  ", 0, 0},
        {" +", 0, 0},
        {"infinite", Infinity, 3},
        {"-infinity", -Infinity, 9},
        {"1e99999999999999999999", Infinity, 22},
        {"-1e-99999999999999999999", 0, 24},
        {"0e999999999", 0, 11},
        {"0x1p99999999999", Infinity, 15},
        {"0x0.1p-99999999999", 0, 18},
        {"nan(1_zA)", NotANumber, 9},
        {"-NAN()x", NotANumber, 6},
        {"nan(-)", NotANumber, 3},
        {"nan(1", NotANumber, 3},
        {"9007199254740993", 9007199254740992, 16},
        {"1.5,5", 1.5, 3},
    };
    for (const auto& row : rows) {
        const char* end;
        const double value = BuReadDouble(row.text, &end);
        EXPECT_TRUE(std::isnan(row.value) ? std::isnan(value) : value == row.value) << row.text << ": " << value;
        EXPECT_EQ(end - row.text, row.length) << row.text;
    }
    const char* end = "";
    EXPECT_EQ(BuReadDouble(nullptr, &end), 0.0);
    EXPECT_EQ(end, nullptr);
    EXPECT_TRUE(std::signbit(BuReadDouble("-0")) && std::signbit(BuReadDouble("-1e-400")));
    EXPECT_EQ(BuReadDouble(("0." + std::string(5000, '0') + "1e5001").c_str()), 1.0);
    EXPECT_EQ(BuReadDouble(("1" + std::string(5000, '0') + "e-5000").c_str()), 1.0);
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
        ASSERT_EQ(end - text.c_str(), expectedEnd - text.c_str()) << text << " in base " << base;
    }
}

TEST(BuReadInteger, TakesNoPrefixAndNoOtherBase)
{
    const char* end;
    EXPECT_EQ(BuReadInteger("0x10", &end, 16), 0);
    EXPECT_STREQ(end, "x10");
    for (const int base : {-1, 0, 1, 37})
        EXPECT_EQ(BuReadInteger("10", &end, base), 0);
    EXPECT_STREQ(end, "10");
    EXPECT_EQ(BuReadInteger(nullptr), 0);
    EXPECT_EQ(BuReadInt("99999999999"), 1215752191);
}

}  // namespace
