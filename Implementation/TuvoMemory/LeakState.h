// What the leak checker knows: its counters and tables. The mode, the hooks and whether it is active stand in
// MemoryState.h, since tracked allocation needs them.
#pragma once

#include "TuvoMemory/HeapArray.h"
#include "TuvoMemory/LeakRecords.h"
#include "TuvoMemory/LeakSlots.h"
#include "TuvoMemory/MemoryState.h"
#include "TuvoMemory/SourceNames.h"

#include <cstddef>
#include <cstdint>

namespace leaks {

// The sequence indices that a first pass has listed, ascending.
struct ExpectedSequence
{
    HeapArray<std::int32_t> indices;
    std::size_t position = 0;

    // Whether an allocation is listed. Each is asked for once, in ascending order.
    bool Take(std::int32_t sequence) noexcept
    {
        while (position < indices.Size() && indices[position] < sequence)
            ++position;
        return position < indices.Size() && indices[position] == sequence && (++position, true);
    }
};

// Bytes in use are told of when their megabytes have left what was told last by more than a step.
class Progress
{
public:
    static constexpr std::int64_t Megabyte = 1'000'000;

    // Whether so many bytes are surely not to be told of: few instructions for the common case.
    bool IsTold(std::int64_t bytes) const noexcept { return bytes >= m_toldFrom && bytes < m_toldUpTo; }

    // Whether so many bytes have to be told of. They count as told then.
    bool TakeStep(std::int64_t bytes) noexcept;

private:
    bool IsWithinStep(std::int64_t megabytes) const noexcept;

    static constexpr std::int64_t FirstStep = 5;  // megabytes

    std::int64_t m_told = 0;      // megabytes
    std::int64_t m_toldFrom = 0;  // bytes around m_told that all lie within the step
    std::int64_t m_toldUpTo = (FirstStep + 1) * Megabyte;
};

// The number of records at which mode 0 first looks for freed blocks among them, and by which that number then grows.
constexpr std::size_t ReconciliationStep = 2'000'000;

// All that a finished report clears.
struct Tally
{
    std::uint32_t counter = 0;       // allocations so far; the sequence index of one is the counter before it
    std::uint32_t startCounter = 0;  // when checking was started
    std::uint32_t resetCounter = 0;  // what a second pass starts with: startCounter of the first
    std::int64_t bytesInUse = 0;
    std::int64_t peakBytes = 0;  // modes 0, 1 and 3 only, as the next
    std::int64_t bytesAllocated = 0;
    std::int64_t bytesFreed = 0;   // mode 1 only
    std::int64_t countedOnly = 0;  // allocations made while recording was suppressed
    Progress progress;
    std::size_t reconciliationThreshold = ReconciliationStep;
    ExpectedSequence expected;
    RecordTable records;
    HeapArray<const void*> freedBlocks;  // mode 0: not yet removed from the records
    SlotTable slots;
};

// Allocations that are to be told of, so that a debugger can hold there. Set by WatchSequence and WatchLine.
struct Watch
{
    std::int64_t sequence = -1;  // sequence index; -1 for none
    int line = -1;
    const char* file = nullptr;  // with its leading backslash, as in "\part.cpp", when paths have one

    bool IsSet() const noexcept { return sequence >= 0 || file != nullptr; }
};

struct State
{
    Tally tally;
    Watch watch;
    SourceNames names;
};

// Never destroyed: hosts allocate and free in their static destructors too.
union StatePlace
{
    constexpr StatePlace() : state() {}
    StatePlace(const StatePlace&) = delete;
    StatePlace& operator=(const StatePlace&) = delete;
    ~StatePlace() {}  // NOLINT(modernize-use-equals-default): there would be no default one

    State state;
};

extern constinit StatePlace g_place;

inline State& TheState() noexcept
{
    return g_place.state;
}

inline std::int32_t SequenceOf(std::uint32_t counter) noexcept
{
    return static_cast<std::int32_t>(counter);
}

// What a developer calls in the debugger, to be told of the allocation with a sequence index, or of those of a source
// line. A file in a path goes with its last backslash, as in "\\part.cpp".
[[gnu::used]] void WatchSequence(std::int32_t sequence) noexcept;
[[gnu::used]] void WatchLine(const char* file, int line) noexcept;

// Installs the checker in tracked allocation.
void InstallHooks();

// The records of the present mode.
std::size_t RecordCount() noexcept;

// Mode 0: removes the records of a freed block, and of all that are noted as freed.
void RemoveFreed(const void* block) noexcept;
void Reconcile() noexcept;

// Clears the tally and frees its tables. Blocks whose slots go are marked as without slot.
void ClearTally() noexcept;

// Tests: as at the start of the process, hooks and mode included.
void Reset() noexcept;

}  // namespace leaks
