// The tracker of open files: its messages, hosts that use files while they show them, and exhausted memory.

#include <TuvoUtil/TrackedFile.h>

#include "Diagnostics/FileTracker.h"
#include "support/AllocationControl.h"
#include "support/RecordingUpdater.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class FileTracker : public testing::Test
{
protected:
    FileTracker()
    {
        StartFileTracker();
        PostOpenFileStatistics();
        m_openedBefore = std::stoi(m_updater.TakeLines()[2].substr(std::size("console 1:")));
    }
    ~FileTracker() override { StopFileTracker(); }

    std::string Path(const char* name) const { return m_folder.NarrowPath(name); }
    std::FILE* Open(const char* name, const char* mode = "w", const char* file = "Deck.cpp", int line = 7) const
    {
        return TuvoFOpen(Path(name).c_str(), mode, file, line);
    }

    // Expects a listing of so many files opened since the start, and of these as still open.
    void ExpectStatistics(int opened, const Lines& openFiles)
    {
        Lines expected = {"console 1: \n--------  Begin file open/close stats  -------------",
                          "console 1:       " + std::to_string(m_openedBefore + opened) + " files opened so far",
                          openFiles.empty() ? "console 1:       No open files found. Well done"
                                            : "console 1:       " + std::to_string(openFiles.size()) +
                                                  " files shown below are still in open state:"};
        for (const std::string& file : openFiles)
            expected.push_back("console 1:             " + m_folder.NarrowPath() + file);
        expected.push_back("console 1: --------  End of file open/close stats -------------\n");
        m_updater.TakeLines();
        PostOpenFileStatistics();
        EXPECT_EQ(m_updater.TakeLines(), expected);
    }

    TemporaryFolder m_folder;
    RecordingUpdater m_updater;
    int m_openedBefore = -1;
};

Lines OpenTwiceLines(const std::string& path, const std::string& now, const std::string& earlier)
{
    return {"console 0: FileMngr: This file " + path +
                " is already opened! (It might not have been closed with fclose or is really opened for another "
                "cause). Please check",
            "console 0:           Current loading is done from File " + now,
            "console 0:           The earlier loading was done from File " + earlier};
}

std::string UnopenedLine(const std::string& caller)
{
    return "console 0: FileMngr: An unopened file OR file not opened with fopen is closed! called at " + caller;
}

TEST_F(FileTracker, SaysNothingWhenItIsOff)
{
    StopFileTracker();
    EXPECT_EQ(m_updater.TakeLines(), Lines{"console 1: FileMngr: File open/close tracker is stopped"});
    std::FILE* const earlier = Open("file");
    TuvoFClose(Open("file"), "Deck.cpp", 1);
    EXPECT_EQ(m_updater.TakeLines(), Lines());
    StartFileTracker();
    EXPECT_EQ(m_updater.TakeLines(), Lines{"console 1: FileMngr: File open/close tracker is started"});
    std::fputs("text", earlier);
    EXPECT_EQ(TuvoFClose(earlier, "Deck.cpp", 12), 0) << "an unknown stream is closed all the same";
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("file")), "text");
    EXPECT_EQ(TuvoFClose(nullptr, nullptr, 13), EOF);
    EXPECT_EQ(m_updater.TakeLines(),
              (Lines{UnopenedLine("line 12 in file Deck.cpp"), UnopenedLine("line 13 in file Unknown")}));
    ExpectStatistics(0, {});
}

TEST_F(FileTracker, TellsOfAPathOpenedTwice)
{
    std::FILE* const first = Open("file", "w", nullptr, 4);
    std::FILE* const second = Open("file", "r", nullptr, 5);
    EXPECT_EQ(m_updater.TakeLines(), OpenTwiceLines(Path("file"), "Unknown at line 5", "Unknown at line -1"));
    errno = 0;
    EXPECT_EQ(Open("file", "no mode", "", 6), nullptr);
    EXPECT_EQ(errno, EINVAL) << "the messages leave errno alone";
    EXPECT_EQ(m_updater.TakeLines(), OpenTwiceLines(Path("file"), " at line 6", "Unknown at line -1"));
    EXPECT_EQ(Open("none", "r"), nullptr);
    TuvoFClose(Open("./file", "r"), "Deck.cpp", 1);  // paths are compared as they are given
    TuvoFClose(first, "Deck.cpp", 1);
    EXPECT_EQ(m_updater.TakeLines(), Lines());
    ExpectStatistics(3, {"file called from file Unknown at line -1"});
    TuvoFClose(second, "Deck.cpp", 1);
}

