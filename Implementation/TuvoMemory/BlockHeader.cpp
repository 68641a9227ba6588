#include "TuvoMemory/MemoryState.h"

#include <TuvoUtil/Memory.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

// How far an index may lie beyond the slots: a block that is released twice has lost its slot to others meanwhile.
constexpr std::int64_t IndexTolerance = 4;

bool HasReadableHeaders()
{
    return memory::IsActive() && memory::IsHeaderMode();
}

bool IsSlotOf(std::int32_t index, const void* block)
{
    using memory::g_state;
    if (g_state.slots == nullptr || index == memory::NoIndex)
        return true;
    return index < g_state.slotCount && g_state.slots[index].block == block;
}

// What does not fit becomes a size that cannot be had.
std::size_t WithHeader(std::size_t size)
{
    return std::min(size, SIZE_MAX - memory::HeaderSize) + memory::HeaderSize;
}

}  // namespace

// The bytes in front of a bare block belong to somebody else, so the address sanitizer must not watch the reads.
[[gnu::noinline, gnu::no_sanitize_address]] memory::HeaderState memory::FindHeader(const void* block) noexcept
{
    if (block == nullptr || (g_state.watch & WatchHeaders) == 0)
        return HeaderState::None;
    const BlockHeader* const header = static_cast<const BlockHeader*>(block) - 1;
    if (header->tag == TagReleased && header->size == ReleasedMark && header->index == ReleasedMark)
        return HeaderState::Released;
    const bool isLive = header->tag >= TagOfKind0 && header->tag <= TagOfKind2 && header->size >= 0 &&
                        header->index >= NoIndex && header->index <= g_state.slotCount + IndexTolerance;
    if (!isLive)
        return HeaderState::None;
    return IsSlotOf(header->index, block) ? HeaderState::Live : HeaderState::Doubtful;
}

memory::BlockHeader* memory::FindCountedHeader(void* block) noexcept
{
    if (FindHeader(block) != HeaderState::Live)
        return nullptr;
    BlockHeader* const header = HeaderOf(block);
    return header->tag == TagOfKind2 ? nullptr : header;
}

int MovraMemChkGetActualPtr(void** block, std::size_t* size)
{
    if (!memory::IsActive())
        return 1;
    if (!memory::IsHeaderMode())
        return 0;
    if (block != nullptr && *block != nullptr) {
        if (memory::FindHeader(*block) != memory::HeaderState::Live)
            return 1;
        *block = memory::HeaderOf(*block);
    }
    if (size != nullptr)
        *size = WithHeader(*size);
    return 0;
}

void MovraMemChkGetActualSize(std::size_t size, std::size_t* actual)
{
    if (actual != nullptr)
        *actual = memory::IsHeaderMode() ? WithHeader(size) : size;
}

int MovraMemChkGetAllocInfo(void* block, std::size_t* size)
{
    const memory::BlockHeader* const header = HasReadableHeaders() ? memory::FindCountedHeader(block) : nullptr;
    if (header == nullptr)
        return 1;
    if (size != nullptr)
        *size = static_cast<std::size_t>(header->size);
    return 0;
}

int MovraMemChkGetClientPtr(void** block)
{
    if (HasReadableHeaders() && block != nullptr && *block != nullptr)
        *block = static_cast<unsigned char*>(*block) + memory::HeaderSize;
    return 0;
}

int MovraMemChkGetInitialCount(void* block)
{
    const memory::BlockHeader* const header = HasReadableHeaders() ? memory::FindCountedHeader(block) : nullptr;
    return header == nullptr ? -1 : header->initialCount;
}

int MovraMemChkSetInitialCount(void* block, int count)
{
    if (!HasReadableHeaders())
        return 1;
    if (memory::BlockHeader* const header = memory::FindCountedHeader(block))
        header->initialCount = count;
    return 0;
}
