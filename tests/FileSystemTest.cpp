#include <TuvoUtil/FileSystem.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

#include <TuvoUtil/StringBreak.h>
#include <basutl/BuFileUtl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

bool IsPosix()
{
    return platform::Separator() == L'/';
}

// A text with '/' for the system's separator.
std::string Slashed(std::string text)
{
    std::replace(text.begin(), text.end(), IsPosix() ? '/' : '\\', '/');
    return text;
}

// The text of a new string, which is freed; "(null)" for null.
std::string Take(char* text)
{
    return Slashed(Taken(text));
}

// What a listing function stores: the names, freed, or "-1" for a failure.
template <typename List>
Names Listed(List list)
{
    char** names = nullptr;
    int count = list(&names);
    Names copies = count < 0 ? Names{"-1"} : Names();
    for (int i = 0; i < count; ++i)
        copies.push_back(Slashed(names[i]));
    EXPECT_EQ(names == nullptr, count <= 0);
    if (count > 0)
        UtlFreeStringList(count, names);
    return copies;
}

class FileSystem : public testing::Test
{
protected:
    std::string Path(const std::string& name = "") const { return m_folder.NarrowPath() + name; }
    BuString Wide(const std::string& name = "") const { return BuString(Path(name).c_str()); }

    // Creates files with their directories; a name that ends with '/' is a directory.
    void Create(const Names& names) const
    {
        for (const std::string& name : names) {
            EXPECT_TRUE(BuFileUtl(BuFileUtl(Wide(name)).GetPath()).CreateDir()) << name;
            if (name.back() != '/')
                m_folder.Write(name.c_str(), "text of " + name);
        }
    }
    // False where links need rights that this process does not have.
    bool Link(const std::string& name, const std::string& target) const
    {
        std::error_code error;
        std::filesystem::create_directory_symlink(target, Path(name), error);
        return !error;
    }
    bool Exists(const std::string& name) const { return platform::Access(Wide(name), 0) == 0; }
    std::string Read(const std::string& name) const { return ReadBinaryFile(m_folder.Path(name.c_str())); }

    Names Files(const char* pattern, const std::string& below = "") const
    {
        return Listed([&](char*** names) { return UtlGetFileNames(Path(below).c_str(), pattern, names); });
    }
    Names AllFiles(const char* pattern, const std::string& below = "") const
    {
        return Listed([&](char*** names) { return UtlGetFileNamesRecursively(Path(below).c_str(), pattern, names); });
    }
    Names Directories(const std::string& below = "") const
    {
        return Listed([&](char*** names) { return UtlGetDirectoriesInDir(Path(below).c_str(), names); });
    }

    // Expects an error that begins with a path.
    void ExpectErrorFor(const char* name, const BuErrObj* error) const
    {
        ASSERT_NE(error, nullptr) << name;
        EXPECT_EQ(error->GetMessageText().Find(Wide(name)), 0) << name;
    }

    TemporaryFolder m_folder;
};

// ---- Paths ---------------------------------------------------------------------------------------------------------

TEST_F(FileSystem, PathsLeadThereAndBack)
{
    EXPECT_EQ(Take(UtlGetAbsoluteDirectoryPath("../b/./c/", Path("a").c_str())), Slashed(Path("b/c")));
    EXPECT_EQ(Take(UtlGetRelativeDirectoryPath(Path("b/c").c_str(), Path("a").c_str())), "../b/c");
    EXPECT_EQ(Take(UtlGetRelativeDirectoryPath("x y/\xC3\xA9;", nullptr)), "x y/\xC3\xA9;");
    EXPECT_EQ(Take(UtlGetAbsoluteDirectoryPath("a", "")), Take(UtlGetAbsoluteDirectoryPath("a", ".")));
    for (const char* const none : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(UtlGetAbsoluteDirectoryPath(none, "a"), nullptr);
        EXPECT_EQ(UtlGetRelativeDirectoryPath(none, "a"), nullptr);
    }
}

// ---- Listing and searching -----------------------------------------------------------------------------------------

