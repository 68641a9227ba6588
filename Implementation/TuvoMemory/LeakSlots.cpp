#include "TuvoMemory/LeakSlots.h"

void leaks::SlotTable::Clear() noexcept
{
    for (const Slot& slot : m_slots)
        std::free(static_cast<void*>(slot.frames));
    ClearWithoutFrames();
}

void leaks::SlotTable::ClearWithoutFrames() noexcept
{
    for (const Slot& slot : m_slots)
        memory::HeaderOf(slot.block)->index = memory::NoIndex;
    m_slots.Clear();
    memory::g_state.slots = nullptr;
    memory::g_state.slotCount = 0;
}
