#include "TuvoMemory/LeakDataFile.h"
#include "TuvoMemory/LeakState.h"
#include "support/RecordingUpdater.h"
#include "support/ReportScope.h"
#include "support/TestInChild.h"

#include <TuvoUtil/LeakChecker.h>
#include <TuvoUtil/Memory.h>

#include <gtest/gtest.h>

namespace {

// A disk that is full when the last bytes are written.
TEST_IN_CHILD(LeakFiles, OnAFullDiskAreNotPretendedToBeWritten)
{
    RecordingUpdater updater;
    ReportScope messages;
    MovraInitMemory();
    VMemorySetMode(4, 0);
    MovraStartMemoryLeakCheck();
    VBuMalloc(10, "part.cpp", 1, 0);
    EXPECT_EQ(leaks::WriteDataFile("/dev/full"), leaks::DataFileResult::Failed);
    EXPECT_EQ(leaks::RecordCount(), 1u);
    updater.TakeLines();
    char full[] = "/dev/full";
    char null[] = "/dev/null";
    MovraPrintMemoryLeak(full, nullptr, nullptr, nullptr);
    std::vector<std::string> lines = updater.TakeLines();
    lines.erase(lines.begin(), lines.begin() + 4);  // the open files
    const std::string failure = "box 16 [MemLeakChecker: Unable to open file %s to write leak report\n]: /dev/full";
    EXPECT_EQ(lines, (std::vector<std::string>{failure, "box 16 [Error]: Total memory leaked     = 10 Bytes\n",
                                               "console 1: Memory in use = 10"}));
    VBuMalloc(11, "part.cpp", 1, 0);
    MovraPrintMemoryLeak(null, full, nullptr, nullptr);
    lines = updater.TakeLines();
    EXPECT_EQ(lines[4], failure);
    EXPECT_EQ(lines.size(), 8u);
    EXPECT_EQ(platform::Access(L"/dev/full", 2), 0);
}

}  // namespace
