// Tables, messages and files of the leak checker, and exhausted memory.

#include "CallStack/FunctionName.h"
#include "TuvoMemory/LeakDataFile.h"
#include "TuvoMemory/LeakState.h"
#include "TuvoMemory/LeakSuppressions.h"
#include "VFixedHeap/VxHeap.h"
#include "support/AllocationControl.h"
#include "support/GuardedBuffer.h"
#include "support/Plugin.h"
#include "support/RecordingUpdater.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <TuvoUtil/CallStack.h>
#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/LeakChecker.h>
#include <TuvoUtil/Memory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <list>
#include <random>
#include <regex>
#include <string>
#include <vector>

namespace {

using leaks::TheState;
using memory::g_state;
using memory::HeaderOf;
using Lines = std::vector<std::string>;

constexpr char File[] = "a\\part.cpp";

// A checker that runs in a mode until the end of the scope, and what it tells.
class Checking
{
public:
    explicit Checking(int mode)
    {
        leaks::InstallHooks();
        g_state.mode = mode;
        memory::SetActive(true);
    }
    ~Checking()
    {
        MovraStopMemoryLeakCheck();
        leaks::Reset();
    }
    Checking(const Checking&) = delete;
    Checking& operator=(const Checking&) = delete;

    RecordingUpdater updater;
    ReportScope messages;
};

leaks::Tally& Tally()
{
    return TheState().tally;
}

void* Allocate(std::size_t size, const char* file = File, int line = 1)
{
    return VBuMalloc(size, file, line, 0);
}

// ---- Tables --------------------------------------------------------------------------------------------------------

leaks::Record RecordOf(const char* block, std::uint32_t size)
{
    leaks::Record record = {};
    record.block = block;
    record.size = size;
    return record;
}

// The oracle is a list that is searched from its start. Few addresses, so that many records share one.
TEST(LeakTables, RemoveTheOldestRecordOfABlock)
{
    static const char addresses[4096] = {};
    std::mt19937 random(3);
    for (const std::size_t range : {3u, 50u, 4096u}) {
        leaks::RecordTable table;
        std::list<leaks::Record> expected;
        for (std::uint32_t step = 0; step < 20'000; ++step) {
            const char* const block = addresses + random() % range;
            if (random() % 100 < (step / 5000 % 2 == 0 ? 55 : 45)) {
                ASSERT_TRUE(table.Add(RecordOf(block, step)));
                expected.push_back(RecordOf(block, step));
                continue;
            }
            const auto found = std::find_if(expected.begin(), expected.end(),
                                            [=](const leaks::Record& record) { return record.block == block; });
            ASSERT_EQ(table.Remove(block), found == expected.end() ? -1 : std::int64_t{found->size}) << step;
            if (found != expected.end())
                expected.erase(found);
            ASSERT_EQ(table.Count(), expected.size());
        }
        const HeapArray<leaks::Record>& left = table.Compacted();
        EXPECT_TRUE(std::equal(left.begin(), left.end(), expected.begin(), expected.end(),
                               [](const auto& a, const auto& b) { return a.size == b.size; }));
    }
}

// Blocks of the heap and others, with and without call stacks, by the shortcut and by the hooks, each of which takes back
// what the other has made.
TEST(LeakTables, KeepSlotsAndHeadersInStep)
{
    for (const int round : {0, 1, 2, 3}) {
        const bool hasHeap = round % 2 != 0;
        Checking checking(round < 2 ? 2 : 4);
        if (hasHeap)
            InitVxHeap();
        std::mt19937 random(5);
        std::vector<unsigned char*> blocks;
        std::int64_t bytes = 0;
        const auto release = [&] {
            unsigned char* const block = blocks.back();
            blocks.pop_back();
            const auto size = HeaderOf(block)->size;
            ASSERT_EQ(std::count(block, block + size, blocks.size() % 251), size);
            bytes -= size;
            VBuFree(block, File, 2);
        };
        int shortcuts = 0;
        for (int step = 0; step < 9000; ++step) {
            if (step % 3000 == 1000)
                VMemSetGetFuncInfoPtr([](int* depth, char*** frames) {
                    *frames = static_cast<char**>(std::calloc(4, 104));
                    return *depth = 4;
                });
            else if (step % 3000 == 2000)
                VMemSetGetFuncInfoPtr(nullptr);
            shortcuts += (g_state.watch & memory::WatchShortcut) != 0;
            if (blocks.empty() || random() % 100 < 51) {
                const std::size_t size = 1 + random() % 150;
                blocks.push_back(static_cast<unsigned char*>(Allocate(size, random() % 9 == 0 ? nullptr : File)));
                ASSERT_EQ(std::count(blocks.back(), blocks.back() + size, 1), static_cast<std::ptrdiff_t>(size));
                std::memset(blocks.back(), static_cast<int>((blocks.size() - 1) % 251), size);
                bytes += static_cast<std::int64_t>(size);
            } else {
                release();
            }
            ASSERT_EQ(Tally().slots.Count(), blocks.size());
            ASSERT_EQ(Tally().bytesInUse, bytes);
        }
        EXPECT_GT(shortcuts, 500);
        for (void* const block : blocks)
            ASSERT_EQ(Tally().slots[static_cast<std::size_t>(HeaderOf(block)->index)].block, block);
        while (!blocks.empty())
            release();
        EXPECT_EQ(Tally().bytesInUse, 0);
        EXPECT_EQ(vxheap::UsedBlocks(), 0u);
        vxheap::Reset();
    }
}

TEST(LeakTables, KeepSourceNamesOnce)
{
    leaks::SourceNames names;
    char file[] = "a\\b/c.cpp";
    const char* const first = names.Find(file);
    EXPECT_STREQ(first, "b/c.cpp");
    EXPECT_EQ(names.Find(File), names.Find("b\\part.cpp"));
    std::strcpy(file, "d.cpp");  // another text at the same address
    EXPECT_STREQ(names.Find(file), "d.cpp");
    EXPECT_STREQ(names.Find("123456789012345678901234567890123456789012345678901234567890"), "123456789012345");
    EXPECT_STREQ(names.Find("ends\\"), "");
    const GuardedBuffer atPageEnd("a\\at the end.cpp");
    for (int i = 0; i < 2; ++i)
        EXPECT_STREQ(names.Find(atPageEnd.Data()), "at the end.cpp");
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(names.Find(std::to_string(i).c_str()), std::to_string(i));
    EXPECT_STREQ(first, "b/c.cpp");
}

// A block that moves unseen shares its old address with the next one: both records go with the first release.
TEST(LeakTables, ForgetInFastModeAllThatLivedAtAnAddress)
{
    Checking checking(0);
    static char place[8];
    for (int i = 0; i < 3; ++i)
        VBuAddPointer(place + i % 2, 10, File, i, 0);
    VBuDeletePointer(place, File, 1);
    EXPECT_EQ(leaks::RecordCount(), 3u);
    leaks::Reconcile();
    EXPECT_EQ(leaks::RecordCount(), 1u);
    EXPECT_EQ(MovraGetMemoryInUse(), 10);
    Tally().reconciliationThreshold = 1;
    VBuDeletePointer(place + 1, File, 1);
    VBuAddPointer(place, 5, File, 1, 0);
    EXPECT_EQ(leaks::RecordCount(), 1u);
    EXPECT_EQ(Tally().reconciliationThreshold, 1 + leaks::ReconciliationStep);
}

// ---- Messages ------------------------------------------------------------------------------------------------------

TEST(LeakMessages, TellOfGrowthInSteps)
{
    Checking checking(1);
    static char place;
    for (int megabytes = 1; megabytes <= 1200; ++megabytes)
        VBuAddPointer(&place, 1'000'000, File, 1, 0);
    Lines expected;
    for (const int megabytes : {6, 12, 18, 24, 35, 46, 57, 68, 79, 90, 121})
        expected.push_back("1:MemLeakChecker:   Allocated memory in use = " + std::to_string(megabytes) + " MB\n");
    Lines posted = checking.messages.TakePosted();
    EXPECT_EQ(posted.back(), "1:MemLeakChecker:   Allocated memory in use = 1 GB\n");
    posted.resize(expected.size());
    EXPECT_EQ(posted, expected);
    for (int i = 0; i < 1200; ++i)
        VBuDeletePointer(&place, File, 1);
    EXPECT_EQ(checking.messages.TakePosted(), Lines());  // of shrinking the next allocation tells
    VBuAddPointer(&place, 2'000'000, File, 1, 0);
    VBuAddPointer(&place, 1, File, 1, 0);
    EXPECT_EQ(checking.messages.TakePosted(), Lines{"1:MemLeakChecker:   Allocated memory in use = 2 MB\n"});
}

// Blocks that take the shortcut are told of as well.
TEST(LeakMessages, TellOfGrowthByBlocksWithHeaders)
{
    Checking checking(4);
    std::vector<void*> blocks = {Allocate(1)};
    for (int megabytes = 1; megabytes <= 7; ++megabytes) {
        EXPECT_NE(g_state.watch & memory::WatchShortcut, 0u);
        blocks.push_back(Allocate(1'000'000));
    }
    EXPECT_EQ(checking.messages.TakePosted(), Lines{"1:MemLeakChecker:   Allocated memory in use = 6 MB\n"});
    for (void* const block : blocks)
        VBuFree(block, File, 1);
}

TEST(LeakMessages, TellOfWatchedAllocations)
{
    Checking checking(4);
    const auto text = [](int line, int sequence) {
        return "2:MemLeakChecker:    Memory being allocated from the following will not be freed\n\n    Called from "
               "file a\\part.cpp at line no. " +
               std::to_string(line) + ", sequence ind = " + std::to_string(sequence) +
               "\n\n Please call 'Break All' in VC++ and debug line by line to check leak";
    };
    std::vector<void*> blocks = {Allocate(1)};
    leaks::WatchSequence(2);
    leaks::WatchLine("\\part.cpp", 9);
    for (const int line : {8, 7, 9})
        blocks.push_back(Allocate(1, File, line));
    blocks.push_back(Allocate(1, "part.cpp", 9));
    EXPECT_EQ(checking.messages.TakePosted(), (Lines{text(7, 2), text(9, 3)}));
    for (void* const block : blocks)
        VBuFree(block, File, 1);
}

TEST(LeakMessages, TellOfBlocksThatAreNotTheCheckers)
{
    Checking checking(4);
    void* const block = Allocate(8);
    struct
    {
        memory::BlockHeader header;
        char content[8];
    } foreign = {{12345, 0, 8, 0, -1}, "content"};
    VBuFree(foreign.content, nullptr, 4);
    EXPECT_EQ(
        checking.updater.TakeLines(),
        Lines{"console 1: MemLeakChecker: Invalid ptr in VxFree!! This memory might have been freed already or is "
              "not allocated using VxMalloc! Called from file Unknown at line 4"});
    foreign.header.index = 5;
    VMemLeakChkSetFile("default.cpp");
    VBuFree(foreign.content, nullptr, 5);
    EXPECT_EQ(checking.messages.TakePosted(),
              Lines{"2:MemLeakChecker: Freed memory is being freed again! File default.cpp at line 5"});
    EXPECT_EQ(foreign.header.tag, 12345);
    EXPECT_STREQ(foreign.content, "content");
    VBuDeletePointer(block, File, 6);
    VBuDeletePointer(block, File, 7);  // known to be released: ignored
    VBuFree(block, File, 8);
    EXPECT_EQ(HeaderOf(block)->size, memory::ReleasedMark);
    EXPECT_EQ(checking.messages.TakePosted(), Lines());
    VxFree(HeaderOf(block));
}

// What a host does while a message is shown must find the checker sound.
TEST(LeakMessages, MayEndTheCheckThatTheyTellOf)
{
    for (const int otherMode : {0, 1, 2, 4}) {
        Checking checking(4);
        static int mode;
        mode = otherMode;
        leaks::WatchSequence(1);
        void* const first = Allocate(10);
        BuSetOutputHandler([](int, const wchar_t*) {
            VBuFree(Allocate(30), File, 2);
            leaks::ClearTally();
            g_state.mode = mode;
        });
        void* const second = Allocate(20);
        BuSetOutputHandler(nullptr);
        std::memset(second, 7, 20);
        EXPECT_EQ(HeaderOf(first)->index, memory::NoIndex);
        VBuFree(first, File, 3);
        VBuFree(second, File, 3);
        EXPECT_EQ(leaks::RecordCount(), 0u);
    }
}

TEST(LeakModes, RecordOnlyWhatTheyShould)
{
    Checking checking(1);
    g_state.headerSuppression = 1;
    void* const counted = Allocate(10);
    EXPECT_EQ(Tally().countedOnly, 1);
    g_state.headerSuppression = 2;
    void* const recorded = Allocate(10);
    g_state.mode = 4;
    void* const bare = Allocate(10);
    EXPECT_EQ(Tally().records.Count(), 1u);
    EXPECT_EQ(Tally().slots.Count(), 0u);
    EXPECT_EQ(Tally().counter, 2u);
    g_state.headerSuppression = -1;
    g_state.mode = 3;  // without a list
    void* const unlisted = Allocate(10);
    Tally().expected.indices = leaks::ParseDataFile("3 0 1 4 5").indices;  // one has passed already
    void* const listed[] = {Allocate(1), Allocate(2), Allocate(3)};
    EXPECT_EQ(Tally().records.Count(), 3u);
    VMemorySetMode(1, 0);
    EXPECT_EQ(Tally().records.Count(), 0u);
    for (void* const block : {counted, recorded, bare, unlisted, listed[0], listed[1], listed[2]})
        VBuFree(block, File, 1);
}

// ---- Files ---------------------------------------------------------------------------------------------------------

TEST(LeakDataFile, IsReadAsFarAsItGoes)
{
    const std::string whole = "3 17\n17 23 40 ";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const leaks::DataFileContent content = leaks::ParseDataFile(whole.substr(0, length).c_str());
        EXPECT_EQ(content.indices.Size(), length < 6 ? 0u : length < 9 ? 1u : length < 12 ? 2u : 3u) << length;
        EXPECT_EQ(content.startCounter, length < 3 ? 0u : length == 3 ? 1u : 17u) << length;
    }
    const struct
    {
        const char* text;
        std::size_t count;
    } rows[] = {{"1000000 0\n1 2 3", 3}, {"2 0 1 2 3", 2}, {"-5 0 1 2", 0},
                {"3 0 1 x 3", 1},        {"x", 0},         {"99999999999999999999 1 2", 1}};
    for (const auto& row : rows)
        EXPECT_EQ(leaks::ParseDataFile(row.text).indices.Size(), row.count) << row.text;
}

