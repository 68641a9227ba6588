#include <TuvoUtil/FixedHeap.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// Opens what is meant for derived heaps.
class OpenHeap : public VFixedHeap
{
public:
    using VFixedHeap::AppendPage;
    using VFixedHeap::CreatePage;
    using VFixedHeap::GetFreePage;
    using VFixedHeap::GetPageGivenBlock;
    using VFixedHeap::InsertPages;
    using VFixedHeap::IsBlockInPage;
    using VFixedHeap::RemovePage;
    using VFixedHeap::VFixedHeap;
};

char* At(void* start, std::size_t offset)
{
    return static_cast<char*>(start) + offset;
}

_VFixedHeapBlockStr* AsBlock(void* address)
{
    return static_cast<_VFixedHeapBlockStr*>(address);
}

// ---- VFixedHeap ----------------------------------------------------------------------------------------------------

TEST(FixedHeap, HandsOutBlocksByAddressAndTheLastFreedFirst)
{
    VFixedHeap heap(1000, 24, 0, nullptr);
    EXPECT_EQ(heap.GetClassSize(), 24U);
    void* const first = heap.Allocate();
    for (std::size_t i = 1; i < 500; ++i)
        ASSERT_EQ(heap.Allocate(), At(first, i * 24)) << i;
    for (const std::size_t i : {7U, 300U, 2U})
        EXPECT_TRUE(heap.Free(At(first, i * 24)));
    for (const std::size_t i : {2U, 300U, 7U, 500U})
        EXPECT_EQ(heap.Allocate(), At(first, i * 24));
}

TEST(FixedHeap, KnowsItsBlocks)
{
    VFixedHeap heap(3, 16, 0, nullptr);
    int foreign = 0;
    EXPECT_FALSE(heap.IsPointerInHeap(&foreign));
    EXPECT_FALSE(heap.Free(&foreign));
    EXPECT_TRUE(heap.Free(nullptr));

    void* const first = heap.Allocate();
    EXPECT_FALSE(heap.IsPointerInHeap(nullptr));
    EXPECT_FALSE(heap.IsPointerInHeap(reinterpret_cast<void*>(std::uintptr_t{16})));
    EXPECT_FALSE(heap.IsPointerInHeap(At(first, 0) - 1));
    EXPECT_TRUE(heap.IsPointerInHeap(first));
    EXPECT_TRUE(heap.IsPointerInHeap(At(first, 32)));  // the last block's first byte is the last one that counts
    EXPECT_FALSE(heap.IsPointerInHeap(At(first, 33)));
    EXPECT_TRUE(heap.Free(first));
    EXPECT_FALSE(heap.IsPointerInHeap(first));  // its page is gone
}

TEST(FixedHeap, WorksWithInsertedPagesAlone)
{
    alignas(16) char before[5 * 64];
    char* const memory = before + 64;
    void* pages[] = {memory, memory + 64, nullptr, memory + 128};
    OpenHeap heap(2, 32, 4, pages);
    EXPECT_EQ(heap.CreatePage(), nullptr);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(heap.Allocate(), memory + i * 32) << i;
    EXPECT_EQ(heap.Allocate(), nullptr);
    EXPECT_EQ(heap.GetFreePage(), nullptr);
    EXPECT_FALSE(heap.Free(memory + 192));
    EXPECT_FALSE(heap.Free(before + 32));

    EXPECT_TRUE(heap.Free(memory + 160));
    EXPECT_TRUE(heap.Free(memory + 64));
    EXPECT_TRUE(heap.Free(memory + 96));      // empties the second page, which was the current one
    EXPECT_EQ(heap.Allocate(), memory + 96);  // and is the first one with room
    EXPECT_TRUE(heap.IsPointerInHeap(memory));
}

TEST(FixedHeap, FindsInsertedPagesOnlyOneBehindTheOther)
{
    alignas(16) char memory[4 * 64];
    void* pages[] = {memory, memory + 192};
    VFixedHeap heap(2, 32, 2, pages);
    EXPECT_TRUE(heap.IsPointerInHeap(memory + 32));
    EXPECT_FALSE(heap.IsPointerInHeap(memory + 64));
    EXPECT_FALSE(heap.IsPointerInHeap(memory + 192));
}

TEST(FixedHeap, StopsGrowingOnceAPageWasInserted)
{
    alignas(16) char memory[64];
    void* page = memory;
    OpenHeap heap(2, 32, 0, nullptr);
    void* const own = heap.Allocate();
    heap.InsertPages(0, &page);
    heap.InsertPages(1, nullptr);
    ASSERT_NE(heap.CreatePage(), nullptr);
    heap.InsertPages(1, &page);
    EXPECT_EQ(heap.CreatePage(), nullptr);
    for (int blocks = 1; blocks < 6; ++blocks)
        EXPECT_NE(heap.Allocate(), nullptr);
    EXPECT_EQ(heap.Allocate(), nullptr);
    EXPECT_TRUE(heap.Free(own));
    EXPECT_EQ(heap.Allocate(), own);
}

