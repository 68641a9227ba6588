#include "Kernels/BlankCollapse.h"

#include <basutl/BuCharacter.h>

#include "support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

struct Collapsed
{
    std::string text;
    bool afterBlank;
    bool operator==(const Collapsed&) const = default;
};

TEST(BlankCollapse, KeepsTheFirstOfEachRun)
{
    for (int code = 0; code < 256; ++code) {
        const char text[] = {'\t', static_cast<char>(code), 'a', static_cast<char>(code), static_cast<char>(code)};
        const bool isBlank = BuIsSpace(static_cast<char>(code));
        char target[5];
        bool afterBlank = false;
        EXPECT_EQ(kernels::CollapseBlanksScalar(text, 5, target, afterBlank), isBlank ? 3U : 5U) << code;
        EXPECT_EQ(afterBlank, isBlank);
    }
}

TEST(BlankCollapse, IsTheSameInEveryVariantAtEveryPlace)
{
    if (!kernels::HasSsse3())
        GTEST_SKIP() << "this processor runs the scalar variant alone";
    std::mt19937 random(4);
    for (std::size_t length = 0; length <= 300; ++length)
        for (std::size_t place = 0; place < 16; ++place) {
            std::string text(length, 'x');
            const unsigned density = random() % 4 + 1;
            std::generate(text.begin(), text.end(), [&] {
                return random() % density == 0 ? "\t\n\v\f\r "[random() % 6] : static_cast<char>(random());
            });
            const bool beginsAfterBlank = place % 2 != 0;
            Collapsed expected{std::string(length, '?'), beginsAfterBlank};
            expected.text.resize(
                kernels::CollapseBlanksScalar(text.data(), length, expected.text.data(), expected.afterBlank));

            // Source and target end at once where memory ends, at every alignment.
            const GuardedBuffer source(length + place), target(length + (place * 7 + 3) % 16);
            std::copy(text.begin(), text.end(), source.Data());
            for (char* const to : {target.Data(), source.Data()}) {
                Collapsed actual{{}, beginsAfterBlank};
                actual.text.assign(to, kernels::CollapseBlanksSsse3(source.Data(), length, to, actual.afterBlank));
                ASSERT_EQ(actual, expected) << length << " characters at " << place;
            }
        }
}

}  // namespace