TEST(LeakDataFile, LeavesOutWhatCameBeforeTheCheck)
{
    Checking checking(2);
    const TemporaryFolder folder;
    std::vector<void*> blocks = {Allocate(1), Allocate(2)};
    MovraStartMemoryLeakCheck();
    blocks.push_back(Allocate(3));
    checking.messages.TakeErrors();
    checking.updater.TakeLines();
    EXPECT_EQ(leaks::WriteDataFile(folder.NarrowPath("none/data").c_str()), leaks::DataFileResult::Failed);
    EXPECT_EQ(leaks::WriteDataFile(folder.NarrowPath("data").c_str()), leaks::DataFileResult::Written);
    EXPECT_EQ(leaks::WriteDataFile(folder.NarrowPath("data").c_str()), leaks::DataFileResult::NoLeaks);
    EXPECT_EQ(ReadTextFile(folder.Path("data")), "2 2\n1 2 ");
    EXPECT_EQ(checking.messages.TakeErrors(), "Num leaks - 2 Started at index 1\n");
    EXPECT_EQ(checking.updater.TakeLines(),
              (Lines{"box 16 [Error]: Unable to open file to write temporary leak data\n",
                     "box 16 [Error]: MemLeakChecker: Information of 2 leaks are recorded. Please run exactly\n the "
                     "same path again to get leak report"}));
    for (void* const block : blocks) {
        EXPECT_EQ(HeaderOf(block)->index, memory::NoIndex);
        VBuFree(block, File, 1);
    }
}

