#include <basutl/BuErrObj.h>
#include <basutl/BuFileFind.h>
#include <basutl/BuFileUtl.h>
#include <basutl/BuLogger.h>
#include <basutl/BuMessage.h>
#include <basutl/BuVariable.h>
#include <basutl/BuXml.h>

#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>

#include <cstdlib>
#include <string>
#include <thread>

namespace {

using allocation::ForEachFailure;

constexpr wchar_t LongText[] = L"a text that does not fit into the string's own storage";

TEST(ErrorMemory, AnErrorComesWithoutMemoryForItsText)
{
    const long failures = ForEachFailure([] {
        const BuErrObj* const error = BuSetError(5, LongText);
        EXPECT_EQ(error->GetKind(), BU_ERR_FAILURE);
        EXPECT_STREQ(error->GetMessageText(), allocation::HasFailed() ? L"" : LongText);
    });
    EXPECT_GT(failures, 0);
    ForEachFailure([] { EXPECT_EQ(BuSetNativeError(LongText, 2)->GetKind(), BU_ERR_FAILURE); });
}

TEST(ErrorMemory, AThreadWithoutMemoryForItsRingStillGetsItsErrors)
{
    std::thread([] {
        allocation::FailFrom(1);
        const BuErrObj* first = BuSetWarning(11, L"Action cancelled");
        for (int i = 0; i < 64; ++i)
            BuSetError(LongText);
        const BuErrObj* const last = BuGetLastError();
        allocation::FailFrom(0);
        EXPECT_EQ(last, nullptr);
        int code = 0;
        EXPECT_TRUE(first->GetErrorCode(code) == 1 && code == 11 && first->GetKind() == BU_ERR_WARNING);
        EXPECT_STREQ(first->GetMessageText(), L"");

        EXPECT_STREQ(BuSetError(LongText)->GetMessageText(), LongText);
        EXPECT_NE(BuGetLastError(), nullptr);
    }).join();
}

TEST(LoggerMemory, ATextIsWrittenWholeOrDropped)
{
    platform::SetEnvironmentValue(L"BU_LOG_LEVEL", L"                 1");
    testing::internal::CaptureStderr();
    const long failures = ForEachFailure([] {
        BuLogger::GetInstance().LogText(0, L"never: below the level");
        BuOutputMessage(1, LongText);
        BuAssert(5, "Solver.cpp", 12);
    });
    const std::string written = testing::internal::GetCapturedStderr();
    platform::SetEnvironmentValue(L"BU_LOG_LEVEL", std::nullopt);

    const std::string message = platform::Narrow(LongText);
    const std::string assertion = "Assertion failed at Solver.cpp:12 (code 5)\n";
    long dropped = 2 * (failures + 1);
    for (std::size_t at = 0; at < written.size(); --dropped) {
        const std::string& text = written.compare(at, message.size(), message) == 0 ? message : assertion;
        ASSERT_EQ(written.substr(at, text.size()), text);
        at += text.size();
    }
    EXPECT_GT(dropped, 0);
    EXPECT_LE(dropped, failures);
}

TEST(VariableMemory, GivesTheDefaultOrTheValue)
{
    platform::SetEnvironmentValue(L"BASUTL_TEST_VARIABLE", LongText);
    ForEachFailure([] {
        const wchar_t* const value = BuVariableGetValue("BASUTL_TEST_VARIABLE");
        EXPECT_STREQ(value, allocation::HasFailed() ? nullptr : LongText);
    });
    for (const bool value : {false, true}) {
        platform::SetEnvironmentValue(L"BASUTL_TEST_VARIABLE", value ? L"                1" : L"                0");
        const bool defaultValue = !value;
        ForEachFailure([&] {
            const bool result = BuVariableGetBoolean("BASUTL_TEST_VARIABLE", defaultValue);
            EXPECT_EQ(result, allocation::HasFailed() ? defaultValue : value);
        });
    }
    platform::SetEnvironmentValue(L"BASUTL_TEST_VARIABLE", std::nullopt);
}

// Sends what the parser allocates through this program, where allocations can fail.
class XmlMemory : public testing::Test
{
protected:
    XmlMemory()
        : m_allocate(pugi::get_memory_allocation_function()), m_release(pugi::get_memory_deallocation_function())
    {
        pugi::set_memory_management_functions([](std::size_t size) { return std::malloc(size); },
                                              [](void* block) { std::free(block); });
    }
    ~XmlMemory() override { pugi::set_memory_management_functions(m_allocate, m_release); }

