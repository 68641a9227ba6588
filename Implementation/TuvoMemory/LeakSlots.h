// The slots of blocks with headers: the header holds the index of its slot, the slot the address of its block.
#pragma once

#include "TuvoMemory/HeapArray.h"
#include "TuvoMemory/LeakFrames.h"
#include "TuvoMemory/MemoryState.h"

#include <cstddef>
#include <cstdint>

namespace leaks {

using memory::Slot;

// memory::g_state knows where the slots are and how many.
class SlotTable
{
public:
    const Slot& operator[](std::size_t index) const noexcept { return m_slots[index]; }
    const Slot* begin() const noexcept { return m_slots.begin(); }
    const Slot* end() const noexcept { return m_slots.end(); }
    std::size_t Count() const noexcept { return m_slots.Size(); }

    // A slot to be filled, the last one; null when memory is exhausted.
    Slot* Add() noexcept
    {
        Slot* const slot = m_slots.AppendUnset();
        if (slot != nullptr) [[likely]] {
            memory::g_state.slots = m_slots.begin();
            memory::g_state.slotCount = static_cast<std::int32_t>(m_slots.Size());
        }
        return slot;
    }

    // Frees the frames of a slot and moves the last one in its place.
    void Remove(std::int32_t index) noexcept
    {
        Slot& slot = m_slots[static_cast<std::size_t>(index)];
        if (slot.frames != nullptr)
            std::free(static_cast<void*>(slot.frames));
        const std::size_t last = m_slots.Size() - 1;
        if (static_cast<std::size_t>(index) != last) {
            slot = m_slots[last];
            memory::HeaderOf(slot.block)->index = index;
        }
        m_slots.Truncate(last);
        memory::g_state.slotCount = static_cast<std::int32_t>(last);
    }

    // Drops all slots: the headers of their blocks name none from then on. With the frames, or leaving them to whoever
    // has copied the slots.
    void Clear() noexcept;
    void ClearWithoutFrames() noexcept;

private:
    HeapArray<Slot> m_slots;
};

}  // namespace leaks