TEST(LeakDataFile, StartsTheSecondPass)
{
    Checking checking(1);
    const TemporaryFolder folder;
    VEnvSetUserDirectory(folder.Path().c_str());
    std::vector<void*> blocks = {Allocate(1)};
    for (const bool isThere : {true, false}) {
        if (isThere)
            folder.Write("QD_LeakInfoTmpData.log", "2 17\n18 20 ");
        EXPECT_EQ(MovraStartSecondPass(), isThere ? 0 : 1);
        EXPECT_EQ(VMemoryGetMode(), isThere ? 3 : 2);
        EXPECT_EQ(checking.messages.TakeErrors(),
                  isThere ? "==> Intermediate data found. Memory mode is set to 3\n"
                            "MemLeakChecker:  Leak counter is reset to 17 from 1\n"
                          : "No data found. Memory mode is set to 2\n"
                            "MemLeakChecker: 1st pass: Current malloc counter at start = 22\n");
        if (isThere)
            for (int i = 0; i < 5; ++i)
                blocks.push_back(Allocate(2));
    }
    ASSERT_EQ(Tally().records.Count(), 2u);
    EXPECT_EQ(Tally().records.Compacted()[0].sequence, 18);
    EXPECT_EQ(Tally().records.Compacted()[1].sequence, 20);
    for (void* const block : blocks)
        VBuFree(block, File, 1);
    VEnvSetUserDirectory(L"");
}

