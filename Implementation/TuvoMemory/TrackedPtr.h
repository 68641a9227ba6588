// The owner of one tracked block, or of a whole array in one block.
//
//   TrackedPtr<char> copy(modules::VUtlStr, VBuStrDup(text, modules::VUtlStr, __LINE__));
//   if (!copy)
//       return nullptr;
//   return copy.Release();
#pragma once

#include <TuvoUtil/Memory.h>

#include <cstddef>
#include <utility>

template <typename T>
class TrackedPtr
{
public:
    // Takes over `block`, which may be null. It is freed under the name of `module`, a literal, and the line of this
    // call.
    explicit TrackedPtr(const char* module, T* block = nullptr, int line = __builtin_LINE()) noexcept
        : m_block(block), m_module(module), m_line(line)
    {}
    TrackedPtr(TrackedPtr&& other) noexcept : m_block(other.Release()), m_module(other.m_module), m_line(other.m_line)
    {}
    TrackedPtr& operator=(TrackedPtr&& other) noexcept
    {
        Reset(other.Release());
        return *this;
    }
    ~TrackedPtr() { Free(m_block); }

    T* Get() const noexcept { return m_block; }
    explicit operator bool() const noexcept { return m_block != nullptr; }
    T& operator[](std::size_t index) const noexcept { return m_block[index]; }
    T& operator*() const noexcept { return *m_block; }
    T* operator->() const noexcept { return m_block; }

    // Gives the block away: the caller owns it.
    [[nodiscard]] T* Release() noexcept { return std::exchange(m_block, nullptr); }

    // Frees the block and takes over another one.
    void Reset(T* block = nullptr)
    {
        if (block != m_block)
            Free(std::exchange(m_block, block));
    }

private:
    void Free(T* block)
    {
        if (block != nullptr)
            VBU_FREE(block, m_module, m_line);
    }

    T* m_block;
    const char* m_module;
    int m_line;
};
