// A growing array of plain data for the leak checker's own tables. It lies in the process heap: what the checker itself
// takes must not be tracked.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <utility>

template <typename T>
class HeapArray
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    constexpr HeapArray() noexcept = default;
    HeapArray(HeapArray&& other) noexcept
        : m_data(std::exchange(other.m_data, nullptr)),
          m_size(std::exchange(other.m_size, 0)),
          m_capacity(std::exchange(other.m_capacity, 0))
    {}
    HeapArray& operator=(HeapArray&& other) noexcept
    {
        HeapArray taken(std::move(other));
        std::swap(m_data, taken.m_data);
        std::swap(m_size, taken.m_size);
        std::swap(m_capacity, taken.m_capacity);
        return *this;
    }
    ~HeapArray() { std::free(m_data); }

    std::size_t Size() const noexcept { return m_size; }
    bool IsEmpty() const noexcept { return m_size == 0; }
    bool IsFull() const noexcept { return m_size == m_capacity; }
    T& operator[](std::size_t index) noexcept { return m_data[index]; }
    const T& operator[](std::size_t index) const noexcept { return m_data[index]; }
    T* begin() noexcept { return m_data; }
    T* end() noexcept { return m_data + m_size; }
    const T* begin() const noexcept { return m_data; }
    const T* end() const noexcept { return m_data + m_size; }

    // False when memory is exhausted: nothing changed then.
    bool Append(const T& element) noexcept
    {
        T* const place = AppendUnset();
        if (place != nullptr)
            *place = element;
        return place != nullptr;
    }

    // A new last element, which has no value yet; null when memory is exhausted.
    T* AppendUnset() noexcept
    {
        if (IsFull() && !Reserve(m_size * 2)) [[unlikely]]
            return nullptr;
        return m_data + m_size++;
    }
    [[gnu::noinline]] bool Reserve(std::size_t capacity) noexcept
    {
        capacity = std::max(capacity, FirstCapacity);
        if (capacity <= m_capacity)
            return true;
        if (capacity > PTRDIFF_MAX / ElementSize)
            return false;
        void* const block = std::realloc(static_cast<void*>(m_data), capacity * ElementSize);
        if (block == nullptr)
            return false;
        m_data = static_cast<T*>(block);
        m_capacity = capacity;
        return true;
    }

    // Makes all elements, `size` in number, equal; false, with nothing changed, when memory is exhausted.
    bool Assign(std::size_t size, const T& value) noexcept
    {
        if (!Reserve(size))
            return false;
        m_size = size;
        std::fill(begin(), end(), value);
        return true;
    }

    // Forgets the elements from `size` on.
    void Truncate(std::size_t size) noexcept { m_size = size; }

    // Gives the memory back.
    void Clear() noexcept { *this = HeapArray(); }

private:
    static constexpr std::size_t FirstCapacity = 64;
    static constexpr std::size_t ElementSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression): T may be a pointer

    T* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};
