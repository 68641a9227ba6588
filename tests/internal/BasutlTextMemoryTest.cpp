#include "support/AllocationControl.h"

#include <basutl/BuArrayTempl.h>
#include <basutl/BuConversionAllocator.h>
#include <basutl/BuPath.h>
#include <basutl/BuStringFileName.h>
#include <basutl/BuTreeItemTempl.h>

#include <gtest/gtest.h>

#include <string>

namespace {

const std::wstring Long(300, L'x');  // too long for storage inside an object
const wchar_t* const Kept = L"kept text that is no shorter than a string object itself/name";

// Runs a change of a text with each allocation failing in turn: the text is then unchanged, or as without failure.
template <typename Change>
void ExpectAllOrNothing(const char* name, Change change)
{
    const BuString kept = Kept;
    BuString changed = Kept;
    change(changed);
    const long failures = allocation::ForEachFailure([&] {
        BuString text;
        while (text.IsEmpty())  // the first failure meets this allocation
            text = Kept;
        change(text);
        EXPECT_TRUE(text == kept || text == changed) << name << ": " << text.GetText();
    });
    EXPECT_GT(failures, 1) << name;
}

// The same for a function that makes something new, which is then empty or complete.
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

TEST(BasutlTextMemory, FailedChangesLeaveTheTextAsItWas)
{
    const BuString other(Long.c_str());
    const std::string narrow(300, 'n');
    ExpectAllOrNothing("= text", [&](BuString& text) { text = other; });
    ExpectAllOrNothing("= wide", [&](BuString& text) { text = Long.c_str(); });
    ExpectAllOrNothing("= narrow", [&](BuString& text) { text = narrow.c_str(); });
    ExpectAllOrNothing("+= text", [&](BuString& text) { text += other; });
    ExpectAllOrNothing("Insert", [&](BuString& text) { text.Insert(3, Long.c_str()); });
    ExpectAllOrNothing("Replace", [](BuString& text) { text.Replace(L"e", L"[some more characters than before]"); });
    ExpectAllOrNothing("Format", [&](BuString& text) {
        const int length = text.Format(L"%s %S %400d", text.GetText(), narrow.c_str(), 1);
        EXPECT_TRUE(length == -1 || length == text.GetLength());
    });
    ExpectAllOrNothing("FormatWithoutArguments", [&](BuString& text) { text.FormatWithoutArguments(Long.c_str()); });
    ExpectAllOrNothing("BuPathRemoveFileSpecW", [](BuString& text) { BuPathRemoveFileSpecW(text); });
    ExpectAllOrNothing("BuPathAddSeparatorW", [](BuString& text) { BuPathAddSeparatorW(text); });
}

TEST(BasutlTextMemory, FailedResultsAreEmpty)
{
    const BuString text(Long.c_str());
    const std::string narrow(300, 'n');
    ExpectAllOrEmpty("copy", [&] { return BuString(text); });
    ExpectAllOrEmpty("wide", [&] { return BuString(Long.c_str()); });
    ExpectAllOrEmpty("narrow", [&] { return BuString(narrow.c_str()); });
    ExpectAllOrEmpty("+", [&] { return text + text; });
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
    const long wordFailures = allocation::ForEachFailure([&] {
        BuObjectArrayTempl<BuString> words;
        const int count = text.ExtractWords(words, L"\n");
        EXPECT_EQ(count, words.IsEmpty() ? -1 : 12);
        for (const BuString& word : words)
            EXPECT_GT(word.GetLength(), 50);
    });
    EXPECT_GT(wordFailures, 12);

    allocation::ForEachFailure([&] {
        BuString line;
        int position = 0;
        while (text.ExtractLine(position, line))
            EXPECT_GT(line.GetLength(), 50);
        EXPECT_TRUE(line.IsEmpty());
    });
}

TEST(BasutlTextMemory, ConversionsGiveNullOrTheText)
{
    const std::string narrow(300, 'n');
    const std::wstring expected(300, L'n');
    EXPECT_GT(allocation::ForEachFailure([&] {
                  BuConversionAllocator convert;
                  const wchar_t* const wide = convert.AnsiToUnicode(narrow.c_str());
                  const char* const back = wide != nullptr ? convert.UnicodeToAnsi(wide) : nullptr;
                  EXPECT_TRUE(wide == nullptr || wide == expected);
                  EXPECT_TRUE(back == nullptr || back == narrow);
              }),
              3);
    BuConversionAllocator convert;
    EXPECT_EQ(convert.AnsiToUnicode(nullptr), nullptr);
    EXPECT_EQ(convert.UnicodeToAnsi(nullptr), nullptr);
    const wchar_t* const first = convert.AnsiToUnicode("a");
    EXPECT_STREQ(convert.AnsiToUnicode("b"), L"b");
    EXPECT_STREQ(first, L"a");
}

TEST(BasutlTextMemory, ContainersSayWhatTheyCouldNotTake)
{
    EXPECT_GT(allocation::ForEachFailure([] {
                  BuArrayTempl<int> items;
                  int expected = 0;
                  for (int i = 0; i < 50; ++i)
                      expected += items.Add(i) >= 0;
                  EXPECT_EQ(items.GetCount(), expected);
                  BuArrayTempl<int> more;
                  const bool appended = more.Append(items);
                  EXPECT_EQ(more.GetCount(), appended ? expected : 0);
                  BuArrayTempl<int> assigned;
                  assigned.Add(-1);
                  const int before = assigned.GetCount();
                  assigned = items;
                  EXPECT_TRUE(assigned.GetCount() == expected || assigned.GetCount() == before);
              }),
              5);
    EXPECT_GT(allocation::ForEachFailure([] {
                  BuTreeItemTempl<int> root;
                  int expected = 0;
                  for (int i = 0; i < 5; ++i)
                      expected += root.AppendChild(i) != nullptr;
                  EXPECT_EQ(root.GetChildCount(), expected);
                  EXPECT_TRUE(root.IsValid());
              }),
              4);
}

}  // namespace
