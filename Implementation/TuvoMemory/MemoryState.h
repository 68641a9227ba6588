// The state that tracked allocation and the leak checker share, and the block header.
//
// The checker, and tests, set the fields directly; no exported function sets the hooks, the suppression value and the
// error reporter.
#pragma once

#include <cstddef>
#include <cstdint>

namespace memory {

// In front of the caller's bytes of a block made while LaysHeaders(). The allocation hook fills it, the tag last.
struct [[gnu::may_alias]] BlockHeader
{
    std::uint16_t tag;          // TagOfKind0 + kind, or TagReleased
    std::uint16_t reserved;     // never written
    std::int32_t size;          // bytes asked for, or ReleasedMark
    std::int32_t index;         // of the block's slot, NoIndex, or ReleasedMark
    std::int32_t initialCount;  // of VBuBlockAllocAndAppend, or NoInitialCount
};
static_assert(sizeof(BlockHeader) == 16);
static_assert(offsetof(BlockHeader, tag) == 0 && offsetof(BlockHeader, reserved) == 2);
static_assert(offsetof(BlockHeader, size) == 4 && offsetof(BlockHeader, index) == 8);
static_assert(offsetof(BlockHeader, initialCount) == 12);

constexpr std::size_t HeaderSize = sizeof(BlockHeader);
constexpr std::uint16_t TagOfKind0 = 12345;
constexpr std::uint16_t TagOfKind1 = 12346;
constexpr std::uint16_t TagOfKind2 = 12347;
constexpr std::uint16_t TagReleased = 23456;
constexpr std::int32_t ReleasedMark = -123456;
constexpr std::int32_t NoIndex = -1;
constexpr std::int32_t NoInitialCount = -1;

// The size field cannot hold more. In a mode with headers a larger block goes without header and record.
constexpr std::size_t LargestTrackedSize = INT32_MAX;

// What the checker knows of a block with a header, whose index leads here.
struct Slot
{
    struct Number
    {
        std::int32_t sequence;
        std::int32_t line;  // stands where the layout leaves room; -1 without a file
    };

    void* block;  // the caller's pointer; the header stands in front
    Number number;
    const char* file;  // null in mode 2, which keeps no origin
    std::uint16_t frameCount;
    char** frames;  // the call stack
};
static_assert(sizeof(Slot) == 40);
static_assert(offsetof(Slot, number) == 8 && offsetof(Slot, file) == 16 && offsetof(Slot, frames) == 32);

// Told of every block made while the checker is active. `block` is the start of the header when LaysHeaders(), which
// `size` then includes; null when memory is exhausted. Not entered again by what it causes itself.
using AllocationHook = void (*)(void* block, std::size_t size, const char* file, int line, int kind);

// Told of every block released while the checker is active, and of every block with a header even when it is not, since
// the slot has to go with the block. Gets the start of the header when State::releaseHasHeader, whatever the mode, else
// the block itself. False forbids to give the block back: it is not ours, or was given back before. Blocks that a host
// frees while a hook posts a message enter it again, so the records have to be sound when a message is posted.
using ReleaseHook = bool (*)(void* block, const char* file, int line);

using ErrorReporter = void (*)(const char* message, int fatal);
using CallStackProvider = int (*)(int* depth, char*** frames);

constexpr std::uint32_t WatchActive = 1;   // the checker is active
constexpr std::uint32_t WatchHeaders = 2;  // a header was laid; from then on blocks may have one
// A block gets a header and a slot, or gives them back, and nobody has to be told or asked of it: no hook needs to run.
// Whoever changes anything that this depends on drops it; it is taken up again after the next hook.
constexpr std::uint32_t WatchShortcut = 4;

struct State
{
    std::uint32_t watch = 0;  // of the flags below; 0: allocation has nothing but the heap to care for
    int mode = 2;
    int second = 0;
    int headerSuppression = -1;  // other than -1 and 0: no headers; 1: the checker only counts
    std::int32_t slotCount = 0;  // slots in use for blocks with headers; above the index of every live header
    bool isHookRunning = false;
    bool releaseHasHeader = false;
    const void* caller = nullptr;  // while the allocation hook runs: the return address of the allocating function

    AllocationHook allocationHook = nullptr;
    ReleaseHook releaseHook = nullptr;
    ErrorReporter errorReporter = nullptr;  // null: standard error and BuOutputMessage
    CallStackProvider callStackProvider = nullptr;
    void (*freeRecordTable)() = nullptr;  // drops the records of the modes without headers
    Slot* slots = nullptr;                // slotCount of them; null: headers are not doubted
    const char* defaultFile = nullptr;    // for records whose file is null
};

extern constinit State g_state;

inline bool IsActive() noexcept
{
    return (g_state.watch & WatchActive) != 0;
}

inline void DropShortcut() noexcept
{
    g_state.watch &= ~WatchShortcut;
}

inline void SetActive(bool active) noexcept
{
    DropShortcut();
    g_state.watch = active ? g_state.watch | WatchActive : g_state.watch & ~WatchActive;
}

inline bool IsHeaderMode() noexcept
{
    return g_state.mode == 2 || g_state.mode == 4;
}

// Whether a block made now gets a header.
inline bool LaysHeaders() noexcept
{
    return IsActive() && (g_state.headerSuppression == -1 || g_state.headerSuppression == 0) && IsHeaderMode();
}

enum class HeaderState : std::uint8_t
{
    None,
    Live,
    Doubtful,  // looks live, but the checker's slot is not that of this block
    Released
};

// Whether a pointer that a caller holds has a header in front of it. The only function that reads there, and only once
// a header was laid in this process. The tag alone does not decide, since a caller's bytes may look like one (the text
// "90" does): the size of a live header is not negative and its index at most 4 beyond the slots. A doubtful one counts
// as none, except that an active checker is asked about its release, which it may have to report.
HeaderState FindHeader(const void* block) noexcept;

inline BlockHeader* HeaderOf(void* block) noexcept
{
    return static_cast<BlockHeader*>(block) - 1;
}

// Done before the memory goes back, checker or not: what looks like a live header in reused memory would be taken for
// that of the block behind it.
inline void MarkReleased(BlockHeader& header) noexcept
{
    header.tag = TagReleased;
    header.size = ReleasedMark;
    header.index = ReleasedMark;
}

// The live header of a block of kind 0 or 1, null for any other block: kind 2 keeps no size and count for callers.
BlockHeader* FindCountedHeader(void* block) noexcept;

}  // namespace memory
