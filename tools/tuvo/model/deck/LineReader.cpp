#include "tools/tuvo/model/deck/LineReader.h"

#include <cstring>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t FirstRoom = std::size_t{1} << 18;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

}  // namespace

LineReader::LineReader(ByteSource source)
    : m_source(std::move(source)), m_buffer(FirstRoom + 1), m_next(m_buffer.data()), m_end(m_next)
{}

// Reads a further block behind what is not yet given. False when there is none, or no room for it.
bool LineReader::Fill()
{
    if (m_isComplete)
        return false;
    const auto kept = static_cast<std::size_t>(m_end - m_next);
    if (kept > LongestLine)
        return false;
    std::memmove(m_buffer.data(), m_next, kept);
    if (kept >= m_buffer.size() / 2)
        m_buffer.resize(m_buffer.size() * 2);
    m_next = m_buffer.data();
    char* const start = m_next + kept;
    const std::size_t read = m_source(start, m_buffer.size() - 1 - kept);  // a NUL has to fit behind the last line
    m_end = start + read;
    m_isComplete = read == 0;
    if (auto* const zero = static_cast<char*>(std::memchr(start, '\0', read))) {
        m_end = zero;
        m_isComplete = m_isBinary = true;
    }
    return read > 0;
}

// The end of the next line; null when it is too long.
char* LineReader::FindEnd()
{
    std::size_t searched = 0;
    for (;;) {
        const auto size = static_cast<std::size_t>(m_end - m_next);
        void* const end = size > searched ? std::memchr(m_next + searched, '\n', size - searched) : nullptr;
        if (end != nullptr)
            return static_cast<char*>(end);
        searched = size;
        if (!Fill())
            return m_isComplete ? m_end : nullptr;
    }
}

LineReader::Result LineReader::SkipLong()
{
    char* end = nullptr;
    while ((end = FindEnd()) == nullptr)
        m_next = m_end;
    m_next = end < m_end ? end + 1 : end;
    return Result::TooLong;
}

std::string_view LineReader::Take(char* end, char* next)
{
    char* const first = std::exchange(m_next, next);
    while (end > first && IsBlank(end[-1]))
        --end;
    *end = '\0';
    return {first, static_cast<std::size_t>(end - first)};
}

LineReader::Result LineReader::Next(std::string_view& line)
{
    line = {};
    char* const end = FindEnd();
    ++m_lineNumber;
    if (end == nullptr || end - m_next > static_cast<std::ptrdiff_t>(LongestLine))
        return SkipLong();
    if (end == m_end) {
        if (m_isBinary)
            return Result::Binary;
        if (m_next == m_end)
            return Result::End;
    }
    line = Take(end, end < m_end ? end + 1 : end);
    if (m_lineNumber == 1 && line.starts_with(ByteOrderMark))
        line.remove_prefix(ByteOrderMark.size());
    return Result::Line;
}

}  // namespace tool
