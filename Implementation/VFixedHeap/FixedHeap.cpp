#include <TuvoUtil/FixedHeap.h>

#include "VFixedHeap/PageSet.h"

#include <cassert>
#include <cstdlib>
#include <new>

using namespace fixedheap;

namespace {

constinit PageSet noPages;  // of a heap that has no page yet; never written

PageSet* NewPageSet(unsigned int blocksPerPage, unsigned int blockSize)
{
    void* const memory = std::malloc(sizeof(PageSet));
    if (memory == nullptr)
        return nullptr;
    PageSet* const set = new (memory) PageSet;
    set->blocksPerPage = blocksPerPage;
    set->blockSize = blockSize;
    return set;
}

// A record of a page and `bytes` for its blocks behind it.
Page* NewPage(std::size_t bytes)
{
    void* const memory = std::malloc(sizeof(Page) + bytes);
    if (memory == nullptr)
        ReportExhaustedMemory();
    return memory != nullptr ? new (memory) Page{} : nullptr;
}

// The page, or null when it could not be appended and was released.
Page* KeepIfAppended(Page* page)
{
    if (page->owner != nullptr)
        return page;
    std::free(page);
    return nullptr;
}

PageSet* Share(PageSet* set)
{
    if (set != &noPages)
        ++set->owners;
    return set;
}

void Release(PageSet* set)
{
    if (set == &noPages || --set->owners > 0)
        return;
    for (Page* const page : set->pages)
        std::free(page);
    std::free(set->pages.storage);
    std::free(set->byAddress.storage);
    std::free(set);
}

}  // namespace

static_assert(sizeof(Page) % 16 == 0, "blocks stand behind the record of their page");

VFixedHeap::VFixedHeap(unsigned int blocksPerPage, unsigned int blockSize, unsigned int pageCount, void** pages)
    : m_pageSet(&noPages), m_blockSize(blockSize), m_blocksPerPage(blocksPerPage), m_growable(true)
{
    assert(blockSize >= sizeof(Block));
    InsertPages(pageCount, pages);
}

VFixedHeap::VFixedHeap(const VFixedHeap& other)
    : m_pageSet(Share(other.m_pageSet)),
      m_blockSize(other.m_blockSize),
      m_blocksPerPage(other.m_blocksPerPage),
      m_growable(other.m_growable)
{}

VFixedHeap& VFixedHeap::operator=(const VFixedHeap& other)
{
    if (this == &other)
        return *this;
    PageSet* const before = m_pageSet;
    m_pageSet = Share(other.m_pageSet);
    m_blockSize = other.m_blockSize;
    m_blocksPerPage = other.m_blocksPerPage;
    m_growable = other.m_growable;
    Release(before);
    return *this;
}

VFixedHeap::~VFixedHeap()
{
    Release(m_pageSet);
}

void* VFixedHeap::Allocate()
{
    if (HasLinkedBlock(*m_pageSet->current))
        return PopLinked(*m_pageSet->current);
    Page* page = CurrentPage(*m_pageSet);
    if (page == nullptr) {
        page = CreatePage();
        if (page == nullptr)
            return nullptr;
        m_pageSet->current = page;
    }
    return Pop(*m_pageSet, *page);
}

bool VFixedHeap::Free(void* block)
{
    if (block == nullptr)
        return true;
    Page* const page = GetPageGivenBlock(static_cast<Block*>(block));
    if (page == nullptr || page->usedCount == 0)
        return false;
    PutBack(*m_pageSet, *page, static_cast<Block*>(block));
    if (m_growable && page->usedCount == 0)
        RemovePage(page);
    return true;
}

unsigned int VFixedHeap::GetClassSize()
{
    return m_blockSize;
}

bool VFixedHeap::IsPointerInHeap(void* pointer)
{
    return GetPageGivenBlock(static_cast<Block*>(pointer)) != nullptr;
}

_VFixedHeapPageStr* VFixedHeap::CreatePage()
{
    if (!m_growable || m_blocksPerPage == 0)
        return nullptr;
    Page* const page = NewPage(std::size_t{m_blocksPerPage} * m_blockSize);
    if (page == nullptr)
        return nullptr;
    Clear(*page, page + 1);
    AppendPage(page);
    return KeepIfAppended(page);
}

void VFixedHeap::AppendPage(_VFixedHeapPageStr* page)
{
    if (page == nullptr)
        return;
    if (m_pageSet == &noPages) {
        PageSet* const set = NewPageSet(m_blocksPerPage, m_blockSize);
        m_pageSet = set != nullptr ? set : &noPages;
    }
    CurrentPage(*m_pageSet);  // a search that was put off must not find the new page
    if (m_pageSet == &noPages || !Append(*m_pageSet, *page))
        ReportExhaustedMemory();
}

void VFixedHeap::InsertPages(unsigned int count, void** pages)
{
    if (count == 0 || pages == nullptr)
        return;
    m_growable = false;
    if (m_blocksPerPage == 0)
        return;
    for (unsigned int i = 0; i < count; ++i) {
        if (pages[i] == nullptr)
            continue;
        Page* const page = NewPage(0);
        if (page == nullptr)
            return;
        Clear(*page, pages[i]);
        AppendPage(page);
        if (KeepIfAppended(page) == nullptr)
            return;
        if (m_pageSet->current == &noPage)
            m_pageSet->current = page;
    }
}

void VFixedHeap::RemovePage(_VFixedHeapPageStr* page)
{
    if (page != nullptr && Remove(*m_pageSet, *page))
        std::free(page);
}

_VFixedHeapPageStr* VFixedHeap::GetFreePage()
{
    return FirstOpenPage(*m_pageSet);
}

_VFixedHeapPageStr* VFixedHeap::GetPageGivenBlock(_VFixedHeapBlockStr* block)
{
    return m_growable ? FindByAddress(*m_pageSet, block) : FindByNumber(*m_pageSet, block);
}

bool VFixedHeap::IsBlockInPage(_VFixedHeapPageStr* page, _VFixedHeapBlockStr* block)
{
    PageSet sizes;
    sizes.blockSize = m_blockSize;
    sizes.blocksPerPage = m_blocksPerPage;
    return page != nullptr && m_blocksPerPage > 0 && Holds(sizes, *page, block);
}
