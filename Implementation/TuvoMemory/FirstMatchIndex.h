// Finds the first record of a growing array that has a given key, at a cost that does not grow with the array.
//
//   struct ById
//   {
//       using Record = _UnitSystemStr;
//       using Key = int;
//       static bool IsListed(const Record&) { return true; }   // false: no key finds this record
//       static Key KeyOf(const Record& record) { return record.id; }
//       static std::uint32_t HashOf(Key key) { return HashOfNumber(key); }
//       static bool AreEqual(Key left, Key right) { return left == right; }
//   };
//   FirstMatchIndex<ById> index(modules::VUnit);
//   index.Find(records, count, 12)   // the position of the first record with the id 12; -1 when there is none
//
// The index follows the array by itself: what was appended since the last search is taken up by the next one. The array
// may move, but the key of a record that was taken up must stay the same, and none may be removed without Clear.
//
// Exhausted memory only costs time: records that found no room in the table are searched one by one.
#pragma once

#include <basutl/BuCharacter.h>

#include <cassert>
#include <cstdint>

// A hash of numbers, and one of texts without the case of ASCII letters. `seed` is the hash of what stands before.
constexpr std::uint32_t HashOfNumber(std::int32_t number, std::uint32_t seed = 0) noexcept
{
    const std::uint64_t mixed = (static_cast<std::uint32_t>(number) ^ seed) * 0x9E3779B97F4A7C15u;
    return static_cast<std::uint32_t>(mixed >> 32);
}

constexpr std::uint32_t HashOfTextNoCase(const char* text) noexcept
{
    std::uint32_t hash = 0x811C9DC5u;
    for (; *text != '\0'; ++text)
        hash = (hash ^ static_cast<unsigned char>(BuToLower(*text))) * 0x01000193u;
    return HashOfNumber(static_cast<std::int32_t>(hash));
}

// The table behind an index: positions of records by the hash of their key, in tracked memory, with open addressing and
// at least half of the slots free.
class MatchTable
{
public:
    struct Slot
    {
        std::uint32_t hash;
        std::int32_t position;  // counted from 1; 0 for a free slot
    };

    explicit constexpr MatchTable(const char* module) noexcept : m_module(module) {}
    ~MatchTable() { Clear(); }
    MatchTable(const MatchTable&) = delete;
    MatchTable& operator=(const MatchTable&) = delete;

    // Makes room for `count` records in all; false when memory is exhausted. Moves all slots.
    bool Reserve(std::int32_t count);
    void Clear();

    bool HasSlots() const noexcept { return m_slots != nullptr; }

    // The slot of this hash for which `matches(position)` holds, else the free slot where it belongs.
    template <typename Matches>
    Slot& FindSlot(std::uint32_t hash, Matches matches) const
    {
        assert(HasSlots());
        for (std::uint32_t i = hash & m_mask;; i = (i + 1) & m_mask) {
            Slot& slot = m_slots[i];
            if (slot.position == 0 || (slot.hash == hash && matches(slot.position - 1)))
                return slot;
        }
    }

private:
    Slot* m_slots = nullptr;
    std::uint32_t m_mask = 0;  // number of slots - 1
    const char* m_module;
};

template <typename Traits>
class FirstMatchIndex
{
public:
    using Record = typename Traits::Record;
    using Key = typename Traits::Key;

    // Memory is recorded under the name of `module`, a literal.
    explicit constexpr FirstMatchIndex(const char* module) noexcept : m_table(module) {}

    std::int32_t Find(const Record* records, std::int32_t count, Key key)
    {
        if (count == 0)
            return -1;
        if (m_taken != count)
            TakeUp(records, count);
        if (m_table.HasSlots()) {
            const MatchTable::Slot& slot = SlotOf(records, key, Traits::HashOf(key));
            if (slot.position != 0)
                return slot.position - 1;
        }
        for (std::int32_t i = m_taken; i < count; ++i)
            if (Traits::IsListed(records[i]) && Traits::AreEqual(Traits::KeyOf(records[i]), key))
                return i;
        return -1;
    }

    // Whether the last search knew that no two listed records have the same key.
    bool KeysAreUnique(std::int32_t count) const noexcept { return m_keysAreUnique && m_taken == count; }

    // Forgets all records and gives the memory back.
    void Clear()
    {
        m_table.Clear();
        m_taken = 0;
        m_refusedCount = 0;
        m_keysAreUnique = true;
    }

private:
    MatchTable::Slot& SlotOf(const Record* records, Key key, std::uint32_t hash) const
    {
        return m_table.FindSlot(
            hash, [&](std::int32_t position) { return Traits::AreEqual(Traits::KeyOf(records[position]), key); });
    }

    void TakeUp(const Record* records, std::int32_t count)
    {
        assert(m_taken <= count);
        // Refused memory is not asked for again at every search, only after the array has grown.
        if (count == m_refusedCount || !m_table.Reserve(count)) {
            m_refusedCount = count;
            return;
        }
        for (; m_taken < count; ++m_taken)
            if (Traits::IsListed(records[m_taken]))
                Enter(records, m_taken);
    }

    void Enter(const Record* records, std::int32_t position)
    {
        const Key key = Traits::KeyOf(records[position]);
        const std::uint32_t hash = Traits::HashOf(key);
        MatchTable::Slot& slot = SlotOf(records, key, hash);
        if (slot.position == 0)
            slot = {hash, position + 1};
        else
            m_keysAreUnique = false;
    }

    MatchTable m_table;
    std::int32_t m_taken = 0;         // records that the table knows, from the start of the array
    std::int32_t m_refusedCount = 0;  // length of the array when memory was refused last
    bool m_keysAreUnique = true;
};
