#include <TuvoUtil/Color.h>

#include <basutl/BuLocalize.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float Nan = std::numeric_limits<float>::quiet_NaN();

using Triple = std::array<float, 3>;

Triple ToHls(const Triple& rgb)
{
    Triple hls;
    UtlGetHLSColorFromRGB(rgb[0], rgb[1], rgb[2], &hls[0], &hls[1], &hls[2]);
    return hls;
}

Triple ToRgb(const Triple& hls)
{
    Triple rgb;
    UtlGetRGBColorFromHLS(hls[0], hls[1], hls[2], &rgb[0], &rgb[1], &rgb[2]);
    return rgb;
}

void ExpectNear(const Triple& found, const Triple& expected, float tolerance)
{
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(found[i], expected[i], tolerance) << "component " << i;
}

// ---- RGB and HLS ---------------------------------------------------------------------------------------------------

TEST(ColorHls, KnowsTheColoursOfTheCircle)
{
    const struct
    {
        Triple rgb;
        Triple hls;
    } rows[] = {
        {{0, 0, 1}, {0, 0.5F, 1}},
        {{1, 0, 1}, {60, 0.5F, 1}},
        {{1, 0, 0}, {120, 0.5F, 1}},
        {{1, 1, 0}, {180, 0.5F, 1}},
        {{0, 1, 0}, {240, 0.5F, 1}},
        {{0, 1, 1}, {300, 0.5F, 1}},
        {{0.2F, 0.4F, 0.8F}, {340, 0.5F, 0.6F}},
        {{1, 0.5F, 0.5F}, {120, 0.75F, 1}},
        {{0, 0, 0}, {0, 0, 0}},
        {{1, 1, 1}, {0, 1, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        ExpectNear(ToHls(row.rgb), row.hls, 1e-4F);
        ExpectNear(ToRgb(row.hls), row.rgb, 1e-6F);
    }
}

// Which component is the largest and which the smallest, as it is told when they differ clearly.
bool IsClear(const Triple& rgb)
{
    Triple sorted = rgb;
    std::sort(sorted.begin(), sorted.end());
    return sorted[2] - sorted[1] >= 0.1F && sorted[1] - sorted[0] >= 0.1F;
}

TEST(ColorHls, ComesBackAsTheSameColour)
{
    int clear = 0;
    for (int code = 0; code < 32 * 32 * 32; ++code) {
        const Triple rgb = {static_cast<float>(code >> 10) / 31, static_cast<float>(code >> 5 & 31) / 31,
                            static_cast<float>(code & 31) / 31};
        const Triple hls = ToHls(rgb);
        ASSERT_TRUE(hls[0] >= 0 && hls[0] < 360 && hls[1] >= 0 && hls[1] <= 1 && hls[2] >= 0 && hls[2] <= 1.0001F);
        if (!IsClear(rgb))
            continue;
        ExpectNear(ToRgb(hls), rgb, 1e-5F);
        ++clear;
    }
    EXPECT_GT(clear, 10'000);
}

TEST(ColorHls, TakesNearComponentsForEqual)
{
    // Red and green are near, so that red counts as the largest: 3 - (0.5 - 0.45) / 0.3, and 1 + 1 where green is near the
    // smallest as well.
    EXPECT_NEAR(ToHls({0.5F, 0.45F, 0.2F})[0], 60 * (3 - 0.05F / 0.3F), 1e-3);
    EXPECT_NEAR(ToHls({0.45F, 0.5F, 0.2F})[0], 180, 1e-3);
    EXPECT_NEAR(ToHls({0.5F, 0.45F, 0.42F})[0], 120, 1e-3);
    EXPECT_NEAR(ToHls({1, 0.0999F, 0})[0], 120, 1e-3);
    EXPECT_NEAR(ToHls({1, 0.1F, 0})[0], 60 * 2.1F, 1e-3);  // not near: blue is the smallest
}

TEST(ColorHls, TakesAnyHue)
{
    for (const float hue : {0.0F, 75.0F, 239.0F})
        for (const float turn : {360.0F, 7200.0F})
            ExpectNear(ToRgb({hue + turn, 0.3F, 0.7F}), ToRgb({hue, 0.3F, 0.7F}), 1e-3F);
    // A negative hue continues the first sector: with m1 0.2 and m2 0.8 red is 0.2 - 0.6 * 30 / 60.
    ExpectNear(ToRgb({-30, 0.5F, 0.6F}), {-0.1F, 0.5F, 0.8F}, 1e-6F);
    ExpectNear(ToRgb({-390, 0.5F, 0.6F}), {-0.1F, -1.3F, -2.5F}, 1e-6F);
    for (const float saturation : {0.0F, -0.5F, -Infinity})
        EXPECT_EQ(ToRgb({77, 0.3F, saturation}), (Triple{0.3F, 0.3F, 0.3F}));
    ToRgb({Infinity, 0.3F, 0.7F});
    ToHls({Nan, Infinity, -Infinity});
    UtlGetHLSColorFromRGB(1, 0, 0, nullptr, nullptr, nullptr);
    UtlGetHLSColorFromRGB(1, 1, 1, nullptr, nullptr, nullptr);
    UtlGetRGBColorFromHLS(1, 0, 0, nullptr, nullptr, nullptr);
}

TEST(ColorIsDark, AgreesWithWholeNumbersOnEveryPairOfComponents)
{
    for (unsigned int first = 0; first < 256; ++first)
        for (unsigned int second = 0; second < 256; ++second) {
            const bool isDark = first + second <= 255;
            const unsigned int middle = std::min(first, second);
            ASSERT_EQ(UtlIsDarkColor(first << 16 | second << 8 | middle), isDark) << first << ' ' << second;
            ASSERT_EQ(UtlIsDarkColor(0xFF000000 | middle << 16 | second << 8 | first), isDark)
                << first << ' ' << second;
        }
}

// ---- Indices -------------------------------------------------------------------------------------------------------

TEST(ColorIndex, StandsForAValueOfTheScale)
{
    EXPECT_EQ(UtlConvertColorToFloatVal(255, -2, 8, 7), 8.0F);
    EXPECT_EQ(UtlConvertColorToFloatVal(-51, -2, 8, 7), -4.0F);
    EXPECT_EQ(UtlConvertColorToFloatVal(13107, 0, 5, 5), 1.0F);
    EXPECT_EQ(UtlConvertColorToFloatVal(3, 1, 2, 4), -2.0F);  // kept: the maximum has index -1
    EXPECT_EQ(UtlConvertColorToFloatVal(3, 1, 2, 0), Infinity);
    EXPECT_TRUE(std::isnan(UtlConvertColorToFloatVal(0, 1, 2, 6)));
    for (int index = 0; index <= 65535; ++index) {
        const float value = UtlConvertColorToFloatVal(index, 0, 65535, 5);
        ASSERT_EQ(UtlConvertFloatValToColor(value, 0, 65535, 5), static_cast<unsigned int>(index));
    }
}

TEST(ColorIndex, OfAValueIsTruncatedAndNotClamped)
{
    const struct
    {
        float value, min, max;
        int rangeCode;
        unsigned int index;
    } rows[] = {
        {5, 0, 0, 7, 127},
        {5, 0, 0, 5, 32767},
        {5, 0, 0, 4, 0},
        {0.5F, 0, 1, 7, 127},
        {1, 0, 1, 7, 254},  // in single precision 1 / (1 / 255) is just below 255
        {510, 0, 255, 7, 510},
        {-255, 0, 255, 7, static_cast<unsigned int>(-255)},
        {-0.9F, 0, 255, 7, 0},
        {3, 1, 2, 4, static_cast<unsigned int>(-2)},
        {1, 2, 0, 7, 127},                       // a scale that falls
        {0x1p33F + 0x1p12F, 0, 255, 7, 0x1000},  // the low 32 bits
        {0x1p63F, 0, 255, 7, 0},
        {5, 1, 1, 7, 0},
        {5e-18F, 0, 1e-17F, 7, 127},  // a step of 4e-20
        {1, 0, 2e-18F, 7, 0},         // a step of 8e-21
        {1, 0, 1, 6, 0},
        {Nan, 0, 1, 7, 0},
        {Infinity, 0, 1, 7, 0},
        {1, -Infinity, Infinity, 7, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(UtlConvertFloatValToColor(row.value, row.min, row.max, row.rangeCode), row.index) << &row - rows;
}

TEST(ColorIndex, KeepsItsValueOnANewScale)
{
    const struct
    {
        float oldMin, oldMax, newMin, newMax;
    } scales[] = {{0, 255, 0, 255}, {0, 255, 0, 510}, {0, 255, -255, 0}, {0, 510, 255, 0}, {100, 355, 0, 51}};
    for (const auto& scale : scales)
        for (int index = 0; index < 256; ++index) {
            // Whole numbers, so that single precision is exact up to the last division.
            const double value = scale.oldMin + (static_cast<double>(scale.oldMax) - scale.oldMin) / 255 * index;
            const double moved = (value - scale.newMin) * 255 / (static_cast<double>(scale.newMax) - scale.newMin);
            const auto expected = static_cast<int>(std::clamp(moved, 0.0, 255.0));
            const auto old = static_cast<unsigned char>(index);
            const auto moves = index % 2 == 0 ? UtlGetColorForNewMinMax : UtlGetColorFromNewMinMax;
            ASSERT_EQ(moves(old, scale.oldMin, scale.oldMax, scale.newMin, scale.newMax), expected)
                << &scale - scales << ' ' << index;
        }
    EXPECT_EQ(UtlGetColorForNewMinMax(10, 0, 1, 2, 2), 127);
    EXPECT_EQ(UtlGetColorForNewMinMax(10, 0, 0.00009F, 0, 0.00009F), 127);
    EXPECT_EQ(UtlGetColorForNewMinMax(10, 0, 0.00011F, 0, 0.00011F), 10);
    EXPECT_EQ(UtlGetColorForNewMinMax(10, 0, 1, 2, Nan), 0);
    EXPECT_EQ(UtlGetColorForNewMinMax(10, 0, Infinity, 0, 1), 255);
    EXPECT_EQ(UtlGetColorForNewMinMax(10, -Infinity, 0, 0, 1), 0);
}

// ---- Text ----------------------------------------------------------------------------------------------------------

TEST(ColorText, ComesBackAsTheSameColour)
{
    EXPECT_EQ(BuConvertRGBColorToString(0xFF8000FF), L"RGB 255 0 128");
    for (unsigned int byte = 0; byte < 256; ++byte)
        for (const unsigned int color : {byte, byte << 8 | 0xFF0000, byte << 16 | 0x01}) {
            unsigned int read = 0;
            ASSERT_EQ(BuConvertStringToRGBColor(BuConvertRGBColorToString(color), read), nullptr);
            ASSERT_EQ(read, color);
        }
}

const wchar_t* g_text;  // what was translated last

TEST(ColorText, IsReadOrSaysWhatIsWrong)
{
    BuSetTranslator([](const wchar_t* text, int) {
        g_text = text;
        return L"what is wrong";
    });
    const struct
    {
        std::vector<const wchar_t*> texts;
        const wchar_t* error;  // empty: they are the colour 0x030201
    } rows[] = {
        {{L"RGB 1 2 3", L"RGB   1  2 3   ", L"RGB +1 2x 3.9", L"RGB 0001 2 3"}, L""},
        {{L""}, L"Empty color definition"},
        {{L" ", L"rgb 1 2 3", L" RGB 1 2 3", L"RG"}, L"Color does not start with RGB prefix"},
        {{L"RGB", L"RGB 1 2", L"RGB 1 2 3 4", L"RGBA 1 2 3", L"RGB1 2 3 4", L"RGB\t1\t2\t3", L"RGB 1 x2 3",
          L"RGB 1 - 3"},
         L"Invalid RGB color definition string. Expecting 'RGB colR colG colB' with values between 0 and 255"},
        {{L"RGB 1 2 256", L"RGB -1 2 3", L"RGB 99999999999999999999 2 3", L"RGB 1 -2147483648 3"},
         L"Value of RGB components should be between 0 and 255"},
    };
    for (const auto& row : rows)
        for (const wchar_t* const text : row.texts) {
            const bool isColor = *row.error == L'\0';
            unsigned int color = 7;
            g_text = L"";
            const BuErrObj* const error = BuConvertStringToRGBColor(text, color);
            EXPECT_EQ(BuGetErrorDescription(error), isColor ? L"" : L"what is wrong") << BuString(text).ToNarrow();
            EXPECT_STREQ(g_text, row.error) << BuString(text).ToNarrow();
            EXPECT_EQ(error == nullptr, isColor);
            EXPECT_EQ(color, isColor ? 0x030201U : 7U);
        }
    BuSetTranslator(nullptr);
}

}  // namespace
