// Walks the fields of a text that a character divides, by the rules of the library's splitter: runs of dividers count
// once, a leading divider gives a field of one blank and the field after it begins right there, further dividers
// included; an empty text is one empty field.
//
//   FieldWalker fields(";3:N;;7", ';');
//   for (std::string_view field; fields.Next(field);)   // " ", "3:N", "7"
#pragma once

#include <cstddef>
#include <string_view>

class FieldWalker
{
public:
    FieldWalker(std::string_view text, char divider) noexcept
        : m_at(text.data()), m_end(text.data() + text.size()), m_divider(divider)
    {
        m_hasLeadingDivider = m_at != m_end && *m_at == m_divider;
        m_at += m_hasLeadingDivider ? 1 : 0;
    }

    // Steps to the next field; false past the last one. What follows a field is a divider, the end of the text or a
    // terminator.
    bool Next(std::string_view& field) noexcept
    {
        if (m_hasLeadingDivider) {
            m_hasLeadingDivider = false;
            field = " ";
            return true;
        }
        const char* start = m_at;
        while (m_at != m_end && *m_at == m_divider)
            ++m_at;
        // Kept: the first field keeps the dividers in front of it, as callers of the splitter know it.
        if (!m_isFirst && m_at == m_end)
            return false;
        start = m_isFirst ? start : m_at;
        m_isFirst = false;
        while (m_at != m_end && *m_at != m_divider)
            ++m_at;
        field = std::string_view(start, static_cast<std::size_t>(m_at - start));
        return true;
    }

private:
    const char* m_at;
    const char* m_end;
    char m_divider;
    bool m_hasLeadingDivider;
    bool m_isFirst = true;
};
