// The tracker of open files: its messages, and what it does while memory is exhausted.

#include <TuvoUtil/TrackedFile.h>

#include "Diagnostics/FileTracker.h"
#include "support/AllocationControl.h"
#include "support/RecordingUpdater.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
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
        m_openedBefore = OpenedCount();
        m_updater.TakeLines();
    }
    ~FileTracker() override { StopFileTracker(); }

    std::string Path(const char* name) const { return m_folder.NarrowPath(name); }
    std::FILE* Open(const char* name, const char* mode = "w", const char* file = "Deck.cpp", int line = 7) const
    {
        return TuvoFOpen(Path(name).c_str(), mode, file, line);
    }
    Lines TakeLines() { return m_updater.TakeLines(); }

    // The listing between its first and last line.
    Lines Statistics()
    {
        m_updater.TakeLines();
        PostOpenFileStatistics();
        Lines lines = m_updater.TakeLines();
        EXPECT_EQ(lines.front(), "console 1: \n--------  Begin file open/close stats  -------------");
        EXPECT_EQ(lines.back(), "console 1: --------  End of file open/close stats -------------\n");
        return Lines(lines.begin() + 1, lines.end() - 1);
    }
    int OpenedCount()
    {
        int count = -1;
        EXPECT_EQ(std::sscanf(Statistics()[0].c_str(), "console 1:       %d files opened so far", &count), 1);
        return count;
    }
    std::string OpenedLine(int sinceStart) const
    {
        return "console 1:       " + std::to_string(m_openedBefore + sinceStart) + " files opened so far";
    }

    const Lines m_noOpenFiles = {"console 1:       No open files found. Well done"};
    TemporaryFolder m_folder;
    RecordingUpdater m_updater;
    int m_openedBefore = 0;
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

TEST_F(FileTracker, TellsOfItsStartAndStop)
{
    StopFileTracker();
    EXPECT_EQ(TakeLines(), Lines{"console 1: FileMngr: File open/close tracker is stopped"});
    EXPECT_EQ(TuvoFClose(Open("file"), "Deck.cpp", 1), 0);
    EXPECT_EQ(TakeLines(), Lines()) << "off, it says nothing";
    StartFileTracker();
    EXPECT_EQ(TakeLines(), Lines{"console 1: FileMngr: File open/close tracker is started"});
    EXPECT_EQ(OpenedCount(), m_openedBefore);
}

TEST_F(FileTracker, TellsOfAPathOpenedTwice)
{
    std::FILE* const first = Open("file", "w", nullptr, 4);
    std::FILE* const second = Open("file", "r", nullptr, 5);
    std::FILE* const third = Open("file", "r", "", 6);
    Lines expected = OpenTwiceLines(Path("file"), "Unknown at line 5", "Unknown at line -1");
    const Lines more = OpenTwiceLines(Path("file"), " at line 6", "Unknown at line -1");
    expected.insert(expected.end(), more.begin(), more.end());
    EXPECT_EQ(TakeLines(), expected);

    // Another path to the same file, and one that differs by case, are other paths.
    for (const char* const name : {"./file", "FILE"})
        TuvoFClose(Open(name), "Deck.cpp", 1);
    EXPECT_EQ(TakeLines(), Lines());

    EXPECT_EQ(TuvoFClose(first, "Deck.cpp", 1), 0);
    EXPECT_EQ(TuvoFClose(third, "Deck.cpp", 1), 0);
    EXPECT_EQ(Statistics(), (Lines{OpenedLine(5), "console 1:       1 files shown below are still in open state:",
                                   "console 1:             " + Path("file") + " called from file Unknown at line -1"}));
    TuvoFClose(second, "Deck.cpp", 1);
}

