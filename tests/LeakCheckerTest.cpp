// The leak checker as a host sees it. Its state is that of the process: each test has one of its own.
#include <TuvoUtil/LeakChecker.h>

#include "platform/Platform.h"
#include "support/RecordingUpdater.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <TuvoUtil/CallStack.h>
#include <TuvoUtil/Memory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

constexpr char Part[] = "source\\part.cpp";

void* Allocate(std::size_t size, const char* file = Part, int line = 1, int kind = 0)
{
    return VBuMalloc(size, file, line, kind);
}

std::string Masked(const std::string& report)
{
    return std::regex_replace(report, std::regex(R"(at \d\d:\d\d on \d\d-\d\d-\d{4}\n)"), "at NOW\n");
}

// The files of a report, in a folder that is the user directory as well.
class Reports
{
public:
    Reports() { VEnvSetUserDirectory(m_folder.Path().c_str()); }

    // Makes the report and gives its total.
    int Make(const char* report = "report.txt", const char* append = nullptr)
    {
        std::string reportFile = m_folder.NarrowPath(report);
        std::string appendFile = append == nullptr ? "" : m_folder.NarrowPath(append);
        std::string dataFile = m_folder.NarrowPath("QD_LeakInfoTmpData.log");
        int total = -1;
        MovraPrintMemoryLeak(reportFile.data(), append == nullptr ? nullptr : appendFile.data(), dataFile.data(),
                             &total);
        return total;
    }
    std::string Read(const char* name = "report.txt") const { return Masked(ReadTextFile(m_folder.Path(name))); }
    const TemporaryFolder& Folder() const { return m_folder; }

    // A message with the folder left out.
    Lines WithoutFolder(Lines lines) const
    {
        const std::string folder = m_folder.NarrowPath();
        for (std::string& line : lines)
            if (const std::size_t at = line.find(folder); at != std::string::npos)
                line.erase(at, folder.size());
        return lines;
    }

private:
    TemporaryFolder m_folder;
};

void StartChecking(int mode)
{
    MovraInitMemory();
    VMemorySetMode(mode, 0);
    MovraStartMemoryLeakCheck();
}

// Two of one origin, one of a factory, one that is freed, after the others: the fast mode takes what gets its address
// for freed as well.
void LeakFourAndFreeOne()
{
    Allocate(10, Part, 7);
    void* const freed = Allocate(1000, Part, 8);
    Allocate(20, "a/longer/path.cpp", 3, 1);
    Allocate(10, Part, 7);
    Allocate(10, nullptr, 1);
    VBuFree(freed, Part, 9);
}

constexpr char LeakLines[] =
    "Reported at NOW\n"
    "10 bytes [1 times] allocated in Unknown at 1 is not freed: Sequence index = 4\n"
    "20 bytes [1 times] allocated through CreateObject in a/longer/path.c at 3 is not freed: Sequence index = 2\n\n"
    "10 bytes [2 times] allocated in part.cpp at 7 is not freed: Sequence index = 0\n"
    "===> Total of 50 bytes leaked\n";

void ExpectReport(int mode, const char* name)
{
    ReportScope messages;
    Reports reports;
    StartChecking(mode);
    LeakFourAndFreeOne();
    EXPECT_EQ(MovraGetMemoryInUse(), mode == 0 ? 1050 : 50);
    EXPECT_EQ(reports.Make("report.txt", "all.txt"), 50);
    EXPECT_EQ(reports.Read(), "----Memory leak information -- " + std::string(name) + LeakLines);
    EXPECT_EQ(reports.Read("all.txt"), reports.Read());
    EXPECT_EQ(MovraIsMemCheckActive(), 1);
    EXPECT_EQ(MovraGetMemoryInUse(), 0);
    Allocate(5);
    EXPECT_EQ(reports.Make("second.txt", "all.txt"), 5);
    EXPECT_NE(reports.Read("second.txt").find("part.cpp at 1 is not freed: Sequence index = 0"), std::string::npos);
    EXPECT_EQ(reports.Read("all.txt"), reports.Read() + reports.Read("second.txt"));
}

TEST_IN_CHILD(LeakChecker, ReportsInFastMode)
{
    ExpectReport(0, "Fast Check ");
}

TEST_IN_CHILD(LeakChecker, ReportsInAccurateMode)
{
    ExpectReport(1, "Accurate Check ");
}

