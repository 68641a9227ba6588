#include "basutl/PathText.h"

#include <gtest/gtest.h>

namespace {

TEST(PathText, BecomesAbsoluteByTheRulesOfItsSystem)
{
    const struct
    {
        const wchar_t *path, *onLinux, *onWindows;  // from "/home/user" and "C:\work\job"
    } rows[] = {
        {L"a/b\\c.txt", L"/home/user/a/b/c.txt", L"C:\\work\\job\\a\\b\\c.txt"},
        {L"./a/../../b/", L"/home/b", L"C:\\work\\b"},
        {L"../../../../a", L"/a", L"C:\\a"},
        {L"..", L"/home", L"C:\\work"},
        {L".", L"/home/user", L"C:\\work\\job"},
        {L"a..b/...", L"/home/user/a..b/...", L"C:\\work\\job\\a..b\\..."},
        {L"/a//b/./", L"/a/b", L"C:\\a\\b"},
        {L"\\a\\..\\..\\b", L"/b", L"C:\\b"},
        {L"/", L"/", L"C:\\"},
        {L"//", L"/", L"C:\\"},
        {L"D:\\a/../..\\b", L"/home/user/b", L"D:\\b"},
        {L"D:/", L"/home/user/D:", L"D:\\"},
        {L"D:a", L"/home/user/D:a", L"D:\\a"},
        {L"c:a", L"/home/user/c:a", L"C:\\work\\job\\a"},
        {L"C:", L"/home/user/C:", L"C:\\work\\job"},
        {L"//server/share/../a/..\\b", L"/server/b", L"\\\\server\\share\\b"},
        {L"\\\\server\\share", L"/server/share", L"\\\\server\\share\\"},
        {L"\\\\?\\C:\\a\\..", L"/?/C:", L"\\\\?\\C:\\"},
        {L"", L"", L""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MakeAbsolute(row.path, L"/home/user", L'/'), row.onLinux) << testing::PrintToString(row.path);
        EXPECT_EQ(MakeAbsolute(row.path, L"C:\\work\\job", L'\\'), row.onWindows) << testing::PrintToString(row.path);
    }
    EXPECT_EQ(MakeAbsolute(L"\\a", L"\\\\server\\share\\job", L'\\'), L"\\\\server\\share\\a");
    for (const wchar_t separator : {L'/', L'\\'})
        EXPECT_EQ(MakeAbsolute(L"../b", L"", separator), L"");  // the working directory is gone
    EXPECT_EQ(MakeAbsolute(L"/a/..\\b", L"", L'/'), L"/b");
}

}  // namespace
