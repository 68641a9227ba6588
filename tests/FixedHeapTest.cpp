#include <TuvoUtil/FixedHeap.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

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

TEST(FixedHeap, KnowsItsBlocks)
{
    VFixedHeap heap(3, 16, 0, nullptr);
    EXPECT_EQ(heap.GetClassSize(), 16U);
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

TEST(FixedHeap, FindsInsertedPagesOnlyOneBehindTheOther)
{
    alignas(16) char memory[5 * 64];
    void* pages[] = {memory + 64, nullptr, memory + 128, memory + 256};
    VFixedHeap heap(2, 32, 4, pages);
    for (const std::size_t offset : {64U, 96U, 128U, 160U, 256U, 288U})
        EXPECT_EQ(heap.Allocate(), memory + offset);
    EXPECT_EQ(heap.Allocate(), nullptr);
    for (const std::size_t offset : {0U, 32U, 192U, 256U})
        EXPECT_FALSE(heap.Free(memory + offset)) << offset;
    EXPECT_TRUE(heap.IsPointerInHeap(memory + 160));
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
    EXPECT_EQ(heap.GetFreePage(), nullptr);
    EXPECT_TRUE(heap.Free(own));
    EXPECT_EQ(heap.Allocate(), own);
}

TEST(FixedHeap, LetsDerivedHeapsManageItsPages)
{
    OpenHeap heap(2, 16, 0, nullptr);
    OpenHeap other(2, 16, 0, nullptr);
    heap.AppendPage(nullptr);
    heap.RemovePage(nullptr);
    _VFixedHeapPageStr* const first = heap.CreatePage();
    _VFixedHeapPageStr* const second = heap.CreatePage();
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_EQ(heap.GetFreePage(), first);
    EXPECT_EQ(heap.GetPageGivenBlock(AsBlock(At(second->memory, 16))), second);

    // No page was the current one, so Allocate makes a third page.
    _VFixedHeapPageStr* const third = heap.GetPageGivenBlock(AsBlock(heap.Allocate()));
    EXPECT_TRUE(third != first && third != second && third->usedCount == 1);
    heap.RemovePage(first);
    other.RemovePage(second);
    EXPECT_EQ(heap.GetFreePage(), second);
    heap.RemovePage(third);  // the current page: the first one with room follows
    EXPECT_EQ(heap.Allocate(), second->memory);

    heap.Allocate();
    _VFixedHeapPageStr* const open = heap.CreatePage();  // while all are full; it does not become the current one
    EXPECT_EQ(heap.GetFreePage(), open);
    heap.RemovePage(second);
    EXPECT_EQ(heap.GetFreePage(), open);
    EXPECT_NE(heap.Allocate(), open->memory);
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
    EXPECT_FALSE(heap.IsBlockInPage(page, nullptr) || heap.IsBlockInPage(nullptr, page->freeList));
    heap.AppendPage(page);
    EXPECT_NE(page->owner, nullptr);
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

CHILD_SCENARIO(FixedHeapSwitches)
{
    void* const before = VxMalloc(20);
    InitVxHeap();
    platform::SetEnvironmentValue(L"DISABLE_VX_HEAP", std::nullopt);
    platform::SetEnvironmentValue(L"QD_DVP_DEBUG_VERSION", std::nullopt);
    InitVxHeap();  // the switches were read already
    for (void* block : {before, VxMalloc(0), VxMalloc(20)}) {
        block = VxRealloc(block, 100);
        std::memset(block, 'x', 100);
        VxFree(block);
    }
    return IsVxHeapEnabled() ? 1 : 0;
}

TEST(VxHeap, IsOnUnlessSwitchedOff)
{
    const struct
    {
        std::optional<std::wstring> disabled, debugVersion;
        int isOn;
    } rows[] = {{L"0", std::nullopt, 1}, {std::nullopt, L"0", 1}, {L"yes", std::nullopt, 0}, {std::nullopt, L"1", 0}};
    for (const auto& row : rows) {
        const ChildVariables variables = {{L"DISABLE_VX_HEAP", row.disabled},
                                          {L"QD_DVP_DEBUG_VERSION", row.debugVersion}};
        EXPECT_EQ(RunChild("FixedHeapSwitches", variables).exitCode, row.isOn) << &row - rows;
    }
}

}  // namespace
