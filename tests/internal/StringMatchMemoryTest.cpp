// Exhausted memory at every allocation of the functions that compare and replace.

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringMatch.h>

#include "support/AllocationControl.h"
#include "support/ReportScope.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

// Longer than what is kept without an allocation.
std::string Long(const std::string& unit)
{
    std::string text;
    while (text.size() < 1000)
        text += unit;
    return text;
}

TEST(StringMatchMemory, NewTextsAreWholeOrNull)
{
    ReportScope reports;
    std::string text = Long("ab cd-"), word = "cd", replacement = "efg";
    const std::string replaced = Long("ab efg-"), parted = Long("ab cdefg"), removed = Long("ab -");
    const struct
    {
        std::string expected;
        char* (*work)(std::string& text, std::string& word, std::string& replacement);
        int allocations;
    } rows[] = {
        {parted, [](auto& t, auto&, auto& r) { return UtlReplaceString(t.c_str(), "-", r.c_str()); }, 1},
        {removed, [](auto& t, auto&, auto&) { return UtlReplaceStringWithNothing(t.c_str(), "cd", 1); }, 2},
        {removed, [](auto& t, auto&, auto&) { return UtlReplaceStringWithNothing(t.c_str(), "CD", 0); }, 3},
        {"", [](auto&, auto&, auto&) { return UtlReplaceStringWithNothing("", "", 0); }, 1},
        {replaced,
         [](auto& t, auto& w, auto& r) { return UtlSearchAndReplaceByMatchWholeWord(t.data(), w.data(), r.data()); },
         2},
        {replaced, [](auto& t, auto&, auto& r) { return UtlReplaceStringWithString(t.c_str(), "Cd", r.c_str(), 0, 1); },
         3},
    };
    for (const auto& row : rows) {
        const int failures = allocation::ForEachFailure([&] {
            char* const result = row.work(text, word, replacement);
            EXPECT_EQ(result == nullptr, allocation::HasFailed());
            EXPECT_TRUE(result == nullptr || std::strncmp(result, row.expected.c_str(), 600) == 0) << result;
            VBuFree(result, "test", __LINE__);
        });
        EXPECT_GE(failures, row.allocations);
    }
}

TEST(StringMatchMemory, ComparisonsFail)
{
    ReportScope reports;
    const std::string text = Long("ab cd-"), pattern = "AB<>" + Long("ab cd-");
    EXPECT_EQ(allocation::ForEachFailure([&] {
                  const int result = UtlCompareCompleteWord(text.c_str(), pattern.c_str(), "<>", 0, 0);
                  EXPECT_EQ(result, allocation::HasFailed() ? 0 : 1);
              }),
              2);
    EXPECT_GT(allocation::ForEachFailure([] {
                  const int result = UtlStringHasOneofCharacter("some text with an \xE9 and more", "\xE9");
                  EXPECT_EQ(result, allocation::HasFailed() ? 0 : 1);
              }),
              0);
}

TEST(StringMatchMemory, PositionsAreAllOrNone)
{
    const std::string text = Long("ab");
    EXPECT_GT(allocation::ForEachFailure([&] {
                  BuArrayTempl<int> positions;
                  const int count = UtlFindSubstringLocationsInString(text.c_str(), "b", positions);
                  EXPECT_EQ(count, allocation::HasFailed() ? -1 : 500);
                  EXPECT_EQ(positions.GetCount(), count < 0 ? 0 : count);
              }),
              3);
}

}  // namespace
