// Memory with pages before and behind it that may not be touched: a function that reads or writes one byte too far ends
// the test program.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

class GuardedBuffer
{
public:
    // The side on which not one byte is to spare.
    enum class Edge
    {
        Start,
        End
    };

    explicit GuardedBuffer(std::size_t size, Edge edge = Edge::End);
    // A text with its NUL.
    explicit GuardedBuffer(std::string_view text, Edge edge = Edge::End) : GuardedBuffer(text.size() + 1, edge)
    {
        *std::copy(text.begin(), text.end(), m_data) = '\0';
    }
    ~GuardedBuffer();
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    char* Data() const { return m_data; }

private:
    char* m_pages;
    std::size_t m_bytes;
    char* m_data;
};
