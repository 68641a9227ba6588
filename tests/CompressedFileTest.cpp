#include <TuvoUtil/CompressedFile.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>

namespace {

bool IsPosix()
{
    return platform::Separator() == L'/';
}

std::string CommonDirectory()
{
    return platform::Narrow(platform::CommonTemporaryDirectory());
}

// ---- The temporary directory ---------------------------------------------------------------------------------------

CHILD_SCENARIO(PrintTemporaryDirectory)
{
    char* directory = nullptr;
    const int result = UtlGetTmpDir(&directory);
    std::printf("%d %s", result, directory);
    return 0;
}

ChildResult TemporaryDirectory(std::optional<std::wstring> temp, std::optional<std::wstring> tmp)
{
    return RunChild("PrintTemporaryDirectory", {{L"TEMP", temp}, {L"TMP", tmp}});
}

TEST(TemporaryDirectory, IsTheFirstItemOfTheFirstVariable)
{
    const TemporaryFolder folder;
    const std::wstring here = folder.Path();
    const std::string expected = "1 " + platform::Narrow(here);
    EXPECT_EQ(TemporaryDirectory(here, L"none").output, expected);
    EXPECT_EQ(TemporaryDirectory(std::nullopt, here).output, expected);
    EXPECT_EQ(TemporaryDirectory(here + L";none;", std::nullopt).output, expected);
    EXPECT_EQ(UtlGetTmpDir(nullptr), 0);
}

TEST(TemporaryDirectory, EndsTheProcessWhenItDoesNotExist)
{
    const TemporaryFolder folder;
    struct Row
    {
        std::wstring list;
        std::string item;
    };
    std::vector<Row> rows = {{folder.Path("none;") + folder.Path(), folder.NarrowPath("none")},
                             {L";" + folder.Path(), " "},
                             {L"%s;x", "%s"}};
    if (IsPosix())
        rows.push_back({L"", ""});  // which removes a variable on Windows
    for (const Row& row : rows) {
        const ChildResult result = TemporaryDirectory(row.list, folder.Path());
        EXPECT_EQ(result.exitCode, 1) << row.item;
        EXPECT_EQ(result.output, "") << row.item;
        EXPECT_EQ(result.errors, " Directory " + row.item +
                                     " specified in TEMP / TMP varaible not found.\n Please set proper TEMP or TMP "
                                     "environment variable\n");
    }
}

TEST(TemporaryDirectory, IsTheCommonOneWithoutVariables)
{
    const ChildResult result = TemporaryDirectory(std::nullopt, std::nullopt);
    const std::string common = CommonDirectory();
    if (platform::Access(platform::CommonTemporaryDirectory(), 0) == 0) {
        EXPECT_EQ(result.output, "1 " + common);
        EXPECT_EQ(result.exitCode, 0);
    } else {
        EXPECT_EQ(result.errors, " Directory " + common + " not found.\n Please create " + common +
                                     " directory or set TEMP or TMP environment variable\n");
        EXPECT_EQ(result.exitCode, 1);
    }
}

// ---- Compressed names ----------------------------------------------------------------------------------------------

TEST(CompressedFiles, AreFoundUnderTheirSuffixes)
{
    const TemporaryFolder folder;
    const auto check = [&](const char* name) {
        const std::string found = Taken(UtlCheckFileIsCompressed(folder.NarrowPath(name).c_str()));
        return found == "(null)" ? found : found.substr(folder.NarrowPath().size());
    };
    for (const char* const name : {"a.gz", "b.bz2", "c.gzip", "d.Z", "e.zip", "f.txt", "g", "h.z", "i.gz.txt"})
        folder.Write(name, "");
    for (const char* const name : {"a.gz", "b.bz2", "c.gzip", "d.Z", "e.zip"})
        EXPECT_EQ(check(name), name);
    for (const char* const name : {"f.txt", "g", "h.z", "i.gz.txt", "d", "e", "none", "none.gz", "none/a"})
        EXPECT_EQ(check(name), "(null)") << name;

    const struct
    {
        const char *written, *asked;
    } rows[] = {{"m.datzip", "m.dat"}, {"m.datZ", "m.dat"}, {"m.dat.bz2", "m.dat"}, {"m.dat.gz", "m.dat"}};
    for (const auto& row : rows) {
        folder.Write(row.written, "");
        EXPECT_EQ(check(row.asked), row.written) << "each goes before those that were written before it";
    }
    folder.Write("m.dat", "");
    EXPECT_EQ(check("m.dat"), "(null)") << "it is there";

    ASSERT_TRUE(platform::CreateOneDirectory(folder.Path("d.gz.old").c_str()) &&
                platform::CreateOneDirectory(folder.Path("d.gz").c_str()));
    folder.Write("d.gz/file", "");
    folder.Write("d.gz.old/file", "");
    EXPECT_EQ(check("d.gz/file"), "d.gz/file") << "a folder with a suffix counts";
    EXPECT_EQ(check("d.gz.old/file"), "(null)");
    EXPECT_EQ(UtlCheckFileIsCompressed(nullptr), nullptr);
}

TEST(CompressedFiles, OfAnotherKindAreNotUnpacked)
{
    const TemporaryFolder folder;
    for (const char* const name : {"tuvotest.zip", "tuvotest.gZ", "tuvotest"}) {
        folder.Write(name, "");
        EXPECT_EQ(UtlGetUnzippedFileName(folder.NarrowPath(name).c_str()), nullptr);
        EXPECT_NE(platform::Access((platform::CommonTemporaryDirectory() + (L"/" + platform::Widen(name))).c_str(), 0),
                  0);
    }
    ASSERT_TRUE(platform::CreateOneDirectory(folder.Path("d.gz").c_str()));
    for (const char* const none : {"d.gz\\", "d.gz\\.", "d.gz\\.."})
        EXPECT_EQ(UtlGetUnzippedFileName(folder.NarrowPath(none).c_str()), nullptr) << none << " names no file";
    EXPECT_EQ(UtlGetUnzippedFileName(nullptr), nullptr);
    for (const char* const name : {"a&b.gz", "a|b.gz", "a%TEMP%.gz", "a;b.gz", "a\nb.gz", "\"a b.gz"}) {
        if (!IsPosix()) {
            EXPECT_EQ(UtlGetUnzippedFileName(folder.NarrowPath(name).c_str()), nullptr) << name;
        }
    }
}

// ---- Unpacking with the real programs ------------------------------------------------------------------------------

class Unpacking : public testing::TestWithParam<std::pair<const char*, const char*>>
{
protected:
    Unpacking() : m_stem("tuvo" + std::to_string(platform::ProcessId())) {}
    ~Unpacking() override
    {
        for (const char* const suffix : {"", ".gz", ".bz2", ".Z"})
            platform::RemoveOneFile(Common(m_stem + suffix).c_str());
    }
    void SetUp() override
    {
        const std::wstring help = m_folder.Path("help");
        if (platform::RunProgram({platform::Widen(GetParam().first), L"--help"},
                                 {nullptr, help.c_str(), help.c_str()}) != 0)
            GTEST_SKIP() << GetParam().first << " is not installed";
    }
    std::wstring Common(const std::string& name) const
    {
        return platform::CommonTemporaryDirectory() + (platform::Separator() + platform::Widen(name));
    }
    // Writes a file and packs it; gives the path of the archive.
    std::string Pack(const std::string& name, const std::string& bytes) const
    {
        const std::string suffix = GetParam().second;
        const std::wstring plain = m_folder.Write("plain", bytes);
        const std::wstring archive = m_folder.Path((name + suffix).c_str());
        EXPECT_EQ(platform::RunProgram({platform::Widen(GetParam().first), L"-c", plain}, {nullptr, archive.c_str()}),
                  0);
        return platform::Narrow(archive);
    }

