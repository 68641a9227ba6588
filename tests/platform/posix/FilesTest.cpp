#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace {

using Names = std::vector<std::wstring>;

class PosixFiles : public testing::Test
{
protected:
    std::wstring Link(const char* name, const std::string& target) const
    {
        EXPECT_EQ(symlink(target.c_str(), m_folder.NarrowPath(name).c_str()), 0);
        return m_folder.Path(name);
    }
    std::wstring Pipe(const char* name) const
    {
        EXPECT_EQ(mkfifo(m_folder.NarrowPath(name).c_str(), 0600), 0);
        return m_folder.Path(name);
    }
    Names List() const
    {
        Names names;
        EXPECT_TRUE(platform::ListDirectory(m_folder.Path().c_str(), names));
        std::sort(names.begin(), names.end());
        return names;
    }
    TemporaryFolder m_folder;
};

TEST_F(PosixFiles, ABackslashInANameIsTakenAsGivenWhereItStands)
{
    ASSERT_TRUE(platform::CreateOneDirectory(m_folder.Path("a").c_str()));
    const std::wstring mapped = m_folder.Write("a\\b", "inside a");
    EXPECT_EQ(access(m_folder.NarrowPath("a/b").c_str(), F_OK), 0);
    ASSERT_EQ(rename(m_folder.NarrowPath("a/b").c_str(), m_folder.NarrowPath("a\\b").c_str()), 0);
    m_folder.Write("a/b", "other");
    EXPECT_EQ(ReadBinaryFile(mapped), "inside a");
    EXPECT_TRUE(platform::RemoveOneFile(mapped.c_str()));
    EXPECT_EQ(ReadBinaryFile(mapped), "other");
}

TEST_F(PosixFiles, NamesNeedNotBeUtf8)
{
    const std::string name = "stray \xFF\xC3 \xED\xA0\x80";
    const std::wstring path = m_folder.Write(name.c_str(), "text");
    ASSERT_EQ(List().size(), 1u);
    EXPECT_EQ(platform::Narrow(List()[0]), name);
    EXPECT_EQ(access(m_folder.NarrowPath(name.c_str()).c_str(), F_OK), 0);
    EXPECT_EQ(ReadBinaryFile(m_folder.Path() + List()[0]), "text");
}

TEST_F(PosixFiles, LinksAreFollowedForStatusAndRemovedThemselves)
{
    const std::wstring file = m_folder.Write("file", "text");
    const std::wstring link = Link("link", "file");
    const std::wstring dangling = Link("dangling", "nowhere");
    platform::FileStatus status;
    EXPECT_TRUE(platform::IsLink(link.c_str()));
    EXPECT_TRUE(platform::IsLink(dangling.c_str()));
    EXPECT_TRUE(platform::Status(link.c_str(), status));
    EXPECT_EQ(status.size, 4u);
    EXPECT_FALSE(platform::Status(dangling.c_str(), status));
    EXPECT_EQ(platform::CanonicalPath(link.c_str()), platform::CanonicalPath(file.c_str()));
    EXPECT_EQ(platform::OpenFile(dangling.c_str(), L"wx"), nullptr);
    EXPECT_TRUE(platform::RemoveOneFile(link.c_str()) && platform::RemoveOneFile(dangling.c_str()));
    EXPECT_TRUE(platform::CopyOneFile(file.c_str(), Link("self", "file").c_str())) << "a link to the source";
    EXPECT_TRUE(platform::IsLink(m_folder.Path("self").c_str()));
    m_folder.Write("other", "other");
    EXPECT_TRUE(platform::CopyOneFile(file.c_str(), Link("to other", "other").c_str()));
    EXPECT_FALSE(platform::IsLink(m_folder.Path("to other").c_str()));
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("other")), "other") << "a link is replaced, not followed";
}

