// Tracked allocation with a checker that lays headers and writes down what it is told, and with exhausted memory.

#include "TuvoMemory/ArrayGrowth.h"
#include "TuvoMemory/MemoryState.h"
#include "VFixedHeap/VxHeap.h"
#include "support/AllocationControl.h"
#include "support/RecordingUpdater.h"
#include "support/ReportScope.h"

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Memory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using memory::g_state;
using memory::HeaderState;
using Lines = std::vector<std::string>;

constexpr char File[] = "part.cpp";

// Lays headers as the leak checker does, and tells of each call as "allocate SIZE FILE:LINE kind KIND" and
// "release FILE:LINE header". The state of tracked allocation is as before when it ends.
class Checker
{
public:
    explicit Checker(int mode = 2) : m_before(g_state)
    {
        g_current = this;
        memory::SetActive(true);
        g_state.mode = mode;
        g_state.allocationHook = OnAllocate;
        g_state.releaseHook = OnRelease;
        g_state.errorReporter = [](const char* message, int fatal) {
            g_current->reports.push_back(message + std::string(fatal != 0 ? " (fatal)" : ""));
        };
    }
    ~Checker() { g_state = m_before; }
    Checker(const Checker&) = delete;
    Checker& operator=(const Checker&) = delete;

    Lines TakeCalls() { return std::exchange(m_calls, {}); }
    Lines TakeReports() { return std::exchange(reports, {}); }

    void* lastBlock = nullptr;
    bool mayRelease = true;
    void (*duringHook)() = nullptr;
    Lines reports;

private:
    static void OnAllocate(void* block, std::size_t size, const char* file, int line, int kind)
    {
        g_current->Tell("allocate " + std::to_string(size) + ' ' + file + ':' + std::to_string(line) +
                        (kind != 0 ? " kind " + std::to_string(kind) : "") + (block == nullptr ? " null" : ""));
        g_current->lastBlock = block;
        if (block == nullptr || !memory::LaysHeaders())
            return;
        auto* const header = static_cast<memory::BlockHeader*>(block);
        header->size = static_cast<std::int32_t>(size - memory::HeaderSize);
        header->index = g_state.slotCount++;
        header->initialCount = memory::NoInitialCount;
        std::memset(header + 1, 1, size - memory::HeaderSize);
        header->tag = static_cast<std::uint16_t>(memory::TagOfKind0 + kind);
    }

    static bool OnRelease(void* block, const char* file, int line)
    {
        const bool hasHeader = g_state.releaseHasHeader;
        g_current->Tell(std::string("release ") + file + ':' + std::to_string(line) + (hasHeader ? " header" : "") +
                        (block == nullptr ? " null" : ""));
        g_current->lastBlock = block;
        if (hasHeader) {
            auto* const header = static_cast<memory::BlockHeader*>(block);
            header->tag = memory::TagReleased;
            header->size = header->index = memory::ReleasedMark;
        }
        return g_current->mayRelease;
    }

    void Tell(const std::string& call)
    {
        m_calls.push_back(call);
        if (duringHook != nullptr)
            std::exchange(duringHook, nullptr)();
    }

    static inline Checker* g_current = nullptr;
    memory::State m_before;
    Lines m_calls;
};

unsigned char* Bytes(void* block)
{
    return static_cast<unsigned char*>(block);
}

// ---- Headers -------------------------------------------------------------------------------------------------------

TEST(Headers, AreLaidInTwoModesUnlessSuppressed)
{
    for (int mode = 0; mode <= 4; ++mode)
        for (const int suppression : {-1, 0, 1, 2}) {
            Checker checker(mode);
            g_state.headerSuppression = suppression;
            void* const block = VBuMalloc(10, File, 3, 1);
            const bool hasHeader = (mode == 2 || mode == 4) && suppression <= 0;
            EXPECT_EQ(Bytes(block) - Bytes(checker.lastBlock), hasHeader ? 16 : 0) << mode << ' ' << suppression;
            EXPECT_EQ(memory::FindHeader(block), hasHeader ? HeaderState::Live : HeaderState::None);
            VBuFree(block, File, 4);
            EXPECT_EQ(checker.TakeCalls(),
                      (Lines{hasHeader ? "allocate 26 part.cpp:3 kind 1" : "allocate 10 part.cpp:3 kind 1",
                             hasHeader ? "release part.cpp:4 header" : "release part.cpp:4"}));
        }
}

