#include <TuvoUtil/StringClean.h>

#include <gtest/gtest.h>

namespace {

TEST(FormattedText, IsEmptyWhenTheCLibraryFails)
{
    char target[] = "xyz";
    EXPECT_EQ(UtlSnprintf(target, sizeof target, "a%ls", L"\x20AC"), -1);
    EXPECT_STREQ(target, "");
    EXPECT_EQ(UtlSnprintf(nullptr, 0, "%ls", L"\x20AC"), -1);
}

}  // namespace
