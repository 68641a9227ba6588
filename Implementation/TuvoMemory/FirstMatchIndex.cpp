#include "TuvoMemory/FirstMatchIndex.h"

#include <TuvoUtil/Memory.h>

#include <bit>

bool MatchTable::Reserve(std::int32_t count)
{
    const std::uint64_t needed = std::bit_ceil(2 * static_cast<std::uint64_t>(count) + 2);
    const std::uint64_t held = HasSlots() ? std::uint64_t{m_mask} + 1 : 0;
    if (needed <= held)
        return true;

    auto* const slots = static_cast<Slot*>(VBuCalloc(needed, sizeof(Slot), m_module, __LINE__));
    if (slots == nullptr)
        return false;
    Slot* old = m_slots;
    m_slots = slots;
    m_mask = static_cast<std::uint32_t>(needed - 1);
    for (std::uint64_t i = 0; i < held; ++i)
        if (old[i].position != 0)
            FindSlot(old[i].hash, [](std::int32_t) { return false; }) = old[i];
    VBU_FREE(old, m_module, __LINE__);
    return true;
}

void MatchTable::Clear()
{
    VBU_FREE(m_slots, m_module, __LINE__);
    m_mask = 0;
}
