#include "VFixedHeap/VxHeap.h"

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// Takes and releases blocks at random, in phases of growth and of shrinking, and checks each place against the model.
void CompareWithModel(VFixedHeap& heap, Model model, unsigned int blockSize, std::map<int, char*> pages)
{
    std::mt19937 random(blockSize);
    std::vector<Model::Place> used;
    for (unsigned int step = 0; step < 4000; ++step) {
        if (random() % 100 < (step / 1000 % 2 == 0 ? 60U : 40U)) {
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
        ASSERT_TRUE(IsValid(Inspector::Pages(heap))) << step;
    }
}

TEST(FixedHeapModel, GrowableHeapsAgreeWithIt)
{
    for (const unsigned int blocksPerPage : {1U, 2U, 3U, 7U, 50U}) {
        SCOPED_TRACE(blocksPerPage);
        for (const unsigned int blockSize : {8U, 24U, 1000U}) {
            VFixedHeap heap(blocksPerPage, blockSize, 0, nullptr);
            CompareWithModel(heap, Model(blocksPerPage, 0), blockSize, {});
        }
    }
}

TEST(FixedHeapModel, HeapsOfInsertedPagesAgreeWithIt)
{
    for (const unsigned int blocksPerPage : {1U, 2U, 3U, 7U, 50U}) {
        SCOPED_TRACE(blocksPerPage);
        constexpr unsigned int BlockSize = 16;
        std::vector<char> memory(30 * blocksPerPage * BlockSize);
        std::vector<void*> starts;
        std::map<int, char*> pages;
        for (int i = 0; i < 30; ++i) {
            pages[i] = memory.data() + static_cast<unsigned int>(i) * blocksPerPage * BlockSize;
            starts.push_back(pages[i]);
        }
        VFixedHeap heap(blocksPerPage, BlockSize, 30, starts.data());
        CompareWithModel(heap, Model(blocksPerPage, 30), BlockSize, pages);
    }
}

// The classes as documented: block size, blocks a page, pages.
struct DocumentedClass
{
    unsigned int blockSize, blocksPerPage;
    int pages;
};
constexpr DocumentedClass documentedClasses[] = {{8, 50000, 6},  {16, 50000, 2}, {32, 50000, 6}, {40, 50000, 2},
                                                 {48, 20000, 2}, {64, 20000, 2}, {96, 10000, 1}, {128, 10000, 1}};

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

    bool IsInside(const void* block) const { return block >= m_region && block < m_region + vxheap::RegionSize; }

    char* m_region = nullptr;
};

struct UsedBlock
{
    std::size_t row;
    Model::Place place;
    char* address;
};

TEST_F(VxHeapInternal, ClassesAgreeWithTheModel)
{
    std::vector<Model> models;
    std::vector<char*> starts;
    char* start = m_region;
    for (const auto& [blockSize, blocksPerPage, pages] : documentedClasses) {
        models.emplace_back(blocksPerPage, pages);
        starts.push_back(start);
        start += std::size_t{blockSize} * blocksPerPage * static_cast<unsigned int>(pages);
    }

    std::mt19937 random(1);
    std::vector<UsedBlock> used;
    const auto allocate = [&] {
        const std::size_t row = random() % 2 == 0 ? 0 : random() % 8;
        const auto& [blockSize, blocksPerPage, pages] = documentedClasses[row];
        const unsigned int above = row > 0 ? documentedClasses[row - 1].blockSize : 0;
        const Model::Place place = models[row].Allocate();
        char* const block = static_cast<char*>(VxMalloc(above + 1 + random() % (blockSize - above)));
        if (place.first < 0) {
            ASSERT_FALSE(IsInside(block));
            return VxFree(block);
        }
        const std::size_t index = static_cast<std::size_t>(place.first) * blocksPerPage + place.second;
        ASSERT_EQ(block, starts[row] + index * blockSize);
        used.push_back({row, place, block});
    };
    const auto release = [&] {
        std::swap(used[random() % used.size()], used.back());
        models[used.back().row].Free(used.back().place);
        VxFree(used.back().address);
        used.pop_back();
    };

    // Up until the small classes are exhausted and the first has most of its pages in use, down to nothing, up again.
    for (const unsigned int percent : {90U, 20U, 60U}) {
        for (int step = 0; step < 300'000; ++step) {
            if (random() % 100 < percent || used.empty())
                ASSERT_NO_FATAL_FAILURE(allocate()) << percent << " %, step " << step;
            else
                release();
        }
        EXPECT_TRUE(vxheap::IsValid());
        EXPECT_EQ(vxheap::UsedBlocks(), used.size());
    }
    while (!used.empty())
        release();
    EXPECT_TRUE(vxheap::IsValid());
    EXPECT_EQ(vxheap::UsedBlocks(), 0U);
    for (int i = 0; i < 1000; ++i)
        ASSERT_NO_FATAL_FAILURE(allocate());
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

TEST_F(VxHeapInternal, WalkerFindsDamage)
{
    auto** const block = static_cast<void**>(VxMalloc(64));
    void* const other = VxMalloc(64);
    VxFree(block);
    EXPECT_TRUE(vxheap::IsValid());
    for (void* const link :
         {static_cast<void*>(block), static_cast<void*>(block + 1), other, static_cast<void*>(nullptr)}) {
        void* const right = std::exchange(*block, link);
        EXPECT_FALSE(vxheap::IsValid()) << link;
        *block = right;
    }
    VxFree(other);
    EXPECT_TRUE(vxheap::IsValid());
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
            ASSERT_TRUE(IsValid(Inspector::Pages(heap)));
        }
        EXPECT_EQ(std::count(std::begin(blocks), std::end(blocks), nullptr), allocation::HasFailed());
        for (void* const block : blocks)
            EXPECT_TRUE(heap.Free(block));
        EXPECT_TRUE(IsValid(Inspector::Pages(heap)));
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

TEST_F(VxHeapInternal, MovingOutFailsCleanly)
{
    char* const block = static_cast<char*>(VxMalloc(8));
    *block = 'x';
    allocation::FailOnce(1);
    EXPECT_EQ(VxRealloc(block, 1000), nullptr);
    EXPECT_EQ(*block, 'x');
    EXPECT_EQ(vxheap::UsedBlocks(), 1U);
    EXPECT_TRUE(vxheap::IsValid());
}

}  // namespace
