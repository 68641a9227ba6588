// The records of the modes without headers, found by the address of their block.
#pragma once

#include "TuvoMemory/HeapArray.h"
#include "TuvoMemory/LeakFrames.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace leaks {

struct Record
{
    std::uint16_t frameCount;  // 0: no call stack
    std::int32_t sequence;     // stands where the layout leaves room
    char** frames;
    char file[16];  // what follows the last backslash, at most 15 characters
    const void* block;
    std::uint32_t size;  // bytes
    std::uint32_t line;
    std::uint32_t repetitions;  // set by the report
    std::uint32_t kind;         // 1: made by an object factory

    CallStack Stack() const noexcept { return {frameCount, frames}; }
    void SetStack(const CallStack& stack) noexcept
    {
        frameCount = stack.depth;
        frames = stack.frames;
    }
};
static_assert(sizeof(Record) == 56);
static_assert(offsetof(Record, frames) == 8 && offsetof(Record, file) == 16 && offsetof(Record, block) == 32);
static_assert(offsetof(Record, size) == 40 && offsetof(Record, line) == 44);
static_assert(offsetof(Record, repetitions) == 48 && offsetof(Record, kind) == 52);

void FreeFrames(Record& record) noexcept;

// Positions of records by the address of their block: open addressing, at least half of the slots free. Records of the
// same block are found in the order in which they were added.
class BlockIndex
{
public:
    // Makes room for `count` records in all; false when memory is exhausted. Forgets those that were added.
    bool Restart(std::size_t count) noexcept;
    bool HasRoom(std::size_t count) const noexcept { return 2 * count < m_slots.Size(); }
    void Clear() noexcept { m_slots.Clear(); }

    void Add(const HeapArray<Record>& records, std::uint32_t position) noexcept;

    // The position of the first record of the block, which is taken out; NoPosition when there is none.
    std::uint32_t Take(const HeapArray<Record>& records, const void* block) noexcept;

    static constexpr std::uint32_t NoPosition = UINT32_MAX;

private:
    std::size_t HomeOf(const void* block) const noexcept;
    std::size_t Next(std::size_t slot) const noexcept { return (slot + 1) & (m_slots.Size() - 1); }
    void CloseGap(const HeapArray<Record>& records, std::size_t gap) noexcept;

    HeapArray<std::uint32_t> m_slots;
};

// Adding is constant, removing too, amortised. Exhausted memory costs time alone once a record is in.
class RecordTable
{
public:
    constexpr RecordTable() noexcept = default;
    RecordTable(RecordTable&& other) noexcept { *this = std::move(other); }
    RecordTable& operator=(RecordTable&& other) noexcept;
    ~RecordTable() { Clear(); }

    std::size_t Count() const noexcept { return m_records.Size() - m_removed; }

    // Makes room for `count` records in all; false when memory is exhausted.
    bool Reserve(std::size_t count) noexcept { return m_records.Reserve(count); }

    // Takes the record over, frames included; false when memory is exhausted.
    bool Add(const Record& record) noexcept;

    // Removes the oldest record of the block and gives its size; -1 when there is none.
    std::int64_t Remove(const void* block) noexcept;

    // The records in the order in which they were added. The array stays the table's own: whoever takes a record out of
    // it must truncate the array as well.
    HeapArray<Record>& Compacted() noexcept;

    // Frees all records and their frames.
    void Clear() noexcept;

private:
    bool PrepareIndex() noexcept;
    std::uint32_t TakePosition(const void* block) noexcept;

    HeapArray<Record> m_records;  // removed ones have a null block
    std::size_t m_removed = 0;
    std::size_t m_indexed = 0;  // the first so many are in the index
    BlockIndex m_index;
};

}  // namespace leaks
