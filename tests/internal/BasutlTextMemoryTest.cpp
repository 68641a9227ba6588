#include "support/AllocationControl.h"

#include <basutl/BuArrayTempl.h>
#include <basutl/BuConversionAllocator.h>
#include <basutl/BuPath.h>
#include <basutl/BuStringFileName.h>
#include <basutl/BuTreeItemTempl.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

const std::wstring Long(300, L'x');  // too long for storage inside an object
const std::string Narrow(300, 'n');
const wchar_t* const Kept = L"kept text that is no shorter than a string object itself/name";

TEST(BasutlTextMemory, FailedChangesLeaveTheTextAsItWas)
{
    const BuString other(Long.c_str());
    const struct
    {
        const char* name;
        std::function<void(BuString&)> change;
    } rows[] = {
        {"= text", [&](BuString& text) { text = other; }},
        {"= wide", [](BuString& text) { text = Long.c_str(); }},
        {"= narrow", [](BuString& text) { text = Narrow.c_str(); }},
        {"+= text", [&](BuString& text) { text += other; }},
        {"Insert", [](BuString& text) { text.Insert(3, Long.c_str()); }},
        {"Replace", [](BuString& text) { text.Replace(L"e", L"[some more characters than before]"); }},
        {"Format",
         [](BuString& text) {
             const int length = text.Format(L"%s %S %400d", text.GetText(), Narrow.c_str(), 1);
             EXPECT_TRUE(length == -1 || length == text.GetLength());
         }},
        {"FormatWithoutArguments", [](BuString& text) { text.FormatWithoutArguments(Long.c_str()); }},
        {"BuPathRemoveFileSpecW", [](BuString& text) { BuPathRemoveFileSpecW(text); }},
        {"BuPathAddSeparatorW", [](BuString& text) { BuPathAddSeparatorW(text); }},
    };
    for (const auto& row : rows) {
        BuString changed = Kept;
        row.change(changed);
        const long failures = allocation::ForEachFailure([&] {
            BuString text;
            while (text.IsEmpty())  // the first failure meets this allocation
                text = Kept;
            row.change(text);
            EXPECT_TRUE(text == Kept || text == changed) << row.name << ": " << text.GetText();
        });
        EXPECT_GT(failures, 1) << row.name;
    }
}

// Runs a function that makes something new, which is then empty or complete.
template <typename Make>
void ExpectAllOrEmpty(const char* name, Make make)
{
    const auto complete = make();
    const long failures = allocation::ForEachFailure([&] {
        const auto result = make();
        EXPECT_TRUE(result == complete || result == decltype(complete)()) << name;
    });
    EXPECT_GT(failures, 0) << name;
}

TEST(BasutlTextMemory, FailedResultsAreEmpty)
{
    const BuString text(Long.c_str());
    ExpectAllOrEmpty("copy", [&] { return BuString(text); });
    ExpectAllOrEmpty("wide", [] { return BuString(Long.c_str()); });
    ExpectAllOrEmpty("narrow", [] { return BuString(Narrow.c_str()); });
    ExpectAllOrEmpty("+", [&] { return text + text; });
    ExpectAllOrEmpty("+ character", [&] { return text + L'.'; });
    ExpectAllOrEmpty("Mid", [&] { return text.Mid(1, 100); });
    ExpectAllOrEmpty("FromDouble", [] { return BuString::FromDouble(1.0, 1000); });
    ExpectAllOrEmpty("ToNarrow", [&] { return text.ToNarrow(); });
    ExpectAllOrEmpty("ToDouble", [] { return BuString(L"1.00000000000000000000000000000000").ToDouble(); });
}

TEST(BasutlTextMemory, WidthsThatNoMemoryHoldsFail)
{
    BuString text(Kept);
    for (const wchar_t* format : {L"%2147483647d", L"%-2147483647d", L"%.2147483646d", L"%.2000000000e"}) {
        allocation::FailOnce(1);
        EXPECT_EQ(text.Format(format, 0, 0.0), -1) << format;
        allocation::FailFrom(0);
        EXPECT_STREQ(text, Kept) << format;
    }
}

TEST(BasutlTextMemory, PartsOfATextComeWholeOrNotAtAll)
{
    BuString text;
    for (int i = 0; i < 12; ++i)
        text.Format(L"%s %d%s\n", text.GetText(), i, Kept);
    const long failures = allocation::ForEachFailure([&] {
        BuObjectArrayTempl<BuString> words;
        const int count = text.ExtractWords(words, L"\n");
        EXPECT_EQ(count, words.IsEmpty() ? -1 : 12);
        for (const BuString& word : words)
            EXPECT_GT(word.GetLength(), 50);
        BuString line;
        for (int position = 0; text.ExtractLine(position, line);)
            EXPECT_GT(line.GetLength(), 50);
        EXPECT_TRUE(line.IsEmpty());
    });
    EXPECT_GT(failures, 12);
}

TEST(BasutlTextMemory, ConversionsGiveNullOrTheText)
{
    const std::wstring expected(300, L'n');
    EXPECT_GT(allocation::ForEachFailure([&] {
                  BuConversionAllocator convert;
                  const wchar_t* const wide = convert.AnsiToUnicode(Narrow.c_str());
                  const char* const back = wide != nullptr ? convert.UnicodeToAnsi(wide) : nullptr;
                  EXPECT_TRUE(wide == nullptr || wide == expected);
                  EXPECT_TRUE(back == nullptr || back == Narrow);
              }),
              3);
    BuConversionAllocator convert;
    EXPECT_TRUE(convert.AnsiToUnicode(nullptr) == nullptr && convert.UnicodeToAnsi(nullptr) == nullptr);
    const wchar_t* const first = convert.AnsiToUnicode("a");
    EXPECT_STREQ(convert.AnsiToUnicode("b"), L"b");
    EXPECT_STREQ(first, L"a");
}

TEST(BasutlTextMemory, ContainersSayWhatTheyCouldNotTake)
{
    EXPECT_GT(allocation::ForEachFailure([] {
                  BuArrayTempl<int> items;
                  BuTreeItemTempl<int> root;
                  int inArray = 0;
                  int inTree = 0;
                  for (int i = 0; i < 50; ++i) {
                      inArray += items.Add(i) >= 0;
                      inTree += root.AppendChild(i) != nullptr;
                  }
                  EXPECT_TRUE(items.GetCount() == inArray && root.GetChildCount() == inTree && root.IsValid());
                  BuArrayTempl<int> more;
                  const bool isAppended = more.Append(items);
                  EXPECT_EQ(more.GetCount(), isAppended ? inArray : 0);
                  BuArrayTempl<int> assigned;
                  const int before = assigned.Add(-1) + 1;
                  assigned = items;
                  EXPECT_TRUE(assigned.GetCount() == inArray || assigned.GetCount() == before);
              }),
              50);
}

}  // namespace