TEST(Headers, AreRecognisedAfterCheckingToo)
{
    Checker checker;
    void* blocks[3];
    for (void*& block : blocks)
        block = VBuMalloc(40, File, 1, 0);
    std::memcpy(blocks[2], "content", 8);
    g_state.mode = 1;
    VBuFree(blocks[0], File, 1);
    memory::SetActive(false);
    EXPECT_EQ(VBuRealloc(blocks[1], 0, File, 1), nullptr);
    blocks[2] = VBuRealloc(blocks[2], 80, File, 1);  // becomes a bare block
    EXPECT_STREQ(static_cast<char*>(blocks[2]), "content");
    VBuFree(blocks[2], File, 1);
}

// A pointer with 16 bytes in front of it that may look like a header.
struct LookAlike
{
    memory::BlockHeader header;
    char content[16];
};

TEST(Headers, HaveToBePlausible)
{
    const struct
    {
        memory::BlockHeader header;
        HeaderState expected;
    } rows[] = {
        {{12345, 0, 0, -1, -1}, HeaderState::Live},      {{12347, 0, 8, 14, -1}, HeaderState::Live},
        {{12347, 0, 8, 15, -1}, HeaderState::None},      {{12345, 0, -1, 0, -1}, HeaderState::None},
        {{12345, 0, 8, -2, -1}, HeaderState::None},      {{12344, 0, 8, 0, -1}, HeaderState::None},
        {{12348, 0, 8, 0, -1}, HeaderState::None},       {{23456, 0, -123456, -123456, -1}, HeaderState::Released},
        {{23456, 0, 8, -123456, -1}, HeaderState::None},
    };
    Checker checker;
    for (const auto& row : rows) {
        LookAlike block{row.header, {}};
        g_state.slotCount = 10;
        g_state.watch = memory::WatchActive;
        EXPECT_EQ(memory::FindHeader(block.content), HeaderState::None) << &row - rows;
        g_state.watch |= memory::WatchHeaders;
        EXPECT_EQ(memory::FindHeader(block.content), row.expected) << &row - rows;
    }
    EXPECT_EQ(memory::FindHeader(nullptr), HeaderState::None);
}

TEST(Headers, HaveToAgreeWithTheirSlot)
{
    Checker checker;
    g_state.watch |= memory::WatchHeaders;
    g_state.slotCount = 1;
    memory::Slot slot = {};
    g_state.slots = &slot;
    for (const std::int32_t index : {-1, 0, 1})
        for (const bool isSlot : {false, true}) {
            LookAlike block{{12345, 0, 8, index, -1}, {}};
            slot.block = isSlot ? block.content : nullptr;
            EXPECT_EQ(memory::FindHeader(block.content) == HeaderState::Live, index < 0 || (index == 0 && isSlot));
        }
}

TEST(Headers, OfDoubtIsTheCheckersToJudge)
{
    Checker checker;
    InitVxHeap();
    auto* const neighbour = static_cast<LookAlike*>(VxMalloc(32));
    void* const bare = VxMalloc(32);
    ASSERT_EQ(bare, neighbour + 1);
    g_state.watch |= memory::WatchHeaders;
    memory::Slot slot = {};
    g_state.slots = &slot;
    g_state.slotCount = 1;
    const auto imitate = [bare] { *memory::HeaderOf(bare) = {12345, 0, 1 << 30, 0, -1}; };
    imitate();
    EXPECT_EQ(VBuRealloc(bare, 20, File, 1), bare);
    checker.mayRelease = false;
    VBuFree(bare, File, 2);
    imitate();
    memory::SetActive(false);
    VBuFree(bare, File, 3);
    EXPECT_EQ(checker.TakeCalls(), Lines{"release part.cpp:2 header"});
    EXPECT_EQ(VxMalloc(32), bare);
    vxheap::Reset();
}

