#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using platform::Narrow;
using platform::Widen;

TEST(Text, ReadsUtf8AndCarriesEveryOtherByte)
{
    struct Row
    {
        std::string narrow;
        std::wstring wide;
    };
    const Row rows[] = {
        {"", L""},
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", {0xE9, 0x20AC, 0x1F600}},
        {"\xF4\x8F\xBF\xBF", {0x10FFFF}},
        {"caf\xE9", {'c', 'a', 'f', 0xDCE9}},
        {"\xC0\x80", {0xDCC0, 0xDC80}},                          // two bytes for what one says
        {"\xE0\x9F\xBF", {0xDCE0, 0xDC9F, 0xDCBF}},              // three bytes for what two say
        {"\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},  // above 0x10FFFF
        {"\xE2\x82", {0xDCE2, 0xDC82}},                          // cut off
        {"\xE2\x82"
         "A",
         {0xDCE2, 0xDC82, 'A'}},
        {"\xED\xA0\x80\xED\xBF\xBF\xED\xB1\xBF", {0xD800, 0xDFFF, 0xDC7F}},
        {"\xED\xB2\x80", {0xDCED, 0xDCB2, 0xDC80}},  // the form of a unit that stands for a byte
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Widen(row.narrow), row.wide) << testing::PrintToString(row.narrow);
        EXPECT_EQ(Narrow(row.wide), row.narrow) << testing::PrintToString(row.narrow);
    }
    EXPECT_EQ(Narrow(std::wstring{0x110000}), "\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(std::wstring{static_cast<wchar_t>(-1)}), "\xEF\xBF\xBD");
}

TEST(Text, NarrowToWideToNarrowLosesNothing)
{
    std::mt19937 random(20240229);
    const std::string frequent =
        "\xED\xA0\xB2\x80\xBF\xF0\x90\xF4\xC3\xA9\xE0\xE2\xC0\xFF"
        "Az";
    for (int run = 0; run < 100'000; ++run) {
        std::string narrow(random() % 40, '\0');
        for (char& byte : narrow)
            byte = random() % 4 != 0 ? frequent[random() % frequent.size()] : static_cast<char>(random());
        ASSERT_EQ(Narrow(Widen(narrow)), narrow) << testing::PrintToString(narrow);
    }
}

TEST(Text, WideToNarrowToWideKeepsEveryUnitThatStandsForNoByte)
{
    for (wchar_t unit = 0; unit <= 0x10FFFF; ++unit) {
        const std::wstring wide = {L'x', unit, L'y'};
        const bool standsForByte = unit >= 0xDC80 && unit <= 0xDCFF;
        ASSERT_TRUE(standsForByte || Widen(Narrow(wide)) == wide) << "unit " << static_cast<unsigned int>(unit);
    }
}

TEST(Text, AsciiEndsAtTheFirstOtherByteWhereverItStands)
{
    for (std::size_t before = 0; before < 20; ++before)
        for (std::size_t after = 0; after < 20; ++after)
            ASSERT_EQ(Widen(std::string(before, 'a') + "\xC3\xA9" + std::string(after, 'b')),
                      std::wstring(before, L'a') + L'\xE9' + std::wstring(after, L'b'));
}

}  // namespace