TEST_IN_CHILD(LeakChecker, ReportsInHeaderMode)
{
    ExpectReport(4, "");
}

TEST_IN_CHILD(LeakChecker, TellsTheHostOfItsSteps)
{
    RecordingUpdater updater;
    ReportScope messages;
    Reports reports;
    MovraInitMemory();
    EXPECT_EQ(MovraIsMemCheckActive(), 0);
    MovraPrintMemoryUsage();
    EXPECT_EQ(reports.Make(), 0);
    EXPECT_EQ(updater.TakeLines(), Lines());
    EXPECT_EQ(messages.TakeErrors(), "");

    VMemorySetMode(1, 0);
    MovraStartMemoryLeakCheck();
    EXPECT_EQ(messages.TakePosted(), Lines{"1:MemLeakChecker: Current malloc counter at start = 0"});
    EXPECT_EQ(updater.TakeLines(), Lines{"console 1: FileMngr: File open/close tracker is started"});
    EXPECT_EQ(reports.Make(), 0);
    EXPECT_EQ(messages.TakeErrors(), " Leak counter at the end is 0, num leaks = 0\n");
    const Lines listing = {"console 1: \n--------  Begin file open/close stats  -------------",
                           "console 1:       0 files opened so far", "console 1:       No open files found. Well done",
                           "console 1: --------  End of file open/close stats -------------\n"};
    Lines expected = listing;
    expected.push_back("box 64 [Error]: There are no leaks found! Good job\n");
    EXPECT_EQ(updater.TakeLines(), expected);

    VBuFree(Allocate(2000), Part, 2);
    Allocate(999);
    MovraPrintMemoryUsage();
    expected = listing;
    expected.insert(expected.begin(),
                    "box 0 [Memmory Usage]: Memory in use               : 999\n"
                    "Max memory used          : 2000\nTotal memory allocated  : 2999\n"
                    "Total memory freed       : 2000\nNumber of Blocks          : 1\n");
    EXPECT_EQ(updater.TakeLines(), expected);

    EXPECT_EQ(reports.Make(), 999);
    expected = listing;
    expected.insert(expected.end(),
                    {"box 16 [Error]: Total memory leaked     = 1.00 KB\nDetailed report is written to report.txt\n",
                     "console 1: Memory in use = 999", "console 2: Detailed report is written to <a>report.txt</a>\n"});
    Lines lines = reports.WithoutFolder(updater.TakeLines());
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(messages.TakePosted(),
              (Lines{"1:Leak detector is processing info...", "1:MemLeakChecker: 1 of 1 is processed",
                     "1:Leak detector: Processing done."}));

    MovraStopMemoryLeakCheck();
    EXPECT_EQ(MovraIsMemCheckActive(), 0);
    EXPECT_EQ(updater.TakeLines(), Lines{"console 1: FileMngr: File open/close tracker is stopped"});
    VMemorySetMode(4, 0);
    MovraStartMemoryLeakCheck();
    MovraStopMemoryLeakCheck();
    EXPECT_EQ(MovraIsMemCheckActive(), 1);
    EXPECT_EQ(messages.TakePosted().back(),
              "2:MemLeakChecker: Cannot stop mem-leak check and continue in this mode! Please exit and restart OR "
              "continue checking leak");
}

