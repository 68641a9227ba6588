#include <basutl/BuFileFind.h>
#include <basutl/BuFileUtl.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace {

using Names = std::vector<std::wstring>;

bool HasDrives()
{
    return platform::Separator() == L'\\';
}

std::wstring WithBackslashes(std::wstring path)
{
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

class FileUtility : public testing::Test
{
protected:
    std::wstring Path(const std::wstring& name) const { return m_folder.Path() + name; }
    std::wstring Create(const std::wstring& name, const char* text = "") const
    {
        const std::wstring path = Path(name);
        std::FILE* const file = platform::OpenFile(path.c_str(), L"wb");
        EXPECT_NE(file, nullptr);
        if (file != nullptr) {
            std::fputs(text, file);
            std::fclose(file);
        }
        return path;
    }
    std::wstring CreateFolder(const std::wstring& name) const
    {
        EXPECT_TRUE(BuFileUtl(Path(name).c_str()).CreateDir());
        return Path(name);
    }
    // False where links need rights that this process does not have.
    bool CreateLink(const std::wstring& name, const std::wstring& target) const
    {
        std::error_code error;
        std::filesystem::create_directory_symlink(platform::Narrow(target), platform::Narrow(Path(name)), error);
        return !error;
    }

    TemporaryFolder m_folder;
};

// ---- Paths ---------------------------------------------------------------------------------------------------------

TEST_F(FileUtility, HavePathNameAndTitle)
{
    const struct
    {
        const wchar_t *full, *path, *name, *title;
    } rows[] = {
        {L"a/b\\part.inp", L"a/b\\", L"part.inp", L"part.inp"},
        {L"part", L"", L"part", L"part"},
        {L"a\\b/", L"a\\b/", L"", L"b"},
        {L"/", L"/", L"", L""},
        {L"a//\\", L"a//\\", L"", L"a"},
        {L"", L"", L"", L""},
    };
    for (const auto& row : rows) {
        const BuFileUtl file(row.full);
        EXPECT_STREQ(file.GetFullName(), row.full);
        EXPECT_STREQ(file.GetPath(), row.path) << row.full;
        EXPECT_STREQ(file.GetFileName(), row.name) << row.full;
        EXPECT_STREQ(file.GetFileTitle(), row.title) << row.full;
    }
    EXPECT_STREQ(BuFileUtl(static_cast<const wchar_t*>(nullptr)).GetFullName(), L"");
}

TEST_F(FileUtility, AreMadeAbsoluteFromTheWorkingDirectory)
{
    BuFileUtl file(L"a\\./b/../part.inp");
    file.NormalizePath();
    const std::wstring expected = platform::WorkingDirectory() + L"/a/part.inp";
    EXPECT_STREQ(file.GetFullName(), HasDrives() ? WithBackslashes(expected).c_str() : expected.c_str());
    BuFileUtl none(L"");
    none.NormalizePath();
    EXPECT_STREQ(none.GetFullName(), L"");
}

TEST_F(FileUtility, StayRelativeWhereTheWorkingDirectoryIsGone)
{
    const std::filesystem::path before = std::filesystem::current_path();
    const std::wstring folder = CreateFolder(L"gone");
    std::filesystem::current_path(platform::Narrow(folder));
    const bool isGone = BuFileUtl::RemoveADirectory(folder.c_str()) && platform::WorkingDirectory().empty();
    BuFileUtl file(L"../none");
    file.NormalizePath();
    const bool areSame = BuFileUtl::AreSamePath(L"../none", L"none");
    std::filesystem::current_path(before);
    if (!isGone)
        GTEST_SKIP() << "this system keeps working directories";
    EXPECT_STREQ(file.GetFullName(), L"../none");
    EXPECT_FALSE(areSame);
}

TEST_F(FileUtility, AreTheSameWhateverPathLeadsToThem)
{
    CreateFolder(L"sub");
    const std::wstring file = Create(L"part.inp");
    const std::wstring other = Create(L"other.inp");
    EXPECT_TRUE(BuFileUtl::AreSamePath(file.c_str(), file.c_str()));
    EXPECT_TRUE(BuFileUtl::AreSamePath(file.c_str(), Path(L"sub/../part.inp").c_str()));
    EXPECT_TRUE(BuFileUtl::AreSamePath(file.c_str(), WithBackslashes(file).c_str()));
    EXPECT_TRUE(BuFileUtl::AreSamePath(m_folder.Path().c_str(), Path(L"sub/..").c_str()));
    EXPECT_FALSE(BuFileUtl::AreSamePath(file.c_str(), other.c_str()));
    EXPECT_EQ(BuFileUtl::AreSamePath(file.c_str(), Path(L"PART.inp").c_str()), HasDrives());
    if (CreateLink(L"link", m_folder.Path())) {
        EXPECT_TRUE(BuFileUtl::AreSamePath(file.c_str(), Path(L"link/part.inp").c_str()));
    }

    EXPECT_TRUE(BuFileUtl::AreSamePath(Path(L"none/./x").c_str(), Path(L"none\\x").c_str()));
    EXPECT_TRUE(BuFileUtl::AreSamePath(L"none", (platform::WorkingDirectory() + L"/none").c_str()));
    EXPECT_FALSE(BuFileUtl::AreSamePath(Path(L"none").c_str(), file.c_str()));
    EXPECT_FALSE(BuFileUtl::AreSamePath(nullptr, file.c_str()));
    EXPECT_FALSE(BuFileUtl::AreSamePath(L"", L""));
}

// ---- Files and directories -----------------------------------------------------------------------------------------

TEST_F(FileUtility, AreToldFromDirectories)
{
    const std::wstring file = Create(L"part.inp");
    const struct
    {
        std::wstring path;
        bool isFile, isDirectory, isDirectoryName;
    } rows[] = {
        {file, true, false, false},
        {WithBackslashes(file), true, false, false},
        {m_folder.Path(), false, true, true},
        {CreateFolder(L"sub"), false, true, true},
        {Path(L"none"), false, false, false},
        {Path(L"none/"), false, false, true},
        {Path(L"none\\"), false, false, true},
        {L"", false, false, false},
    };
    for (const auto& row : rows) {
        const BuFileUtl path(row.path.c_str());
        EXPECT_EQ(path.FileIsExisting(), row.isFile) << testing::PrintToString(row.path);
        EXPECT_EQ(path.DirectoryIsExisting(), row.isDirectory) << testing::PrintToString(row.path);
        EXPECT_EQ(path.DirectoryHasWritePermission(), row.isDirectory) << testing::PrintToString(row.path);
        EXPECT_EQ(BuFileUtl::IsDirectoryName(row.path.c_str()), row.isDirectoryName)
            << testing::PrintToString(row.path);
    }
    EXPECT_FALSE(BuFileUtl::IsDirectoryName(nullptr));
}

TEST_F(FileUtility, CreateDirectoriesWithTheirParents)
{
    for (const wchar_t* const name : {L"a/b/c", L"a\\b\\c\\d", L"e//f\\", L"a"}) {
        const BuFileUtl folder(Path(name).c_str());
        EXPECT_TRUE(folder.CreateDir()) << name;
        EXPECT_TRUE(folder.DirectoryIsExisting()) << name;
    }
    Create(L"file");
    EXPECT_FALSE(BuFileUtl(Path(L"file").c_str()).CreateDir());
    EXPECT_FALSE(BuFileUtl(Path(L"file/below").c_str()).CreateDir());
    EXPECT_FALSE(BuFileUtl(L"").CreateDir());
}

TEST_F(FileUtility, AreCopiedOverOthersAndRemoved)
{
    const std::wstring source = Create(L"source", "new");
    const std::wstring target = Create(L"target", "old and longer");
    EXPECT_TRUE(BuFileUtl(source.c_str()).CopyIn(target.c_str()));
    EXPECT_EQ(ReadBinaryFile(target), "new");
    EXPECT_FALSE(BuFileUtl(source.c_str()).CopyIn(Path(L"none/target").c_str()));
    EXPECT_FALSE(BuFileUtl(source.c_str()).CopyIn(nullptr));
    EXPECT_FALSE(BuFileUtl(Path(L"none").c_str()).CopyIn(target.c_str()));
    EXPECT_FALSE(BuFileUtl(m_folder.Path().c_str()).CopyIn(target.c_str()));
    EXPECT_EQ(ReadBinaryFile(target), "new");

    const std::wstring folder = CreateFolder(L"folder");
    Create(L"folder/file");
    EXPECT_FALSE(BuFileUtl::RemoveADirectory(folder.c_str()));
    EXPECT_TRUE(BuFileUtl::RemoveAFile(Path(L"folder\\file").c_str()));
    EXPECT_TRUE(BuFileUtl::RemoveADirectory(folder.c_str()));
    EXPECT_FALSE(BuFileUtl(folder.c_str()).DirectoryIsExisting());
    EXPECT_FALSE(BuFileUtl::RemoveAFile(m_folder.Path().c_str()));
    EXPECT_FALSE(BuFileUtl::RemoveAFile(nullptr));
    EXPECT_FALSE(BuFileUtl::RemoveADirectory(nullptr));
}

TEST_F(FileUtility, ListTheDirectoriesDirectlyInside)
{
    // By UTF-16 units the clef (D834 DD1E) stands before the tilde (FF5E).
    for (const wchar_t* const name : {L"b", L"a/below", L"\uff5e", L"\U0001D11E", L"B"})
        CreateFolder(name);
    Create(L"file");
    CreateLink(L"link", Path(L"b"));
    const bool hasCase = !BuFileUtl::AreSamePath(Path(L"b").c_str(), Path(L"B").c_str());

    Names expected = {L"B", L"a", L"b", L"\U0001D11E", L"\uff5e"};
    if (!hasCase)
        expected.erase(expected.begin());  // "B" was there already, as "b"
    BuObjectArrayTempl<BuString> names;
    for (const std::wstring& path : {m_folder.Path(), Path(L"a/.."), WithBackslashes(m_folder.Path())}) {
        EXPECT_EQ(BuFileUtl(path.c_str()).GetSubDirectories(names), static_cast<int>(expected.size()));
        EXPECT_EQ(Names(names.begin(), names.end()), expected);
    }
    EXPECT_EQ(BuFileUtl(Path(L"a/below").c_str()).GetSubDirectories(names), 0);
    EXPECT_EQ(names.GetCount(), 0);
    for (const std::wstring& path : {Path(L"none"), Path(L"file"), std::wstring()})
        EXPECT_EQ(BuFileUtl(path.c_str()).GetSubDirectories(names), -1);
}

// ---- Free names ----------------------------------------------------------------------------------------------------

TEST_F(FileUtility, GetFreeNamesBesideTakenOnes)
{
    const struct
    {
        const wchar_t *name, *second, *third;
    } rows[] = {
        {L"abc2345.tmp", L"abc2345_1.tmp", L"abc2345_2.tmp"},
        {L"part.old.inp", L"part.old_1.inp", L"part.old_2.inp"},
        {L"none", L"none_1", L"none_2"},
        {L".profile", L".profile_1", L".profile_2"},
    };
    CreateFolder(L"d.ir");
    for (const std::wstring folder : {L"", L"d.ir\\"}) {
        for (const auto& row : rows) {
            const std::wstring path = Path(folder + row.name);
            EXPECT_EQ(BuFileUtl::GetFreeFileName(path.c_str(), false).GetText(), path);
            EXPECT_FALSE(BuFileUtl(path.c_str()).FileIsExisting());
            for (const wchar_t* const expected : {row.name, row.second, row.third}) {
                const BuString name = BuFileUtl::GetFreeFileName(path.c_str(), true);
                EXPECT_EQ(name.GetText(), Path(folder + expected));
                EXPECT_TRUE(BuFileUtl(name).FileIsExisting());
            }
        }
    }
}

TEST_F(FileUtility, GetNoFreeNameWhereNoneCanBe)
{
    EXPECT_EQ(BuFileUtl::GetFreeFileName(Path(L"none/file").c_str(), false).GetText(), Path(L"none/file"));
    EXPECT_STREQ(BuFileUtl::GetFreeFileName(Path(L"none/file").c_str(), true), L"");
    EXPECT_STREQ(BuFileUtl::GetFreeFileName(L"", false), L"");
    EXPECT_STREQ(BuFileUtl::GetFreeFileName(nullptr, true), L"");
    if (CreateLink(L"nowhere", Path(L"none"))) {
        for (const bool create : {false, true})
            EXPECT_EQ(BuFileUtl::GetFreeFileName(Path(L"nowhere").c_str(), create).GetText(), Path(L"nowhere_1"));
    }
}

// ---- Walks ---------------------------------------------------------------------------------------------------------

Names Find(const std::wstring& pattern)
{
    Names names;
    BuFileFind find;
    BuString name;
    for (bool more = find.FindFirstFileName(pattern.c_str(), name); more; more = find.FindNextFileName(name))
        names.push_back(name.GetText());
    find.FindCloseName();
    return names;
}

TEST_F(FileUtility, AreFoundByPatternInOrder)
{
    for (const wchar_t* const name : {L"b.inp", L"a.inp", L"a1.inp", L"ab", L"\u00e9.inp"})
        Create(name);
    CreateFolder(L"sub.inp");
    Create(L"sub.inp/below.inp");
    const struct
    {
        const wchar_t* pattern;
        Names names;
    } rows[] = {
        {L"*", {L"a.inp", L"a1.inp", L"ab", L"b.inp", L"sub.inp", L"\u00e9.inp"}},
        {L"a*", {L"a.inp", L"a1.inp", L"ab"}},
        {L"a?*.inp", {L"a1.inp"}},
        {L"?.i*p", {L"a.inp", L"b.inp", L"\u00e9.inp"}},
        {L"**b**", {L"ab", L"b.inp", L"sub.inp"}},
        {L"a.inp", {L"a.inp"}},
        {L"A.INP", HasDrives() ? Names{L"a.inp"} : Names{}},
        {L"a.in", {}},
        {L"", {}},
        {L"?", {}},
        {L"sub.inp\\*", {L"below.inp"}},
        {L"a.inp\\*", {}},
        {L"none\\*", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Find(Path(row.pattern)), row.names) << testing::PrintToString(row.pattern);
}

TEST_F(FileUtility, AreFoundQuicklyByPatternsWithManyStars)
{
    const std::wstring name(200, L'a');
    Create(name);
    std::wstring pattern;
    for (int i = 0; i < 30; ++i)
        pattern += L"a*";
    EXPECT_EQ(Find(Path(pattern + L"b")), Names());  // takes for ever when every star is retried
    EXPECT_EQ(Find(Path(pattern + L"a")), Names{name});
}

TEST_F(FileUtility, AreWalkedUntilTheWalkIsForgotten)
{
    Create(L"a");
    Create(L"b");
    BuFileFind find;
    BuString name = L"before";
    EXPECT_FALSE(find.FindNextFileName(name));
    EXPECT_FALSE(find.FindFirstFileName(nullptr, name));
    EXPECT_FALSE(find.FindFirstFileName(Path(L"x*").c_str(), name));
    EXPECT_STREQ(name, L"before");

    ASSERT_TRUE(find.FindFirstFileName(Path(L"*").c_str(), name));
    EXPECT_STREQ(name, L"a");
    ASSERT_TRUE(find.FindFirstFileName(Path(L"*").c_str(), name));
    EXPECT_STREQ(name, L"a");
    BuFileUtl::RemoveAFile(Path(L"b").c_str());  // a walk sees the directory as it was at its start
    ASSERT_TRUE(find.FindNextFileName(name));
    EXPECT_STREQ(name, L"b");
    EXPECT_FALSE(find.FindNextFileName(name));
    find.FindFirstFileName(Path(L"*").c_str(), name);
    find.FindCloseName();
    EXPECT_FALSE(find.FindNextFileName(name));
}

}  // namespace
