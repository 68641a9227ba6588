#include <TuvoUtil/CompressedFile.h>
#include <TuvoUtil/FileSystem.h>

#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/ChildProcess.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

namespace {

class PosixFileSystem : public testing::Test
{
protected:
    std::string Path(const std::string& name = "") const { return m_folder.NarrowPath() + name; }
    BuString Wide(const char* name = "") const { return BuString(m_folder.Path(name).c_str()); }
    void Folder(const char* name) const { ASSERT_EQ(mkdir(Path(name).c_str(), 0777), 0) << name; }
    bool Exists(const char* name) const
    {
        struct stat status
        {};
        return lstat(Path(name).c_str(), &status) == 0;
    }
    int CountFiles() const
    {
        char** names = nullptr;
        int count = UtlGetFileNamesRecursively(Path().c_str(), "*", &names);
        const int found = count;
        UtlFreeStringList(count, names);
        return found;
    }
    // Runs work as a user without the rights of root.
    template <typename Work>
    void WithoutRights(Work work) const
    {
        ASSERT_EQ(chmod(Path().c_str(), 0777), 0);
        const bool isRoot = geteuid() == 0;
        ASSERT_TRUE(!isRoot || setresuid(65534, 65534, 0) == 0);
        work();
        ASSERT_TRUE(!isRoot || setresuid(0, 0, 0) == 0);
    }
    TemporaryFolder m_folder;
};

TEST_F(PosixFileSystem, WhatMayNotBeReadIsLeftOutAndTold)
{
    for (const char* const name : {"s", "s/closed", "s/open", "s/veiled"})
        Folder(name);
    for (const char* const name : {"s/a", "s/closed/b", "s/open/c", "s/veiled/d"})
        m_folder.Write(name, "");
    ASSERT_EQ(chmod(Path("s/closed").c_str(), 0), 0);
    ASSERT_EQ(chmod(Path("s/veiled").c_str(), 0444), 0);  // names alone may be read
    WithoutRights([&] {
        BuObjectArrayTempl<BuString> files;
        const BuErrObj* const error = BuFindFiles(Wide("s"), L"*", true, files);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->GetMessageText().ToNarrow(), Path("s/closed/") + ": Permission denied");
        EXPECT_EQ(files.GetCount(), 2);
        EXPECT_EQ(CountFiles(), 2);
        char** names = nullptr;
        for (const char* const name : {"s/closed", "s/veiled"})
            EXPECT_EQ(UtlGetFileNames(Path(name).c_str(), "*", &names), -1) << name;

        const BuErrObj* const structure = BuStringFileNameCopyDirectoryStructureIn(Wide("s"), Wide("to"));
        ASSERT_NE(structure, nullptr);
        EXPECT_EQ(structure->GetMessageText().ToNarrow(), Path("s/closed/") + ": Permission denied");
        EXPECT_TRUE(Exists("to/closed") && Exists("to/open"));

        const BuErrObj* const removal = BuRemoveDirectory(Wide("s\\closed"));
        ASSERT_NE(removal, nullptr);
        EXPECT_EQ(removal->GetMessageText().ToNarrow(), Path("s\\closed") + ": Permission denied") << "as given";
        EXPECT_EQ(UtlCopyFile(Path("s/closed/b").c_str(), Path("copy").c_str()), -1);
        EXPECT_EQ(UtlCopyFile(Path("s/a").c_str(), Path("s/closed/copy").c_str()), 1);
        EXPECT_EQ(UtlBackupFile(Path("s/a").c_str(), nullptr), 1) << "the directory may not be written";
    });
    EXPECT_EQ(chmod(Path("s/closed").c_str(), 0755), 0);
    EXPECT_EQ(chmod(Path("s/veiled").c_str(), 0755), 0);
    EXPECT_TRUE(Exists("s/closed/b"));
    EXPECT_EQ(CountFiles(), 4);
}

TEST_F(PosixFileSystem, NeitherDevicesNorPipesAreReadOrReplaced)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    m_folder.Write("file", "text");
    for (const std::string& special : {Path("pipe"), std::string("/dev/zero"), std::string("/dev/full")}) {
        EXPECT_EQ(UtlCheckFileASCII(special.c_str()), -1) << special;
        EXPECT_EQ(UtlCheckIsFileTrueBinery(special.c_str()), -1) << special;
        EXPECT_EQ(UtlCopyFile(Path("file").c_str(), special.c_str()), 1) << special;
        EXPECT_EQ(UtlCopyFile(special.c_str(), Path("copy").c_str()), 1) << special;
    }
    EXPECT_EQ(CountFiles(), 2);
}