TEST_F(FileTracker, ListsWhatIsOpenInOrderAndForgetsIt)
{
    std::vector<std::FILE*> streams;
    for (const char* const name : {"c", "a", "d", "b", "e"})
        streams.push_back(Open(name, "w", "Deck.cpp", 10 + static_cast<int>(streams.size())));
    for (const std::size_t closed : {2u, 0u})
        EXPECT_EQ(TuvoFClose(streams[closed], "Deck.cpp", 1), 0);
    ExpectStatistics(5, {"a called from file Deck.cpp at line 11", "b called from file Deck.cpp at line 13",
                         "e called from file Deck.cpp at line 14"});
    ExpectStatistics(5, {});
    for (const std::size_t left : {1u, 3u, 4u}) {
        EXPECT_EQ(TuvoFClose(streams[left], "Deck.cpp", 20), 0);
        EXPECT_EQ(m_updater.TakeLines(), Lines{UnopenedLine("line 20 in file Deck.cpp")});
    }
}

// ---- Hosts ---------------------------------------------------------------------------------------------------------

// Closes a file and opens another one, which stays open, at each message that is not about these two.
class BusyHost : public TuvoEnvUpdater
{
public:
    explicit BusyHost(std::string path) : m_path(std::move(path)), m_before(GetUpdater()) { SetUpdater(this); }
    ~BusyHost() override { SetUpdater(m_before); }
    BusyHost(const BusyHost&) = delete;
    BusyHost& operator=(const BusyHost&) = delete;

    void WriteConsoleMessage(_TuvoMessageType, const wchar_t*, bool) override
    {
        if (m_isBusy || ++messages > 100)
            return;
        m_isBusy = true;
        TuvoFClose(std::exchange(victim, nullptr), "Log.cpp", 3);
        opened.push_back(TuvoFOpen((m_path + std::to_string(messages)).c_str(), "w", "Log.cpp", 4));
        m_isBusy = false;
    }

    std::FILE* victim = nullptr;
    std::vector<std::FILE*> opened;
    int messages = 0;

private:
    std::string m_path;
    TuvoEnvUpdater* m_before;
    bool m_isBusy = false;
};

TEST_F(FileTracker, BearsAHostThatUsesFilesInsideItsMessages)
{
    BusyHost host(Path("log"));
    host.victim = Open("file");
    host.opened.push_back(Open("file", "r"));
    EXPECT_EQ(host.messages, 3);
    host.victim = Open("other");
    PostOpenFileStatistics();
    const int listed = 4 + 3;  // what was open, and what the host opened before the first of them was listed
    EXPECT_EQ(host.messages, 3 + 3 + listed + 1);
    for (std::FILE* const stream : host.opened)
        std::fclose(stream);
}

TEST_F(FileTracker, ClosesTheFileWhenTheHostThrows)
{
    class ThrowingHost : public TuvoEnvUpdater
    {
        void WriteConsoleMessage(_TuvoMessageType, const wchar_t*, bool) override { throw 5; }
    };
    std::FILE* const first = Open("file");
    ThrowingHost host;
    TuvoEnvUpdater::SetUpdater(&host);
    EXPECT_THROW(Open("file", "r"), int);
    TuvoEnvUpdater::SetUpdater(&m_updater);
    TuvoFClose(first, "Deck.cpp", 1);
    ExpectStatistics(1, {});
}

// ---- Exhausted memory ----------------------------------------------------------------------------------------------

TEST_F(FileTracker, WithoutMemoryOpensNothingAndTouchesNothing)
{
    TuvoEnvUpdater::SetUpdater(nullptr);
    const std::string path = Path("a file with a name of some length");
    std::fclose(std::fopen(path.c_str(), "w"));
    int opened = 0;
    EXPECT_GE(allocation::ForEachFailure([&] {
                  std::FILE* const file = std::fopen(path.c_str(), "w");
                  std::fputs("text", file);
                  std::fclose(file);
                  std::FILE* const stream = TuvoFOpen(path.c_str(), "w", "Deck.cpp", 1);
                  std::FILE* const check = std::fopen(path.c_str(), "r");
                  EXPECT_EQ(std::fgetc(check), stream == nullptr ? 't' : EOF);
                  std::fclose(check);
                  EXPECT_EQ(TuvoFClose(stream, "Deck.cpp", 2), stream == nullptr ? EOF : 0);
                  opened += stream != nullptr;
              }),
              5);
    EXPECT_GE(allocation::ForEachFailure([&] {
                  const int access = TuvoAccess(path.c_str(), 0, nullptr, 0);
                  EXPECT_EQ(access, allocation::HasFailed() ? -1 : 0);
                  const int status = TuvoSystem("exit 3", nullptr, 0);
                  EXPECT_TRUE(status == 3 || allocation::HasFailed());
              }),
              3);
    TuvoEnvUpdater::SetUpdater(&m_updater);
    ExpectStatistics(opened, {});
}

}  // namespace
