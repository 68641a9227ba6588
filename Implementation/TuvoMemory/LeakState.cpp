#include "TuvoMemory/LeakState.h"

#include <algorithm>

constinit leaks::StatePlace leaks::g_place;

std::size_t leaks::RecordCount() noexcept
{
    const Tally& tally = TheState().tally;
    return memory::IsHeaderMode() ? tally.slots.Count() : tally.records.Count();
}

// Kept: a freed block takes every record of its address along, also that of a later block that lives there now.
void leaks::RemoveFreed(const void* block) noexcept
{
    Tally& tally = TheState().tally;
    for (std::int64_t size = 0; (size = tally.records.Remove(block)) >= 0;)
        tally.bytesInUse -= size;
}

void leaks::Reconcile() noexcept
{
    HeapArray<const void*>& freedBlocks = TheState().tally.freedBlocks;
    std::for_each(freedBlocks.begin(), freedBlocks.end(), RemoveFreed);
    freedBlocks.Truncate(0);
}

void leaks::ClearTally() noexcept
{
    TheState().tally.slots.Clear();
    TheState().tally = Tally();
}

void leaks::Reset() noexcept
{
    ClearTally();
    TheState().names.Clear();
    TheState().watch = {};
    memory::g_state = {};
}