TEST_F(FileTracker, TellsOfAPathOpenedTwiceEvenWhenItCouldNotBeOpened)
{
    std::FILE* const first = Open("file", "w", "Deck.cpp", 7);
    errno = 0;
    EXPECT_EQ(Open("file", "no mode", "Mesh.cpp", 8), nullptr);
    EXPECT_EQ(errno, EINVAL) << "the messages leave errno alone";
    EXPECT_EQ(TakeLines(), OpenTwiceLines(Path("file"), "Mesh.cpp at line 8", "Deck.cpp at line 7"));
    EXPECT_EQ(Open("none", "r"), nullptr);
    EXPECT_EQ(TuvoFOpen(nullptr, "r", "Deck.cpp", 1), nullptr);
    EXPECT_EQ(TuvoFClose(first, "Deck.cpp", 1), 0);
    EXPECT_EQ(TakeLines(), Lines());
    EXPECT_EQ(Statistics(), (Lines{OpenedLine(1), m_noOpenFiles[0]})) << "what was not opened does not count";
}

TEST_F(FileTracker, TellsOfTheCloseOfAnUnknownStream)
{
    std::FILE* const file = platform::OpenFile(m_folder.Path("file").c_str(), L"wb");
    std::fputs("text", file);
    EXPECT_EQ(TuvoFClose(file, "Deck.cpp", 12), 0);
    EXPECT_EQ(ReadBinaryFile(m_folder.Path("file")), "text") << "it is closed all the same";
    EXPECT_EQ(TuvoFClose(nullptr, nullptr, 13), EOF);
    EXPECT_EQ(TakeLines(), (Lines{UnopenedLine("line 12 in file Deck.cpp"), UnopenedLine("line 13 in file Unknown")}));
}

TEST_F(FileTracker, ListsWhatIsOpenInOrderAndForgetsIt)
{
    const char* const names[] = {"c", "a", "d", "b", "e"};
    std::vector<std::FILE*> streams;
    for (const char* const name : names)
        streams.push_back(Open(name, "w", "Deck.cpp", 10 + static_cast<int>(streams.size())));
    for (const std::size_t closed : {2u, 0u})
        EXPECT_EQ(TuvoFClose(streams[closed], "Deck.cpp", 1), 0);
    EXPECT_EQ(Statistics(), (Lines{OpenedLine(5), "console 1:       3 files shown below are still in open state:",
                                   "console 1:             " + Path("a") + " called from file Deck.cpp at line 11",
                                   "console 1:             " + Path("b") + " called from file Deck.cpp at line 13",
                                   "console 1:             " + Path("e") + " called from file Deck.cpp at line 14"}));
    EXPECT_EQ(Statistics(), (Lines{OpenedLine(5), m_noOpenFiles[0]}));
    for (const std::size_t left : {1u, 3u, 4u}) {
        EXPECT_EQ(TuvoFClose(streams[left], "Deck.cpp", 20), 0);
        EXPECT_EQ(TakeLines(), Lines{UnopenedLine("line 20 in file Deck.cpp")});
    }
}

// A stream that is closed behind the tracker's back leaves its entry; the next stream at the same address removes it.
TEST_F(FileTracker, RemovesTheFirstEntryOfAStream)
{
    std::FILE* const lost = Open("lost", "w", "Deck.cpp", 1);
    std::fclose(lost);
    std::FILE* const next = Open("next", "w", "Deck.cpp", 2);
    if (next == lost) {
        EXPECT_EQ(TuvoFClose(next, "Deck.cpp", 3), 0);
        EXPECT_EQ(Statistics()[2], "console 1:             " + Path("next") + " called from file Deck.cpp at line 2");
    } else {
        std::fclose(next);
    }
}

// ---- A host that uses files while it shows messages ----------------------------------------------------------------

class LoggingUpdater : public TuvoEnvUpdater
{
public:
    explicit LoggingUpdater(std::string log) : m_log(std::move(log)), m_before(GetUpdater()) { SetUpdater(this); }
    ~LoggingUpdater() override { SetUpdater(m_before); }
    LoggingUpdater(const LoggingUpdater&) = delete;
    LoggingUpdater& operator=(const LoggingUpdater&) = delete;

