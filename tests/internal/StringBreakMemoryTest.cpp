// Exhausted memory at every allocation of every function that breaks strings.

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include "support/AllocationControl.h"
#include "support/ChildProcess.h"
#include "support/ReportScope.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class StringBreakMemory : public testing::Test
{
protected:
    // Runs divide(text, fields), which gives `count` fields in the end, with its allocations, of which there are so
    // many at least, failing one after the other. Until then nothing is given and the text stays as it was.
    template <typename Divide, typename Free>
    void Expect(const std::string& text, int count, int allocations, Divide divide, Free free)
    {
        bool failed = true;
        for (int n = 1; failed; ++n) {
            std::string copy = text;
            char** fields = nullptr;
            allocation::FailOnce(n);
            int given = divide(copy.data(), &fields);
            failed = allocation::HasFailed();
            allocation::FailFrom(0);
            EXPECT_TRUE(failed || n > allocations);
            EXPECT_EQ(given, failed ? 0 : count);
            EXPECT_EQ(fields == nullptr, failed);
            if (failed) {
                EXPECT_EQ(copy, text);
            }
            free(given, fields);
        }
    }

    static void FreeArray(int, char** fields) { VBuFree(fields, __FILE__, __LINE__); }

    ReportScope m_reports;
};

TEST_F(StringBreakMemory, TextsStayAsTheyWere)
{
    const std::string text = ",a,,b c";
    const auto tok = [](char* copy, char*** fields) { return UtlStringTok(copy, fields, ","); };
    const auto chars = [](char* copy, char*** fields) { return UtlBreakStringIntoChars(copy, fields, ","); };
    const auto strings = [](char* copy, char*** fields) {
        return UtlBreakStringIntoStringsDbg(copy, fields, ",", __FILE__, __LINE__);
    };
    const auto segments = [](char* copy, char*** fields) {
        return UtlGetStringsIncludedInDelimiters(copy, ',', ',', fields);
    };
    const auto variables = [](char* copy, char*** fields) {
        return UtlBreakStringIntoStringsAndVariables(copy, fields, ",");
    };
    Expect(text, 4, 1, tok, FreeArray);
    Expect(text, 4, 5, chars, UtlFreeStringList);
    Expect(text, 3, 1, strings, FreeArray);
    Expect(text, 1, 2, segments, UtlFreeStringList);
    Expect(text, 3, 1, variables, FreeArray);
    Expect(std::string(2000, 'x'), 1, 2, variables, FreeArray);

    char comma[] = ",";
    char blank[] = " ";
    UtlSetBreakContinuousDelimsOption(1, comma);
    std::string longText = "[x y],,";
    for (int i = 0; i < 50; ++i)
        longText += "some text,,";
    Expect(longText, 152, 3, variables, FreeArray);
    UtlSetBreakContinuousDelimsOption(0, blank);
}

TEST_F(StringBreakMemory, TokensComeAtTheNextCall)
{
    char text[] = " token";
    char delimiters[] = " ";
    EXPECT_EQ(allocation::ForEachFailure([&] {
                  char* cursor = text;
                  char* const token = UtlTokenize(&cursor, delimiters);
                  EXPECT_EQ(token != nullptr, cursor != text);
                  VBuFree(token, __FILE__, __LINE__);
              }),
              1);
}

TEST_F(StringBreakMemory, NumbersKeepTheirBlock)
{
    const auto read = [](char* copy, char*** values) {
        return UtlBreakStringToGivenDataType(copy, reinterpret_cast<void**>(values), 0);
    };
    std::string text = "7";
    for (int i = 1; i < 256; ++i)
        text += " 7";
    std::string copy = text;
    char** values = nullptr;
    allocation::FailOnce(1);
    EXPECT_EQ(read(copy.data(), &values), 256) << "the first block holds them";
    allocation::FailFrom(0);
    for (int i = 256; i < 100'000; ++i)  // more than any other test asks for
        text += " 7";
    Expect(text, 100'000, 1, read, [](int, char**) {});
}

TEST_F(StringBreakMemory, ResolvedTextIsWholeOrAsItWas)
{
    BuString text;
    for (int i = 0; i < 100; ++i)
        text += L"pairs of delimiters,, ";
    BuString expected = text;
    ASSERT_EQ(UtlStrGetResolvedContinuousDelimString(expected, ","), 1);
    int failures = 0;
    for (bool failed = true; failed; failures += failed) {
        BuString result = text;
        allocation::FailOnce(failures + 1);
        const int isResolved = UtlStrGetResolvedContinuousDelimString(result, ",");
        failed = allocation::HasFailed();
        allocation::FailFrom(0);
        EXPECT_EQ(isResolved, failed ? 0 : 1);
        EXPECT_EQ(result, failed ? text : expected);
    }
    EXPECT_GT(failures, 3);
}

// In a process of its own: the array of the inner call stays allocated when all is well.
CHILD_SCENARIO(NewStringsFromExhaustedMemory)
{
    const ReportScope reports;
    const int before = allocation::LiveBlocks();
    const int failures = allocation::ForEachFailure([&] {
        char text[] = "a,b";
        int count = -1;
        char** list = nullptr;
        const int result = VbUtlBreakStringIntoStringsDbg(text, &count, &list, ",", __FILE__, __LINE__);
        EXPECT_EQ(result, allocation::HasFailed() ? 0 : 2);
        EXPECT_EQ(count, result);
        EXPECT_EQ(list == nullptr, result == 0);
        UtlFreeStringList(count, list);
        EXPECT_EQ(allocation::LiveBlocks(), before + (result != 0 ? 1 : 0));
    });
    EXPECT_EQ(failures, 4);
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST_F(StringBreakMemory, NewStringsAreGivenWholeOrNotAtAll)
{
    const ChildResult result = RunChild("NewStringsFromExhaustedMemory");
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
}

}  // namespace
