// A growable array of objects that it owns. Used like std::vector, but nothing throws: an operation that cannot get
// memory says so and changes nothing.
//
//   BuObjectArrayTempl<BuString> names;
//   names.Add(L"bolt");      // 0, its index
//   names.GetCount()         // 1
//
// T must be copyable and movable without throwing; a copy of an item that is incomplete because memory was exhausted (an
// empty BuString) is an item like any other. Indices are checked by assertions only.
#pragma once

#include <basutl/BuCRTAllocator.h>

#include <cassert>
#include <climits>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

template <typename T>
class BuObjectArrayTempl
{
    static_assert(std::is_nothrow_move_constructible_v<T> && std::is_nothrow_move_assignable_v<T>);
    static_assert(std::is_nothrow_destructible_v<T>);
    static_assert(alignof(T) <= alignof(std::max_align_t));

public:
    // Moving and swapping take the items over; a moved-from array is valid.
    BuObjectArrayTempl() noexcept = default;
    BuObjectArrayTempl(const BuObjectArrayTempl& other) noexcept { Append(other); }  // empty when memory is exhausted
    BuObjectArrayTempl(BuObjectArrayTempl&& other) noexcept { Swap(other); }
    BuObjectArrayTempl& operator=(const BuObjectArrayTempl& other) noexcept  // unchanged when memory is exhausted
    {
        BuObjectArrayTempl copy(other);
        if (copy.m_count == other.m_count)
            Swap(copy);
        return *this;
    }
    BuObjectArrayTempl& operator=(BuObjectArrayTempl&& other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~BuObjectArrayTempl()
    {
        RemoveAll();
        BuCRTAllocator::Release(m_items);
    }

    // The number of items; whether there are none.
    int GetCount() const noexcept { return m_count; }
    bool IsEmpty() const noexcept { return m_count == 0; }

    // An item, which must exist.
    T& operator[](int index) noexcept
    {
        assert(index >= 0 && index < m_count);
        return m_items[index];
    }
    const T& operator[](int index) const noexcept
    {
        assert(index >= 0 && index < m_count);
        return m_items[index];
    }

    // All items in one piece; null when there never were any.
    T* GetData() noexcept { return m_items; }
    const T* GetData() const noexcept { return m_items; }
    T* begin() noexcept { return m_items; }
    T* end() noexcept { return m_items + m_count; }
    const T* begin() const noexcept { return m_items; }
    const T* end() const noexcept { return m_items + m_count; }

    // Adds at the end, or before `index` (the end when beyond it). The index of the new item, -1 when memory is
    // exhausted. Appending is amortised constant. `item` may be one of the array's own.
    int Add(T item) noexcept { return Insert(m_count, std::move(item)); }
    int Insert(int index, T item) noexcept
    {
        if (m_count == m_capacity && (m_count == INT_MAX || !Reserve(m_count + 1)))
            return -1;
        if (index > m_count)
            index = m_count;
        assert(index >= 0);
        if (index == m_count) {
            ::new (static_cast<void*>(m_items + m_count)) T(std::move(item));
        } else {
            ::new (static_cast<void*>(m_items + m_count)) T(std::move(m_items[m_count - 1]));
            for (int i = m_count - 1; i > index; --i)
                m_items[i] = std::move(m_items[i - 1]);
            m_items[index] = std::move(item);
        }
        ++m_count;
        return index;
    }

    // Adds copies of all items of another array; false, with nothing added, when memory is exhausted.
    bool Append(const BuObjectArrayTempl& other) noexcept
    {
        static_assert(std::is_nothrow_copy_constructible_v<T>);
        const int added = other.m_count;
        if (added > INT_MAX - m_count || !Reserve(m_count + added))
            return false;
        for (int i = 0; i < added; ++i)
            ::new (static_cast<void*>(m_items + m_count++)) T(other.m_items[i]);
        return true;
    }

    // Removes one item, or all; the order of the others stays.
    void RemoveAt(int index) noexcept
    {
        assert(index >= 0 && index < m_count);
        for (int i = index; i + 1 < m_count; ++i)
            m_items[i] = std::move(m_items[i + 1]);
        m_items[--m_count].~T();
    }
    void RemoveAll() noexcept
    {
        while (m_count > 0)
            m_items[--m_count].~T();
    }

    // Makes room for `count` items in all; false when memory is exhausted.
    bool Reserve(int count) noexcept
    {
        if (count <= m_capacity)
            return true;
        const long long grown = static_cast<long long>(m_capacity) + m_capacity / 2 + 4;
        const int capacity = static_cast<int>(grown < count ? count : (grown > INT_MAX ? INT_MAX : grown));
        constexpr std::size_t itemSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression): T may be a pointer
        T* const items = static_cast<T*>(BuCRTAllocator::Allocate(static_cast<std::size_t>(capacity) * itemSize));
        if (items == nullptr)
            return false;
        for (int i = 0; i < m_count; ++i) {
            ::new (static_cast<void*>(items + i)) T(std::move(m_items[i]));
            m_items[i].~T();
        }
        BuCRTAllocator::Release(m_items);
        m_items = items;
        m_capacity = capacity;
        return true;
    }

    // Exchanges the items of two arrays.
    void Swap(BuObjectArrayTempl& other) noexcept
    {
        std::swap(m_items, other.m_items);
        std::swap(m_count, other.m_count);
        std::swap(m_capacity, other.m_capacity);
    }

private:
    T* m_items = nullptr;
    int m_count = 0;
    int m_capacity = 0;
};
