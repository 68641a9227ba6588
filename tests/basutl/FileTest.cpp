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
    BuFileUtl At(const std::wstring& name) const { return BuFileUtl(Path(name).c_str()); }
    std::wstring Create(const std::wstring& name) const
    {
        std::FILE* const file = platform::OpenFile(Path(name).c_str(), L"wb");
        EXPECT_TRUE(file != nullptr && std::fclose(file) == 0);
        return Path(name);
    }
    std::wstring CreateFolder(const std::wstring& name) const
    {
        EXPECT_TRUE(At(name).CreateDir());
        return Path(name);
    }
    // False where links need rights that this process does not have.
    bool CreateLink(const std::wstring& name, const std::wstring& target) const
    {
        std::error_code error;
        std::filesystem::create_directory_symlink(platform::Narrow(target), platform::Narrow(Path(name)), error);
        return !error;
    }
    Names Find(const std::wstring& pattern) const
    {
        Names names;
        BuFileFind find;
        BuString name;
        for (bool more = find.FindFirstFileName(Path(pattern).c_str(), name); more; more = find.FindNextFileName(name))
            names.push_back(name.GetText());
        return names;
    }

    TemporaryFolder m_folder;
};

// ---- Paths ---------------------------------------------------------------------------------------------------------

TEST_F(FileUtility, HavePathNameAndTitle)
{
    const wchar_t* const rows[][4] = {// whole, path, name, title
                                      {L"a/b\\part.inp", L"a/b\\", L"part.inp", L"part.inp"},
                                      {L"part", L"", L"part", L"part"},
                                      {L"a\\b/", L"a\\b/", L"", L"b"},
                                      {L"a//\\", L"a//\\", L"", L"a"},
                                      {L"/", L"/", L"", L""},
                                      {L"", L"", L"", L""}};
    for (const auto& [whole, path, name, title] : rows) {
        const BuFileUtl file(whole);
        EXPECT_STREQ(file.GetFullName(), whole);
        EXPECT_STREQ(file.GetPath(), path) << whole;
        EXPECT_STREQ(file.GetFileName(), name) << whole;
        EXPECT_STREQ(file.GetFileTitle(), title) << whole;
    }
    EXPECT_STREQ(BuFileUtl(static_cast<const wchar_t*>(nullptr)).GetFullName(), L"");
}

TEST_F(FileUtility, AreMadeAbsoluteFromTheWorkingDirectoryIfThereIsOne)
{
    BuFileUtl present(L"a\\./b/../part.inp");
    present.NormalizePath();
    const std::wstring expected = platform::WorkingDirectory() + L"/a/part.inp";
    EXPECT_EQ(present.GetFullName().GetText(), HasDrives() ? WithBackslashes(expected) : expected);

    const std::string before = platform::Narrow(platform::WorkingDirectory());
    const std::wstring folder = CreateFolder(L"gone");
    std::filesystem::current_path(platform::Narrow(folder));
    const bool isGone = BuFileUtl::RemoveADirectory(folder.c_str()) && platform::WorkingDirectory().empty();
    BuFileUtl file(L"../none");
    file.NormalizePath();
    const bool areSame = BuFileUtl::AreSamePath(L"../none", L"none");
    std::filesystem::current_path(before);
    if (isGone) {  // Windows keeps it
        EXPECT_STREQ(file.GetFullName(), L"../none");
        EXPECT_FALSE(areSame);
    }
}

TEST_F(FileUtility, AreTheSameWhateverPathLeadsToThem)
{
    CreateFolder(L"sub");
    const std::wstring file = Create(L"part.inp");
    const bool hasLink = CreateLink(L"link", m_folder.Path());
    const struct
    {
        std::wstring left, right;
        bool areSame;
    } rows[] = {{file, Path(L"sub/../part.inp"), true},
                {file, WithBackslashes(file), true},
                {file, Path(L"link/part.inp"), hasLink},
                {file, Path(L"PART.inp"), HasDrives()},
                {file, Create(L"other.inp"), false},
                {m_folder.Path(), Path(L"sub/.."), true},
                {Path(L"none/./x"), Path(L"none\\x"), true},
                {L"none", platform::WorkingDirectory() + L"/none", true},
                {Path(L"none"), file, false},
                {L"", L"", false}};
    for (const auto& row : rows)
        EXPECT_EQ(BuFileUtl::AreSamePath(row.left.c_str(), row.right.c_str()), row.areSame)
            << testing::PrintToString(row.right);
    EXPECT_FALSE(BuFileUtl::AreSamePath(nullptr, file.c_str()));
}

