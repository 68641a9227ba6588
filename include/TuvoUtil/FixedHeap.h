// Blocks of equal size: VFixedHeap, a pool for many small objects of one size, and the block heap of the process,
// which serves requests of 1 to 128 bytes from eight such pools and leaves everything else to malloc.
//
// Neither knows what its blocks are used for: nothing is constructed, and a block freed twice, or an address inside a
// block instead of its start, is not detected. Threads: nothing is locked. A VFixedHeap and its copies are for one
// thread at a time, and so is the block heap once it is on; while it is off, VxMalloc and its kin are as safe as
// malloc.
//
//   VFixedHeap nodes(1000, 48, 0, nullptr);  // pages of 1000 blocks of 48 bytes, made when they are needed
//   void* node = nodes.Allocate();
//   nodes.Free(node);                        // true; the page is empty and goes back to the process heap
//
//   InitVxHeap();                            // early, by the application
//   void* text = VxMalloc(33);               // a block of the 40-byte class
//   VxFree(text);
#pragma once

#include <TuvoUtil/Export.h>

#include <cstddef>

namespace fixedheap {
struct PageSet;
struct Inspector;
}  // namespace fixedheap

// A free block. An allocated block carries no header: all of its bytes are the caller's.
struct _VFixedHeapBlockStr
{
    _VFixedHeapBlockStr* next;  // the next free block of the same page, null at the end
};

// A run of blocks that lie side by side in memory.
struct _VFixedHeapPageStr
{
    void* memory;                    // the first block
    _VFixedHeapBlockStr* freeList;   // the first free block, null when the page is full
    unsigned int usedCount;          // allocated blocks
    _VFixedHeapBlockStr* untouched;  // from here on no block was ever allocated and no link is written; null: none such
    unsigned long long number;       // grows from page to page of a heap
    fixedheap::PageSet* owner;       // null until the page was appended to a heap
};

// A pool of equal-sized blocks. Blocks come out of a page in the order of their addresses, freed ones first, the last
// freed before the others. A growable heap makes pages when it has no room and gives back each page that becomes
// empty; a heap that was handed pages works with these alone.
//
// Exhausted memory: Allocate and CreatePage give null, and "Memory allocation Error <malloc>: Null returned" and a
// line end appear on standard error.
class TUVOUTIL_API VFixedHeap
{
public:
    // A heap of `blockSize` bytes (8 at least) a block and `blocksPerPage` blocks a page. Without pages (`pageCount`
    // 0 or `pages` null) it is growable; else the pages are inserted as by InsertPages. Takes no memory while it has
    // no page. Blocks of a growable heap are aligned to 16 bytes when the block size is a multiple of 16, and to 8
    // when it is one of 8.
    VFixedHeap(unsigned int blocksPerPage, unsigned int blockSize, unsigned int pageCount, void** pages);

    // A copy shares the pages of its source, those that either gets later included, and their current page: a block
    // taken from one may be freed through the other. The last of them releases the pages. (Heaps that have no page
    // yet share nothing.) Copying cannot fail.
    VFixedHeap(const VFixedHeap& other);
    VFixedHeap& operator=(const VFixedHeap& other);

    // Releases the pages that the heap made, whether or not blocks of them are in use; inserted memory stays.
    virtual ~VFixedHeap();

    // A block with undefined content, in constant time. Null when memory is exhausted, or when every page of a heap
    // that is not growable is full.
    void* Allocate();

    // Takes a block back, in constant time for a block of the page used last. True also for null; false when no page
    // of the heap holds the address. A page that becomes empty is released when the heap is growable.
    bool Free(void* block);

    // The size of a block in bytes.
    unsigned int GetClassSize();

    // Whether the address lies between the first byte of a page and the start of its last block. False for null. Pages
    // inserted into a heap are found only when they lie one behind the other in the order of insertion.
    bool IsPointerInHeap(void* pointer);

protected:
    // Makes a page with all blocks free and appends it. Null when the heap is not growable, has no blocks a page, or
    // memory is exhausted. Does not make it the current page, from which Allocate takes.
    _VFixedHeapPageStr* CreatePage();

    // Takes a page in as the last one. The record must come from std::malloc, with its first four members set and
    // `owner` null; the heap frees the record alone, so blocks made for the page stand best behind it in the same
    // allocation. When memory is exhausted the page stays the caller's and its owner null. Null does nothing.
    void AppendPage(_VFixedHeapPageStr* page);

    // Hands over memory for `count` pages, each of GetClassSize() * blocks per page bytes, which must outlive the heap
    // and its copies. From now on the heap is not growable. The first one becomes the current page when there is none.
    // Null addresses are skipped; a count of 0 or a null array does nothing.
    void InsertPages(unsigned int count, void** pages);

    // Takes a page out, keeping the order of the others, and frees its record, and with it the blocks of a page that
    // the heap made. Null and pages of other heaps are left alone.
    void RemovePage(_VFixedHeapPageStr* page);

    // The first page, in order of creation, that has a free block; null when there is none.
    _VFixedHeapPageStr* GetFreePage();

    // The page that Free would return a block to; null when there is none. O(log pages) in a growable heap, else O(1).
    _VFixedHeapPageStr* GetPageGivenBlock(_VFixedHeapBlockStr* block);

    // Whether a block lies between the first byte and the start of the last block of a page, which is laid out as those
    // of this heap are but need not belong to it. False when either is null.
    bool IsBlockInPage(_VFixedHeapPageStr* page, _VFixedHeapBlockStr* block);

private:
    friend struct fixedheap::Inspector;

    fixedheap::PageSet* m_pageSet;  // shared with the copies; never null
    unsigned int m_blockSize;
    unsigned int m_blocksPerPage;
    bool m_growable;
};

// Switches the block heap on for the rest of the process; it reserves 24,320,000 bytes, which take memory as they are
// used. Blocks obtained before stay valid. Does nothing when the heap is on, or when the environment variable
// DISABLE_VX_HEAP or QD_DVP_DEBUG_VERSION is true, which are read by the first call. When memory is exhausted the heap
// stays off and "Memory allocation Error <malloc>: Null returned" and a line end appear on standard error.
TUVOUTIL_API void InitVxHeap();

// Whether the block heap is on.
TUVOUTIL_API bool IsVxHeapEnabled();

// Allocate, resize and release memory. With the heap on, 1 to 128 bytes come from the smallest class (8, 16, 32, 40,
// 48, 64, 96 or 128 bytes a block) that holds them, and from malloc once that class is exhausted. Blocks of 8 and 40
// bytes are aligned to 8 bytes, all others to 16. Everything else goes to malloc, realloc and free: 0 bytes too,
// which give a block. Null when memory is exhausted.
TUVOUTIL_API void* VxMalloc(std::size_t size);

// Keeps the smaller of both sizes of a block's content. A block of the heap stays where it is when the new size
// belongs to its class; else it moves, and the rest of the new block is zero. Size 0 releases it and gives null. When
// memory is exhausted the result is null and the block stays as it was. A null block is allocated by realloc, never
// from the heap.
TUVOUTIL_API void* VxRealloc(void* block, std::size_t size);

// Takes blocks of VxMalloc and VxRealloc, and of malloc, whenever they were obtained. Null does nothing.
TUVOUTIL_API void VxFree(void* block);