TEST_F(FileSystem, NamesAreListedByPatternInOrder)
{
    Names odd = {" a  b.inp", "$(x);'y'`&%z%.inp", "-r.inp"};
    if (IsPosix())
        odd.insert(odd.end(), {"gr\xC3\xBC\xC3\x9F.inp", "stray \xFF\xC3.inp"});
    Create(odd);
    Create({"b.txt", "a", "C.TXT", "dir.inp/", "x/", "x/y.inp"});
    EXPECT_EQ(Files("*.inp"), odd);
    EXPECT_EQ(Files("?.txt"), IsPosix() ? Names{"b.txt"} : (Names{"C.TXT", "b.txt"}));
    EXPECT_EQ(Files(nullptr).size(), odd.size() + 3);
    EXPECT_EQ(Files(""), Files("*"));
    EXPECT_EQ(Directories(), (Names{"dir.inp", "x"}));
    EXPECT_EQ(Files("y.inp", "x\\"), Names{"y.inp"});
    for (const char* const none : {"x/y.inp", "[ab]", "*.*.*.inp"})
        EXPECT_EQ(Files(none), Names()) << none;
    if (IsPosix()) {
        EXPECT_EQ(Files("gr??.inp"), Names{"gr\xC3\xBC\xC3\x9F.inp"}) << "a character, not a byte";
    }
}

TEST_F(FileSystem, ATreeIsListedOnceInSpiteOfLinks)
{
    Create({"b.inp", "sub/c.inp", "sub/deep/d.inp", "sub-a/e.inp", "z.txt", "empty/"});
    EXPECT_EQ(AllFiles("*.inp"), (Names{"b.inp", "sub/c.inp", "sub/deep/d.inp", "sub-a/e.inp"}));
    const Names before = AllFiles("*");
    if (Link("sub/deep/loop", Path()) && Link("self", ".") && Link("first", "second") && Link("second", "first")) {
        EXPECT_EQ(AllFiles("*"), before) << "a link is no file";
        EXPECT_EQ(Directories(), (Names{"empty", "self", "sub", "sub-a"})) << "but may be a directory";
        EXPECT_EQ(AllFiles("d.inp", "sub/deep/loop/sub"), Names{"deep/d.inp"}) << "the way there may be one";
    }
}

TEST_F(FileSystem, FoundFilesCanBeOpened)
{
    Create({"a.inp", "s/b.inp", "s/t/c.inp", "s/other"});
    BuObjectArrayTempl<BuString> files;
    ASSERT_EQ(BuFindFiles(Wide(), L"*.inp", true, files), nullptr);
    ASSERT_EQ(files.GetCount(), 3);
    for (const BuString& file : files)
        EXPECT_EQ(ReadBinaryFile(file.GetText()).substr(0, 8), "text of ");
    EXPECT_EQ(BuFindFiles(Wide("s"), L"", false, files), nullptr);
    ASSERT_EQ(files.GetCount(), 2);
    EXPECT_EQ(Slashed(files[1].ToNarrow()), Slashed(Path("s/other")));
    EXPECT_EQ(BuFindFiles(Wide("s"), L"none", true, files), nullptr);
    EXPECT_EQ(files.GetCount(), 0);
}

TEST_F(FileSystem, WhatCannotBeReadIsNotListed)
{
    Create({"file"});
    for (const char* const none : {"missing", "file", "file/x"}) {
        EXPECT_EQ(Files("*", none), Names{"-1"}) << none;
        EXPECT_EQ(AllFiles("*", none), Names{"-1"}) << none;
        EXPECT_EQ(Directories(none), Names{"-1"}) << none;
        for (const bool withSubfolders : {false, true}) {
            BuObjectArrayTempl<BuString> files;
            files.Add(L"left over");
            ExpectErrorFor(none, BuFindFiles(Wide(none), L"*", withSubfolders, files));
            EXPECT_TRUE(files.IsEmpty());
        }
    }
    char** names = nullptr;
    EXPECT_EQ(UtlGetFileNames(nullptr, "*", &names), -1);
    EXPECT_EQ(UtlGetFileNamesRecursively("", "*", &names), -1);
    EXPECT_EQ(UtlGetDirectoriesInDir(Path().c_str(), nullptr), -1);
}

