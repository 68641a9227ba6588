#include <TuvoUtil/Color.h>

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

namespace {

TEST(ColorMemory, ATextIsReadOrRefused)
{
    const BuString text(L"RGB 255 0 00000000000000000000128");
    EXPECT_GT(allocation::ForEachFailure([&] {
                  unsigned int color = 7;
                  const bool isRead = BuConvertStringToRGBColor(text, color) == nullptr;
                  EXPECT_EQ(isRead, !allocation::HasFailed());
                  EXPECT_EQ(color, isRead ? 0x8000FFU : 7U);
              }),
              0);
}

TEST(ColorMemory, ATextIsWrittenOrEmpty)
{
    EXPECT_GT(allocation::ForEachFailure([] {
                  const BuString text = BuConvertRGBColorToString(0x8000FF);
                  EXPECT_TRUE(allocation::HasFailed() ? text.IsEmpty() : text == L"RGB 255 0 128");
              }),
              0);
}

}  // namespace
