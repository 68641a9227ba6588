// Exhausted memory at every allocation of every function of the id lists.

#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include "support/AllocationControl.h"
#include "support/ReportScope.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace {

class IdListMemory : public testing::Test
{
    ReportScope m_reports;
};

TEST_F(IdListMemory, StrictListsAreWholeOrRejected)
{
    std::string sparse, dense;
    for (int i = 500; i > 0; --i) {
        sparse += std::to_string(i * 1'000'000) + ',';
        dense += std::to_string(i * 10) + '-' + std::to_string(i * 10 + 5) + ' ';
    }
    // The array alone; the array and what has been seen.
    const struct
    {
        std::string text;
        int keepDuplicates;
        int failures;
        int count;
    } rows[] = {{"1-5", 0, 1, 5}, {sparse, 1, 1, 500}, {sparse, 0, 2, 500}, {dense, 0, 2, 3000}};
    for (const auto& row : rows)
        EXPECT_EQ(allocation::ForEachFailure([&] {
                      int* ids = nullptr;
                      const int count = UtlGenerateIdListFromString(row.text.c_str(), &ids, row.keepDuplicates);
                      EXPECT_EQ(count, ids != nullptr ? row.count : -1);
                      VBuFree(ids, "test", __LINE__);
                  }),
                  row.failures);
}

TEST_F(IdListMemory, HugeRangesFailWithoutTheirMemory)
{
    int* ids = nullptr;
    for (const char* const text : {"1-999999999", "1-999999999,1-999999999"}) {
        allocation::FailOnce(1);
        EXPECT_EQ(UtlGenerateIdListFromString(text, &ids, 0), -1);
        EXPECT_TRUE(allocation::HasFailed());
        allocation::FailOnce(1);
        EXPECT_EQ(UtlGetIdListFromGivenSet(text, &ids, nullptr, "-"), 0);
        EXPECT_TRUE(allocation::HasFailed());
    }
    // More than an int counts: nothing is asked for.
    EXPECT_EQ(UtlGenerateIdListFromString("1-999999999 1-999999999 1-999999999", &ids, 1), -1);
    EXPECT_EQ(UtlGetIdListFromGivenSet("-2147483648:2147483647", &ids, nullptr, nullptr), 0);
    EXPECT_EQ(ids, nullptr);
}

// All that may be allocated in a run is the library's own.
void ExpectWholeOrNone(int count, int* ids, int expected)
{
    EXPECT_EQ(count, ids != nullptr ? expected : 0);
    VBuFree(ids, "test", __LINE__);
}

void ExpectEndOrNull(char* text, std::string_view end)
{
    EXPECT_TRUE(text == nullptr || std::string_view(text).ends_with(end));
    VBuFree(text, "test", __LINE__);
}

TEST_F(IdListMemory, LenientListsAreWholeOrEmpty)
{
    std::string pattern = std::string(300, '0') + "4?";
    std::string steps = "1:10,2";
    const int failures = allocation::ForEachFailure([&] {
        int* ids = nullptr;
        int count = UtlGetIdListFromWildCard(pattern.data(), &ids, '?');
        ExpectWholeOrNone(count, ids, 10);
        count = UtlGetIncrementalIdList(steps.data(), &ids, '\0', '\0');
        ExpectWholeOrNone(count, ids, 5);
        count = UtlGetIdListFromGivenSet("1,5:4", &ids, nullptr, nullptr);
        ExpectWholeOrNone(count, ids, 3);
    });
    EXPECT_GE(failures, 4);
}

TEST_F(IdListMemory, TextsAreWholeOrNull)
{
    std::vector<int> ids(1000);
    std::iota(ids.begin(), ids.end(), 1);
    std::vector<float> values(ids.begin(), ids.end());
    const int failures = allocation::ForEachFailure([&] {
        ExpectEndOrNull(UtlGenerateStringFromIdList(ids.data(), 1000, nullptr), ",999,1000");
        ExpectEndOrNull(UtlStrGenerateIdStringSafe(ids.data(), 1000, nullptr), "1-999,1000");
        ExpectEndOrNull(UtlGenerateStringFromFloatList(values.data(), 1000, nullptr), ",1000.000000");
    });
    EXPECT_GT(failures, 6);
}

TEST_F(IdListMemory, ValuesAreWholeOrNone)
{
    std::string text;
    for (int i = 1; i <= 100; ++i)
        text += std::to_string(i) + ", ";
    const int failures = allocation::ForEachFailure([&] {
        float* floats = nullptr;
        const int floatCount = UtlGetFloatListFromString("1,2", &floats, nullptr);
        EXPECT_EQ(floatCount, floats != nullptr ? 2 : 0);
        VBuFree(floats, "test", __LINE__);

        double* values = nullptr;
        int count = 0;
        char message[53] = "";
        const int result = UtlGetTvCoordValuesFromString(text.data(), &count, &values, nullptr, message);
        EXPECT_STREQ(message, result == 0 ? "" : "Memory is exhausted!");
        EXPECT_EQ(count, result == 0 ? 100 : 0);
        EXPECT_EQ(values != nullptr, result == 0);
        VBuFree(values, "test", __LINE__);
    });
    EXPECT_GE(failures, 3);
}

}  // namespace
