#include "TuvoMemory/LeakSlots.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

using memory::g_state;

namespace {

constexpr std::int32_t FirstCapacity = 64;

}  // namespace

void leaks::SlotTable::Clear() noexcept
{
    for (const Slot& slot : *this)
        std::free(static_cast<void*>(slot.frames));
    ClearWithoutFrames();
}

void leaks::SlotTable::ClearWithoutFrames() noexcept
{
    for (const Slot& slot : *this)
        memory::HeaderOf(slot.block)->index = memory::NoIndex;
    std::free(g_state.slots);
    g_state.slots = nullptr;
    g_state.slotCount = 0;
    *this = {};
}

void leaks::SlotTable::SetStack(std::int32_t index, const CallStack& stack) noexcept
{
    if (stack.frames == nullptr)
        return;
    m_areStackless = false;
    g_state.slots[index].frameCount = stack.depth;
    g_state.slots[index].frames = stack.frames;
}

void leaks::SlotTable::MoveLastStack(Slot& to) noexcept
{
    Slot& last = g_state.slots[g_state.slotCount];
    to.frameCount = last.frameCount;
    to.frames = last.frames;
    last.frameCount = 0;
    last.frames = nullptr;
}

// Slots are counted in 32 bits, which their doubled number would leave at the end.
bool leaks::SlotTable::Grow() noexcept
{
    if (m_capacity > INT32_MAX / 2)
        return false;
    const std::int32_t capacity = std::max(FirstCapacity, 2 * m_capacity);
    void* const block =
        std::realloc(static_cast<void*>(g_state.slots), static_cast<std::size_t>(capacity) * sizeof(Slot));
    if (block == nullptr)
        return false;
    g_state.slots = static_cast<Slot*>(block);
    std::uninitialized_value_construct(g_state.slots + m_capacity, g_state.slots + capacity);
    m_capacity = capacity;
    return true;
}
