#include "TuvoMemory/LeakRecords.h"

#include <algorithm>
#include <bit>
#include <utility>

void leaks::FreeFrames(Record& record) noexcept
{
    CallStack stack = record.Stack();
    FreeStack(stack);
    record.SetStack(stack);
}

std::size_t leaks::BlockIndex::HomeOf(const void* block) const noexcept
{
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(block) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(mixed >> 32) & (m_slots.Size() - 1);
}

bool leaks::BlockIndex::Restart(std::size_t count) noexcept
{
    if (count >= NoPosition / 4)
        return false;
    return m_slots.Assign(std::max(std::bit_ceil(4 * count + 64), m_slots.Size()), NoPosition);
}

void leaks::BlockIndex::Add(const HeapArray<Record>& records, std::uint32_t position) noexcept
{
    std::size_t slot = HomeOf(records[position].block);
    while (m_slots[slot] != NoPosition)
        slot = Next(slot);
    m_slots[slot] = position;
}

std::uint32_t leaks::BlockIndex::Take(const HeapArray<Record>& records, const void* block) noexcept
{
    for (std::size_t slot = HomeOf(block); m_slots[slot] != NoPosition; slot = Next(slot)) {
        const std::uint32_t position = m_slots[slot];
        if (records[position].block == block) {
            CloseGap(records, slot);
            return position;
        }
    }
    return NoPosition;
}

// Moves back what was pushed on by the entry that is gone, in order, so that no search ends too early.
void leaks::BlockIndex::CloseGap(const HeapArray<Record>& records, std::size_t gap) noexcept
{
    const std::size_t mask = m_slots.Size() - 1;
    for (std::size_t slot = Next(gap); m_slots[slot] != NoPosition; slot = Next(slot)) {
        const std::size_t home = HomeOf(records[m_slots[slot]].block);
        if (((slot - home) & mask) >= ((slot - gap) & mask)) {
            m_slots[gap] = m_slots[slot];
            gap = slot;
        }
    }
    m_slots[gap] = NoPosition;
}

leaks::RecordTable& leaks::RecordTable::operator=(RecordTable&& other) noexcept
{
    Clear();
    m_records = std::move(other.m_records);
    m_removed = std::exchange(other.m_removed, 0);
    m_indexed = std::exchange(other.m_indexed, 0);
    m_index = std::move(other.m_index);
    return *this;
}

bool leaks::RecordTable::Add(const Record& record) noexcept
{
    if (m_records.IsFull() && 2 * m_removed > m_records.Size())
        Compacted();
    return m_records.Append(record);
}

std::int64_t leaks::RecordTable::Remove(const void* block) noexcept
{
    const std::uint32_t position = TakePosition(block);
    if (position == BlockIndex::NoPosition)
        return -1;
    Record& record = m_records[position];
    FreeFrames(record);
    record.block = nullptr;
    ++m_removed;
    return record.size;
}

// Takes up what was added since the last search.
bool leaks::RecordTable::PrepareIndex() noexcept
{
    if (!m_index.HasRoom(m_records.Size())) {
        m_indexed = 0;
        if (!m_index.Restart(m_records.Size())) {
            m_index.Clear();
            return false;
        }
    }
    for (; m_indexed < m_records.Size(); ++m_indexed)
        if (m_records[m_indexed].block != nullptr)
            m_index.Add(m_records, static_cast<std::uint32_t>(m_indexed));
    return true;
}

std::uint32_t leaks::RecordTable::TakePosition(const void* block) noexcept
{
    if (m_records.IsEmpty() || block == nullptr)
        return BlockIndex::NoPosition;
    if (PrepareIndex())
        return m_index.Take(m_records, block);
    const auto* const found = std::find_if(m_records.begin(), m_records.end(),
                                           [block](const Record& record) { return record.block == block; });
    return found == m_records.end() ? BlockIndex::NoPosition : static_cast<std::uint32_t>(found - m_records.begin());
}

HeapArray<leaks::Record>& leaks::RecordTable::Compacted() noexcept
{
    if (m_removed > 0) {
        Record* const end = std::remove_if(m_records.begin(), m_records.end(),
                                           [](const Record& record) { return record.block == nullptr; });
        m_records.Truncate(static_cast<std::size_t>(end - m_records.begin()));
        m_removed = 0;
        m_indexed = 0;
        m_index.Clear();
    }
    return m_records;
}

void leaks::RecordTable::Clear() noexcept
{
    std::for_each(m_records.begin(), m_records.end(), FreeFrames);
    m_records.Clear();
    m_removed = 0;
    m_indexed = 0;
    m_index.Clear();
}
