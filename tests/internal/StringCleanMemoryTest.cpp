// Exhausted memory in the functions that clean texts and describe numbers.

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/NumberText.h>
#include <TuvoUtil/StringClean.h>

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

TEST(StringCleanMemory, GivesANewTextOrNull)
{
    const struct
    {
        const char* expected;
        char* (*make)(int* size);
    } rows[] = {
        {"a b", [](int*) { return VStrUtlGetStringWithNoSpacesAtEnds(" a b "); }},
        {"  ", [](int*) { return UtlStrGetStringBlank(2); }},
        {"a", [](int*) { return UtlClearDoubleQuotesFromString("\"a\""); }},
        {"a", [](int*) { return UtlClearPythonString("r\"a\""); }},
        {"abc", [](int* size) { return UtlStrDup("abc", size); }},
        {"ABC", [](int* size) { return UtlToUpperStrDup("abc", size); }},
        {"abc", [](int*) { return UtlStrToLower("ABC"); }},
        {"ABC", [](int*) { return UtlStrToUpper("abc"); }},
        {"a.../b", [](int*) { return UtlCutShortFileName("abcdef/b", 6); }},
        {"f/b", [](int*) { return UtlCutShortFileName("abcdef/b", 3); }},
        {"a_b", [](int*) { return UtlReplaceInvalidCharsInFileName("a/b", '_'); }},
        {"a/b", [](int*) { return UtlUrlStrReplaceFilePathSep("a\\b"); }},
        {"%-5s", [](int*) { return UtlConstructFormat(5, 0); }},
        {"ac",
         [](int*) {
             char* result = nullptr;
             UtlRemoveFirstAppearenceOfDelimeter("abc", "b", &result);
             return result;
         }},
        {"ab",
         [](int*) {
             char* result = nullptr;
             UtlStrRemoveCarriageReturn("a\rb", &result);
             return result;
         }},
        {"b",
         [](int*) {
             char* value = nullptr;
             const int result = VStrUtlReadString("a b c", 2, 3, &value);
             EXPECT_EQ(result, value != nullptr ? 0 : -1);
             return value;
         }},
    };
    for (const auto& row : rows)
        EXPECT_EQ(allocation::ForEachFailure([&] {
                      int size = 7;
                      char* const text = row.make(&size);
                      EXPECT_TRUE(text == nullptr ? size == 7 : std::strcmp(text, row.expected) == 0);
                      VBuFree(text, "test", __LINE__);
                  }),
                  1)
            << row.expected;
}

TEST(StringCleanMemory, SortsWithoutAny)
{
    std::mt19937 random(5);
    std::vector<std::string> names(3000);
    std::vector<char*> pointers;
    for (std::string& name : names) {
        name = "n" + std::to_string(random() % 100);
        pointers.push_back(name.data());
    }
    allocation::FailFrom(1);
    UtlSortStringInAlphaNumricOrder(static_cast<int>(pointers.size()), pointers.data());
    allocation::FailFrom(0);
    // Equal ones in their old order, which is that of their addresses.
    EXPECT_TRUE(std::is_sorted(pointers.begin(), pointers.end(), [](const char* left, const char* right) {
        const int l = std::stoi(left + 1), r = std::stoi(right + 1);
        return l != r ? l < r : left < right;
    }));
}

TEST(StringCleanMemory, FormatsAValueOrNothing)
{
    const BuString expected(L"1234.500");
    EXPECT_GT(allocation::ForEachFailure([&] {
                  const BuString printed = TuvoUtilFormatDoubleValue(1234.5, nullptr);
                  EXPECT_TRUE(printed.IsEmpty() || printed == expected);
              }),
              0);
}

}  // namespace