TEST_F(PosixFiles, ACopyKeepsPermissionsAndTime)
{
    const std::wstring source = m_folder.Write("source", "text");
    const timespec times[] = {{1'000'000'000, 0}, {1'111'111'111, 123'456'789}};
    ASSERT_EQ(utimensat(AT_FDCWD, m_folder.NarrowPath("source").c_str(), times, 0), 0);
    ASSERT_EQ(chmod(m_folder.NarrowPath("source").c_str(), 04751), 0);
    ASSERT_TRUE(platform::CopyOneFile(source.c_str(), m_folder.Path("target").c_str()));
    struct stat status
    {};
    ASSERT_EQ(stat(m_folder.NarrowPath("target").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0751u);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'111'111'111);
    EXPECT_EQ(status.st_mtim.tv_nsec, 123'456'789);
}

TEST_F(PosixFiles, NeitherDevicesNorPipesAreCopiedOrReplaced)
{
    const std::wstring source = m_folder.Write("source", "text");
    const std::wstring pipe = Pipe("pipe");
    EXPECT_FALSE(platform::CopyOneFile(pipe.c_str(), m_folder.Path("target").c_str()));
    EXPECT_FALSE(platform::CopyOneFile(L"/dev/zero", m_folder.Path("target").c_str()));
    EXPECT_FALSE(platform::CopyOneFile(source.c_str(), pipe.c_str()));
    EXPECT_FALSE(platform::CopyOneFile(source.c_str(), Link("full", "/dev/full").c_str()));
    platform::FileStatus status;
    EXPECT_TRUE(platform::Status(pipe.c_str(), status));
    EXPECT_EQ(status.kind, platform::FileKind::Other);
    EXPECT_EQ(List(), (Names{L"full", L"pipe", L"source"}));
}

// Copies the file of the first argument to the second, with room for 10000 bytes only: the last write is cut short and
// the next one fails.
CHILD_SCENARIO(CopyWithoutRoom)
{
    const rlimit limit = {10'000, 10'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string>& paths = ChildArguments();
    const bool isCopied = platform::CopyOneFile(platform::Widen(paths[0]).c_str(), platform::Widen(paths[1]).c_str());
    return isCopied ? 1 : platform::LastNativeError() == EFBIG ? 0 : 2;
}

TEST_F(PosixFiles, ACopyThatFindsNoRoomLeavesTheOldFile)
{
    const std::wstring source = m_folder.Write("source", std::string(10'001, 'x'));
    const std::wstring target = m_folder.Write("target", "old");
    EXPECT_EQ(RunChild("CopyWithoutRoom", {}, {source, target}).exitCode, 0);
    EXPECT_EQ(ReadBinaryFile(target), "old");
    EXPECT_EQ(List(), (Names{L"source", L"target"}));
}

TEST_F(PosixFiles, WhatMayNotBeReadIsNotListed)
{
    m_folder.Write("file", "");
    ASSERT_EQ(chmod(m_folder.NarrowPath().c_str(), 0), 0);
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
    Names names = {L"left over"};
    EXPECT_FALSE(platform::ListDirectory(m_folder.Path().c_str(), names));
    EXPECT_EQ(errno, EACCES);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(platform::OpenFile(m_folder.Path("file").c_str(), L"r"), nullptr);
    EXPECT_FALSE(platform::RemoveOneFile(m_folder.Path("file").c_str()));
    ASSERT_TRUE(!isRoot || seteuid(0) == 0);
    chmod(m_folder.NarrowPath().c_str(), 0700);
}

// Exits with the number of descriptors that are open besides the standard ones.
CHILD_SCENARIO(CountDescriptors)
{
    int count = 0;
    for (int descriptor = 3; descriptor < 1000; ++descriptor)
        count += fcntl(descriptor, F_GETFD) != -1;
    return count;
}

TEST_F(PosixFiles, ProgramsGetNoOtherOpenFile)
{
    std::FILE* const ours = platform::OpenFile(m_folder.Write("ours", "").c_str(), L"r");
    ASSERT_NE(ours, nullptr);
    const int inheritable = dup(fileno(ours));
    EXPECT_NE(fcntl(fileno(ours), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(RunChild("CountDescriptors").exitCode, 0);
    close(inheritable);
    std::fclose(ours);
}

TEST(PosixProcess, ASignalGives128PlusItsNumber)
{
    EXPECT_EQ(platform::RunCommand(L"kill -9 $$"), 137);
    EXPECT_EQ(platform::RunProgram({L"sh", L"-c", L"kill -15 $$"}), 143);
    EXPECT_EQ(platform::RunCommand(L"no-command-of-this-name 2> /dev/null"), 127);
}

TEST(PosixDirectories, TheFirstSetVariableNamesTheTemporaryDirectory)
{
    struct Row
    {
        const char *tmpdir, *tmp, *temp;
        const wchar_t* expected;
    };
    const Row rows[] = {{"/a", "/b", "/c", L"/a/"},
                        {"", "/b/", "/c", L"/b/"},
                        {"", "", "/c", L"/c/"},
                        {"", "", "", L"/tmp/"},
                        {"/", "", "", L"/"}};
    const char* const names[] = {"TMPDIR", "TMP", "TEMP"};
    std::vector<std::optional<std::wstring>> before;
    for (const char* const name : names)
        before.push_back(platform::EnvironmentValue(platform::Widen(name).c_str()));
    for (const Row& row : rows) {
        setenv("TMPDIR", row.tmpdir, 1);
        setenv("TMP", row.tmp, 1);
        setenv("TEMP", row.temp, 1);
        EXPECT_EQ(platform::TemporaryDirectory(), row.expected);
    }
    for (std::size_t i = 0; i < before.size(); ++i)
        platform::SetEnvironmentValue(platform::Widen(names[i]).c_str(), before[i]);
}

}  // namespace