// ---- Files and directories -----------------------------------------------------------------------------------------

TEST_F(FileUtility, AreToldFromDirectories)
{
    const std::wstring file = Create(L"part.inp");
    const struct
    {
        std::wstring path;
        bool isFile, isDirectory, isDirectoryName;
    } rows[] = {{file, true, false, false},
                {CreateFolder(L"sub"), false, true, true},
                {m_folder.Path(), false, true, true},
                {Path(L"none"), false, false, false},
                {Path(L"none/"), false, false, true},
                {Path(L"none\\"), false, false, true},
                {L"", false, false, false}};
    for (const auto& row : rows) {
        const BuFileUtl path(row.path.c_str());
        const bool isDirectoryName = BuFileUtl::IsDirectoryName(path.GetFullName());
        EXPECT_EQ(path.FileIsExisting(), row.isFile) << testing::PrintToString(row.path);
        EXPECT_EQ(path.DirectoryIsExisting(), row.isDirectory) << testing::PrintToString(row.path);
        EXPECT_EQ(path.DirectoryHasWritePermission(), row.isDirectory) << testing::PrintToString(row.path);
        EXPECT_EQ(isDirectoryName, row.isDirectoryName) << testing::PrintToString(row.path);
    }
    EXPECT_FALSE(BuFileUtl::IsDirectoryName(nullptr));
}

TEST_F(FileUtility, CreateDirectoriesWithTheirParents)
{
    for (const wchar_t* const name : {L"a/b/c", L"a\\b\\c\\d", L"e//f\\", L"a"})
        EXPECT_TRUE(At(name).CreateDir() && At(name).DirectoryIsExisting()) << name;
    Create(L"file");
    EXPECT_FALSE(At(L"file").CreateDir() || At(L"file/below").CreateDir() || BuFileUtl(L"").CreateDir());
}

TEST_F(FileUtility, AreCopiedOverOthersAndRemoved)
{
    const BuFileUtl source(m_folder.Write("folder", "new").c_str());
    const std::wstring target = m_folder.Write("target", "old and longer");
    EXPECT_TRUE(source.CopyIn(target.c_str()));
    EXPECT_FALSE(source.CopyIn(Path(L"none/target").c_str()) || source.CopyIn(nullptr));
    EXPECT_FALSE(BuFileUtl(m_folder.Path().c_str()).CopyIn(target.c_str()));
    EXPECT_EQ(ReadBinaryFile(target), "new");

    EXPECT_FALSE(BuFileUtl::RemoveADirectory(m_folder.Path().c_str()));
    EXPECT_TRUE(BuFileUtl::RemoveAFile(target.c_str()) && !At(L"target").FileIsExisting());
    EXPECT_TRUE(BuFileUtl::RemoveADirectory(CreateFolder(L"sub").c_str()) && !At(L"sub").DirectoryIsExisting());
    EXPECT_FALSE(BuFileUtl::RemoveAFile(nullptr) || BuFileUtl::RemoveADirectory(nullptr));
}

TEST_F(FileUtility, ListTheDirectoriesDirectlyInside)
{
    // By UTF-16 units the clef (D834 DD1E) stands before the tilde (FF5E).
    for (const wchar_t* const name : {L"b", L"a/below", L"\uff5e", L"\U0001D11E", L"B"})
        CreateFolder(name);
    Create(L"file");
    CreateLink(L"link", Path(L"b"));

    Names expected = {L"B", L"a", L"b", L"\U0001D11E", L"\uff5e"};
    if (HasDrives())
        expected.erase(expected.begin());  // "B" was there already, as "b"
    BuObjectArrayTempl<BuString> names;
    for (const wchar_t* const name : {L"", L"a/..", L"a\\.."}) {
        EXPECT_EQ(At(name).GetSubDirectories(names), static_cast<int>(expected.size()));
        EXPECT_EQ(Names(names.begin(), names.end()), expected);
    }
    EXPECT_EQ(At(L"a/below").GetSubDirectories(names), 0);
    EXPECT_EQ(names.GetCount(), 0);
    for (const BuFileUtl& none : {At(L"none"), At(L"file"), BuFileUtl(L"")})
        EXPECT_EQ(none.GetSubDirectories(names), -1);
}