// Reused memory must not look like a header, nor a slot outlive its block.
TEST(Headers, AreUnmadeByEveryRelease)
{
    Checker checker;
    InitVxHeap();
    void* const blocks[] = {VBuMalloc(40, File, 1, 0), VBuMalloc(40, File, 1, 0)};
    checker.TakeCalls();
    memory::SetActive(false);
    VBuFree(blocks[0], File, 2);
    EXPECT_EQ(checker.TakeCalls(), Lines{"release part.cpp:2 header"});
    g_state.releaseHook = nullptr;
    VBuFree(blocks[1], File, 3);
    for (void* const block : blocks)
        EXPECT_EQ(memory::HeaderOf(block)->index, memory::ReleasedMark);
    vxheap::Reset();
}

TEST(Headers, AreFoundThroughTheAccessors)
{
    Checker checker;
    for (int kind = 0; kind <= 2; ++kind) {
        void* const block = VBuMalloc(10, File, 1, kind);
        std::size_t size = 10;
        EXPECT_EQ(MovraMemChkGetAllocInfo(block, &size), kind == 2 ? 1 : 0);
        EXPECT_EQ(size, 10u);
        EXPECT_EQ(MovraMemChkGetInitialCount(block), -1);
        EXPECT_EQ(MovraMemChkSetInitialCount(block, 250), 0);
        EXPECT_EQ(MovraMemChkGetInitialCount(block), kind == 2 ? -1 : 250);
        void* pointer = block;
        EXPECT_EQ(MovraMemChkGetActualPtr(&pointer, &size), 0);
        EXPECT_EQ(pointer, Bytes(block) - 16);
        EXPECT_EQ(size, 26u);
        EXPECT_EQ(MovraMemChkGetClientPtr(&pointer), 0);
        EXPECT_EQ(pointer, block);
        VBuFree(block, File, 1);
    }

    LookAlike bare{};
    void* pointer = bare.content;
    std::size_t size = 10;
    EXPECT_EQ(MovraMemChkGetActualPtr(&pointer, &size), 1);
    EXPECT_EQ(MovraMemChkGetAllocInfo(pointer, &size), 1);
    EXPECT_EQ(MovraMemChkSetInitialCount(pointer, 7), 0);
    g_state.mode = 0;
    EXPECT_EQ(MovraMemChkGetActualPtr(&pointer, &size), 0);
    EXPECT_EQ(MovraMemChkGetClientPtr(&pointer), 0);
    EXPECT_EQ(MovraMemChkSetInitialCount(pointer, 7), 1);
    EXPECT_TRUE(pointer == bare.content && size == 10 && bare.header.initialCount == 0);
    g_state.mode = 4;
    pointer = nullptr;
    EXPECT_EQ(MovraMemChkGetActualPtr(&pointer, &size), 0);  // the size alone is raised
    EXPECT_EQ(size, 26u);
}

// ---- Hooks ---------------------------------------------------------------------------------------------------------

