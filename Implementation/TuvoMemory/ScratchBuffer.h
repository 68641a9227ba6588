// Working memory of a function: an array that starts inside the object and moves to a tracked block when it grows.
//
//   ScratchBuffer<char, 256> text(modules::VUtlStr);
//   if (!text.Append(name, length) || !text.Append('\0'))
//       return nullptr;   // memory is exhausted; what was appended before is still there
//
// Exhausted memory, and a size that does not fit, is told by false and leaves the content as it was. Elements are plain
// data: they are copied as bytes, and neither initialised nor destroyed.
#pragma once

#include <TuvoUtil/Memory.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

template <typename T, std::size_t InlineCapacity>
class ScratchBuffer
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    static_assert(alignof(T) <= 8, "tracked blocks are aligned to 8 bytes");
    static_assert(InlineCapacity > 0);

public:
    // Growth is recorded under the name of `module`, a literal, and the line of this call.
    explicit ScratchBuffer(const char* module, int line = __builtin_LINE()) noexcept : m_module(module), m_line(line) {}
    ~ScratchBuffer()
    {
        if (!IsInline())
            VBU_FREE(m_data, m_module, m_line);
    }
    ScratchBuffer(const ScratchBuffer&) = delete;
    ScratchBuffer& operator=(const ScratchBuffer&) = delete;

    T* Data() noexcept { return m_data; }
    const T* Data() const noexcept { return m_data; }
    std::size_t Size() const noexcept { return m_size; }
    std::size_t Capacity() const noexcept { return m_capacity; }
    bool IsEmpty() const noexcept { return m_size == 0; }
    T& operator[](std::size_t index) noexcept { return m_data[index]; }
    const T& operator[](std::size_t index) const noexcept { return m_data[index]; }
    T* begin() noexcept { return m_data; }
    T* end() noexcept { return m_data + m_size; }
    const T* begin() const noexcept { return m_data; }
    const T* end() const noexcept { return m_data + m_size; }

    // Forgets the elements, not the memory.
    void Clear() noexcept { m_size = 0; }

    // Makes room for `capacity` elements in all. Growth is at least by half, so that appending is linear.
    bool Reserve(std::size_t capacity) { return capacity <= m_capacity || Grow(capacity); }

    // Sets the number of elements; new ones are uninitialised.
    bool Resize(std::size_t size)
    {
        if (!Reserve(size))
            return false;
        m_size = size;
        return true;
    }

    bool Append(T element)
    {
        if (!Reserve(m_size + 1))
            return false;
        m_data[m_size++] = element;
        return true;
    }

    // Appends elements that do not lie in this buffer; they may be null when `count` is 0.
    bool Append(const T* elements, std::size_t count)
    {
        if (count > Limit - m_size || !Reserve(m_size + count))
            return false;
        if (count != 0)
            std::memcpy(static_cast<void*>(m_data + m_size), elements, count * sizeof(T));
        m_size += count;
        return true;
    }

    // Gives the elements away in a block of exactly their size, which is freed with VBuFree; the buffer is empty then.
    // Null without elements, and when memory is exhausted.
    [[nodiscard]] T* Release()
    {
        if (m_size == 0)
            return nullptr;
        void* const block = VBuRealloc(IsInline() ? nullptr : m_data, m_size * sizeof(T), m_module, m_line);
        if (block == nullptr)
            return nullptr;
        if (IsInline())
            std::memcpy(block, m_data, m_size * sizeof(T));
        m_data = reinterpret_cast<T*>(m_inline);
        m_size = 0;
        m_capacity = InlineCapacity;
        return static_cast<T*>(block);
    }

private:
    static constexpr std::size_t Limit = PTRDIFF_MAX / sizeof(T);

    bool IsInline() const noexcept { return static_cast<const void*>(m_data) == m_inline; }

    bool Grow(std::size_t needed)
    {
        if (needed > Limit)
            return false;
        const std::size_t capacity = std::max(needed, std::min(m_capacity + m_capacity / 2, Limit));
        void* const block = VBuRealloc(IsInline() ? nullptr : m_data, capacity * sizeof(T), m_module, m_line);
        if (block == nullptr)
            return false;
        if (IsInline())
            std::memcpy(block, m_data, m_size * sizeof(T));
        m_data = static_cast<T*>(block);
        m_capacity = capacity;
        return true;
    }

    alignas(T) unsigned char m_inline[InlineCapacity * sizeof(T)];
    T* m_data = reinterpret_cast<T*>(m_inline);
    std::size_t m_size = 0;
    std::size_t m_capacity = InlineCapacity;
    const char* m_module;
    int m_line;
};
