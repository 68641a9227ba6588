// Which ids have been met: a bit for each possible id, or a table of those met when the possible ones are too many.
#pragma once

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace idlist {

// The ids from lower to upper, both included. The lower one is at least 1; 1 to 0 is no id.
struct Range
{
    int lower;
    int upper;
};

// Each of the three appends the ids of ranges to an array, those that are new to it, and gives the place behind them.
// Finish appends what is still to come. The two that leave ids out may write one id more than they append.

class NothingSeen
{
public:
    int* AppendNew(const Range& range, int* to)
    {
        const int count = range.upper - range.lower + 1;
        for (int i = 0; i < count; ++i)
            to[i] = range.lower + i;
        return to + count;
    }
    int* Finish(int* to) { return to; }
};

class SeenBits
{
public:
    // Ids from 1 to `largest` will come. False when memory is exhausted.
    bool Reserve(int largest)
    {
        if (!m_words.Resize(static_cast<std::size_t>(largest) / 64 + 1))
            return false;
        std::fill(m_words.begin(), m_words.end(), 0);
        return true;
    }

    int* AppendNew(const Range& range, int* to)
    {
        if (range.lower == range.upper)
            return AppendNew(range.lower, to);
        const std::uint64_t last = Word(range.upper);
        for (std::uint64_t word = Word(range.lower); word <= last; ++word) {
            std::uint64_t wanted = ~std::uint64_t{0};
            if (word == Word(range.lower))
                wanted <<= range.lower % 64;
            if (word == last)
                wanted &= ~std::uint64_t{0} >> (63 - range.upper % 64);
            const std::uint64_t isNew = wanted & ~m_words[word];
            m_words[word] |= wanted;
            to = AppendBits(isNew, static_cast<int>(word * 64), to);
        }
        return to;
    }
    int* Finish(int* to) { return to; }

private:
    static std::uint64_t Word(int id) { return static_cast<std::uint64_t>(id) / 64; }

    int* AppendNew(int id, int* to)
    {
        std::uint64_t& word = m_words[Word(id)];
        const bool isNew = (word >> (id % 64) & 1) == 0;
        word |= std::uint64_t{1} << (id % 64);
        *to = id;
        return to + isNew;
    }

    static int* AppendBits(std::uint64_t bits, int first, int* to)
    {
        if (bits == ~std::uint64_t{0})
            return NothingSeen().AppendNew({first, first + 63}, to);
        for (; bits != 0; bits &= bits - 1)
            *to++ = first + std::countr_zero(bits);
        return to;
    }

    ScratchBuffer<std::uint64_t, 64> m_words{modules::VUtlStr};
};

class SeenTable
{
public:
    // At most `count` ids will come. False when memory is exhausted.
    bool Reserve(std::int64_t count)
    {
        if (!m_slots.Resize(static_cast<std::size_t>(2 * count)))
            return false;
        std::fill(m_slots.begin(), m_slots.end(), 0);
        return true;
    }

    int* AppendNew(const Range& range, int* to)
    {
        for (int id = range.lower; id <= range.upper; ++id) {
            __builtin_prefetch(&m_slots[SlotOf(id)], 1);
            m_waiting[m_waitingCount++] = id;
            if (m_waitingCount == MostWaiting)
                to = Finish(to);
        }
        return to;
    }

    int* Finish(int* to)
    {
        for (std::size_t i = 0; i < m_waitingCount; ++i)
            to = AppendNew(m_waiting[i], to);
        m_waitingCount = 0;
        return to;
    }

private:
    static constexpr std::size_t MostWaiting = 32;

    std::size_t SlotOf(int id) const
    {
        constexpr std::uint32_t goldenRatio = 0x9E37'79B9;
        const std::uint32_t hash = static_cast<std::uint32_t>(id) * goldenRatio;
        return std::uint64_t{hash} * m_slots.Size() >> 32;
    }

    int* AppendNew(int id, int* to)
    {
        std::size_t slot = SlotOf(id);
        while (m_slots[slot] != 0 && m_slots[slot] != id)
            slot = slot + 1 < m_slots.Size() ? slot + 1 : 0;
        const bool isNew = m_slots[slot] == 0;
        m_slots[slot] = *to = id;
        return to + isNew;
    }

    ScratchBuffer<int, 128> m_slots{modules::VUtlStr};  // at most half of them in use; 0 is free
    // Ids whose slots are on their way from memory.
    std::size_t m_waitingCount = 0;
    int m_waiting[MostWaiting];
};

}  // namespace idlist
