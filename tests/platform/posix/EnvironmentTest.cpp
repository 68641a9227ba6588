#include <TuvoUtil/Environment.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class PosixMove : public testing::Test
{
protected:
    PosixMove() { platform::CreateOneDirectory(m_folder.Path("from").c_str()); }
    bool Move(const char* source, const char* destination) const
    {
        return VEnvCopyFileOrFolder(m_folder.Path(source).c_str(), m_folder.Path(destination).c_str(), false, true,
                                    TUVO_MOVE_FILES);
    }
    bool Exists(const char* name) const
    {
        struct stat status
        {};
        return lstat(m_folder.NarrowPath(name).c_str(), &status) == 0;
    }
    void Link(const std::string& target, const char* name) const
    {
        ASSERT_EQ(symlink(target.c_str(), m_folder.NarrowPath(name).c_str()), 0);
    }
    TemporaryFolder m_folder;
};

TEST_F(PosixMove, RemovesOnlyWhatWasCopied)
{
    m_folder.Write("outside", "text");
    m_folder.Write("from/\xFF $(x)\n", "bytes");
    Link("nowhere", "from/dangling");
    Link("..", "from/up");
    Link("../outside", "from/link");
    ASSERT_EQ(mkfifo(m_folder.NarrowPath("from/pipe").c_str(), 0600), 0);
    EXPECT_TRUE(Move("from", "to"));
    EXPECT_TRUE(Exists("from/dangling") && Exists("from/up") && Exists("from/pipe") && Exists("outside"));
    EXPECT_FALSE(Exists("from/link") || Exists("from/\xFF $(x)\n"));
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("to/link")), "text");
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("to/\xFF $(x)\n")), "bytes");
    EXPECT_FALSE(Exists("to/dangling") || Exists("to/up") || Exists("to/pipe"));
}

TEST_F(PosixMove, KeepsAFileThatHasBothNames)
{
    m_folder.Write("from/file", "text");
    ASSERT_EQ(link(m_folder.NarrowPath("from/file").c_str(), m_folder.NarrowPath("hard").c_str()), 0);
    Link("from/file", "soft");
    EXPECT_TRUE(Move("from/file", "hard"));
    EXPECT_TRUE(Move("from/file", "soft"));
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("from/file")), "text");
}

TEST_F(PosixMove, IsNotMistakenForItselfByTheTextOfAPath)
{
    m_folder.Write("from/file", "text");
    platform::CreateOneDirectory(m_folder.Path("far").c_str());
    platform::CreateOneDirectory(m_folder.Path("far/away").c_str());
    Link("../far/away", "from/door");
    EXPECT_TRUE(Move("from/file", "from/door/../file"));
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("far/file")), "text");
    EXPECT_FALSE(Exists("from/file"));
}

TEST_F(PosixMove, SeesThroughLinksThatItWouldGoIntoItself)
{
    m_folder.Write("from/file", "text");
    Link("from", "door");
    EXPECT_FALSE(Move("from", "door/new"));
    EXPECT_FALSE(Exists("from/new"));
    EXPECT_TRUE(Exists("from/file"));
}

TEST_F(PosixMove, NeedsAFolderThatMayBeWritten)
{
    m_folder.Write("file", "text");
    platform::CreateOneDirectory(m_folder.Path("closed").c_str());
    ASSERT_EQ(chmod(m_folder.NarrowPath("closed").c_str(), 0555), 0);
    ASSERT_EQ(chmod(m_folder.NarrowPath().c_str(), 0777), 0);
    const bool isRoot = geteuid() == 0;
    // access asks for the real user.
    ASSERT_TRUE(!isRoot || setresuid(65534, 65534, 0) == 0);
    const bool isMoved = Move("file", "closed/file");
    const bool isMovedDeeper = Move("from", "closed/to");
    ASSERT_TRUE(!isRoot || setresuid(0, 0, 0) == 0);
    EXPECT_FALSE(isMoved || isMovedDeeper);
    EXPECT_TRUE(Exists("file") && Exists("from"));
}

}  // namespace
