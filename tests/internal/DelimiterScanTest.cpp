#include "Kernels/DelimiterScan.h"
#include "support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using kernels::BlockFunctions;
using kernels::DelimiterSet;
using Masks = std::vector<std::uint64_t>;

// What the scalar functions are compared with.
std::vector<BlockFunctions> OtherWays()
{
    const BlockFunctions chosen = {kernels::DelimiterMasks, kernels::EraseBytes, kernels::CountBits,
                                   kernels::StorePositions};
    std::vector<BlockFunctions> ways = {chosen, kernels::sse2Functions};
    if (kernels::HasAvx2())
        ways.push_back(kernels::avx2Functions);
    return ways;
}

Masks MasksOf(const BlockFunctions& way, const char* text, std::size_t length, const DelimiterSet& set)
{
    Masks masks((length + kernels::BlockSize - 1) / kernels::BlockSize + 1, 12345);
    way.masks(text, length, set, masks.data());
    EXPECT_EQ(masks.back(), 12345U) << "written past the last block";
    masks.pop_back();
    return masks;
}

TEST(DelimiterScan, FindsTheSameByEveryWay)
{
    // Sets that are compared, and one that is looked up.
    const DelimiterSet sets[] = {DelimiterSet(""), DelimiterSet(','), DelimiterSet(",; \t\xE9"),
                                 DelimiterSet("0123456789abcdef"), DelimiterSet("0123456789abcdefg,")};
    constexpr std::size_t alignments = 64, longest = 300;
    const GuardedBuffer buffer(alignments + longest);
    for (std::size_t i = 0; i < alignments + longest; ++i)
        buffer.Data()[i] = ",;x0\xE9\tg,\xA9 "[i * i % 10];
    for (std::size_t length = 0; length <= longest; ++length)
        for (std::size_t start = 0; start <= alignments; ++start)
            for (const DelimiterSet& set : sets) {
                const char* const text = buffer.Data() + start;
                const Masks expected = MasksOf(kernels::scalarFunctions, text, length, set);
                for (const BlockFunctions& way : OtherWays())
                    ASSERT_EQ(MasksOf(way, text, length, set), expected) << length << " bytes from " << start;
            }
}

TEST(DelimiterScan, FindsTheMembersOfTheSet)
{
    std::string bytes;
    for (int c = 255; c >= 0; --c)
        bytes += static_cast<char>(c);
    const std::string members = ",;\xE9\xFF\x01";
    const DelimiterSet set((members + members).c_str());
    EXPECT_EQ(set.Size(), members.size());
    const Masks masks = MasksOf(kernels::scalarFunctions, bytes.data(), bytes.size(), set);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        EXPECT_EQ(masks[i / 64] >> i % 64 & 1, members.find(bytes[i]) != std::string::npos) << i;
}

// Everything that is done with masks, on texts and arrays without a byte to spare.
void ExpectMasksToBeApplied(const BlockFunctions& way, const Masks& masks, std::size_t length, std::size_t spare)
{
    std::string expectedText(length, 'x');
    std::vector<std::size_t> expected;
    for (std::size_t i = 0; i < length; ++i)
        if ((masks[i / 64] >> i % 64 & 1) != 0) {
            expectedText[i] = '\0';
            expected.push_back(i);
        }
    const GuardedBuffer text(length);
    std::fill_n(text.Data(), length, 'x');
    way.erase(text.Data(), length, masks.data());
    ASSERT_EQ(std::string(text.Data(), length), expectedText);

    ASSERT_EQ(way.count(masks.data(), masks.size()), expected.size());
    const GuardedBuffer array((expected.size() + spare) * sizeof(char*));
    char** const out = reinterpret_cast<char**>(array.Data());
    char** const end = way.store(text.Data(), masks.data(), masks.size(), out, out + expected.size() + spare);
    std::vector<std::size_t> positions;
    std::transform(out, end, std::back_inserter(positions),
                   [&](const char* at) { return static_cast<std::size_t>(at - text.Data()); });
    ASSERT_EQ(positions, expected);
}

TEST(DelimiterScan, AppliesMasksByEveryWay)
{
    std::mt19937_64 random(1);
    std::vector<BlockFunctions> ways = OtherWays();
    ways.push_back(kernels::scalarFunctions);
    for (std::size_t length = 0; length <= 300; ++length)
        for (const int density : {0, 1, 2, 3}) {
            Masks masks((length + 63) / 64);
            for (std::uint64_t& mask : masks) {
                mask = density == 0 ? 0 : ~std::uint64_t{0};
                for (int i = 1; i < density; ++i)
                    mask &= random();
            }
            if (length % 64 != 0)
                masks.back() &= (std::uint64_t{1} << length % 64) - 1;
            for (const BlockFunctions& way : ways)
                for (const std::size_t spare : {0u, 5u, 100u})
                    ExpectMasksToBeApplied(way, masks, length, spare);
        }
}

}  // namespace
