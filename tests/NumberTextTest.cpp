#include <TuvoUtil/NumberText.h>

#include "support/GuardedBuffer.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <locale>
#include <random>
#include <sstream>
#include <string>

namespace {

TEST(ValidNumber, ChecksCharactersAloneAndCutsTheEnd)
{
    const struct
    {
        const char* text;
        bool result;
        const char* after;
    } rows[] = {
        {"  e5", false, "  e5"}, {"5e", true, "5e"},        {"1 2", false, "1 2"}, {"1-2", true, "1-2"},
        {"..", true, ".."},      {" +e \t\n", true, " +e"}, {"E", false, "E"},     {"1x ", false, "1x"},
        {"", false, ""},         {" \t", false, " \t"},     {"1d5", false, "1d5"}, {"\xB2", false, "\xB2"},
    };
    for (const auto& [row, result, after] : rows) {
        const GuardedBuffer text(row, GuardedBuffer::Edge::Start);
        EXPECT_EQ(UtlIsValidNumber(text.Data()), result) << row;
        EXPECT_STREQ(text.Data(), after);
    }
    EXPECT_FALSE(UtlIsValidNumber(nullptr));
}

// What the function promises: a text that an input stream reads as one float, to its end.
int ReadByStream(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    float value = 0.0F;
    stream >> std::noskipws >> value;
    return stream.fail() || !stream.eof() ? 1 : 0;
}

void CompareWithStream(std::string text)
{
    ASSERT_EQ(UtlIsFloatValue(text.data()), ReadByStream(text)) << '"' << text << '"';
}

TEST(FloatValue, IsWhatAStreamReads)
{
    ForEachText("07.e+-x ", 5, CompareWithStream);
    const char* const range[] = {"1,5", "inf", "nan", "0x10", "0e999999999999", "1e-9999999999", "1e9999999999"};
    const char* const edges[] = {"1e-50",
                                 "-1e40",
                                 "3.4028234e38",
                                 "3.4028235677973365e+38",
                                 "3.4028235677973366e+38",
                                 "340282356779733661637539395458142568447"};
    for (const char* const text : range)
        CompareWithStream(text);
    for (const char* const text : edges)
        CompareWithStream(text);
    EXPECT_EQ(UtlIsFloatValue(nullptr), 0);
}

TEST(Alphabet, IsAscii)
{
    char letters[] = "1z", none[] = "12 @[`{\xE9";
    EXPECT_TRUE(UtlIsStringHasAlphabet(letters));
    EXPECT_FALSE(UtlIsStringHasAlphabet(none));
    EXPECT_FALSE(UtlIsStringHasAlphabet(none + 8));
    EXPECT_FALSE(UtlIsStringHasAlphabet(nullptr));
}

TEST(GetInt, ReadsWhateverDigitsAFieldHas)
{
    const struct
    {
        const char* text;
        int column, width, result, value;
    } rows[] = {
        {"  -12 ", 1, 6, 0, -12},
        {"1x2", 1, 3, 0, 12},
        {"12345", 2, 3, 0, 234},
        {"1-2", 1, 3, 0, -12},
        {"-1+2", 1, 4, 0, 12},
        {"12 3", 1, 4, 0, 12},
        {"1\n2", 1, 3, 0, 1},
        {"1\r2", 1, 3, 0, 1},
        {"\t1", 1, 2, 0, 1},
        {"    ", 2, 2, 0, 0},
        {"ab", 1, 2, 0, 0},
        {"12", 3, 1, 1, 0},
        {"12", 9, 1, 1, 0},
        {"12", 0, 1, 1, 0},
        {"12", 1, -1, 1, 0},
        {"12", 1, INT_MAX, 0, 12},
        {"12", INT_MAX, 5, 1, 0},
        {"4294967298", 1, 10, 0, 2},
        {"2147483648", 1, 10, 0, INT_MIN},
        {"-2147483648", 1, 11, 0, INT_MIN},
    };
    for (const auto& [row, column, width, result, expected] : rows) {
        const GuardedBuffer text(row);
        int value = 99;
        EXPECT_EQ(UtlStrGetInt(&value, text.Data(), column, width), result) << row << ' ' << column;
        EXPECT_EQ(value, expected) << row;
        EXPECT_EQ(UtlStrGetInt(nullptr, text.Data(), column, width), result);
    }
    int value = 99;
    EXPECT_EQ(UtlStrGetInt(&value, nullptr, 1, 1), 1);
    EXPECT_EQ(value, 0);
}

TEST(NumberFormats, OfTextsHaveAWidth)
{
    const struct
    {
        int width, rightAligned;
        const char* expected;
    } rows[] = {{10, 1, "%10s"}, {10, 0, "%-10s"}, {-5, 0, "%--5s"}, {0, -1, "%0s"}, {INT_MIN, 0, "%--2147483648s"}};
    for (const auto& [width, rightAligned, expected] : rows)
        EXPECT_EQ(Taken(UtlConstructFormat(width, rightAligned)), expected);
}

std::string FormatOf(const std::string& text)
{
    std::string format = "before";
    UtlGetFormatOfNumberWithSpace(text.c_str(), format);
    return format;
}

TEST(NumberFormats, KeepTheLayoutOfANumber)
{
    const struct
    {
        const char *text, *expected;
    } rows[] = {
        {"  12.50", "%7.2f"}, {"123", "%3.0f"},    {"123.", "%3.0f."},  {"1.5e3", "%7.1e"},  {"0.0012", "%6.4f"},
        {" 5E+03 ", "%6.0E"}, {"5.e3", "%5.0e"},   {"12.5e3", "%4.2e"}, {"12e3", "%3.1e"},   {".5", "%3.1f"},
        {".500", "%3.3f"},    {"\t.5e3", "%4.1e"}, {"-12.5", "%4.1f"},  {"1.5+-", "%1.0f."}, {"1.2+34", "%4.2f"},
        {"12+", "%2.0f"},     {"1.2.3", "%3.1f"},  {".", "%10.6e"},     {"+-", "%10.6e"},    {"5+-", "%10.6e"},
        {"", "%10.6e"},       {" ", "%10.6e"},     {"e5", "%10.6e"},    {"1,5", "%10.6e"},   {"1.0e", "%7.1e"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(FormatOf(text), expected) << text;
    EXPECT_EQ(FormatOf("." + std::string(20, '0')), "%-4.14f");
    EXPECT_EQ(FormatOf("1." + std::string(20, '7')), "%16.14f");
    EXPECT_EQ(FormatOf(std::string(5000, ' ') + std::string(300, '1')), "%5300.0f");
    std::string format;
    UtlGetFormatOfNumberWithSpace(nullptr, format);
    EXPECT_EQ(format, "%10.6e");
}

TEST(NumberFormats, PrintNumbersBackAsTheyStood)
{
    std::mt19937 random(3);
    const char* const styles[] = {"%.0f", "%#.0f", "%.1f", "%.5f", "%.14f", "%.0e", "%.3e", "%.14E"};
    for (int round = 0; round < 4000; ++round) {
        char text[80], printed[80];
        const int lead = static_cast<int>(random() % 4);
        const double value = std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 60));
        const char* const style = styles[random() % std::size(styles)];
        std::snprintf(text + lead, 70, style, style == styles[4] ? std::fmod(value, 10.0) : value);
        std::fill_n(text, lead, ' ');
        std::snprintf(printed, sizeof printed, FormatOf(text).c_str(), std::atof(text));
        ASSERT_STREQ(printed, text) << FormatOf(text);
    }
}

TEST(FormatDouble, TakesDecimalsFromTheMagnitude)
{
    const double none = std::nan("");
    const struct
    {
        double value, reference;
        const wchar_t* expected;
    } rows[] = {
        {100.0, none, L"100.000"},  {99.0, none, L"99.0000"},
        {-0.999, none, L"-0.9990"}, {9.9e-8, none, L"0.00000009900"},
        {9.8e-8, none, L""},        {1e-8, none, L""},
        {9e-9, none, L"9e-09"},     {12345.0, none, L"1e+04"},
        {10000.0, none, L"1e+04"},  {9999.9995, none, L"9999.999"},
        {HUGE_VAL, none, L"inf"},   {0.0, none, L"0"},
        {-0.0, none, L"0"},         {-0.0, 5.0, L"0"},
        {0.0, 5.0, L"0.0000"},      {-1e-9, 5.0, L"-0.0000"},  // no zero
        {1.5, -250.0, L"1.500"},    {1.5, 1e5, L"2"},
        {1.5, 2e-8, L""},
    };
    for (const auto& [value, reference, expected] : rows) {
        double given = reference;
        EXPECT_EQ(TuvoUtilFormatDoubleValue(value, std::isnan(reference) ? nullptr : &given), BuString(expected))
            << value << " by " << reference;
    }
    for (int decimals = 4; decimals <= 11; ++decimals) {  // one more for each power of ten
        const double value = 5 * std::pow(10, 4 - decimals);
        EXPECT_EQ(TuvoUtilFormatDoubleValue(value, nullptr), BuString::FromDouble(value, decimals));
    }
    double notANumber = none;
    EXPECT_TRUE(TuvoUtilFormatDoubleValue(none, nullptr).IsEmpty());
    EXPECT_TRUE(TuvoUtilFormatDoubleValue(1.0, &notANumber).IsEmpty());
}

}  // namespace
