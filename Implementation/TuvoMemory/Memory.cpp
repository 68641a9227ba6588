#include "TuvoMemory/LeakTracking.h"
#include "TuvoMemory/MemoryState.h"
#include "VFixedHeap/VxHeap.h"

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Memory.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuMessage.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

int __VxFreeLoopCount__ = 0;
constinit memory::State memory::g_state;

using memory::g_state;
using memory::HeaderState;

namespace {

// What is larger is not even asked for.
constexpr std::size_t LargestSize = PTRDIFF_MAX - memory::HeaderSize;

constexpr int SeverityError = 2;

class HookScope
{
public:
    explicit HookScope(const void* caller = nullptr) : m_before(g_state.isHookRunning), m_callerBefore(g_state.caller)
    {
        g_state.isHookRunning = true;
        g_state.caller = caller;
        memory::DropShortcut();
    }
    ~HookScope()
    {
        g_state.isHookRunning = m_before;
        g_state.caller = m_callerBefore;
    }
    HookScope(const HookScope&) = delete;
    HookScope& operator=(const HookScope&) = delete;

private:
    bool m_before;
    const void* m_callerBefore;
};

// Prints and posts without allocating. `message` is one of the texts below, plain ASCII.
void ReportWithoutReporter(const char* message)
{
    std::fprintf(stderr, "%s\n", message);
    wchar_t text[64] = {};
    std::copy_n(message, std::min(std::strlen(message), std::size(text) - 1), text);
    BuOutputMessage(SeverityError, text);
}

void Report(const char* message, int fatal)
{
    if (g_state.errorReporter != nullptr)
        g_state.errorReporter(message, fatal);
    else
        ReportWithoutReporter(message);
}

// Always null, the result of what failed.
[[gnu::cold]] void* FailAllocation()
{
    std::fputs("Memory allocation Error <VxMalloc>: Null returned\n", stderr);
    BuOutputMessage(SeverityError, BuLocalizeStringExW(L"Memory allocation Error <VxMalloc>: Null returned\n", 0));
    Report("VxMalloc : Memory allocation error", 1);
    return nullptr;
}

[[gnu::cold]] void* FailReallocation()
{
    Report("VxRealloc: Memory allocation error", 1);
    return nullptr;
}

[[gnu::cold]] void* RefuseSize(std::size_t size)
{
    if (size != 0)
        return FailAllocation();
    Report("Memory allocation Error <VxMalloc>: 0 Bytes\n", 0);
    return nullptr;
}

// The common path of the block heap alone; null when another is needed.
void* TakeLinkedBlock(std::size_t size)
{
    if (size > vxheap::LargestBlock)
        return nullptr;
    fixedheap::Page& page = *vxheap::ClassOf(size).current;
    return fixedheap::HasLinkedBlock(page) ? fixedheap::PopLinked(page) : nullptr;
}

void* AllocateUntracked(std::size_t size)
{
    void* const block = vxheap::Allocate(size);
    return block != nullptr ? block : FailAllocation();
}

void CallAllocationHook(void* block, std::size_t size, const char* file, int line, int kind, const void* caller)
{
    const HookScope scope(caller);
    if (block != nullptr && memory::LaysHeaders())
        g_state.watch |= memory::WatchHeaders;
    g_state.allocationHook(block, size, file, line, kind);
}

// Whether the block may be given back.
bool CallReleaseHook(void* start, bool hasHeader, const char* file, int line)
{
    const HookScope scope;
    g_state.releaseHasHeader = hasHeader;
    return g_state.releaseHook(start, file, line);
}

// Whether the release hook gets the start of the header. Of doubtful ones it has to know as well: it tells of pointers
// that were freed before.
bool IsReleasedByHeader(HeaderState header)
{
    return header == HeaderState::Live ||
           (header == HeaderState::Doubtful && memory::IsActive() && memory::IsHeaderMode());
}

// Whether a block made now is none of the checker's business: made by a hook itself, or too large for a header.
bool IsBeyondChecker(std::size_t size)
{
    return g_state.isHookRunning || (size > memory::LargestTrackedSize && memory::LaysHeaders());
}

void* AllocateTracked(std::size_t size, const char* file, int line, int kind, const void* caller)
{
    const bool hasHeader = memory::LaysHeaders();
    const std::size_t wholeSize = size + (hasHeader ? memory::HeaderSize : 0);
    void* const block = vxheap::Allocate(wholeSize);
    // Kept: without a hook the call fails and the block stays taken; checking was started without being initialised.
    if (g_state.allocationHook == nullptr)
        return FailAllocation();  // NOLINT(clang-analyzer-unix.Malloc)
    CallAllocationHook(block, wholeSize, file, line, kind, caller);
    leaks::TakeUpShortcut();
    // Checking may have been stopped by what the hook caused.
    if (block == nullptr || !hasHeader || !memory::IsActive() || !memory::IsHeaderMode())
        return block;
    return static_cast<unsigned char*>(block) + memory::HeaderSize;
}

[[gnu::noinline]] void* AllocateUncommon(std::size_t size, const char* file, int line, int kind, const void* caller)
{
    if (void* const block = leaks::TakeLargeSlottedBlock(size, file, line, kind))
        return block;
    if (size == 0 || size > LargestSize)
        return RefuseSize(size);
    if (memory::IsActive() && !IsBeyondChecker(size))
        return AllocateTracked(size, file, line, kind, caller);
    return AllocateUntracked(size);
}

[[gnu::noinline]] void* AllocateWatched(std::size_t size, const char* file, int line, int kind, const void* caller)
{
    void* const block = leaks::TakeSlottedBlock(size, file, line, kind);
    return block != nullptr ? block : AllocateUncommon(size, file, line, kind, caller);
}

// `caller` is the return address of the exported function, by which call stacks know where the host's frames begin.
inline void* Allocate(std::size_t size, const char* file, int line, int kind, const void* caller)
{
    if (g_state.watch == 0) [[likely]] {
        if (void* const block = TakeLinkedBlock(size)) [[likely]]
            return block;
        return AllocateUncommon(size, file, line, kind, caller);
    }
    return AllocateWatched(size, file, line, kind, caller);
}

[[gnu::noinline]] void ReleaseUncommon(void* block, const char* file, int line)
{
    const HeaderState header = memory::FindHeader(block);
    const bool hasHeader = IsReleasedByHeader(header);
    void* const start = hasHeader ? memory::HeaderOf(block) : block;
    bool mayRelease = header != HeaderState::Released;
    if ((memory::IsActive() || hasHeader) && g_state.releaseHook != nullptr)
        mayRelease = CallReleaseHook(start, hasHeader, file, line) && mayRelease;
    if (!mayRelease)
        return;
    if (hasHeader)
        memory::MarkReleased(*static_cast<memory::BlockHeader*>(start));
    vxheap::Release(start);
}

[[gnu::noinline]] void ReleaseWatched(void* block, const char* file, int line)
{
    if (!leaks::IsSlottedBlock(block)) [[unlikely]]
        return ReleaseUncommon(block, file, line);
    leaks::GiveSlottedBlock(block);
}

// A block with a header always moves, so that the checker sees an allocation and a release.
void* ReallocateTracked(void* block, std::size_t size, const char* file, int line, const void* caller)
{
    const std::size_t oldSize = static_cast<std::size_t>(memory::HeaderOf(block)->size);
    void* const moved = Allocate(size, file, line, 0, caller);
    if (moved == nullptr && size != 0)
        return nullptr;
    if (moved != nullptr)
        std::memcpy(moved, block, std::min(oldSize, size));
    ReleaseWatched(block, file, line);
    return moved;
}

// Kept: the checker is not told, so in the modes without headers a record keeps the address before the move.
void* ReallocateUntracked(void* block, std::size_t size)
{
    void* moved = nullptr;
    if (size == 0)
        vxheap::Release(block);
    else if (size <= LargestSize)
        moved = VxRealloc(block, size);
    return moved != nullptr ? moved : FailReallocation();
}

}  // namespace

