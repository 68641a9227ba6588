#include <basutl/BuPath.h>
#include <basutl/BuStringFileName.h>

#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(BuPath, RemovesTheLastName)
{
    const struct
    {
        const wchar_t* path;
        const wchar_t* parent;  // the same text: nothing is removed
    } rows[] = {
        {L"", L""},         {L"a", L""},         {L"/", L"/"},        {L"/a", L"/"},           {L"/a/", L"/a"},
        {L"/a/b.c", L"/a"}, {L"a\\b", L"a"},     {L"a/b\\c", L"a/b"}, {L"a//b", L"a/"},        {L"C:", L"C:"},
        {L"C:\\", L"C:\\"}, {L"C:\\a", L"C:\\"}, {L"C:a", L"C:"},     {L"\\\\s\\d", L"\\\\s"}, {L"\\\\s", L"\\\\"},
    };
    for (const auto& row : rows) {
        BuString path = row.path;
        EXPECT_EQ(BuPathRemoveFileSpecW(path), std::wstring(row.path) != row.parent) << row.path;
        EXPECT_STREQ(path, row.parent);
    }
}

TEST(BuPath, EndsADirectoryWithOneSeparator)
{
    const std::wstring separator(1, platform::Separator());
    EXPECT_STREQ(BuStringFileName::NormalizeDirectory(L"a/b"), (L"a/b" + separator).c_str());
    for (const wchar_t* same : {L"", L"a/", L"a\\", L"/"})
        EXPECT_STREQ(BuStringFileName::NormalizeDirectory(same), same);
    EXPECT_STREQ(BuStringFileName::NormalizeDirectory(nullptr), L"");
    const BuStringFileName name = L"C:";
    BuString path = name;
    BuPathAddSeparatorW(path);
    EXPECT_EQ(path.GetText(), L"C:" + separator);
}

}  // namespace
