// The slots of blocks with headers: the header holds the index of its slot, the slot the address of its block.
#pragma once

#include "TuvoMemory/LeakFrames.h"
#include "TuvoMemory/MemoryState.h"

#include <cstddef>
#include <cstdint>

namespace leaks {

using memory::Slot;

// The slots themselves stand in memory::g_state, where headers are checked against them; here is what it takes to add
// and remove some. There is one table in a process.
class SlotTable
{
public:
    const Slot& operator[](std::size_t index) const noexcept { return memory::g_state.slots[index]; }
    const Slot* begin() const noexcept { return memory::g_state.slots; }
    const Slot* end() const noexcept { return begin() + Count(); }
    std::size_t Count() const noexcept { return static_cast<std::size_t>(memory::g_state.slotCount); }

    // Whether a slot can be added as things are. MakeRoom gives false when memory is exhausted.
    bool HasRoom() const noexcept { return memory::g_state.slotCount != m_capacity; }
    bool MakeRoom() noexcept { return HasRoom() || Grow(); }

    // The last slot, for which there has to be room. Has no call stack.
    void Add(void* block, const Slot::Number& number, const char* file) noexcept
    {
        Slot& slot = memory::g_state.slots[memory::g_state.slotCount++];
        slot.block = block;
        slot.number = number;
        slot.file = file;
    }
    void SetStack(std::int32_t index, const CallStack& stack) noexcept;

    // Whether no slot has a call stack.
    bool AreStackless() const noexcept { return m_areStackless; }

    // Moves the last slot in the place of another, whose call stack has to be freed or taken before.
    void Remove(std::int32_t index) noexcept
    {
        Slot& slot = memory::g_state.slots[index];
        const Slot& last = memory::g_state.slots[--memory::g_state.slotCount];
        if (!m_areStackless) [[unlikely]]
            MoveLastStack(slot);
        if (&last == &slot)
            return;
        MoveWords(last, slot);
        memory::HeaderOf(slot.block)->index = index;
    }

    // Drops all slots: the headers of their blocks name none from then on. With the frames, or leaving them to whoever
    // has copied the slots.
    void Clear() noexcept;
    void ClearWithoutFrames() noexcept;

private:
    // Word by word, as slots are written: the last one may be new, and wider reads would wait until it is in the cache.
    static void MoveWords(const volatile Slot& from, Slot& to) noexcept
    {
        to.block = from.block;
        to.number.sequence = from.number.sequence;
        to.number.line = from.number.line;
        to.file = from.file;
    }
    void MoveLastStack(Slot& to) noexcept;  // which may be the last one, that is not counted any more
    bool Grow() noexcept;

    std::int32_t m_capacity = 0;
    bool m_areStackless = true;  // then the stacks of all slots, unused ones included, are empty
};

}  // namespace leaks