TEST(Hooks, SeeAResizedBlockAsANewOneOfKind0)
{
    Checker checker;
    for (const std::size_t size : {5u, 20u}) {
        void* block = VBuMalloc(10, File, 1, 1);
        std::memcpy(block, "123456789", 10);
        block = VBuRealloc(block, size, File, 2);
        EXPECT_EQ(std::memcmp(block, size == 5 ? "12345" : "123456789\0\1\1", std::min<std::size_t>(size, 12)), 0);
        EXPECT_EQ(memory::HeaderOf(block)->tag, 12345);
        VBuFree(block, File, 3);
        EXPECT_EQ(checker.TakeCalls(),
                  (Lines{"allocate 26 part.cpp:1 kind 1", "allocate " + std::to_string(size + 16) + " part.cpp:2",
                         "release part.cpp:2 header", "release part.cpp:3 header"}));
    }
    EXPECT_EQ(VBuRealloc(VBuMalloc(10, File, 1, 0), 0, File, 2), nullptr);
    EXPECT_EQ(checker.TakeReports(), (Lines{"Memory allocation Error <VxRealloc>: 0 Bytes\n",
                                            "Memory allocation Error <VxMalloc>: 0 Bytes\n"}));
    EXPECT_EQ(checker.TakeCalls(), (Lines{"allocate 26 part.cpp:1", "release part.cpp:2 header"}));

    g_state.mode = 0;  // resizing is not told of in this mode
    EXPECT_EQ(VBuRealloc(VBuMalloc(10, File, 1, 0), 0, File, 2), nullptr);
    EXPECT_EQ(checker.TakeReports(),
              (Lines{"Memory allocation Error <VxRealloc>: 0 Bytes\n", "VxRealloc: Memory allocation error (fatal)"}));
    EXPECT_EQ(checker.TakeCalls(), Lines{"allocate 10 part.cpp:1"});
}

TEST(Hooks, ForbidToGiveABlockBackTwice)
{
    Checker checker;
    void* const block = VBuMalloc(10, File, 1, 0);
    checker.mayRelease = false;
    VBuFree(block, File, 2);  // refused by the hook, which marks the block as released
    checker.mayRelease = true;
    VBuFree(block, File, 3);  // the mark is enough
    memory::SetActive(false);
    VBuFree(block, File, 4);
    EXPECT_EQ(VBuRealloc(block, 20, File, 5), nullptr);
    EXPECT_EQ(checker.TakeReports(), Lines{"VxRealloc: Memory allocation error (fatal)"});
    EXPECT_EQ(checker.TakeCalls(),
              (Lines{"allocate 26 part.cpp:1", "release part.cpp:2 header", "release part.cpp:3"}));
    VxFree(memory::HeaderOf(block));
}

TEST(Hooks, AreToldOfExhaustedMemoryWithoutAFailureReport)
{
    ReportScope reports;
    Checker checker;
    allocation::FailOnce(1);
    EXPECT_EQ(VBuMalloc(10, File, 1, 0), nullptr);
    EXPECT_EQ(checker.TakeCalls(), Lines{"allocate 26 part.cpp:1 null"});

    void* const block = VBuMalloc(10, File, 2, 0);
    allocation::FailOnce(1);
    EXPECT_EQ(VBuRealloc(block, 20, File, 3), nullptr);
    EXPECT_EQ(checker.TakeCalls(), (Lines{"allocate 26 part.cpp:2", "allocate 36 part.cpp:3 null"}));
    EXPECT_EQ(Bytes(block)[9], 1);  // the block stays
    VBuFree(block, File, 4);
    EXPECT_EQ(checker.TakeReports(), Lines());
    EXPECT_EQ(reports.TakeErrors(), "");
}

TEST(Hooks, ArePassedOverByWhatTheyAllocate)
{
    static void* inner;
    static void* earlier;
    Checker checker;
    earlier = VBuMalloc(8, File, 1, 0);
    checker.duringHook = [] {
        inner = VBuMalloc(10, File, 2, 0);
        EXPECT_EQ(memory::FindHeader(inner), HeaderState::None);
        VBuAddPointer(inner, 10, File, 2, 0);
        VBuFree(earlier, File, 3);  // a release is told, lest a record outlives its block
    };
    void* const block = VBuMalloc(12, File, 4, 0);
    VBuFree(inner, File, 5);
    VBuFree(block, File, 6);
    EXPECT_EQ(checker.TakeCalls(),
              (Lines{"allocate 24 part.cpp:1", "allocate 28 part.cpp:4", "release part.cpp:3 header",
                     "release part.cpp:5", "release part.cpp:6 header"}));
}

