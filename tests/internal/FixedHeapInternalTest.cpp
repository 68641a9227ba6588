#include "VFixedHeap/VxHeap.h"

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using fixedheap::Inspector;

constexpr char OutOfMemory[] = "Memory allocation Error <malloc>: Null returned\n";

// ---- A model -------------------------------------------------------------------------------------------------------

// A heap by its definition: full lists, no search put off, no index.
class Model
{
public:
    using Place = std::pair<int, unsigned int>;  // the number of a page and of a block in it; {-1, 0} for none

    Model(unsigned int blocksPerPage, int pages) : m_blocksPerPage(blocksPerPage), m_growable(pages == 0)
    {
        for (int i = 0; i < pages; ++i)
            AddPage();
        m_current = pages > 0 ? 0 : -1;
    }

    Place Allocate()
    {
        if (m_current < 0) {
            if (!m_growable)
                return {-1, 0};
            m_current = AddPage();
        }
        std::vector<unsigned int>& free = m_pages[m_current];
        const Place place(m_current, free.back());
        free.pop_back();
        if (free.empty())
            m_current = FirstWithRoom();
        return place;
    }

    void Free(Place place)
    {
        std::vector<unsigned int>& free = m_pages[place.first];
        free.push_back(place.second);
        if (free.size() < m_blocksPerPage) {
            m_current = place.first;
            return;
        }
        if (m_current == place.first)
            m_current = -1;
        if (m_growable)
            m_pages.erase(place.first);
        if (m_current < 0)
            m_current = FirstWithRoom();
    }

private:
    int AddPage()
    {
        std::vector<unsigned int>& free = m_pages[m_made];
        for (unsigned int block = m_blocksPerPage; block-- > 0;)
            free.push_back(block);
        return m_made++;
    }

    int FirstWithRoom() const
    {
        for (const auto& [number, free] : m_pages)
            if (!free.empty())
                return number;
        return -1;
    }

    unsigned int m_blocksPerPage;
    bool m_growable;
    std::map<int, std::vector<unsigned int>> m_pages;  // the free blocks of each page, the next one last
    int m_current = -1;
    int m_made = 0;
};

bool IsValid(VFixedHeap& heap)
{
    return fixedheap::IsValid(Inspector::Pages(heap));
}

// Takes and releases blocks at random, in phases of growth and of shrinking, and checks each place against the model.
// `pages` holds the starts of the pages that are known; those that the heap makes are found out.
template <typename Heap>
void CompareWithModel(Heap& heap, Model model, unsigned int blockSize, std::map<int, char*> pages, unsigned int steps,
                      unsigned int percent)
{
    std::mt19937 random(blockSize);
    std::vector<Model::Place> used;
    for (unsigned int step = 0; step < 4 * steps; ++step) {
        if (random() % 100 < (step / steps % 2 == 0 ? percent : 100 - percent)) {
            const Model::Place place = model.Allocate();
            void* const block = heap.Allocate();
            ASSERT_EQ(block == nullptr, place.first < 0) << step;
            if (block == nullptr)
                continue;
            if (place.second == 0)
                pages.emplace(place.first, static_cast<char*>(block));
            ASSERT_EQ(block, pages.at(place.first) + std::size_t{place.second} * blockSize) << step;
            used.push_back(place);
        } else if (!used.empty()) {
            std::swap(used[random() % used.size()], used.back());
            const auto [page, block] = used.back();
            used.pop_back();
            model.Free({page, block});
            ASSERT_TRUE(heap.Free(pages.at(page) + std::size_t{block} * blockSize)) << step;
        }
        ASSERT_TRUE(IsValid(heap)) << step;
    }
    for (const auto& [page, block] : used)
        ASSERT_TRUE(heap.Free(pages.at(page) + std::size_t{block} * blockSize));
}

std::map<int, char*> PagesBehindEachOther(char* start, int count, std::size_t bytes)
{
    std::map<int, char*> pages;
    for (int i = 0; i < count; ++i)
        pages[i] = start + static_cast<std::size_t>(i) * bytes;
    return pages;
}

TEST(FixedHeapModel, HeapsAgreeWithIt)
{
    for (const unsigned int blocksPerPage : {1U, 2U, 3U, 7U, 50U})
        for (const unsigned int blockSize : {8U, 24U, 1000U}) {
            SCOPED_TRACE(std::to_string(blocksPerPage) + " blocks of " + std::to_string(blockSize));
            VFixedHeap growable(blocksPerPage, blockSize, 0, nullptr);
            CompareWithModel(growable, Model(blocksPerPage, 0), blockSize, {}, 1000, 60);

            std::vector<char> memory(std::size_t{30} * blocksPerPage * blockSize);
            const auto pages = PagesBehindEachOther(memory.data(), 30, std::size_t{blocksPerPage} * blockSize);
            std::vector<void*> starts;
            for (const auto& [number, start] : pages)
                starts.push_back(start);
            VFixedHeap fixed(blocksPerPage, blockSize, 30, starts.data());
            CompareWithModel(fixed, Model(blocksPerPage, 30), blockSize, pages, 1000, 60);
        }
}