// Backs up and copies the file of the first argument with room for 1000 bytes only.
CHILD_SCENARIO(BackupWithoutRoom)
{
    const rlimit limit = {1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    const std::string& path = ChildArguments()[0];
    return UtlBackupFile(path.c_str(), nullptr) * 10 + UtlCopyFile(path.c_str(), (path + ".copy").c_str());
}

TEST_F(PosixFileSystem, ADiskWithoutRoomLeavesNoHalfFile)
{
    const std::wstring path = m_folder.Write("file", std::string(1001, 'x'));
    EXPECT_EQ(RunChild("BackupWithoutRoom", {}, {path}).exitCode, 11);
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(PosixFileSystem, AVanishingFileIsCopiedWholeOrNotAtAll)
{
    const std::string content(100'000, 'x');
    const std::string path = Path("file");
    std::atomic<bool> isOver{false};
    std::thread other([&] {
        while (!isOver) {
            m_folder.Write("whole", content);
            rename(Path("whole").c_str(), path.c_str());
            for (int i = 0; i < 3; ++i)
                m_folder.Write("whole", content);  // the other stays for longer than it is away
            unlink(path.c_str());
        }
        unlink(Path("whole").c_str());
    });
    for (int made = 0, missed = 0; made < 30 || missed < 30;) {
        char* backup = nullptr;
        const int result = UtlBackupFile(path.c_str(), &backup);
        ++(result == 0 ? made : missed);
        EXPECT_TRUE(result == 0 ? backup != nullptr && ReadBinaryFile(platform::Widen(backup)) == content
                                : backup == nullptr);
        if (backup != nullptr)
            unlink(backup);
        VBuFree(backup, __FILE__, __LINE__);
        EXPECT_LE(UtlCheckFileASCII(path.c_str()), 1);
    }
    isOver = true;
    other.join();
    EXPECT_EQ(CountFiles(), 0) << "no part of a backup is left";
}

// ---- Removal -------------------------------------------------------------------------------------------------------

// Makes the directory of the first argument its root, and tries to remove it.
CHILD_SCENARIO(RemoveTheRoot)
{
    if (chroot(ChildArguments()[0].c_str()) != 0 || chdir("/sub") != 0)
        return 2;
    for (const wchar_t* const root : {L"/", L"//", L"\\", L"/sub/..", L"..", L"/."})
        if (BuRemoveDirectory(root) == nullptr)
            return 3;
    return access("/sub/file", F_OK) == 0 && BuRemoveDirectory(L"/sub") == nullptr ? 0 : 4;
}

TEST_F(PosixFileSystem, ARootIsNotRemoved)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "another root needs the rights of root";
    Folder("sub");
    m_folder.Write("sub/file", "");
    EXPECT_EQ(RunChild("RemoveTheRoot", {}, {m_folder.Path()}).exitCode, 0);
    EXPECT_FALSE(Exists("sub"));
}

TEST_F(PosixFileSystem, OnlyALinkToADirectoryIsRemovedAsOne)
{
    m_folder.Write("file", "");
    ASSERT_EQ(symlink("file", Path("link").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", Path("dangling").c_str()), 0);
    EXPECT_NE(BuRemoveDirectory(Wide("link")), nullptr);
    EXPECT_EQ(BuRemoveDirectory(Wide("dangling")), nullptr);
    EXPECT_TRUE(Exists("link") && Exists("file") && !Exists("dangling"));
}

TEST_F(PosixFileSystem, ADirectoryDeeperThanAnyPathIsRemoved)
{
    Folder("top");
    int directory = open(Path("top").c_str(), O_RDONLY | O_DIRECTORY);
    const std::string name(200, 'd');
    for (int depth = 0; depth < 100; ++depth) {
        ASSERT_EQ(mkdirat(directory, name.c_str(), 0777), 0);
        const int inner = openat(directory, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(directory);
        directory = inner;
    }
    close(directory);
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    const rlimit few = {64, files.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    EXPECT_EQ(BuRemoveDirectory(Wide("top")), nullptr) << "nor does every level take a descriptor";
    setrlimit(RLIMIT_NOFILE, &files);
    EXPECT_FALSE(Exists("top"));
}

// ---- The temporary directory ---------------------------------------------------------------------------------------

CHILD_SCENARIO(NoTemporaryDirectory)
{
    if (chroot(ChildArguments()[0].c_str()) != 0)
        return 2;
    char* directory = nullptr;
    return UtlGetTmpDir(&directory) + 2;
}

TEST_F(PosixFileSystem, WithoutATemporaryDirectoryTheProcessEnds)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "another root needs the rights of root";
    const ChildResult result =
        RunChild("NoTemporaryDirectory", {{L"TEMP", std::nullopt}, {L"TMP", std::nullopt}}, {m_folder.Path()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              " Directory /tmp not found.\n Please create /tmp directory or set TEMP or TMP environment "
              "variable\n");
}

TEST_F(PosixFileSystem, UnpackingGoesThroughNoLinkAndKeepsToOnesOwn)
{
    const std::string stem = "tuvo link " + std::to_string(getpid());
    m_folder.Write((stem + " plain").c_str(), "new");
    const std::wstring archive = m_folder.Path((stem + "$(x)'.gz").c_str());
    if (platform::RunProgram({L"gzip", L"-c", m_folder.Path((stem + " plain").c_str())}, {nullptr, archive.c_str()}) !=
        0)
        GTEST_SKIP() << "gzip is not installed";
    chmod(platform::Narrow(archive).c_str(), 0600);
    const std::string copy = "/tmp/" + stem + "$(x)'.gz";
    const std::string plain = "/tmp/" + stem + "$(x)'";
    m_folder.Write("victim", "old");
    for (const std::string& target : {Path("victim"), Path("nowhere")}) {
        ASSERT_EQ(symlink(target.c_str(), copy.c_str()), 0);
        ASSERT_EQ(symlink(target.c_str(), plain.c_str()), 0);
        char* result = UtlGetUnzippedFileName(platform::Narrow(archive).c_str());
        EXPECT_STREQ(result, plain.c_str());
        VBU_FREE(result, __FILE__, __LINE__);
        struct stat status
        {};
        EXPECT_EQ(lstat(plain.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, S_IFREG | 0600u) << "of the rights of the archive";
        EXPECT_EQ(ReadBinaryFile(platform::Widen(plain)), "new");
        EXPECT_EQ(ReadBinaryFile(m_folder.Path("victim")), "old");
        EXPECT_FALSE(Exists("nowhere"));
        unlink(plain.c_str());
    }
    ASSERT_EQ(mkdir(copy.c_str(), 0700), 0);  // in the way: no program is started
    char* result = UtlGetUnzippedFileName(platform::Narrow(archive).c_str());
    VBU_FREE(result, __FILE__, __LINE__);
    EXPECT_NE(access(plain.c_str(), F_OK), 0);
    EXPECT_EQ(rmdir(copy.c_str()), 0);
}

TEST_F(PosixFileSystem, UnpackingWithoutMemoryKeepsTheArchive)
{
    const std::string stem = "tuvo memory " + std::to_string(getpid());
    const std::wstring archive = m_folder.Path((stem + ".gz").c_str());
    if (platform::RunProgram({L"gzip", L"-c", m_folder.Write("plain", "text")}, {nullptr, archive.c_str()}) != 0)
        GTEST_SKIP() << "gzip is not installed";
    const std::string packed = ReadBinaryFile(archive);
    const std::string path = platform::Narrow(archive);
    const std::string plain = "/tmp/" + stem;
    const ReportScope reports;
    EXPECT_GT(allocation::ForEachFailure([&] {
                  char* const result = UtlGetUnzippedFileName(path.c_str());
                  EXPECT_TRUE(result != nullptr ? result == plain : allocation::HasFailed());
                  VBuFree(result, __FILE__, __LINE__);
              }),
              10);
    EXPECT_EQ(ReadBinaryFile(platform::Widen(plain)), "text");
    EXPECT_EQ(ReadBinaryFile(archive), packed);
    EXPECT_NE(access((plain + ".gz").c_str(), F_OK), 0);
    unlink(plain.c_str());
}

}  // namespace
