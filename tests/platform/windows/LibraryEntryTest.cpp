#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(LibraryEntry, KeepsTheLibraryLoaded)
{
    ASSERT_EQ(GetModuleHandleW(L"TuvoUtil"), nullptr);
    const HMODULE library = LoadLibraryW(L"TuvoUtil.dll");
    ASSERT_NE(library, nullptr) << GetLastError();
    EXPECT_NE(GetProcAddress(library, "__VxFreeLoopCount__"), nullptr);
    FreeLibrary(library);
    EXPECT_EQ(GetModuleHandleW(L"TuvoUtil"), library);
}

}  // namespace
