#include <TuvoUtil/FileName.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string BaseName(const std::string& path)
{
    char name[1024] = "as before";
    EXPECT_EQ(UtlGetBaseFileNameFromFullPath(path.c_str(), name), 0) << path;
    return name;
}

TEST(FileName, CutsAPathIntoPieces)
{
    const struct
    {
        const char *path, *name, *nameWithParent, *parent, *directory, *extension;
    } rows[] = {
        {"a/b/c.txt", "c.txt", "b\\c.txt", "a\\b", ".\\", "txt"},
        {"a\\b\\c.txt", "c.txt", "b\\c.txt", "a\\b", "a\\b\\", "txt"},
        {"C:\\a/b\\c", "c", "b\\c", "C:\\a\\b", "C:\\a/b\\", "(null)"},
        {"b\\c.txt", "c.txt", "b\\c.txt", "b", "b\\", "txt"},
        {"b/c.txt", "c.txt", "b/c.txt", "b", ".\\", "txt"},
        {"/c", "c", "/c", "", ".\\", "(null)"},
        {"//c", "c", "\\c", "\\", ".\\", "(null)"},
        {"a/b/", "", "b\\", "a\\b", ".\\", "(null)"},
        {"c.txt", "c.txt", "c.txt", "c.txt", ".\\", "txt"},
        {"a.b.c", "a.b.c", "a.b.c", "a.b.c", ".\\", "c"},
        {"file.", "file.", "file.", "file.", ".\\", "(null)"},
        {"dir.old\\file", "file", "dir.old\\file", "dir.old", "dir.old\\", "old\\file"},
        {"b", "b", "b", "b", "(null)", "(null)"},
        {"\\", "", "\\", "", "(null)", "(null)"},
        {"", "", "", "", "(null)", "(null)"},
        {"\xE9\\\xFF", "\xFF", "\xE9\\\xFF", "\xE9", "\xE9\\", "(null)"},
        {nullptr, "(null)", "(null)", "(null)", "(null)", "(null)"},
    };
    for (const auto& row : rows) {
        const std::string path = row.path != nullptr ? row.path : "null";
        EXPECT_EQ(Taken(UtlGetFileNameGivenFullPath(row.path)), row.name) << path;
        EXPECT_EQ(Taken(UtlGetFileNameWithParentDir(row.path)), row.nameWithParent) << path;
        EXPECT_EQ(Taken(UtlGetParentDir(row.path)), row.parent) << path;
        EXPECT_EQ(Taken(UtlGetDirectoryPathFromFileName(row.path)), row.directory) << path;
        EXPECT_EQ(Taken(UtlMiscGetFileExtension(row.path)), row.extension) << path;
    }
    const std::string longName(100'000, 'n');
    EXPECT_EQ(Taken(UtlGetDirectoryPathFromFileName((longName + "\\x").c_str())), longName + '\\');
}

TEST(FileName, HasOneSeparator)
{
    EXPECT_EQ(UtlGetFileSeperator(), '\\');
    EXPECT_STREQ(UtlGetFileSeperatorStr(), "\\");
    char text[] = "/a//b\\c/";
    UtlConvertFileSepToTarget(text);
    EXPECT_STREQ(text, "\\a\\\\b\\c\\");
    char empty[] = "";
    UtlConvertFileSepToTarget(empty);
    EXPECT_STREQ(empty, "");
    UtlConvertFileSepToTarget(nullptr);
}

TEST(FileName, TellsFilesFromDirectories)
{
    const TemporaryFolder folder;
    folder.Write("a file", "");
    platform::CreateOneDirectory(folder.Path("sub.d").c_str());
    const struct
    {
        const char* name;
        int kind;
    } rows[] = {{"", 1},       {"sub.d", 1},        {"sub.d/", 1},           {"sub.d\\", 1},
                {"a file", 0}, {"a file\\", 0},     {"a file/", 0},          {"none", -1},
                {"none/", -1}, {"a file/none", -1}, {"sub.d\\..\\a file", 0}};
    for (const auto& [name, kind] : rows)
        EXPECT_EQ(UtlIsFileOrDir((folder.NarrowPath() + name).c_str()), kind) << name;
    EXPECT_EQ(UtlIsFileOrDir("/"), 1);
    EXPECT_EQ(UtlIsFileOrDir("\\"), 1);
    EXPECT_EQ(UtlIsFileOrDir("."), 1);
    EXPECT_EQ(UtlIsFileOrDir(""), -1);
    EXPECT_EQ(UtlIsFileOrDir(nullptr), -1);
}

TEST(FileName, GivesTheLastNameOfAnyPath)
{
    const TemporaryFolder folder;
    platform::CreateOneDirectory(folder.Path("sub.d").c_str());
    const struct
    {
        const char *path, *name;
    } rows[] = {{"bolt.inp", "bolt.inp"}, {"sub.d", "sub.d"}, {"sub.d\\", "sub.d"},     {"sub.d/./", "sub.d"},
                {"sub.d/x/..", "sub.d"},  {"none/", "none"},  {"none\\x/../y.z", "y.z"}};
    for (const auto& [path, name] : rows) {
        EXPECT_EQ(BaseName(folder.NarrowPath() + path), name) << path;
        EXPECT_EQ(BaseName(path), name) << path;
    }
    EXPECT_EQ(BaseName(""), "");
    EXPECT_EQ(BaseName("gr\xC3\xBC\xC3\x9F"), "gr\xC3\xBC\xC3\x9F");
    char name[] = "as before";
    EXPECT_EQ(UtlGetBaseFileNameFromFullPath(nullptr, name), 1);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(UtlGetBaseFileNameFromFullPath("x", nullptr), 1);
}

// In a process of its own: each call leaves a copy allocated.
CHILD_SCENARIO(DirectoriesOfNames)
{
    const TemporaryFolder folder;
    folder.Write("file", "");
    platform::CreateOneDirectory(folder.Path("sub").c_str());
    platform::CreateOneDirectory(folder.Path("sub/empty").c_str());
    const std::string start = folder.NarrowPath();
    const std::string stem = start.substr(0, start.size() - 1);
    const struct
    {
        std::string path, directory;
    } rows[] = {
        {stem + "\\file", stem},          {start + "sub\\empty", start + "sub\\empty"},
        {start + "sub\\", start + "sub"}, {start + "sub/", start + "sub/"},
        {stem + "\\none", "(null)"},      {start + "none", "(null)"},
    };
    for (const auto& [path, directory] : rows)
        EXPECT_EQ(Taken(UtlGetDirNameFromFileName(path.c_str())), directory) << path;
    // Kept: a path without '\' has no directory, though its file has.
    if (platform::Separator() == L'/') {
        EXPECT_EQ(Taken(UtlGetDirNameFromFileName((start + "file").c_str())), "(null)");
    }
    EXPECT_EQ(UtlGetDirNameFromFileName(nullptr), nullptr);
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(FileName, GivesTheDirectoryOfWhatThereIs)
{
    const ChildResult result = RunChild("DirectoriesOfNames");
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
}

}  // namespace
