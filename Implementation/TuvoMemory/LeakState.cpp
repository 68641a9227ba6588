#include "TuvoMemory/LeakState.h"

#include <algorithm>

constinit leaks::StatePlace leaks::g_place;

bool leaks::Progress::IsWithinStep(std::int64_t megabytes) const noexcept
{
    std::int64_t step = 50;
    if (megabytes < 30)
        step = FirstStep;
    else if (megabytes < 100)
        step = 10;
    else if (megabytes < 1000)
        step = 30;
    return megabytes >= m_told - step && megabytes <= m_told + step;
}

bool leaks::Progress::TakeStep(std::int64_t bytes) noexcept
{
    const std::int64_t megabytes = bytes / Megabyte;
    if (megabytes < 1 || IsWithinStep(megabytes))
        return false;
    m_told = megabytes;
    std::int64_t from = megabytes;
    while (from > 0 && IsWithinStep(from - 1))
        --from;
    std::int64_t upTo = megabytes + 1;
    while (IsWithinStep(upTo))
        ++upTo;
    m_toldFrom = from * Megabyte;
    m_toldUpTo = upTo * Megabyte;
    return true;
}

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

void leaks::WatchSequence(std::int32_t sequence) noexcept
{
    TheState().watch.sequence = sequence;
    memory::DropShortcut();
}

void leaks::WatchLine(const char* file, int line) noexcept
{
    TheState().watch.file = file;
    TheState().watch.line = line;
    memory::DropShortcut();
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