TEST(Hooks, ThatStopCheckingLeaveTheBlockUnmoved)
{
    Checker checker;
    checker.duringHook = [] { memory::SetActive(false); };
    void* const block = VBuMalloc(10, File, 1, 0);
    EXPECT_EQ(block, checker.lastBlock);
    VBuFree(block, File, 2);
}

TEST(Hooks, AreToldOfBlocksObtainedElsewhere)
{
    ReportScope reports;
    LookAlike block{};
    Checker checker;
    VBuAddPointer(&block, sizeof block.content, File, 1, 1);
    EXPECT_EQ(block.header.tag, 12346);
    EXPECT_EQ(block.header.size, 16);
    VBuAddPointer(nullptr, 16, File, 2, 0);
    VBuDeletePointer(block.content, File, 3);
    EXPECT_EQ(checker.lastBlock, &block);
    VBuDeletePointer(nullptr, File, 4);
    EXPECT_EQ(checker.TakeReports(), Lines{"Memory error : Free null pointer"});
    g_state.mode = 1;
    VBuAddPointer(block.content, 16, File, 5, 0);
    EXPECT_EQ(checker.TakeCalls(), (Lines{"allocate 32 part.cpp:1 kind 1", "release part.cpp:3 header",
                                          "release part.cpp:4 null", "allocate 16 part.cpp:5"}));
    EXPECT_EQ(reports.TakePosted(), Lines());  // an installed reporter is alone
}

// The size field of a header has 32 bits with a sign.
TEST(Hooks, AreNotToldOfBlocksThatNoHeaderCanDescribe)
{
    ReportScope reports;
    Checker checker;
    for (const std::size_t size : {std::size_t{INT32_MAX}, std::size_t{INT32_MAX} + 1, std::size_t{1} << 40}) {
        allocation::FailOnce(1);
        EXPECT_EQ(VBuMalloc(size, File, 2, 0), nullptr);
    }
    EXPECT_EQ(checker.TakeReports().size(), 2u);
    EXPECT_EQ(checker.TakeCalls(), Lines{"allocate 2147483663 part.cpp:2 null"});
}

// Checking that was started without being initialised has no hook: the block is taken and lost.
TEST(Hooks, ThatAreMissingFailEveryAllocation)
{
    ReportScope reports;
    InitVxHeap();
    Checker checker;
    g_state.allocationHook = nullptr;
    EXPECT_EQ(VBuMalloc(16, File, 1, 0), nullptr);
    EXPECT_EQ(checker.TakeReports(), Lines{"VxMalloc : Memory allocation error (fatal)"});
    EXPECT_EQ(vxheap::UsedBlocks(), 1u);
    vxheap::Reset();
}

// ---- Growing arrays ------------------------------------------------------------------------------------------------