TEST(FixedHeap, LetsDerivedHeapsManageItsPages)
{
    OpenHeap heap(2, 16, 0, nullptr);
    heap.AppendPage(nullptr);
    heap.RemovePage(nullptr);
    _VFixedHeapPageStr* const first = heap.CreatePage();
    _VFixedHeapPageStr* const second = heap.CreatePage();
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_EQ(first->freeList, first->memory);
    EXPECT_EQ(first->usedCount, 0U);
    EXPECT_EQ(heap.GetFreePage(), first);
    EXPECT_EQ(heap.GetPageGivenBlock(AsBlock(At(second->memory, 16))), second);
    EXPECT_TRUE(heap.IsBlockInPage(first, AsBlock(At(first->memory, 16))));
    EXPECT_FALSE(heap.IsBlockInPage(first, AsBlock(At(first->memory, 17))));
    EXPECT_FALSE(heap.IsBlockInPage(first, nullptr));
    EXPECT_FALSE(heap.IsBlockInPage(nullptr, AsBlock(first->memory)));

    // No page was the current one, so Allocate makes a third page.
    void* const block = heap.Allocate();
    _VFixedHeapPageStr* const third = heap.GetPageGivenBlock(AsBlock(block));
    EXPECT_TRUE(third != first && third != second);
    EXPECT_EQ(third->usedCount, 1U);
    // Full pages are passed over, and may be taken out too. A page made while all are full is not the current one.
    OpenHeap full(1, 16, 0, nullptr);
    void* const kept[] = {full.Allocate(), full.Allocate()};
    _VFixedHeapPageStr* const open = full.CreatePage();
    EXPECT_EQ(full.GetFreePage(), open);
    full.RemovePage(full.GetPageGivenBlock(AsBlock(kept[0])));
    EXPECT_EQ(full.GetFreePage(), open);
    EXPECT_NE(full.Allocate(), open->memory);

    heap.RemovePage(first);
    EXPECT_EQ(heap.GetFreePage(), second);
    OpenHeap other(2, 16, 0, nullptr);
    other.RemovePage(second);
    EXPECT_EQ(heap.GetFreePage(), second);
    heap.RemovePage(third);  // the current page: the first one with room follows
    EXPECT_EQ(heap.Allocate(), second->memory);
}

TEST(FixedHeap, TakesPagesOfDerivedHeaps)
{
    OpenHeap heap(2, 16, 0, nullptr);
    auto* const page = static_cast<_VFixedHeapPageStr*>(std::calloc(1, sizeof(_VFixedHeapPageStr) + 32));
    ASSERT_NE(page, nullptr);
    page->memory = page + 1;
    page->freeList = page->untouched = AsBlock(page->memory);
    EXPECT_TRUE(heap.IsBlockInPage(page, AsBlock(At(page->memory, 16))));
    EXPECT_FALSE(heap.IsBlockInPage(page, AsBlock(At(page->memory, 17))));
    heap.AppendPage(page);
    EXPECT_EQ(page->owner != nullptr, true);
    EXPECT_EQ(heap.GetFreePage(), page);
    EXPECT_TRUE(heap.IsPointerInHeap(At(page->memory, 16)));
}

TEST(FixedHeap, SharesPagesWithItsCopies)
{
    VFixedHeap empty(2, 16, 0, nullptr);
    VFixedHeap copy(empty);
    auto* const heap = new VFixedHeap(2, 16, 0, nullptr);
    void* const first = heap->Allocate();
    copy = *heap;
    empty = copy;
    void* const second = copy.Allocate();
    EXPECT_EQ(second, At(first, 16));
    void* const later = heap->Allocate();
    delete heap;
    EXPECT_TRUE(empty.Free(second));
    EXPECT_TRUE(copy.IsPointerInHeap(later));
    EXPECT_TRUE(copy.Free(later));
    EXPECT_FALSE(empty.IsPointerInHeap(later));
    const VFixedHeap& self = copy;
    copy = self;
    EXPECT_TRUE(copy.Free(first));
    EXPECT_FALSE(copy.Free(first));
}

TEST(FixedHeap, HoldsNothingWithoutBlocksInAPage)
{
    char memory[16];
    void* page = memory;
    VFixedHeap growable(0, 16, 0, nullptr);
    VFixedHeap fixed(0, 16, 1, &page);
    for (VFixedHeap* heap : {&growable, &fixed}) {
        EXPECT_EQ(heap->Allocate(), nullptr);
        EXPECT_FALSE(heap->Free(memory));
    }
}

// ---- The block heap, which a process switches on once --------------------------------------------------------------

bool g_allHold;

void Expect(bool holds, const char* claim)
{
    if (!holds)
        std::printf("does not hold: %s\n", claim);
    g_allHold = g_allHold && holds;
}
#define EXPECT_HERE(claim) Expect(claim, #claim)