void* VBuMalloc(std::size_t size, const char* file, int line, int kind)
{
    return Allocate(size, file, line, kind, __builtin_return_address(0));
}

void* VBuCalloc(std::size_t count, std::size_t size, const char* file, int line)
{
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes))
        return FailAllocation();
    void* const block = Allocate(bytes, file, line, 0, __builtin_return_address(0));
    return block != nullptr ? std::memset(block, 0, bytes) : nullptr;
}

void* VBuRealloc(void* block, std::size_t size, const char* file, int line)
{
    if (block == nullptr)
        return Allocate(size, file, line, 0, __builtin_return_address(0));
    if (size == 0)
        Report("Memory allocation Error <VxRealloc>: 0 Bytes\n", 0);
    switch (memory::FindHeader(block)) {
        case HeaderState::Live:
            return ReallocateTracked(block, size, file, line, __builtin_return_address(0));
        case HeaderState::Released:
            return FailReallocation();
        case HeaderState::Doubtful:
        case HeaderState::None:
            break;
    }
    return ReallocateUntracked(block, size);
}

void VBuFree(void* block, const char* file, int line)
{
    if (g_state.watch == 0) [[likely]]
        vxheap::Release(block);
    else if (block != nullptr)
        ReleaseWatched(block, file, line);
}

char* VBuStrDup(const char* text, const char* file, int line)
{
    if (text == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = Allocate(size, file, line, 0, __builtin_return_address(0));
    return copy != nullptr ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

void VBuAddPointer(void* block, std::size_t size, const char* file, int line, int kind)
{
    if (block == nullptr || !memory::IsActive() || g_state.allocationHook == nullptr || IsBeyondChecker(size))
        return;
    CallAllocationHook(block, size + (memory::LaysHeaders() ? memory::HeaderSize : 0), file, line, kind,
                       __builtin_return_address(0));
}

void VBuDeletePointer(void* block, const char* file, int line)
{
    if (block == nullptr)
        Report("Memory error : Free null pointer", 0);
    if (!memory::IsActive() || g_state.releaseHook == nullptr)
        return;
    const bool hasHeader = IsReleasedByHeader(memory::FindHeader(block));
    CallReleaseHook(hasHeader ? memory::HeaderOf(block) : block, hasHeader, file, line);
}