TEST_IN_CHILD(LeakChecker, SummarisesInUnitsOfAThousand)
{
    const struct
    {
        std::size_t bytes;
        const char* text;
    } rows[] = {{998, "998 Bytes"},   {999, "1.00 KB"},         {999'998, "1000.00 KB"},
                {999'999, "1.00 MB"}, {12'345'678, "12.35 MB"}, {999'999'999, "1.00 GB"}};
    RecordingUpdater updater;
    ReportScope messages;
    Reports reports;
    StartChecking(1);
    for (const auto& row : rows) {
        char place;  // told of, never touched
        VBuAddPointer(&place, row.bytes, Part, 1, 0);
        EXPECT_EQ(reports.Make(), static_cast<int>(row.bytes));
        const Lines lines = updater.TakeLines();
        EXPECT_EQ(lines[lines.size() - 3].find(std::string("box 16 [Error]: Total memory leaked     = ") + row.text),
                  0u)
            << row.text;
    }
}

TEST_IN_CHILD(LeakChecker, KeepsWhatItCannotWrite)
{
    RecordingUpdater updater;
    ReportScope messages;
    Reports reports;
    StartChecking(4);
    Allocate(10);
    const auto expectBox = [&](const char* name) {
        const Lines lines = reports.WithoutFolder(updater.TakeLines());
        EXPECT_EQ(lines.back(),
                  std::string("box 16 [MemLeakChecker: Unable to open file %s to write leak report\n]: ") + name);
    };
    platform::CreateOneDirectory(reports.Folder().Path("folder").c_str());
    for (const char* const name : {"folder", "none/report.txt"}) {
        EXPECT_EQ(reports.Make(name), 0);
        expectBox(name);
        EXPECT_EQ(reports.Make("report.txt", name), 0);
        expectBox(name);
        EXPECT_NE(platform::Access(reports.Folder().Path("report.txt").c_str(), 0), 0);
    }
    MovraPrintMemoryLeak(nullptr, nullptr, nullptr, nullptr);
    expectBox("");
    EXPECT_EQ(reports.Make("report 'x;$(y)' %s.txt"), 10);
}

// ---- Whole runs ----------------------------------------------------------------------------------------------------

constexpr int FirstLine = __LINE__;

// What they do after the call keeps the functions on the stack.
[[gnu::noinline]] void* LoadBolts(int count)
{
    auto* const bolts = static_cast<char*>(VBuCalloc(static_cast<std::size_t>(count), 8, "Bolts.cpp", 5));
    bolts[0] = 1;
    return bolts;
}

[[gnu::noinline]] void* LoadNames()
{
    char* const names = VBuStrDup("M12 M16", "Names.cpp", 6);
    names[0] = 'm';
    return names;
}

constexpr int LastLine = __LINE__;

// A host that leaks three times, frees the rest, and reports to report.txt and stacks.txt in the folder that it is given.
void LoadAll()
{
    LoadBolts(3);
    VBuFree(LoadBolts(4), "Bolts.cpp", 9);
    for (int i = 0; i < 2; ++i)
        LoadNames();
}

void PrintReport(const std::string& folder)
{
    std::string report = folder + "report.txt";
    std::string stacks = folder + "stacks.txt";
    std::string data = folder + "QD_LeakInfoTmpData.log";
    MovraPrintMemoryLeak(report.data(), stacks.data(), data.data(), nullptr);
}

CHILD_SCENARIO(LeakingHost)
{
    const std::string& folder = ChildArguments()[0];
    VEnvSetUserDirectory(platform::Widen(folder).c_str());
    VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
    MovraInitMemory();
    LoadAll();
    PrintReport(folder);
    return 0;
}

CHILD_SCENARIO(LeakingHostInTwoPasses)
{
    const std::string& folder = ChildArguments()[0];
    VEnvSetUserDirectory(platform::Widen(folder).c_str());
    VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
    VMemorySetMode(2, 1);
    MovraStartSecondPass();
    LoadAll();
    PrintReport(folder);
    return 0;
}

ChildResult RunHost(const TemporaryFolder& folder, const char* host, bool isVariableSet)
{
    using Value = std::optional<std::wstring>;
    return RunChild(host, {{L"MOVRA_MEM_DEBUG", isVariableSet ? Value(L"1") : Value()}}, {folder.Path()});
}

constexpr char HostReport[] =
    "Reported at NOW\n"
    "24 bytes [1 times] allocated in Bolts.cpp at 5 is not freed: Sequence index = 0\n"
    "8 bytes [2 times] allocated in Names.cpp at 6 is not freed: Sequence index = 2\n"
    "===> Total of 40 bytes leaked\n";

// Whether the first frame after the one of a record names a function of this file, with a line inside it.
bool NamesFunction(const std::string& stacks, const std::string& origin, const std::string& function)
{
    const std::regex frame(origin + R"( is not freed: Sequence index = \d+\n  called from\n    \S*)" + function +
                           R"( at (\d+) in LeakCheckerTest.cpp\n)");
    std::smatch match;
    if (!std::regex_search(stacks, match, frame))
        return false;
    const int line = std::stoi(match[1]);
    return line > FirstLine && line < LastLine;
}

TEST(LeakCheckerRuns, NameTheFunctionsThatAllocate)
{
    const TemporaryFolder folder;
    EXPECT_EQ(RunHost(folder, "LeakingHost", true).exitCode, 0);
    EXPECT_EQ(Masked(ReadTextFile(folder.Path("report.txt"))),
              std::string("----Memory leak information -- ") + HostReport);
    const std::string stacks = ReadTextFile(folder.Path("stacks.txt"));
    EXPECT_TRUE(NamesFunction(stacks, "Bolts.cpp at 5", "LoadBolts")) << stacks;
    EXPECT_TRUE(NamesFunction(stacks, "Names.cpp at 6", "LoadNames")) << stacks;
}

// The frames of a record, as they stand in the file of call stacks, make a group that suppresses it once.
std::string GroupOf(const std::string& stacks, const std::string& origin)
{
    const std::string start = "  called from\n";
    const std::size_t begin = stacks.find(start, stacks.find(origin)) + start.size();
    std::size_t end = begin;
    while (stacks.compare(end, 4, "    ") == 0)
        end = stacks.find('\n', end) + 1;
    std::string group = "BEGIN " + origin + '\n';
    for (int i = 0; i < 3; ++i)
        group += "TuvoMemory at 0 in TuvoMemory\n";
    return group + stacks.substr(begin, end - begin);
}

TEST(LeakCheckerRuns, SuppressWhatTheFileNames)
{
    const TemporaryFolder folder;
    RunHost(folder, "LeakingHost", true);
    const std::string stacks = ReadTextFile(folder.Path("stacks.txt"));
    folder.Write("QDLeak_SuppressionInfo.dat", GroupOf(stacks, "Bolts.cpp") + GroupOf(stacks, "Names.cpp"));
    RunHost(folder, "LeakingHost", true);
    EXPECT_EQ(Masked(ReadTextFile(folder.Path("report.txt"))),
              "----Memory leak information -- Reported at NOW\n"
              "8 bytes [1 times] allocated in Names.cpp at 6 is not freed: Sequence index = 3\n"
              "===> Total of 8 bytes leaked\n");
}

TEST(LeakCheckerRuns, ReportInASecondPassWhatTheFirstHasFound)
{
    const TemporaryFolder folder;
    const ChildResult first = RunHost(folder, "LeakingHostInTwoPasses", false);
    EXPECT_EQ(first.errors,
              "No data found. Memory mode is set to 2\n"
              "MemLeakChecker: 1st pass: Current malloc counter at start = 0\n"
              " Leak counter at the end is 4, num leaks = 3\n"
              "Num leaks - 3 Started at index -1\n");
    EXPECT_EQ(ReadTextFile(folder.Path("QD_LeakInfoTmpData.log")), "3 0\n0 2 3 ");
    EXPECT_NE(platform::Access(folder.Path("report.txt").c_str(), 0), 0);

    const ChildResult second = RunHost(folder, "LeakingHostInTwoPasses", false);
    EXPECT_EQ(second.errors,
              "==> Intermediate data found. Memory mode is set to 3\n"
              "MemLeakChecker:  Leak counter is reset to 0 from 0\n"
              " Leak counter at the end is 4, num leaks = 3\n");
    EXPECT_EQ(Masked(ReadTextFile(folder.Path("report.txt"))),
              std::string("----Memory leak information -- Check with double pass ") + HostReport);
    const std::string stacks = ReadTextFile(folder.Path("stacks.txt"));
    EXPECT_TRUE(NamesFunction(stacks, "Names.cpp at 6", "LoadNames")) << stacks;
    EXPECT_NE(platform::Access(folder.Path("QD_LeakInfoTmpData.log").c_str(), 0), 0);
}

TEST_IN_CHILD(LeakChecker, LeavesOutWhatHasNoCallStack)
{
    ReportScope messages;
    Reports reports;
    MovraInitMemory();
    VMemorySetMode(1, 1);
    MovraStartMemoryLeakCheck();
    Allocate(10);
    EXPECT_EQ(reports.Make(), 0);
    EXPECT_EQ(reports.Read(),
              "----Memory leak information -- Accurate Check Reported at NOW\n"
              "===> Total of 0 bytes leaked\n");
    VMemorySetMode(1, 0);
    Allocate(10);
    Allocate(11, "RUKentitySelector.cpp");
    Allocate(12, "rukentityselec.cpp");
    EXPECT_EQ(reports.Make(), 22);
}

}  // namespace
