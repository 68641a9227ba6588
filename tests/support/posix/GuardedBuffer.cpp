#include "support/GuardedBuffer.h"

#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>

GuardedBuffer::GuardedBuffer(std::size_t size, Edge edge)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t inner = (size + page - 1) / page * page;
    m_bytes = inner + 2 * page;
    void* const pages = mmap(nullptr, m_bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    m_pages = static_cast<char*>(pages);
    if (pages == MAP_FAILED || (inner != 0 && mprotect(m_pages + page, inner, PROT_READ | PROT_WRITE) != 0))
        std::abort();
    m_data = m_pages + page + (edge == Edge::End ? inner - size : 0);
}

GuardedBuffer::~GuardedBuffer()
{
    munmap(m_pages, m_bytes);
}