TEST_F(FileSystem, TheFirstDirectoryWithAFileIsFound)
{
    Create({"one/a/", "two/a", "three/a", "three/sub/b c"});
    std::string directories[] = {Path("none"), "", Path("one"), Path("two/"), Path("three")};
    char* list[] = {directories[0].data(), nullptr, directories[1].data(), directories[2].data(), directories[3].data(),
                    directories[4].data()};
    const auto find = [&](const std::string& name, int count = 6) {
        return Take(UtlFindFile(name.c_str(), count, list));
    };
    EXPECT_EQ(find("a"), Slashed(Path("two/a"))) << "a directory is no file";
    EXPECT_EQ(find("sub\\b c"), Slashed(Path("three")) + (IsPosix() ? "/sub\\b c" : "/sub/b c"));
    EXPECT_EQ(find(Path("three/a"), 0), Slashed(Path("three/a")));
    EXPECT_EQ(find(Path("three")), "(null)");
    EXPECT_EQ(find("a", 4), "(null)");
    EXPECT_EQ(find("a", -1), "(null)");
    EXPECT_EQ(find(""), "(null)");
    EXPECT_EQ(UtlFindFile(nullptr, 6, list), nullptr);
    EXPECT_EQ(UtlFindFile("a", 6, nullptr), nullptr);
}

// ---- Text or binary ------------------------------------------------------------------------------------------------

