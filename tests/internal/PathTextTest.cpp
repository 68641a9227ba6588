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

TEST(PathText, LeadsFromOneDirectoryToAnother)
{
    const struct
    {
        const wchar_t *path, *base, *relative;
        wchar_t separator;
    } rows[] = {
        {L"/a/b", L"/a/b", L".", L'/'},
        {L"/a/b/c", L"/a", L"b/c", L'/'},
        {L"/a", L"/a/b/c", L"../..", L'/'},
        {L"/ab/c", L"/a/c", L"../../ab/c", L'/'},
        {L"/A", L"/a", L"../A", L'/'},
        {L"/", L"/a", L"..", L'/'},
        {L"/a", L"/", L"a", L'/'},
        {L"C:\\a\\b", L"c:\\A\\x", L"..\\b", L'\\'},
        {L"C:\\", L"C:\\a", L"..", L'\\'},
        {L"D:\\a", L"C:\\a", L"D:\\a", L'\\'},
        {L"\\\\s\\one\\a", L"\\\\s\\one\\b", L"..\\a", L'\\'},
        {L"\\\\s\\one\\a", L"\\\\s\\two\\a", L"\\\\s\\one\\a", L'\\'},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MakeRelative(row.path, row.base, row.separator), row.relative) << testing::PrintToString(row.path);
        const std::wstring back = MakeAbsolute(row.relative, row.base, row.separator);
        EXPECT_EQ(MakeRelative(back, row.path, row.separator), L".") << testing::PrintToString(row.path);
    }
}

TEST(PathText, TellsWhatCannotStandBehindADirectory)
{
    for (const wchar_t* const path : {L"/a", L"\\a", L"//s/d"})
        EXPECT_TRUE(HasRoot(path, L'/') && HasRoot(path, L'\\'));
    for (const wchar_t* const path : {L"C:\\a", L"c:a", L"C:"})
        EXPECT_TRUE(!HasRoot(path, L'/') && HasRoot(path, L'\\'));
    for (const wchar_t* const path : {L"", L"a", L"a/b", L"..\\a", L"1:a"})
        EXPECT_FALSE(HasRoot(path, L'/') || HasRoot(path, L'\\'));
}

}  // namespace
