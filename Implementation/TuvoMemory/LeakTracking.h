// What the checker does with blocks that have headers. Tracked allocation does it itself, without calling the hooks,
// as long as there is nothing else to do: a hook costs more than the slot it fills.
#pragma once

#include "TuvoMemory/LeakState.h"
#include "TuvoMemory/MemoryState.h"
#include "VFixedHeap/VxHeap.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace leaks {

// The hooks.
void OnAllocation(void* block, std::size_t size, const char* file, int line, int kind);
bool OnRelease(void* block, const char* file, int line);

inline const char* FileOrDefault(const char* file) noexcept
{
    if (file != nullptr) [[likely]]
        return file;
    return memory::g_state.defaultFile != nullptr ? memory::g_state.defaultFile : "Unknown";
}

// A line is kept only with the name of its file.
inline void AddSlot(memory::BlockHeader& header, const char* name, int line, std::int32_t sequence) noexcept
{
    TheState().tally.slots.Add(&header + 1, {sequence, name != nullptr ? line : UnknownLine}, name);
}

// The tag last.
inline void LayHeader(memory::BlockHeader& header, std::size_t size, std::int32_t index, int kind) noexcept
{
    header.index = index;
    header.size = static_cast<std::int32_t>(size);
    header.initialCount = memory::NoInitialCount;
    TheState().tally.bytesInUse += header.size;
    header.tag = static_cast<std::uint16_t>(memory::TagOfKind0 + kind);
}

// ---- The common path -----------------------------------------------------------------------------------------------

// The largest payload that the heap has a block for.
inline constexpr std::size_t LargestHeapPayload = vxheap::LargestBlock - memory::HeaderSize;

// The caller's bytes are set to 1 when a block is made and when it is released. In a block of the heap by a number of
// stores that does not depend on the size, which changes from block to block: what is too many falls on top of others.
using Ones = std::array<unsigned char, 16>;
inline constexpr Ones g_ones = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
using StoreOffsets = std::array<std::uint8_t, LargestHeapPayload / sizeof(Ones)>;  // of which the first is 0
static_assert(LargestHeapPayload % sizeof(Ones) == 0);

// For payloads in grains. A block of the heap has room for whole grains, and for one store at least.
inline constexpr auto g_storeOffsets = [] {
    std::array<StoreOffsets, LargestHeapPayload / vxheap::Grain + 1> offsets{};
    for (std::size_t grains = 0; grains < offsets.size(); ++grains)
        for (std::size_t store = 0; store < offsets[grains].size(); ++store) {
            const std::size_t last = std::max(grains * vxheap::Grain, sizeof(Ones)) - sizeof(Ones);
            offsets[grains][store] = static_cast<std::uint8_t>(std::min(store * sizeof(Ones), last));
        }
    return offsets;
}();

// `size` is at most LargestHeapPayload.
inline void FillHeapPayload(void* payload, std::size_t size) noexcept
{
    auto* const bytes = static_cast<unsigned char*>(payload);
    const StoreOffsets& offsets = g_storeOffsets[vxheap::GrainsOf(size)];
    static_assert(std::tuple_size_v<StoreOffsets> == 7);
    std::memcpy(bytes, &g_ones, sizeof(Ones));
    std::memcpy(bytes + offsets[1], &g_ones, sizeof(Ones));
    std::memcpy(bytes + offsets[2], &g_ones, sizeof(Ones));
    std::memcpy(bytes + offsets[3], &g_ones, sizeof(Ones));
    std::memcpy(bytes + offsets[4], &g_ones, sizeof(Ones));
    std::memcpy(bytes + offsets[5], &g_ones, sizeof(Ones));
    std::memcpy(bytes + offsets[6], &g_ones, sizeof(Ones));
}

// Has WatchShortcut set when all that it stands for holds.
inline void TakeUpShortcut() noexcept
{
    using memory::g_state;
    const State& state = TheState();
    if ((g_state.watch & memory::WatchHeaders) != 0 && memory::LaysHeaders() && !g_state.isHookRunning &&
        g_state.allocationHook == OnAllocation && g_state.releaseHook == OnRelease &&
        g_state.callStackProvider == nullptr && !state.watch.IsSet() && state.tally.slots.AreStackless())
        g_state.watch |= memory::WatchShortcut;
}