TEST_F(FileSystem, OneByteMakesAFileBinary)
{
    const std::string controls = "\a\b\t\n\v\f\r\x1A\x1B";
    for (int byte = 0; byte < 256; ++byte) {
        const bool isText =
            (byte >= ' ' && byte != 0x7F) || controls.find(static_cast<char>(byte)) != std::string::npos;
        // At the start of the file, or far behind it.
        m_folder.Write("file", std::string(byte % 2 == 0 ? 0 : 17'000, 'x') + static_cast<char>(byte) + "\r\n");
        EXPECT_EQ(UtlCheckFileASCII(Path("file").c_str()), isText && byte < 0x80 ? 1 : 0) << byte;
        EXPECT_EQ(UtlCheckIsFileTrueBinery(Path("file").c_str()), isText ? 0 : 1) << byte;
    }
    m_folder.Write("empty", "");
    EXPECT_EQ(UtlCheckFileASCII(Path("empty").c_str()), 1);
    EXPECT_EQ(UtlCheckIsFileTrueBinery(Path("empty").c_str()), 0);
    for (const std::string& none : {Path("missing"), Path(), std::string()}) {
        EXPECT_EQ(UtlCheckFileASCII(none.c_str()), -1) << none;
        EXPECT_EQ(UtlCheckIsFileTrueBinery(none.c_str()), -1) << none;
    }
    EXPECT_EQ(UtlCheckFileASCII(nullptr), -1);
}

// ---- Copies and backups --------------------------------------------------------------------------------------------

TEST_F(FileSystem, ACopyKeepsTheTimeAndReplacesTheWholeFile)
{
    Create({"a b;$(c)", "target", "folder/"});
    const auto time = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
    std::filesystem::last_write_time(Path("a b;$(c)"), time);
    ASSERT_EQ(UtlCopyFile(Path("a b;$(c)").c_str(), Path("target").c_str()), 0);
    EXPECT_EQ(Read("target"), "text of a b;$(c)");
    EXPECT_LT(std::filesystem::last_write_time(Path("target")) - time, std::chrono::seconds(3));
    const struct
    {
        const char *source, *target;
        int result;
    } rows[] = {{"target", "folder/../target", 0},
                {"target", "folder", 1},
                {"target", "none/x", 1},
                {"none", "target", -1},
                {"folder", "target", -1}};
    for (const auto& [source, target, result] : rows)
        EXPECT_EQ(UtlCopyFile(Path(source).c_str(), Path(target).c_str()), result) << source << " to " << target;
    EXPECT_EQ(UtlCopyFile(Path("target").c_str(), nullptr), 1);
    EXPECT_EQ(UtlCopyFile(nullptr, Path("target").c_str()), -1);
    EXPECT_EQ(AllFiles("*"), (Names{"a b;$(c)", "target"}));
    EXPECT_EQ(Read("target"), "text of a b;$(c)");
}

TEST_F(FileSystem, BackupsAreNumberedAndNeverReplaced)
{
    Create({"part.inp", "part_2.inp"});
    for (const char* const expected : {"part_1.inp", "part_3.inp"}) {
        char* name = nullptr;
        m_folder.Write("part.inp", expected);
        ASSERT_EQ(UtlBackupFile(Path("part.inp").c_str(), &name), 0);
        EXPECT_EQ(Take(name), Slashed(Path(expected)));
        EXPECT_EQ(Read(expected), expected);
    }
    EXPECT_EQ(UtlBackupFile(Path("part.inp").c_str(), nullptr), 0);
    EXPECT_EQ(Read("part_1.inp") + Read("part_2.inp"), "part_1.inptext of part_2.inp");
    EXPECT_EQ(Files("*").size(), 5u);
    for (const std::string& none : {Path("missing"), Path(), std::string()}) {
        char left = 'x';
        char* name = &left;
        EXPECT_EQ(UtlBackupFile(none.c_str(), &name), -1) << none;
        EXPECT_EQ(name, nullptr);
    }
    EXPECT_EQ(UtlBackupFile(nullptr, nullptr), -1);
    EXPECT_EQ(Files("*").size(), 5u);
}

// ---- Directories ---------------------------------------------------------------------------------------------------

TEST_F(FileSystem, ADirectoryIsRemovedButNotWhatLinksLeadTo)
{
    Create({"gone/a", "gone/s/t/ b;c", "gone/e/", "kept/file"});
    std::filesystem::permissions(Path("gone/a"), std::filesystem::perms::owner_read);
    Link("gone/s/link", Path("kept"));
    Link("gone/loop", Path("gone"));
    Link("gone/nowhere", "none");
    EXPECT_EQ(BuRemoveDirectory(Wide("gone\\")), nullptr);
    EXPECT_FALSE(Exists("gone"));
    EXPECT_EQ(Read("kept/file"), "text of kept/file");
    for (const char* const nothing : {"gone", "gone/below", "kept/file/below"})
        EXPECT_EQ(BuRemoveDirectory(Wide(nothing)), nullptr) << nothing;
    if (Link("link", Path("kept"))) {
        EXPECT_EQ(BuRemoveDirectory(Wide("link/")), nullptr);
        EXPECT_FALSE(Exists("link"));
        EXPECT_EQ(Read("kept/file"), "text of kept/file");
    }
}

TEST_F(FileSystem, SomeDirectoriesAreNotRemoved)
{
    Create({"file", "sub/x"});
    // A root that does not exist here: a test must not trust the refusal with a real one.
    for (const std::string& refused : {std::string(), std::string("Q:\\"), std::string("Q:"), Path("sub/."),
                                       Path("sub/.."), Path("sub\\..//"), Path("file")}) {
        const BuErrObj* const error = BuRemoveDirectory(BuString(refused.c_str()));
        ASSERT_NE(error, nullptr) << refused;
        EXPECT_EQ(error->GetMessageText().Find(BuString((refused + ": ").c_str())), 0) << refused;
    }
    EXPECT_EQ(AllFiles("*"), (Names{"file", "sub/x"}));
}

TEST_F(FileSystem, AStructureIsCopiedWithoutFiles)
{
    Create({"from/a", "from/e/", "from/s/b", "from/s/t/c"});
    Link("from/link", Path("from"));
    ASSERT_EQ(BuStringFileNameCopyDirectoryStructureIn(Wide("from"), Wide("new/to")), nullptr);
    EXPECT_EQ(Directories("new/to"), (Names{"e", "s"}));
    EXPECT_EQ(Directories("new/to/s"), Names{"t"});
    EXPECT_EQ(AllFiles("*", "new"), Names());
    EXPECT_EQ(BuStringFileNameCopyDirectoryStructureIn(Wide("from/"), Wide("from/s/inside")), nullptr);
    EXPECT_EQ(Directories("from/s/inside"), (Names{"e", "s"}));
    EXPECT_EQ(Directories("from/s/inside/s"), Names{"t"}) << "as it was at the start";

    Create({"to/s"});
    for (const char* const target : {"to", "to/s", "to/s/below"})
        ExpectErrorFor("to", BuStringFileNameCopyDirectoryStructureIn(Wide("from"), Wide(target)));
    EXPECT_NE(BuStringFileNameCopyDirectoryStructureIn(Wide("missing"), Wide("x")), nullptr);
    EXPECT_FALSE(Exists("x"));
}

TEST_F(FileSystem, CommandsGiveTheirExitStatus)
{
    EXPECT_EQ(UtlExecuteCommand("exit 7"), 7);
    EXPECT_EQ(UtlExecuteCommand(nullptr), -1);
    EXPECT_EQ(UtlExecuteCommand(""), -1);
}

}  // namespace
