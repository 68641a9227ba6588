#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"
#include "TuvoMemory/TrackedPtr.h"
#include "support/AllocationControl.h"
#include "support/ReportScope.h"

#include <TuvoUtil/Memory.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

namespace {

TEST(ScratchBuffer, TakesNoBlockUntilItGrows)
{
    const long before = allocation::LiveBlocks();
    ScratchBuffer<int, 4> buffer(modules::TuvoMemory);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(buffer.Append(i));
        ASSERT_EQ(allocation::LiveBlocks(), before + (i < 4 ? 0 : 1));
    }
    int expected = 0;
    for (const int element : buffer)
        EXPECT_EQ(element, expected++);
    EXPECT_EQ(expected, 1000);
}

TEST(ScratchBuffer, AppendsRunsAndRefusesWhatDoesNotFit)
{
    ReportScope reports;
    ScratchBuffer<char, 3> text(modules::TuvoMemory);
    std::string expected;
    for (const std::string part : {"", "ab", "c", "", "defghijkl", "mn"}) {
        ASSERT_TRUE(text.Append(part.data(), part.size()));
        expected += part;
    }
    ASSERT_TRUE(text.Append(nullptr, 0));
    // Behind volatile, lest the compiler warns of what is refused at run time.
    for (volatile std::size_t tooMany : {SIZE_MAX, std::size_t{PTRDIFF_MAX}, std::size_t{PTRDIFF_MAX} + 1}) {
        EXPECT_FALSE(text.Append("x", tooMany));
        EXPECT_FALSE(text.Reserve(tooMany));
        EXPECT_FALSE(text.Resize(tooMany));
    }
    EXPECT_EQ(std::string(text.Data(), text.Size()), expected);
}

TEST(ScratchBuffer, KeepsItsContentWhenMemoryIsExhausted)
{
    ReportScope reports;
    EXPECT_EQ(allocation::ForEachFailure([] {
                  ScratchBuffer<char, 2> text(modules::TuvoMemory);
                  ASSERT_TRUE(text.Append("ab", 2));
                  const bool hasFirst = text.Append("cd", 2);
                  const bool hasSecond = text.Reserve(1000);
                  EXPECT_EQ(text.Size(), hasFirst ? 4u : 2u);
                  EXPECT_EQ(std::memcmp(text.Data(), "abcd", text.Size()), 0);
                  EXPECT_EQ(text.Capacity() >= 1000, hasSecond);
              }),
              2);
}

TEST(ScratchBuffer, GivesItsElementsAway)
{
    ReportScope reports;
    for (const std::string text : {"", "ab", "abcdefghi"})
        EXPECT_EQ(allocation::ForEachFailure([&] {
                      ScratchBuffer<char, 3> buffer(modules::TuvoMemory);
                      if (!buffer.Append(text.data(), text.size()))
                          return;
                      char* block = buffer.Release();
                      EXPECT_EQ(buffer.Size(), block != nullptr ? 0 : text.size());
                      EXPECT_TRUE(block == nullptr || std::memcmp(block, text.data(), text.size()) == 0);
                      VBU_FREE(block, modules::TuvoMemory, __LINE__);
                      EXPECT_TRUE(buffer.Append("c", 1) && buffer.Data()[buffer.Size() - 1] == 'c');
                  }),
                  text.empty() ? 0 : (text.size() > 3 ? 2 : 1))
            << text;
}

TEST(TrackedPtr, OwnsOneBlock)
{
    const auto copyOf = [](const char* text) { return VBuStrDup(text, modules::TuvoMemory, __LINE__); };
    const long before = allocation::LiveBlocks();
    TrackedPtr<char> first(modules::TuvoMemory, copyOf("first"));
    TrackedPtr<char> second(std::move(first));
    EXPECT_TRUE(!first && second[0] == 'f');
    first.Reset(copyOf("next"));
    first.Reset(first.Get());
    second = std::move(first);
    EXPECT_STREQ(second.Get(), "next");
    EXPECT_EQ(allocation::LiveBlocks(), before + 1);
    char* block = second.Release();
    EXPECT_FALSE(second);
    VBU_FREE(block, modules::TuvoMemory, __LINE__);
    second.Reset(copyOf("freed by the end of the test, which counts"));
}

}  // namespace
