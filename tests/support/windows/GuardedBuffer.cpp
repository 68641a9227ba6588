#include "support/GuardedBuffer.h"

#include <windows.h>
#include <cstdlib>

GuardedBuffer::GuardedBuffer(std::size_t size, Edge edge)
{
    constexpr std::size_t page = 4096;
    const std::size_t inner = (size + page - 1) / page * page;
    m_bytes = inner + 2 * page;
    m_pages = static_cast<char*>(VirtualAlloc(nullptr, m_bytes, MEM_RESERVE, PAGE_NOACCESS));
    if (m_pages == nullptr ||
        (inner != 0 && VirtualAlloc(m_pages + page, inner, MEM_COMMIT, PAGE_READWRITE) == nullptr))
        std::abort();
    m_data = m_pages + page + (edge == Edge::End ? inner - size : 0);
}

GuardedBuffer::~GuardedBuffer()
{
    VirtualFree(m_pages, 0, MEM_RELEASE);
}