    // Also closes the file that the message is about, and leaves a file open at each.
    void WriteConsoleMessage(_TuvoMessageType, const wchar_t*, bool) override
    {
        if (++m_messages > 100 || m_isWriting)
            return;
        m_isWriting = true;
        std::FILE* const log = TuvoFOpen(m_log.c_str(), "a", "Log.cpp", 1);
        std::fputs("message\n", log);
        TuvoFClose(log, "Log.cpp", 2);
        if (victim != nullptr)
            TuvoFClose(std::exchange(victim, nullptr), "Log.cpp", 3);
        opened.push_back(TuvoFOpen((m_log + std::to_string(opened.size())).c_str(), "w", "Log.cpp", 4));
        m_isWriting = false;
    }
    int Messages() const { return m_messages; }

    std::FILE* victim = nullptr;
    std::vector<std::FILE*> opened;

private:
    std::string m_log;
    TuvoEnvUpdater* m_before;
    int m_messages = 0;
    bool m_isWriting = false;
};

TEST_F(FileTracker, BearsAHostThatUsesFilesInsideItsMessages)
{
    std::FILE* const first = Open("file");
    std::FILE* const other = Open("other");
    std::FILE* second = nullptr;
    {
        LoggingUpdater host(Path("log"));
        host.victim = first;
        second = Open("file", "r");
        EXPECT_EQ(host.Messages(), 3);
        host.victim = other;
        PostOpenFileStatistics();
        EXPECT_EQ(host.Messages(), 3 + 3 + 7 + 1) << "what is opened between the lines is not listed";
        for (std::FILE* const stream : host.opened)
            std::fclose(stream);
    }
    std::fclose(second);
    EXPECT_EQ(Statistics()[1], m_noOpenFiles[0]);
}

TEST_F(FileTracker, ClosesNothingThatIsNotItsOwnWhenTheHostThrows)
{
    class ThrowingUpdater : public TuvoEnvUpdater
    {
    public:
        void WriteConsoleMessage(_TuvoMessageType, const wchar_t*, bool) override { throw 5; }
    };
    std::FILE* const first = Open("file");
    ThrowingUpdater host;
    TuvoEnvUpdater::SetUpdater(&host);
    EXPECT_THROW(Open("file", "r"), int);
    TuvoEnvUpdater::SetUpdater(&m_updater);
    EXPECT_EQ(TuvoFClose(first, "Deck.cpp", 1), 0);
    EXPECT_EQ(Statistics(), (Lines{OpenedLine(1), m_noOpenFiles[0]}));
}

// ---- Exhausted memory ----------------------------------------------------------------------------------------------

TEST_F(FileTracker, WithoutMemoryOpensNothingAndTouchesNothing)
{
    TuvoEnvUpdater::SetUpdater(nullptr);
    const std::string path = Path("a file with a name of some length");
    int opened = 0;
    EXPECT_GE(allocation::ForEachFailure([&] {
                  std::fclose(std::fopen(path.c_str(), "w"));
                  std::FILE* const file = std::fopen(path.c_str(), "a");
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
    TuvoEnvUpdater::SetUpdater(&m_updater);
    EXPECT_EQ(Statistics(), (Lines{OpenedLine(opened), m_noOpenFiles[0]}));
}

TEST_F(FileTracker, WithoutMemoryAnswersMinusOne)
{
    const std::string path = Path("a file with a name of some length");
    std::fclose(std::fopen(path.c_str(), "w"));
    EXPECT_GE(allocation::ForEachFailure([&] {
                  const int access = TuvoAccess(path.c_str(), 0, nullptr, 0);
                  EXPECT_EQ(access, allocation::HasFailed() ? -1 : 0);
              }),
              2);
    EXPECT_GE(allocation::ForEachFailure([&] {
                  const int status = TuvoSystem("exit 3 this command is of some length", nullptr, 0);
                  EXPECT_EQ(status, allocation::HasFailed() ? -1 : 3);
              }),
              1);
}

}  // namespace
