#include <TuvoUtil/Environment.h>

#include "platform/Platform.h"
#include "support/RecordingUpdater.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

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
}

TEST(TemporaryNames, CountSecondsWhereNoNumberIsGiven)
{
    const auto now = [] { return platform::SteadyNanoseconds() / 1'000'000'000 & 0xFFFF; };
    const auto earliest = now();
    BuString name;
    BuString expected;
    expected.Format(L"%x.tmp", VEnvGetTempFileName(L"", L"", 0, name));
    EXPECT_STREQ(name, expected);
    const auto number = std::stoll(name.ToNarrow(), nullptr, 16);
    EXPECT_LE((number - earliest) & 0xFFFF, (now() - earliest) & 0xFFFF);
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

// Files with what they hold, and the empty folders with a '/' behind their names: "a=text,folder/b c=,folder/empty/".
void CreateTree(const TemporaryFolder& folder, const std::string& tree)
{
    std::istringstream items(tree);
    for (std::string item; std::getline(items, item, ',');) {
        const std::string name = item.substr(0, item.find('='));
        for (std::size_t end = name.find('/'); end != std::string::npos; end = name.find('/', end + 1))
            ASSERT_TRUE(platform::CreateOneDirectory(folder.Path(name.substr(0, end).c_str()).c_str()));
        if (name.back() != '/')
            folder.Write(name.c_str(), item.substr(name.size() + 1));
    }
}

std::string ReadTree(const TemporaryFolder& folder, const std::string& below = "")
{
    std::vector<std::wstring> names;
    if (!platform::ListDirectory(folder.Path(below.c_str()).c_str(), names)) {
        const std::string name = below.substr(0, below.size() - 1);
        return name + '=' + ReadBinaryFile(folder.Path(name.c_str()));
    }
    std::sort(names.begin(), names.end());
    std::string tree;
    for (const std::wstring& name : names)
        tree += (tree.empty() ? "" : ",") + ReadTree(folder, below + platform::Narrow(name) + '/');
    return tree.empty() ? below : tree;
}

constexpr char NoSource[] = "console 0: Please Enter a valid source file path.!";
constexpr char Taken[] = "console 0: File exists with the same name, re-enter the destination file name";

struct CopyRow
{
    const char *before, *source, *destination;
    const char* how;      // 'm': move; 'f': fail if it exists; 's': with subfolders
    const char* outcome;  // "true", "false", or the message of a refusal
    const char* after;    // null: as before, whether by copy or by move
};

constexpr CopyRow CopyRows[] = {
    {"a=text", "a", "new/deep\\b", "fs", "true", "a=text,new/deep/b=text"},
    {"a=newer,c=old", "a", "c", "", "true", "a=newer,c=newer"},
    {"a=newer,c=old", "a", "c", "m", "true", "c=newer"},
    {"a=text,folder/b=", "a", "folder", "s", "false", nullptr},
    {"a=text,folder/b=", "a", "a/below", "s", "false", nullptr},
    {"a=text,folder/b=", "folder", "a", "s", "false", nullptr},
    {"a=text,folder/b=", "a", "folder/../a", "s", "true", nullptr},
    {"a=text,folder/b=", "folder", "folder/", "s", "true", nullptr},

    {"a=text", "none", "c", "f", NoSource, nullptr},
    {"a=text", "none/", "c", "f", NoSource, nullptr},
    {"a=text", "a/", "c", "f", NoSource, nullptr},
    {"a=text,b=old", "a", "b", "f", Taken, nullptr},
    {"a=text,b=old", "b", "b", "f", Taken, nullptr},
    {"b=old,folder/", "folder", "b", "f", Taken, nullptr},

    // The files of a folder replace others whatever is said; subfolders stay.
    {"from/a=1,from/b c=2,from/s/d=3,to/a=,to/x=4", "from", "to", "f", "true",
     "from/a=1,from/b c=2,from/s/d=3,to/a=1,to/b c=2,to/x=4"},
    {"from/a=1,from/b c=2,from/s/d=3,to/a=,to/x=4", "from/", "to\\", "mf", "true", "from/s/d=3,to/a=1,to/b c=2,to/x=4"},
    {"from/a=1", "from", "deep/er", "m", "true", "deep/er/a=1"},
    {"from/s/d=3", "from", "from/s/inside", "f", "true", "from/s/d=3,from/s/inside/"},

    {"from/a=1,from/e/,from/s/t/c=3", "from", "to", "fs", "true",
     "from/a=1,from/e/,from/s/t/c=3,to/a=1,to/e/,to/s/t/c=3"},
    {"from/a=1,from/e/,from/s/t/c=3,to/s/x=", "from", "to", "mfs", "true", "to/a=1,to/e/,to/s/t/c=3,to/s/x="},

    // A file has the name of a subfolder: the end, or that subfolder is left out.
    {"from/a=1,from/r/x=2,from/s/b=3,to/s=", "from", "to", "mfs", "false", "from/a=1,from/s/b=3,to/r/x=2,to/s="},
    {"from/a=1,from/s/b=3,to/s=", "from", "to", "ms", "false", "from/s/b=3,to/a=1,to/s="},

    {"from/a=1,from/s/b=2,fromage/", "from", "from/s", "fs", "false", nullptr},
    {"from/a=1,from/s/b=2,fromage/", "from", "from\\s/new/er", "fs", "false", nullptr},
    {"from/a=1,from/s/b=2,fromage/", "from", "fromage/../from/new", "fs", "false", nullptr},
    {"from/a=1,from/s/b=2", "from/s", "from", "mfs", "true", "from/a=1,from/b=2"},
    {"from/a=1,fromage/", "from", "fromage", "fs", "true", "from/a=1,fromage/a=1"},
};

void ExpectOutcome(const CopyRow& row, int mode)
{
    const auto does = [&](char what) { return std::strchr(row.how, what) != nullptr; };
    const TemporaryFolder folder;
    CreateTree(folder, row.before);
    RecordingUpdater updater;
    const bool result = VEnvCopyFileOrFolder(folder.Path(row.source).c_str(), folder.Path(row.destination).c_str(),
                                             does('f'), does('s'), static_cast<_TuvoMoveOrCopyMode>(mode));
    const auto lines = updater.TakeLines();
    EXPECT_EQ(lines.empty() ? std::string(result ? "true" : "false") : lines[0], row.outcome);
    EXPECT_LE(lines.size(), result ? 0u : 1u);
    EXPECT_EQ(ReadTree(folder), row.after != nullptr ? row.after : row.before);
}

TEST(CopyFileOrFolder, TakesTheWholeSourceOrSaysWhyNot)
{
    for (const CopyRow& row : CopyRows)
        for (const int mode : {0, 1, 2}) {  // every value but 1 copies
            SCOPED_TRACE(std::string(row.before) + ": " + row.source + " to " + row.destination);
            if (row.after == nullptr || (mode == TUVO_MOVE_FILES) == (row.how[0] == 'm'))
                ExpectOutcome(row, mode);
        }
    EXPECT_FALSE(VEnvCopyFileOrFolder(nullptr, L"c", false, false, TUVO_COPY_FILES));
    EXPECT_FALSE(VEnvCopyFileOrFolder(L".", nullptr, false, false, TUVO_COPY_FILES));
}

}  // namespace