    // Text for more than one page of nodes.
    static std::string MakeText()
    {
        std::string text = "<r n='a value that does not fit into the string'>";
        for (int i = 0; i < 3000; ++i)
            text += "<e k='v'/>";
        return text + "</r>";
    }

    TemporaryFolder m_folder;

private:
    pugi::allocation_function m_allocate;
    pugi::deallocation_function m_release;
};

TEST_F(XmlMemory, ALoadFailsCleanly)
{
    const std::string text = MakeText();
    std::string utf16;
    for (const char c : text)
        utf16 += {c, '\0'};
    for (const std::string& bytes : {text, utf16}) {
        const std::wstring path = m_folder.Write("test.xml", bytes);
        const long failures = ForEachFailure([&] {
            BuXmlDocument document;
            const bool isLoaded = document.Load(path.c_str());
            EXPECT_TRUE(isLoaded || allocation::HasFailed());
            EXPECT_EQ(static_cast<bool>(document.GetRoot()), isLoaded);
            EXPECT_EQ(document.GetErrorOffset(), -1);
            if (!isLoaded)
                return;
            BuString value = L"before";
            const bool hasValue = document.GetRoot().GetAttribute(L"n", value);
            EXPECT_STREQ(value, hasValue ? L"a value that does not fit into the string" : L"before");
            EXPECT_TRUE(hasValue || allocation::HasFailed());
        });
        EXPECT_GT(failures, 5);
    }
}

TEST_F(XmlMemory, NothingEscapesFromAParserWhoseAllocatorThrows)
{
    const std::wstring path = m_folder.Write("test.xml", MakeText());
    pugi::set_memory_management_functions([](std::size_t) -> void* { throw std::bad_alloc(); },
                                          [](void* block) { std::free(block); });
    BuXmlDocument document;
    EXPECT_FALSE(document.Load(path.c_str()));
    EXPECT_STREQ(document.GetErrorText(), L"out of memory");
}

TEST(FileMemory, QuestionsAndWorkFailCleanly)
{
    const TemporaryFolder folder;
    const std::wstring taken = folder.Write("a file whose name is longer than a string's storage.inp", "");
    const std::wstring free = folder.Path("a file whose name is longer than a string's storage_1.inp");
    const std::wstring pattern = folder.Path() + L"*.inp";
    ASSERT_TRUE(
        BuFileUtl(folder.Path("a directory whose name is longer than a string's storage/x").c_str()).CreateDir());
    ForEachFailure([&] {
        BuObjectArrayTempl<BuString> names;
        const int count = BuFileUtl(folder.Path().c_str()).GetSubDirectories(names);
        EXPECT_TRUE(count == 1 || (count == -1 && allocation::HasFailed())) << count;
        EXPECT_EQ(names.GetCount(), count == 1 ? 1 : 0);
    });
    ForEachFailure([&] {
        BuFileFind find;
        BuString name;
        const bool isFound = find.FindFirstFileName(pattern.c_str(), name);
        EXPECT_TRUE(isFound || allocation::HasFailed());
        EXPECT_STREQ(name, isFound ? taken.c_str() + folder.Path().size() : L"");
    });
    for (const bool create : {false, true}) {
        ForEachFailure([&] {
            const BuString name = BuFileUtl::GetFreeFileName(taken.c_str(), create);
            EXPECT_STREQ(name, name.IsEmpty() && allocation::HasFailed() ? L"" : free.c_str());
            if (!BuFileUtl::RemoveAFile(free.c_str()))
                BuFileUtl::RemoveAFile(free.c_str());  // the failure hit the removal
        });
    }
}

}  // namespace