CHILD_SCENARIO(FixedHeapServesSmallSizes)
{
    g_allHold = true;
    void* const before = VxMalloc(20);
    EXPECT_HERE(!IsVxHeapEnabled());
    InitVxHeap();
    EXPECT_HERE(IsVxHeapEnabled());
    char* const region = static_cast<char*>(VxMalloc(1));
    const auto isInside = [region](void* block) { return block >= region && block < region + 24'320'000; };

    // The start of each class in the region, and a size that it serves.
    const struct
    {
        std::size_t size, start;
    } classes[] = {{8, 0},           {16, 2'400'000},  {17, 4'000'000},  {33, 13'600'000},
                   {41, 17'600'000}, {64, 19'520'000}, {65, 22'080'000}, {128, 23'040'000}};
    for (const auto& row : classes)
        EXPECT_HERE(VxMalloc(row.size) == region + row.start + (row.size == 8 ? 8 : 0));
    for (const std::size_t size : {0U, 129U, 100'000U}) {
        void* const block = VxMalloc(size);
        EXPECT_HERE(block != nullptr && !isInside(block));
        VxFree(block);
    }
    VxFree(before);
    VxFree(nullptr);
    InitVxHeap();
    EXPECT_HERE(VxMalloc(1) == region + 16);
    return !g_allHold;
}

CHILD_SCENARIO(FixedHeapMovesBlocksBetweenClasses)
{
    g_allHold = true;
    InitVxHeap();
    char* const region = static_cast<char*>(VxMalloc(8));
    const auto isInside = [region](void* block) { return block >= region && block < region + 24'320'000; };
    const auto allAre = [](const char* block, std::size_t from, std::size_t to, char value) {
        return std::all_of(block + from, block + to, [value](char byte) { return byte == value; });
    };

    char* block = static_cast<char*>(VxMalloc(20));
    std::memset(block, 'x', 32);
    EXPECT_HERE(VxRealloc(block, 30) == block);
    char* moved = static_cast<char*>(VxMalloc(60));
    std::memset(moved, 'y', 64);
    VxFree(moved);
    EXPECT_HERE(VxRealloc(block, 60) == moved);
    EXPECT_HERE(allAre(moved, 0, 32, 'x') && allAre(moved, 32, 60, 0));
    EXPECT_HERE(VxMalloc(32) == block);  // was released

    char* const large = static_cast<char*>(VxRealloc(moved, 1000));
    EXPECT_HERE(!isInside(large) && allAre(large, 0, 32, 'x') && allAre(large, 32, 60, 0) &&
                allAre(large, 64, 1000, 0));
    char* const small = static_cast<char*>(VxRealloc(large, 10));
    EXPECT_HERE(!isInside(small) && allAre(small, 0, 10, 'x'));  // what is outside stays outside
    VxFree(small);
    void* const fresh = VxRealloc(nullptr, 10);
    EXPECT_HERE(fresh != nullptr && !isInside(fresh));
    VxFree(fresh);

    block = static_cast<char*>(VxMalloc(128));
    std::memset(block, 'z', 128);
    char* const shrunk = static_cast<char*>(VxRealloc(block, 16));
    EXPECT_HERE(isInside(shrunk) && allAre(shrunk, 0, 16, 'z'));
    EXPECT_HERE(VxRealloc(shrunk, 0) == nullptr);
    EXPECT_HERE(VxMalloc(16) == shrunk);
    return !g_allHold;
}

CHILD_SCENARIO(FixedHeapStaysOff)
{
    g_allHold = true;
    InitVxHeap();
    platform::SetEnvironmentValue(L"DISABLE_VX_HEAP", std::nullopt);
    platform::SetEnvironmentValue(L"QD_DVP_DEBUG_VERSION", std::nullopt);
    InitVxHeap();  // the switches were read already
    EXPECT_HERE(!IsVxHeapEnabled());
    void* const block = VxRealloc(VxMalloc(20), 100);
    EXPECT_HERE(block != nullptr);
    VxFree(block);
    return !g_allHold;
}

void ExpectAllHolds(const char* scenario, const ChildVariables& variables)
{
    const ChildResult result = RunChild(scenario, variables);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exitCode, 0);
}

const ChildVariables heapAllowed = {{L"DISABLE_VX_HEAP", L"0"}, {L"QD_DVP_DEBUG_VERSION", std::nullopt}};

TEST(VxHeap, ServesSmallSizesFromTheirClass)
{
    ExpectAllHolds("FixedHeapServesSmallSizes", heapAllowed);
}

TEST(VxHeap, MovesBlocksBetweenClasses)
{
    ExpectAllHolds("FixedHeapMovesBlocksBetweenClasses", heapAllowed);
}

TEST(VxHeap, StaysOffWhenSwitchedOff)
{
    ExpectAllHolds("FixedHeapStaysOff", {{L"DISABLE_VX_HEAP", L"yes"}, {L"QD_DVP_DEBUG_VERSION", std::nullopt}});
    ExpectAllHolds("FixedHeapStaysOff", {{L"DISABLE_VX_HEAP", std::nullopt}, {L"QD_DVP_DEBUG_VERSION", L"1"}});
}

}  // namespace