// ---- Free names ----------------------------------------------------------------------------------------------------

TEST_F(FileUtility, GetFreeNamesBesideTakenOnes)
{
    const wchar_t* const rows[][3] = {{L"part.old.inp", L"part.old_1.inp", L"part.old_2.inp"},
                                      {L"none", L"none_1", L"none_2"},
                                      {L".profile", L".profile_1", L".profile_2"}};
    CreateFolder(L"d.ir");
    for (const auto& row : rows) {
        const std::wstring path = Path(std::wstring(L"d.ir\\") + row[0]);
        EXPECT_EQ(BuFileUtl::GetFreeFileName(path.c_str(), false).GetText(), path);
        EXPECT_FALSE(BuFileUtl(path.c_str()).FileIsExisting());
        for (const wchar_t* const expected : row) {
            const BuString name = BuFileUtl::GetFreeFileName(path.c_str(), true);
            EXPECT_EQ(name.GetText(), Path(std::wstring(L"d.ir\\") + expected));
            EXPECT_TRUE(BuFileUtl(name).FileIsExisting());
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
    } rows[] = {{L"*", {L"a.inp", L"a1.inp", L"ab", L"b.inp", L"sub.inp", L"\u00e9.inp"}},
                {L"a?*.inp", {L"a1.inp"}},
                {L"?.i*p", {L"a.inp", L"b.inp", L"\u00e9.inp"}},
                {L"**b**", {L"ab", L"b.inp", L"sub.inp"}},
                {L"A.INP", HasDrives() ? Names{L"a.inp"} : Names{}},
                {L"sub.inp\\*", {L"below.inp"}}};
    for (const auto& row : rows)
        EXPECT_EQ(Find(row.pattern), row.names) << testing::PrintToString(row.pattern);
    for (const wchar_t* const none : {L"a.in", L"", L"?", L"a.inp\\*", L"none\\*"})
        EXPECT_EQ(Find(none), Names()) << testing::PrintToString(none);
}

TEST_F(FileUtility, AreFoundQuicklyByPatternsWithManyStars)
{
    const std::wstring name(200, L'a');
    Create(name);
    std::wstring pattern;
    for (int i = 0; i < 30; ++i)
        pattern += L"a*";
    EXPECT_EQ(Find(pattern + L"b"), Names());  // takes for ever when every star is retried
    EXPECT_EQ(Find(pattern + L"a"), Names{name});
}

TEST_F(FileUtility, AreWalkedUntilTheWalkIsForgotten)
{
    Create(L"a");
    Create(L"b");
    BuFileFind find;
    BuString name = L"before";
    EXPECT_FALSE(find.FindNextFileName(name));
    EXPECT_FALSE(find.FindFirstFileName(nullptr, name) || find.FindFirstFileName(Path(L"x*").c_str(), name));
    EXPECT_STREQ(name, L"before");
    for (int walk = 0; walk < 2; ++walk) {
        ASSERT_TRUE(find.FindFirstFileName(Path(L"*").c_str(), name));
        EXPECT_STREQ(name, L"a");
    }
    BuFileUtl::RemoveAFile(Path(L"b").c_str());  // a walk sees the directory as it was at its start
    ASSERT_TRUE(find.FindNextFileName(name));
    EXPECT_STREQ(name, L"b");
    EXPECT_FALSE(find.FindNextFileName(name));
    find.FindFirstFileName(Path(L"*").c_str(), name);
    find.FindCloseName();
    EXPECT_FALSE(find.FindNextFileName(name));
}

}  // namespace