// A stack of frames "NAME LINE FILE".
class Stack
{
public:
    explicit Stack(std::vector<leaks::CallFrame> frames) : m_frames(std::move(frames)) {}
    leaks::CallStack Get()
    {
        return {static_cast<std::uint16_t>(m_frames.size()), reinterpret_cast<char**>(m_frames.data())};
    }

private:
    std::vector<leaks::CallFrame> m_frames;
};

TEST(LeakSuppressions, AgreeFrameByFrame)
{
    const std::string longName(40, 'n');
    Stack two({{"Load", 12, "Model.cpp"}, {"main", -1, ""}});
    Stack cut({{"", 3, "x.cpp"}});
    std::copy_n(longName.data(), 40, const_cast<char*>(cut.Get()[0].function));
    const struct
    {
        std::string text;
        std::size_t groups;
        bool takesTwo, takesCut;
    } rows[] = {
        {"", 0, false, false},
        {"BEGIN", 0, false, false},
        {"BEGIN\nBEGIN 2\n\n  \n", 0, false, false},
        {"BEGIN\nLoad at 12 in Model.cpp\nmain - NO_INFO -", 1, true, false},
        {"Early at 1 in no.cpp\nBEGIN\r\n\t Load  at\t12 in Model.cpp more\r\nmain at -1\r\n", 1, true, false},
        {"BEGIN\nLoad at 12 in Model.cpp\n", 1, false, false},
        {"BEGIN\nLoad at 13 in Model.cpp\nmain at -1\n", 1, false, false},
        {"BEGIN\nload at 12 in Model.cpp\nmain at -1\n", 1, false, false},
        {"BEGIN\nLoad at 12 in Mode.cpp\nmain at -1\n", 1, false, false},
        {"BEGIN\n" + longName + " at 3 in x.cpp\n", 1, false, true},
        {"BEGIN\n" + longName.substr(0, 31) + " at 3 in x.cpp\n", 1, false, false},
        {"BEGIN\n" + std::string(200, ' ') + "Load at 12 in Model.cpp\nmain at -1", 1, true, false},
        {"BEGIN\nLoad at 12 in Model.cpp" + std::string(200 - 23, ' ') + "BEGIN\nmain at -1", 2, false, false},
        {"BEGIN\nmain at -1\n" + std::string(10'000, 'x'), 1, false, false},
    };
    for (const auto& row : rows) {
        leaks::Suppressions suppressions(row.text);
        EXPECT_EQ(suppressions.GroupCount(), row.groups) << row.text;
        EXPECT_EQ(suppressions.Take(two.Get()), row.takesTwo) << row.text;
        EXPECT_EQ(suppressions.Take(cut.Get()), row.takesCut) << row.text;
        EXPECT_FALSE(suppressions.Take(two.Get()) || suppressions.Take(cut.Get())) << "used up: " << row.text;
    }
}

// ---- Call stacks ---------------------------------------------------------------------------------------------------

TEST(CallStackProvider, NamesFunctionsWithoutBlanks)
{
    const struct
    {
        const char* demangled;
        const char* plain;
    } rows[] = {
        {"main", "main"},
        {"Load(int, char const*)", "Load"},
        {"(anonymous namespace)::Load(int)", "{anonymous}::Load"},
        {"void Fill<unsigned long, int>(unsigned long*)", "Fill<unsigned_long,int>"},
        {"std::vector<int, std::allocator<int> >::push_back(int const&)",
         "std::vector<int,std::allocator<int>>::push_back"},
        {"operator new(unsigned long)", "operator_new"},
        {"Part::operator()(int) const", "Part::operator()"},
        {"bool operator< <int>(A<int> const&)", "operator<<int>"},
        {"Part::operator->() const", "Part::operator->"},
        {"main::{lambda(int, long)#1}::operator()(int) const", "main::{lambda(int,long)#1}::operator()"},
        {"Cut<(", "Cut<("},
        {"", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PlainFunctionName(row.demangled), row.plain);
    EXPECT_EQ(PlainFileName("/home/a b/c\\my part.cpp"), "my_part.cpp");
}

using PluginFunction = void* (*)(void* (*)(std::size_t, const char*, int, int));

void* CallPlugin(const char* name, void* (*allocate)(std::size_t, const char*, int, int))
{
    const Plugin plugin((std::string(name) + "LeakPlugin").c_str());
    const auto leak = reinterpret_cast<PluginFunction>(plugin.Find(("LeakIn" + std::string(name) + "Plugin").c_str()));
    return leak == nullptr ? nullptr : leak(allocate);
}

std::string g_stack;

void* WriteStack(std::size_t, const char*, int, int)
{
    g_stack.clear();
    tuvo::utl::GetCallStack(g_stack, 0);
    return g_stack.data();
}

TEST_IN_CHILD(CallStackText, KnowsPluginsThatComeLater)
{
    WriteStack(0, nullptr, 0, 0);  // reads what is loaded so far
    for (const std::string name : {"First", "Second"}) {
        ASSERT_NE(CallPlugin(name.c_str(), WriteStack), nullptr);
        const std::regex frame("\tat LeakIn" + name + R"(Plugin in .*LeakPlugin\.cpp: line: \d+: address: 0x\d+\n)");
        EXPECT_TRUE(std::regex_search(g_stack, frame)) << g_stack;
    }
}

// The second plug-in comes to lie where the first one was, as far as the system does that.
TEST_IN_CHILD(CallStackProvider, KnowsPluginsThatAreUnloaded)
{
    const TemporaryFolder folder;
    Checking checking(4);
    g_state.second = 1;
    VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
    WriteStack(0, nullptr, 0, 0);  // reads what is loaded so far
    for (const char* const name : {"First", "Second", "First"})
        ASSERT_NE(CallPlugin(name, VBuMalloc), nullptr);
    std::string report = folder.NarrowPath("report");
    std::string stacks = folder.NarrowPath("stacks");
    MovraPrintMemoryLeak(report.data(), stacks.data(), nullptr, nullptr);
    const std::string written = ReadTextFile(folder.Path("stacks"));
    const std::string place = R"( times\] allocated in plugin.cpp at (\d+) is not freed: Sequence index = \d\n)"
                              R"(  called from\n    LeakIn)";
    for (const std::string& row : {R"(50 bytes \[2)" + place + "First", R"(60 bytes \[1)" + place + "Second"})
        EXPECT_TRUE(std::regex_search(written, std::regex(row + R"(Plugin at \1 in LeakPlugin.cpp\n)"))) << written;
}

// ---- Exhausted memory ----------------------------------------------------------------------------------------------

// Whatever is missing, blocks are usable, and a report tells of no block that was freed.
TEST(LeakCheckerMemory, GivesOutWhatItCannotRecord)
{
    const TemporaryFolder folder;
    std::string report = folder.NarrowPath("report");
    for (const int mode : {0, 1, 2, 4}) {
        Checking checking(mode);
        BuSetOutputHandler([](int, const wchar_t*) {});  // what writes messages down needs memory too
        TuvoEnvUpdater::SetUpdater(nullptr);
        g_state.second = 1;
        VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
        const int failures = allocation::ForEachFailure([&] {
            void* const kept = Allocate(40);
            void* const freed = Allocate(50);
            VBuFree(freed, File, 2);
            int total = 0;
            MovraPrintMemoryLeak(report.data(), nullptr, report.data(), &total);
            EXPECT_TRUE(total == 0 || total == 40) << mode << ' ' << total;
            VBuFree(kept, File, 3);
            leaks::ClearTally();
            TheState().names.Clear();
        });
        EXPECT_GE(failures, 4) << mode;
    }
}

}  // namespace
