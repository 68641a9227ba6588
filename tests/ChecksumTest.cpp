#include <TuvoUtil/Checksum.h>

#include "support/ChecksumOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using std::string_literals::operator""s;
using std::string_view_literals::operator""sv;

template <typename Value>
unsigned int ChecksumOfValue(const Value& value)
{
    VChecksum checksum;
    checksum.Compute(value);
    return checksum.GetChecksum();
}

TEST(Checksum, IsThePublishedCrcBeforeItsInversion)
{
    std::string rising(32, '\0');
    for (std::size_t i = 0; i < rising.size(); ++i)
        rising[i] = static_cast<char>(i);
    const struct
    {
        std::string bytes;
        unsigned int crc;
    } rows[] = {
        {"", 0x00000000},
        {"a", 0xE8B7BE43},
        {"abc", 0x352441C2},
        {"123456789", 0xCBF43926},
        {"message digest", 0x20159D7F},
        {"abcdefghijklmnopqrstuvwxyz", 0x4C2750BD},
        {"The quick brown fox jumps over the lazy dog", 0x414FA339},
        {std::string(32, '\0'), 0x190A55AD},
        {std::string(32, '\xFF'), 0xFF6CAB0B},
        {rising, 0x91267E8A},
    };
    for (const auto& [bytes, crc] : rows)
        EXPECT_EQ(ChecksumOf(bytes), ~crc) << bytes;
    EXPECT_EQ(VChecksum().GetChecksum(), 0xFFFFFFFF);
}

TEST(Checksum, IsTheSameHoweverTheBytesAreSplit)
{
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        std::string bytes(random() % 2000, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        VChecksum checksum;
        for (std::string_view rest = bytes; !rest.empty();) {
            const std::size_t size = std::min<std::size_t>(rest.size(), 1 + random() % 300);
            checksum.Compute(size, rest.data());
            rest.remove_prefix(size);
        }
        ASSERT_EQ(checksum.GetChecksum(), ChecksumOf(bytes)) << "round " << round;
    }
}

TEST(Checksum, TakesValuesAsTheyLieInMemory)
{
    EXPECT_EQ(ChecksumOfValue('x'), ChecksumOf("x"));
    EXPECT_EQ(ChecksumOfValue(0x01020304), ChecksumOf("\4\3\2\1"));
    const auto one = "\0\0\0\0\0\0\xF0\x3F"sv, two = "\0\0\0\0\0\0\0\x40"sv, minusOne = "\0\0\0\0\0\0\xF0\xBF"sv;
    const std::string point2 = std::string(one).append(two), point3 = std::string(two).append(minusOne).append(one);
    EXPECT_EQ(ChecksumOfValue(1.0), ChecksumOf(one));
    EXPECT_EQ(ChecksumOfValue(_TvPoint2Str{1.0, 2.0}), ChecksumOf(point2));
    EXPECT_EQ(ChecksumOfValue(_TvPoint3Str{2.0, -1.0, 1.0}), ChecksumOf(point3));
    EXPECT_EQ(ChecksumOfValue(std::vector<int>{1, -2}), ChecksumOf("\1\0\0\0\xFE\xFF\xFF\xFF"sv));
    EXPECT_EQ(ChecksumOfValue(std::vector<double>{1.0, 2.0}), ChecksumOf(point2));
    EXPECT_EQ(ChecksumOfValue(std::vector<_TvPoint2Str>(3, {1.0, 2.0})), ChecksumOf(point2 + point2 + point2));
    EXPECT_EQ(ChecksumOfValue(std::vector<_TvPoint3Str>(2, {2.0, -1.0, 1.0})), ChecksumOf(point3 + point3));
    EXPECT_EQ(ChecksumOfValue(std::vector<double>()), 0xFFFFFFFF);
}

TEST(Checksum, TakesTheLowByteOfEachUtf16UnitOfATextAndNoLength)
{
    const struct
    {
        const wchar_t* text;
        std::string bytes;
    } rows[] = {
        {L"", ""},
        {L"123456789", "123456789"},
        {L"\u00E4\u20AC\u0141", "\xE4\xAC\x41"},
        {L"\U0001F600", "\x3D\0"s},  // D83D DE00
        {L"\U0010FFFF", "\xFF\xFF"},
    };
    for (const auto& [text, bytes] : rows)
        EXPECT_EQ(ChecksumOfValue(BuString(text)), ChecksumOf(bytes)) << BuString(text).ToNarrow();
    using Texts = std::vector<BuString>;
    EXPECT_EQ(ChecksumOfValue(Texts{L"ab", L"c"}), ChecksumOf("abc"));
    EXPECT_EQ(ChecksumOfValue(Texts{L"a", L"", L"bc"}), ChecksumOf("abc"));
}

TEST(Checksum, CountsTheLow32BitsOfASizeAndNothingForNull)
{
    VChecksum checksum;
    checksum.Compute((1ULL << 32) + 5, "12345");
    EXPECT_EQ(checksum.GetChecksum(), ChecksumOf("12345"));
    checksum.Compute(1ULL << 32, "6");
    checksum.Compute(7, nullptr);
    EXPECT_EQ(checksum.GetChecksum(), ChecksumOf("12345"));

    struct Protected : VChecksum
    {
        using VChecksum::Compute;
    } derived;
    const auto* const bytes = reinterpret_cast<const unsigned char*>("12345");
    derived.Compute(bytes, 5);
    derived.Compute(bytes, -5);
    derived.Compute(static_cast<const unsigned char*>(nullptr), 5);
    EXPECT_EQ(derived.GetChecksum(), ChecksumOf("12345"));
}

TEST(Checksum, IsCopiedAsItStandsAndLeavesZeroBehind)
{
    VChecksum checksum;
    checksum.Compute(3, "123");
    VChecksum copy(checksum), assigned;
    assigned.Compute(1, "x");
    assigned = copy;
    for (VChecksum* const each : {&checksum, &copy, &assigned}) {
        each->Compute(6, "456789");
        EXPECT_EQ(each->GetChecksum(), 0x340BC6D9u);
    }
    alignas(VChecksum) unsigned char place[sizeof(VChecksum)];
    VChecksum* const placed = new (place) VChecksum;
    placed->~VChecksum();
    unsigned int left = 1;
    std::memcpy(&left, place + sizeof(void*), sizeof left);
    EXPECT_EQ(left, 0u);
}

}  // namespace
