// Arrays that cannot be changed because memory is exhausted.
#include <TuvoUtil/ArrayHelpers.h>

#include "support/AllocationControl.h"
#include "support/ReportScope.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

namespace {

TEST(ArrayHelpersMemory, GrowthLeavesNullAndTheOldBlock)
{
    ReportScope reports;
    EXPECT_EQ(allocation::ForEachFailure([] {
                  void* array = nullptr;
                  int count = 0;
                  UtlExpandArrayByOne(&array, &count, 400);
                  EXPECT_EQ(count, 1);
                  if (array == nullptr)
                      return;
                  void* old = array;
                  UtlInsertArrayMember(&array, &count, 400, 0);
                  EXPECT_EQ(array == nullptr, allocation::HasFailed());
                  EXPECT_EQ(count, 2);
                  UtlFreeAndInit(array != nullptr ? &array : &old);
              }),
              2);
    EXPECT_TRUE(
        reports.TakeErrors().ends_with("VxRealloc: Memory allocation error\n"
                                       "SEVERE ERROR : memory not available  !!\n"));
    allocation::FailOnce(1);
    void* array = nullptr;
    EXPECT_EQ(UtlCallocAndLink(&array, 3, 4), nullptr);
    allocation::FailFrom(0);
    UtlReCalloc(&array, 3, 400);
    void* old = array;
    allocation::FailOnce(1);
    UtlReCalloc(&array, 300, 400);
    allocation::FailFrom(0);
    EXPECT_EQ(array, nullptr);
    UtlFreeAndInit(&old);
}

TEST(ArrayHelpersMemory, ReplacementHappensOrChangesNothing)
{
    ReportScope reports;
    std::array<void*, 40> many = {};
    void* block = nullptr;
    void** const pointers = static_cast<void**>(UtlCallocAndLink(&block, 3, sizeof block));
    void** array = pointers;
    int count = 3;
    for (int i = 0; i < count; ++i)
        array[i] = &many[static_cast<std::size_t>(i)];
    allocation::FailOnce(1);
    EXPECT_EQ(UtlReplaceMemberWithArray(&array, &count, 8, 1, 40, many.data()), 0);
    EXPECT_TRUE(count == 3 && array == pointers && array[1] == &many[1]);
    // Less room is not needed: a block that cannot shrink is kept.
    allocation::FailOnce(1);
    UtlReplaceMemberWithArray(&array, &count, 8, 0, 0, nullptr);
    EXPECT_TRUE(allocation::HasFailed());
    allocation::FailFrom(0);
    EXPECT_TRUE(count == 2 && array[0] == &many[1] && array[1] == &many[2]);
    UtlFreeAndInit(&block);
}

}  // namespace