TEST(GrowingArraysInternal, RoundInSixtyFourBits)
{
    EXPECT_EQ(memory::RoundedCapacity(999'999'999), 1'000'000'000);
    EXPECT_EQ(memory::RoundedCapacity(1'000'000'000), 1'000'000'000);
    EXPECT_EQ(memory::RoundedCapacity(1'000'000'001), 2'000'000'000);
    EXPECT_EQ(memory::RoundedCapacity(2'147'483'647), 3'000'000'000);
    EXPECT_EQ(memory::GrownCapacity(2'000'000'000, 100'000'000), 3'000'000'000);
    EXPECT_EQ(memory::GrownCapacity(2'100'000'000, 40'000'000), 0);
}

TEST(GrowingArraysInternal, WarnWhenTheInitialCountChanges)
{
    RecordingUpdater updater;
    Checker checker;
    int count = 0;
    void** array = nullptr;
    void* element = nullptr;
    for (const int initialCount : {250, 250, 15})
        VBuBlockAllocAndAppend(&count, &array, 8, 1, &element, initialCount, File, initialCount);
    EXPECT_EQ(MovraMemChkGetInitialCount(array), 250);  // the block had room and stayed
    MovraMemChkSetInitialCount(array, -1);
    VBuBlockAllocAndAppend(&count, &array, 8, 1, &element, 15, File, 16);
    EXPECT_EQ(updater.TakeLines(),
              Lines{"console 0: VBuBlockAll... is called with different initial counts! Called at line 15 in "
                    "File part.cpp"});
    VBuFree(array, File, 1);
}

// ---- Memory mode ---------------------------------------------------------------------------------------------------

int g_tableReleases;

TEST(MemoryModeInternal, DropsTheRecordsWhenAnotherModeIsAskedFor)
{
    Checker checker;
    g_state.freeRecordTable = [] { ++g_tableReleases; };
    const struct
    {
        int before, asked, releases;
    } rows[] = {{2, 1, 1}, {1, 1, 0}, {2, 7, 1}, {0, -1, 1}, {4, 0, 0}, {4, 1, 1}};
    for (const auto& row : rows) {
        g_state.mode = row.before;
        g_state.second = -9;
        g_tableReleases = 0;
        VMemorySetMode(row.asked, 3);
        EXPECT_EQ(g_tableReleases, row.releases) << &row - rows;
        EXPECT_EQ(g_state.second, row.before == 4 && row.asked == 0 ? -9 : 3) << &row - rows;
    }
}

// ---- Exhausted memory ----------------------------------------------------------------------------------------------

// Blocks that are complete or null, arrays that are complete or null with the old block still there.
void AllocateEverything()
{
    char* text = VBuStrDup("content", File, 1);
    void* const zeroed = VBuCalloc(3, 7, File, 1);
    EXPECT_TRUE(zeroed == nullptr || std::count(Bytes(zeroed), Bytes(zeroed) + 21, 0) == 21);
    VBuFree(zeroed, File, 1);
    if (void* const moved = text == nullptr ? nullptr : VBuRealloc(text, 500, File, 1))
        text = static_cast<char*>(moved);
    EXPECT_TRUE(text == nullptr || std::strcmp(text, "content") == 0);
    VBuFree(text, File, 1);

    int exactCount = 0;
    int blockCount = 0;
    void* exact = nullptr;
    void** blocks = nullptr;
    void* elements[6] = {};
    for (int total = 6; total <= 12; total += 6) {
        void* const before = exact;
        const int result = VBuAllocAndCopy(exactCount, exact, 8, 6, elements, File, 1);
        EXPECT_EQ(result, exact == nullptr ? 1 : 0);
        EXPECT_EQ(exactCount, exact == nullptr ? total - 6 : total);
        if (exact != nullptr)
            continue;
        VBuFree(before, File, 1);
        break;
    }
    VBuFree(exact, File, 1);
    VBuBlockAllocAndAppend(&blockCount, &blocks, 8, 6, elements, 0, File, 1);
    EXPECT_EQ(blockCount, blocks == nullptr ? 0 : 6);
    VBuFree(blocks, File, 1);
}

TEST(TrackedAllocation, GivesTheDocumentedFailures)
{
    ReportScope reports;
    EXPECT_GE(allocation::ForEachFailure(AllocateEverything), 6);
    for (const int mode : {1, 2}) {
        Checker checker(mode);
        g_state.allocationHook = [](void* block, std::size_t size, const char*, int, int) {
            if (block != nullptr && memory::LaysHeaders())
                *static_cast<memory::BlockHeader*>(block) = {12345, 0, static_cast<std::int32_t>(size - 16), -1, -1};
        };
        g_state.releaseHook = nullptr;
        g_state.errorReporter = [](const char*, int) {};
        EXPECT_GE(allocation::ForEachFailure(AllocateEverything), 6);
    }
}

}  // namespace