    const std::string m_stem;
    TemporaryFolder m_folder;
};

TEST_P(Unpacking, GivesTheFileAndKeepsTheArchive)
{
    for (const std::string& bytes : {std::string("GRID,1\n"), std::string(200'000, 'x') + '\0', std::string()}) {
        const std::string archive = Pack(m_stem, bytes);
        const std::string packed = ReadBinaryFile(platform::Widen(archive));
        EXPECT_EQ(Taken(UtlGetUnzippedFileName(archive.c_str())),
                  platform::Narrow(Common(m_stem)));  // each over the last
        EXPECT_TRUE(ReadBinaryFile(Common(m_stem)) == bytes);
        EXPECT_EQ(ReadBinaryFile(platform::Widen(archive)), packed);
        EXPECT_NE(platform::Access(Common(m_stem + GetParam().second).c_str(), 0), 0) << "the copy goes";
    }
}

TEST_P(Unpacking, LeavesNothingOldForAnArchiveThatIsNone)
{
    const std::string archive = Pack(m_stem, "new");
    Taken(UtlGetUnzippedFileName(archive.c_str()));
    ASSERT_EQ(ReadBinaryFile(Common(m_stem)), "new");
    m_folder.Write((m_stem + GetParam().second).c_str(), "no archive");
    EXPECT_EQ(Taken(UtlGetUnzippedFileName(archive.c_str())), platform::Narrow(Common(m_stem)));
    EXPECT_NE(ReadBinaryFile(Common(m_stem)), "new");  // bzip2 takes over as it is what is no archive
    EXPECT_NE(platform::Access(Common(m_stem + GetParam().second).c_str(), 0), 0) << "the copy goes";
    platform::RemoveOneFile(platform::Widen(archive).c_str());
    EXPECT_EQ(Taken(UtlGetUnzippedFileName(archive.c_str())), platform::Narrow(Common(m_stem))) << "it has vanished";
    EXPECT_NE(platform::Access(Common(m_stem).c_str(), 0), 0);
}

TEST_P(Unpacking, KeepsAnArchiveThatStandsThereAlready)
{
    const std::string archive = Pack(m_stem, "text");
    const std::wstring there = Common(m_stem + GetParam().second);
    ASSERT_TRUE(platform::CopyOneFile(platform::Widen(archive).c_str(), there.c_str()));
    EXPECT_EQ(Taken(UtlGetUnzippedFileName(platform::Narrow(there).c_str())), platform::Narrow(Common(m_stem)));
    EXPECT_EQ(ReadBinaryFile(Common(m_stem)), "text");
    EXPECT_EQ(ReadBinaryFile(there), ReadBinaryFile(platform::Widen(archive)));
}

INSTANTIATE_TEST_SUITE_P(WithRealPrograms, Unpacking,
                         testing::Values(std::pair("gzip", ".gz"), std::pair("bzip2", ".bz2"),
                                         std::pair("gzip", ".Z")));

}  // namespace