// Keeps the block heap on during a test.
class VxHeapInternal : public testing::Test
{
protected:
    void SetUp() override
    {
        InitVxHeap();
        ASSERT_TRUE(IsVxHeapEnabled());
        m_region = reinterpret_cast<char*>(vxheap::state.region);
    }
    void TearDown() override { vxheap::Reset(); }

    bool IsInside(const void* block) const { return block >= m_region && block < m_region + 24'320'000; }

    char* m_region = nullptr;
};

// A class of the block heap as a heap; exhausted when malloc has to serve.
struct ClassHeap
{
    std::size_t smallest, largest;  // the sizes that it serves
    std::uintptr_t start, end;

    void* Allocate()
    {
        void* const block = VxMalloc(random() % 2 == 0 ? smallest : largest);
        if (const auto address = reinterpret_cast<std::uintptr_t>(block); address >= start && address < end)
            return block;
        VxFree(block);
        return nullptr;
    }
    static bool Free(void* block)
    {
        VxFree(block);
        return true;
    }

    std::mt19937 random{};
    unsigned int questions = 0;
};

// Now and then: it walks all classes.
bool IsValid(ClassHeap& heap)
{
    return ++heap.questions % 50'000 != 0 || vxheap::IsValid();
}

TEST_F(VxHeapInternal, ClassesAgreeWithTheModel)
{
    const struct
    {
        unsigned int blockSize, blocksPerPage;
        int pages;
    } classes[] = {{8, 50000, 6},  {16, 50000, 2}, {32, 50000, 6}, {40, 50000, 2},
                   {48, 20000, 2}, {64, 20000, 2}, {96, 10000, 1}, {128, 10000, 1}};
    char* start = m_region;
    unsigned int smallest = 1;
    for (const auto& [blockSize, blocksPerPage, pages] : classes) {
        SCOPED_TRACE(blockSize);
        const std::size_t pageBytes = std::size_t{blockSize} * blocksPerPage;
        char* const end = start + pageBytes * static_cast<unsigned int>(pages);
        ClassHeap heap{smallest, blockSize, reinterpret_cast<std::uintptr_t>(start),
                       reinterpret_cast<std::uintptr_t>(end)};
        CompareWithModel(heap, Model(blocksPerPage, pages), blockSize, PagesBehindEachOther(start, pages, pageBytes),
                         15'000 * static_cast<unsigned int>(pages), 95);
        EXPECT_EQ(vxheap::UsedBlocks(), 0U);
        start = end;
        smallest = blockSize + 1;
    }
    EXPECT_EQ(start, m_region + 24'320'000);
}

TEST_F(VxHeapInternal, ServesOnlySmallSizes)
{
    for (const std::size_t size : {0U, 129U, 100'000U}) {
        void* const block = VxMalloc(size);
        EXPECT_TRUE(block != nullptr && !IsInside(block)) << size;
        VxFree(block);
    }
    VxFree(nullptr);
    EXPECT_EQ(vxheap::UsedBlocks(), 0U);
}

TEST_F(VxHeapInternal, MovesBlocksBetweenClasses)
{
    const auto holds = [](char* block, std::size_t count, std::size_t zeros) {
        return std::string(block, count + zeros) == std::string(count, 'x') + std::string(zeros, '\0');
    };
    char* const block = static_cast<char*>(VxMalloc(20));
    std::memset(block, 'x', 32);
    EXPECT_EQ(VxRealloc(block, 30), block);
    char* const moved = static_cast<char*>(VxMalloc(60));
    std::memset(moved, 'y', 64);
    VxFree(moved);
    EXPECT_EQ(VxRealloc(block, 60), moved);
    EXPECT_TRUE(holds(moved, 32, 28));
    std::memset(moved, 'x', 64);

    char* const large = static_cast<char*>(VxRealloc(moved, 1000));
    EXPECT_TRUE(!IsInside(large) && holds(large, 64, 936));
    char* const small = static_cast<char*>(VxRealloc(large, 10));
    EXPECT_TRUE(!IsInside(small) && holds(small, 10, 0));  // what is outside stays outside
    VxFree(small);
    void* const fresh = VxRealloc(nullptr, 10);
    EXPECT_FALSE(fresh == nullptr || IsInside(fresh));
    VxFree(fresh);
    EXPECT_EQ(vxheap::UsedBlocks(), 0U);

    char* const wide = static_cast<char*>(VxMalloc(128));
    std::memset(wide, 'x', 128);
    char* const shrunk = static_cast<char*>(VxRealloc(wide, 16));
    EXPECT_TRUE(IsInside(shrunk) && holds(shrunk, 16, 0));
    EXPECT_EQ(VxRealloc(shrunk, 0), nullptr);
    EXPECT_EQ(vxheap::UsedBlocks(), 0U);

    *static_cast<char*>(VxMalloc(8)) = 'x';
    allocation::FailOnce(1);
    EXPECT_EQ(VxRealloc(m_region, 1000), nullptr);
    EXPECT_TRUE(holds(m_region, 1, 0));
    EXPECT_EQ(vxheap::UsedBlocks(), 1U);
}

TEST_F(VxHeapInternal, EmptyPagesWaitBehindTheCurrentOne)
{
    const auto block = [this](std::size_t page, std::size_t index) { return m_region + (page * 50'000 + index) * 8; };
    for (std::size_t i = 0; i <= 100'000; ++i)
        ASSERT_EQ(VxMalloc(8), block(0, i));

    VxFree(block(0, 7));
    VxFree(block(2, 0));  // leaves the third page empty, but the first one is taken from
    EXPECT_EQ(VxMalloc(8), block(0, 7));
    EXPECT_EQ(VxMalloc(8), block(2, 0));

    VxFree(block(1, 7));
    EXPECT_EQ(VxMalloc(8), block(1, 7));  // fills the page taken from, so the third one follows
    VxFree(block(2, 0));                  // and becomes empty
    VxFree(block(0, 7));
    VxFree(block(1, 7));
    EXPECT_EQ(VxMalloc(8), block(1, 7));
    EXPECT_EQ(VxMalloc(8), block(0, 7));
    EXPECT_TRUE(vxheap::IsValid());
}

TEST_F(VxHeapInternal, TouchesMemoryOnlyAsItIsUsed)
{
    VxMalloc(8);
    VxMalloc(90);
    const std::string region(m_region, vxheap::RegionSize);
    EXPECT_LT(region.size() - static_cast<std::size_t>(std::count(region.begin(), region.end(), '\0')), 4096U);
    // The first link of the 96-byte class; its low byte may be 0.
    EXPECT_EQ(region.find_first_not_of('\0', 4096) / sizeof(void*), std::size_t{22'080'000} / sizeof(void*));
}

// ---- Exhausted memory ----------------------------------------------------------------------------------------------

// What `work` writes to standard error while each of its allocations fails in turn, as a number of the one message.
template <typename Work>
void ExpectOneMessageAFailure(Work work)
{
    testing::internal::CaptureStderr();
    const long failures = allocation::ForEachFailure(work);
    std::string expected;
    for (long i = 0; i < failures; ++i)
        expected += OutOfMemory;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
    EXPECT_GT(failures, 0);
}

TEST(FixedHeapMemory, GrowingFailsCleanly)
{
    ExpectOneMessageAFailure([] {
        VFixedHeap heap(1, 16, 0, nullptr);
        const VFixedHeap copy(heap);
        void* blocks[60] = {};
        for (void*& block : blocks) {
            block = heap.Allocate();
            ASSERT_TRUE(block != nullptr || allocation::HasFailed());
            ASSERT_TRUE(IsValid(heap));
        }
        EXPECT_EQ(std::count(std::begin(blocks), std::end(blocks), nullptr), allocation::HasFailed());
        for (void* const block : blocks)
            EXPECT_TRUE(heap.Free(block));
        EXPECT_TRUE(IsValid(heap));
    });
}

TEST(FixedHeapMemory, InsertingPagesFailsCleanly)
{
    static char memory[4][64];
    static void* pages[] = {memory[0], memory[1], memory[2], memory[3]};
    ExpectOneMessageAFailure([] {
        VFixedHeap heap(1, 64, 4, pages);
        std::size_t count = 0;
        for (void* const page : pages) {
            void* const block = heap.Allocate();
            ASSERT_TRUE(block == page || (block == nullptr && allocation::HasFailed()));
            count += block != nullptr;
        }
        EXPECT_EQ(count < 4, allocation::HasFailed());
        EXPECT_EQ(heap.Allocate(), nullptr);
    });
}

TEST(FixedHeapMemory, TheBlockHeapStaysOffWithoutMemory)
{
    InitVxHeap();
    vxheap::Reset();  // from here on the region is the only allocation
    ExpectOneMessageAFailure([] {
        InitVxHeap();
        EXPECT_NE(IsVxHeapEnabled(), allocation::HasFailed());
        void* const block = VxMalloc(8);
        EXPECT_NE(block, nullptr);
        VxFree(block);
        vxheap::Reset();
    });
}

}  // namespace