// Whether the next allocation may take the shortcut.
inline bool MayTakeShortcut() noexcept
{
    const Tally& tally = TheState().tally;
    return (memory::g_state.watch & memory::WatchShortcut) != 0 && tally.slots.HasRoom() &&
           tally.progress.IsTold(tally.bytesInUse);
}

// The name that the slots keep of a file at once; false when it has to be looked for.
inline bool FindName(const char* file, const char*& name) noexcept
{
    name = nullptr;
    return memory::g_state.mode != 4 || (file != nullptr && (name = TheState().names.FindRecent(file)) != nullptr);
}

// Gives a new block its slot and its header. There has to be room for the slot.
inline void* AddSlottedBlock(memory::BlockHeader& header, std::size_t size, const char* name, int line,
                             int kind) noexcept
{
    const std::int32_t index = memory::g_state.slotCount;
    AddSlot(header, name, line, SequenceOf(TheState().tally.counter++));
    LayHeader(header, size, index, kind);
    return &header + 1;
}

// A tracked block of the heap; null, with nothing done, when that takes more than a few instructions.
[[gnu::always_inline]] inline void* TakeSlottedBlock(std::size_t size, const char* file, int line, int kind) noexcept
{
    const char* name = nullptr;
    if (size - 1 >= LargestHeapPayload || !MayTakeShortcut() || !FindName(file, name))
        return nullptr;
    fixedheap::Page& page = *vxheap::ClassOf(size + memory::HeaderSize).current;
    if (!fixedheap::HasLinkedBlock(page))
        return nullptr;
    auto& header = *static_cast<memory::BlockHeader*>(fixedheap::PopLinked(page));
    FillHeapPayload(&header + 1, size);
    return AddSlottedBlock(header, size, name, line, kind);
}

// The same for a block of any size and place; null also when memory is exhausted.
inline void* TakeLargeSlottedBlock(std::size_t size, const char* file, int line, int kind) noexcept
{
    const char* name = nullptr;
    if (size - 1 >= memory::LargestTrackedSize || !MayTakeShortcut() || !FindName(file, name))
        return nullptr;
    void* const block = vxheap::Allocate(size + memory::HeaderSize);
    if (block == nullptr)
        return nullptr;
    auto& header = *static_cast<memory::BlockHeader*>(block);
    std::memset(&header + 1, 1, size);
    return AddSlottedBlock(header, size, name, line, kind);
}

// Whether a block has a header and a slot of its own, and may give them back by the shortcut. Reads in front of the
// block, as memory::FindHeader does.
[[gnu::no_sanitize_address]] inline bool IsSlottedBlock(const void* block) noexcept
{
    using memory::g_state;
    const auto& header = *(static_cast<const memory::BlockHeader*>(block) - 1);
    return (g_state.watch & memory::WatchShortcut) != 0 &&
           static_cast<std::uint16_t>(header.tag - memory::TagOfKind0) <= 2 && header.size >= 0 &&
           static_cast<std::uint32_t>(header.index) < static_cast<std::uint32_t>(g_state.slotCount) &&
           g_state.slots[header.index].block == block;
}

// Takes its slot from such a block, and marks the header.
inline void RemoveSlottedBlock(memory::BlockHeader& header, std::int32_t size, std::int32_t index) noexcept
{
    TheState().tally.bytesInUse -= size;
    TheState().tally.slots.Remove(index);
    memory::MarkReleased(header);
}

// One that does not lie in the heap.
[[gnu::noinline]] inline void GiveLargeSlottedBlock(void* block) noexcept
{
    memory::BlockHeader& header = *memory::HeaderOf(block);
    std::memset(block, 1, static_cast<std::size_t>(header.size));
    RemoveSlottedBlock(header, header.size, header.index);
    std::free(&header);
}

// Gives back what IsSlottedBlock.
inline void GiveSlottedBlock(void* block) noexcept
{
    memory::BlockHeader& header = *memory::HeaderOf(block);
    const std::size_t offset = vxheap::RegionOffset(&header);
    if (offset >= vxheap::RegionSize)
        return GiveLargeSlottedBlock(block);
    const std::int32_t size = header.size;
    const std::int32_t index = header.index;
    FillHeapPayload(block, static_cast<std::size_t>(size));
    RemoveSlottedBlock(header, size, index);
    vxheap::ReleaseAt(offset, &header);
}

}  // namespace leaks
