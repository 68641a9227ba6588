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
    FieldWalker(std::string_view text, char divider) noexcept : m_rest(text), m_divider(divider) {}

    // Steps to the next field; false past the last one. What follows a field is the divider, the end of the text or a
    // terminator.
    bool Next(std::string_view& field) noexcept
    {
        switch (m_stage) {
            case Stage::Start:
                m_stage = Stage::First;
                if (m_rest.empty() || m_rest.front() != m_divider)
                    return First(field);
                m_rest.remove_prefix(1);
                field = " ";
                return true;
            case Stage::First:
                return First(field);
            case Stage::Further:
                break;
        }
        m_rest.remove_prefix(LeadingDividers());
        return !m_rest.empty() && Take(field, 0);
    }

private:
    enum class Stage
    {
        Start,
        First,
        Further
    };

    // Kept: the first field keeps dividers in front of it, as callers of the splitter know it.
    bool First(std::string_view& field) noexcept
    {
        m_stage = Stage::Further;
        return Take(field, LeadingDividers());
    }

    // Takes everything up to the first divider at or after `from`.
    bool Take(std::string_view& field, std::size_t from) noexcept
    {
        field = m_rest.substr(0, m_rest.find(m_divider, from));
        m_rest.remove_prefix(field.size());
        return true;
    }

    std::size_t LeadingDividers() const noexcept
    {
        std::size_t count = 0;
        while (count < m_rest.size() && m_rest[count] == m_divider)
            ++count;
        return count;
    }

    std::string_view m_rest;
    char m_divider;
    Stage m_stage = Stage::Start;
};
