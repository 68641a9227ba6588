#include <TuvoUtil/Environment.h>

#include "platform/Platform.h"
#include "support/RecordingUpdater.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

// ---- Temporary names -----------------------------------------------------------------------------------------------

TEST(TemporaryNames, AreMadeOfDirectoryPrefixAndNumber)
{
    const TemporaryFolder folder;
    const std::wstring directory = folder.Path().substr(0, folder.Path().size() - 1);
    const std::wstring taken = folder.Write("abc2345.tmp", "");
    const struct
    {
        std::wstring directory;
        const wchar_t* prefix;
        unsigned int unique, result;
        std::wstring name;
    } rows[] = {
        {directory, L"abc", 74565, 0x2345, folder.Path("abc2345_1.tmp")},
        {directory, L"def", 74565, 0x2345, folder.Path("def2345.tmp")},
        {directory + L"/", L"", 0xFFFFFFFF, 0xFFFF, directory + L"/ffff.tmp"},
        {directory + L"\\", nullptr, 0xA, 0xA, directory + L"\\a.tmp"},
        {L"none", L"a b%s", 1, 1, std::wstring(L"none") + platform::Separator() + L"a b%s1.tmp"},
        {L"", L"p", 0x10000, 0, L"p0.tmp"},
    };
    for (const auto& row : rows) {
        BuString name(L"before");
        EXPECT_EQ(VEnvGetTempFileName(row.directory.c_str(), row.prefix, row.unique, name), row.result);
        EXPECT_EQ(name.GetText(), row.name);
    }
    BuString name;
    const auto second = [] {
        return static_cast<unsigned int>(platform::SteadyNanoseconds() / 1'000'000'000) & 0xFFFF;
    };
    const unsigned int earliest = second();
    const unsigned int number = VEnvGetTempFileName(L"", L"", 0, name);
    EXPECT_LE((number - earliest) & 0xFFFF, (second() - earliest) & 0xFFFF);
    BuString expected;
    expected.Format(L"%x.tmp", number);
    EXPECT_STREQ(name, expected);
}

TEST(TemporaryNames, AskTheEnvironmentForADirectory)
{
    const auto before = platform::EnvironmentValue(L"QD_TEMP_PATH");
    BuString name(L"before");
    platform::SetEnvironmentValue(L"QD_TEMP_PATH", std::nullopt);
    EXPECT_EQ(VEnvGetTempFileName(nullptr, L"p", 1, name), 0u);
    EXPECT_STREQ(name, L"before");
    platform::SetEnvironmentValue(L"QD_TEMP_PATH", L"some where/");
    EXPECT_EQ(VEnvGetTempFileName(nullptr, L"p", 1, name), 1u);
    EXPECT_STREQ(name, L"some where/p1.tmp");
    platform::SetEnvironmentValue(L"QD_TEMP_PATH", before);
}

TEST(CurrentProcess, HasItsId)
{
    EXPECT_EQ(static_cast<unsigned int>(VEnvGetCurrentProcessID()), platform::ProcessId());
}

// ---- Copying and moving --------------------------------------------------------------------------------------------

// The files below a folder with what they hold, and the empty folders with a '/' behind their names.
using Tree = std::map<std::string, std::string>;

class CopyFileOrFolder : public testing::Test
{
protected:
    std::wstring Path(const char* name = "") const { return m_folder.Path(name); }
    void Create(const Tree& tree) const
    {
        for (const auto& [name, text] : tree) {
            for (std::size_t end = name.find('/'); end != std::string::npos; end = name.find('/', end + 1))
                ASSERT_TRUE(platform::CreateOneDirectory(Path(name.substr(0, end).c_str()).c_str()));
            if (name.back() != '/')
                m_folder.Write(name.c_str(), text);
        }
    }
    Tree Read(const std::string& below = "") const
    {
        Tree tree;
        std::vector<std::wstring> names;
        if (!platform::ListDirectory(Path(below.c_str()).c_str(), names))
            return {
                {below.substr(0, below.size() - 1), ReadBinaryFile(Path(below.substr(0, below.size() - 1).c_str()))}};
        for (const std::wstring& name : names)
            tree.merge(Read(below + platform::Narrow(name) + '/'));
        return tree.empty() ? Tree{{below, ""}} : tree;
    }
    bool Run(const char* source, const char* destination, _TuvoMoveOrCopyMode mode = TUVO_COPY_FILES,
             bool failIfExists = true, bool withSubfolders = true) const
    {
        return VEnvCopyFileOrFolder(Path(source).c_str(), Path(destination).c_str(), failIfExists, withSubfolders,
                                    mode);
    }

    const std::string m_refuseSource = "console 0: Please Enter a valid source file path.!";
    const std::string m_refuseTarget = "console 0: File exists with the same name, re-enter the destination file name";
    TemporaryFolder m_folder;
    RecordingUpdater m_updater;
};

TEST_F(CopyFileOrFolder, TakesOneFileToAnotherPlace)
{
    Create({{"a", "text"}});
    EXPECT_TRUE(Run("a", "new/deep\\b"));
    EXPECT_TRUE(Run("a", "c", _TuvoMoveOrCopyMode(2)));
    EXPECT_EQ(Read(), (Tree{{"a", "text"}, {"c", "text"}, {"new/deep/b", "text"}}));
    Create({{"a", "newer"}});
    EXPECT_TRUE(Run("a", "c", TUVO_MOVE_FILES, false));
    EXPECT_EQ(Read(), (Tree{{"c", "newer"}, {"new/deep/b", "text"}}));
    EXPECT_EQ(m_updater.TakeLines(), Lines());
}

TEST_F(CopyFileOrFolder, RefusesWithAMessage)
{
    const Tree tree = {{"a", "text"}, {"b", "old"}, {"folder/", ""}};
    Create(tree);
    for (const char* const source : {"none", "none/", "a/", "none/a"}) {
        EXPECT_FALSE(Run(source, "c")) << source;
        EXPECT_EQ(m_updater.TakeLines(), Lines{m_refuseSource}) << source;
    }
    for (const char* const source : {"a", "b", "folder"}) {  // "b" onto itself
        EXPECT_FALSE(Run(source, "b")) << source;
        EXPECT_EQ(m_updater.TakeLines(), Lines{m_refuseTarget}) << source;
    }
    EXPECT_EQ(Read(), tree);
}

TEST_F(CopyFileOrFolder, FailsWithoutAMessage)
{
    const Tree tree = {{"a", "text"}, {"folder/b", ""}};
    Create(tree);
    EXPECT_FALSE(VEnvCopyFileOrFolder(nullptr, Path("c").c_str(), false, false, TUVO_COPY_FILES));
    EXPECT_FALSE(VEnvCopyFileOrFolder(Path("a").c_str(), nullptr, false, false, TUVO_COPY_FILES));
    for (const _TuvoMoveOrCopyMode mode : {TUVO_COPY_FILES, TUVO_MOVE_FILES}) {
        EXPECT_FALSE(Run("a", "folder", mode, false)) << "a folder stands there";
        EXPECT_FALSE(Run("a", "a/below", mode, false));
        EXPECT_FALSE(Run("folder", "a", mode, false)) << "a file stands there";
        EXPECT_TRUE(Run("a", "folder/../a", mode, false)) << "onto itself";
        EXPECT_TRUE(Run("folder", "folder/", mode, false)) << "onto itself";
    }
    EXPECT_EQ(Read(), tree);
    EXPECT_EQ(m_updater.TakeLines(), Lines());
}

TEST_F(CopyFileOrFolder, TakesTheFilesOfAFolder)
{
    Create({{"from/a", "1"}, {"from/b c", "2"}, {"from/sub/d", "3"}, {"to/a", "old"}, {"to/x", "4"}});
    EXPECT_TRUE(Run("from", "to", TUVO_COPY_FILES, true, false)) << "single files replace others all the same";
    const Tree copied = {{"to/a", "1"}, {"to/b c", "2"}, {"to/x", "4"}};
    Tree expected = {{"from/a", "1"}, {"from/b c", "2"}, {"from/sub/d", "3"}};
    expected.insert(copied.begin(), copied.end());
    EXPECT_EQ(Read(), expected);

    EXPECT_TRUE(Run("from/", "to\\", TUVO_MOVE_FILES, true, false));
    expected = {{"from/sub/d", "3"}};
    expected.insert(copied.begin(), copied.end());
    EXPECT_EQ(Read(), expected);
    EXPECT_TRUE(Run("from", "from/sub/inside", TUVO_COPY_FILES, true, false)) << "no subfolder is entered";
    EXPECT_TRUE(Run("from/sub", "deep/er", TUVO_MOVE_FILES, true, false)) << "the folder is empty then, and goes";
    EXPECT_EQ(Read("deep/"), (Tree{{"deep/er/d", "3"}}));
    EXPECT_EQ(Read("from/"), (Tree{{"from/sub/inside/", ""}}));
}

TEST_F(CopyFileOrFolder, TakesAWholeTree)
{
    const Tree from = {{"from/a", "1"}, {"from/e/", ""}, {"from/s/b", "2"}, {"from/s/t/c", "3"}};
    const Tree to = {{"to/a", "1"}, {"to/e/", ""}, {"to/s/b", "2"}, {"to/s/t/c", "3"}};
    Create(from);
    EXPECT_TRUE(Run("from", "to"));
    EXPECT_EQ(Read("from/"), from);
    EXPECT_EQ(Read("to/"), to);
    EXPECT_TRUE(Run("from", "to", TUVO_MOVE_FILES));
    EXPECT_EQ(Read(), to);
    EXPECT_EQ(m_updater.TakeLines(), Lines());
}

TEST_F(CopyFileOrFolder, EndsWhereAFileHasTheNameOfASubfolder)
{
    const Tree from = {{"from/a", "1"}, {"from/r/x", "2"}, {"from/s/b", "3"}};
    Create(from);
    Create({{"to/s", "file"}, {"loose/s", "file"}});
    EXPECT_FALSE(Run("from", "to", TUVO_MOVE_FILES));
    EXPECT_EQ(Read("from/"), (Tree{{"from/a", "1"}, {"from/s/b", "3"}}));
    EXPECT_EQ(Read("to/"), (Tree{{"to/r/x", "2"}, {"to/s", "file"}}));
    EXPECT_FALSE(Run("from", "loose", TUVO_MOVE_FILES, false)) << "that subfolder failed, the rest goes on";
    EXPECT_EQ(Read("from/"), (Tree{{"from/s/b", "3"}}));
    EXPECT_EQ(Read("loose/"), (Tree{{"loose/a", "1"}, {"loose/s", "file"}}));
    EXPECT_EQ(m_updater.TakeLines(), Lines());
}

TEST_F(CopyFileOrFolder, IsNotCopiedIntoItself)
{
    const Tree tree = {{"from/a", "1"}, {"from/s/b", "2"}, {"fromage/", ""}};
    Create(tree);
    for (const char* const destination : {"from/s", "from/new", "from\\s/new/er", "fromage/../from/new"})
        EXPECT_FALSE(Run("from", destination)) << destination;
    EXPECT_EQ(Read(), tree);
    EXPECT_TRUE(Run("from/s", "from", TUVO_MOVE_FILES));
    EXPECT_TRUE(Run("from", "fromage"));
    EXPECT_EQ(Read(), (Tree{{"from/a", "1"}, {"from/b", "2"}, {"fromage/a", "1"}, {"fromage/b", "2"}}));
}

}  // namespace
