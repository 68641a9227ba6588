// Files and directories while memory is exhausted: the documented failure or the right result, nothing lost, no leak.

#include <TuvoUtil/CompressedFile.h>
#include <TuvoUtil/FileSystem.h>

#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <gtest/gtest.h>

#include <string>

namespace {

class FilesWithoutMemory : public testing::Test
{
protected:
    FilesWithoutMemory()
    {
        platform::CreateOneDirectory(m_folder.Path("s").c_str());
        m_folder.Write("a file with a name that needs memory.gz", "text");
        m_folder.Write("s/b", "text");
    }
    // Calls `make` with each allocation failing; it gives null, or the expected text.
    template <typename Make>
    void ExpectTextOrNull(const std::string& expected, Make make)
    {
        EXPECT_GT(allocation::ForEachFailure([&] {
                      char* const text = make();
                      EXPECT_TRUE(text != nullptr || allocation::HasFailed());
                      EXPECT_TRUE(text == nullptr || text == expected);
                      VBuFree(text, __FILE__, __LINE__);
                  }),
                  2);
    }
    template <typename List>
    void ExpectListOrFailure(int expected, List list)
    {
        EXPECT_GT(allocation::ForEachFailure([&] {
                      char** names = nullptr;
                      int count = list(&names);
                      EXPECT_EQ(count, allocation::HasFailed() ? -1 : expected);
                      EXPECT_EQ(names != nullptr, count > 0);
                      if (count > 0)
                          UtlFreeStringList(count, names);
                  }),
                  4);
    }

    const ReportScope m_reports;
    const TemporaryFolder m_folder;
    const std::string m_path = m_folder.NarrowPath();
    const std::string m_file = m_folder.NarrowPath("a file with a name that needs memory.gz");
};

TEST_F(FilesWithoutMemory, GiveATextOrNull)
{
    const std::string separator = platform::Narrow(std::wstring(1, platform::Separator()));
    const std::string absolute = m_path.substr(0, m_path.size() - 1);
    const std::string below = m_path + "s/t";
    char* directories[] = {const_cast<char*>(absolute.c_str())};
    ExpectTextOrNull(absolute, [&] { return UtlGetAbsoluteDirectoryPath("s/..", m_path.c_str()); });
    ExpectTextOrNull("s" + separator + "t", [&] { return UtlGetRelativeDirectoryPath(below.c_str(), m_path.c_str()); });
    ExpectTextOrNull(absolute + separator + "s/b", [&] { return UtlFindFile("s/b", 1, directories); });
    ExpectTextOrNull(m_file, [&] { return UtlCheckFileIsCompressed(m_file.c_str()); });
}

TEST_F(FilesWithoutMemory, GiveAListOrAFailure)
{
    ExpectListOrFailure(1, [&](char*** names) { return UtlGetFileNames(m_path.c_str(), "*", names); });
    ExpectListOrFailure(2, [&](char*** names) { return UtlGetFileNamesRecursively(m_path.c_str(), "*", names); });
    ExpectListOrFailure(1, [&](char*** names) { return UtlGetDirectoriesInDir(m_path.c_str(), names); });
    const BuString directory(m_path.c_str());
    EXPECT_GT(allocation::ForEachFailure([&] {
                  BuObjectArrayTempl<BuString> files;
                  files.Add(directory);
                  const bool isAdded = files.GetCount() == 1 && !files[0].IsEmpty();
                  // The directory may be one of those that are replaced.
                  const BuErrObj* const error = BuFindFiles(isAdded ? files[0] : directory, L"*", true, files);
                  EXPECT_EQ(error != nullptr, allocation::HasFailed() && isAdded);
                  EXPECT_EQ(files.GetCount(), error == nullptr ? 2 : 0);
              }),
              4);
}

TEST_F(FilesWithoutMemory, ABackupIsWholeOrNotThere)
{
    int refusals = 0;
    for (int n = 1;; ++n) {
        allocation::FailOnce(n);
        char* name = nullptr;
        const int result = UtlBackupFile(m_file.c_str(), &name);
        const bool hasFailed = allocation::HasFailed();
        allocation::FailFrom(0);
        const std::wstring backup = m_folder.Path("a file with a name that needs memory_1.gz");
        EXPECT_EQ(result == 0, name != nullptr) << n;
        EXPECT_EQ(ReadBinaryFile(backup), result == 0 ? "text" : "") << n;
        EXPECT_EQ(platform::Access(backup.c_str(), 0) == 0, result == 0) << n;
        platform::RemoveOneFile(backup.c_str());
        VBuFree(name, __FILE__, __LINE__);
        if (!hasFailed)
            break;
        refusals += result != 0 ? 1 : 0;
    }
    EXPECT_GT(refusals, 2);  // some systems can do without some of the memory
}

TEST_F(FilesWithoutMemory, RemovalAndStructureFailOrAreDone)
{
    for (int n = 1;; ++n) {
        const TemporaryFolder folder;
        const BuString from(folder.Path("from/directory of some length").c_str());
        const BuString to(folder.Path("to").c_str());
        for (const char* const name : {"from", "from/directory of some length", "from/directory of some length/sub"})
            platform::CreateOneDirectory(folder.Path(name).c_str());
        allocation::FailOnce(n);
        const bool isCopied = BuStringFileNameCopyDirectoryStructureIn(from, to) == nullptr;
        const bool hasFailed = allocation::HasFailed();
        allocation::FailOnce(n);
        const bool isRemoved = BuRemoveDirectory(from) == nullptr;
        const bool hasFailedToo = allocation::HasFailed();
        allocation::FailFrom(0);
        EXPECT_EQ(isCopied, platform::Access(folder.Path("to/sub").c_str(), 0) == 0) << n;
        EXPECT_EQ(isRemoved, platform::Access(from, 0) != 0) << n;
        if (!hasFailed && !hasFailedToo) {
            EXPECT_TRUE(isCopied && isRemoved);
            EXPECT_GT(n, 5);
            break;
        }
    }
}

TEST_F(FilesWithoutMemory, ContentIsUnknown)
{
    EXPECT_GT(allocation::ForEachFailure([&] {
                  const int result = UtlCheckFileASCII(m_file.c_str());
                  EXPECT_TRUE(result == 1 || (result == -1 && allocation::HasFailed()));
              }),
              0);
}

TEST_F(FilesWithoutMemory, TheTemporaryDirectoryIsNull)
{
    const auto before = platform::EnvironmentValue(L"TEMP");
    platform::SetEnvironmentValue(L"TEMP", m_folder.Path());
    ExpectTextOrNull(m_path, [] {
        char* directory = nullptr;
        const int result = UtlGetTmpDir(&directory);
        EXPECT_EQ(result, directory != nullptr ? 1 : 0);
        return directory;
    });
    platform::SetEnvironmentValue(L"TEMP", before);
}

}  // namespace
