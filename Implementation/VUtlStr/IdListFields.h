// The fields of a text: each separator ends one, and the end of the text ends one that is not empty.
#pragma once

#include <algorithm>
#include <string_view>

namespace idlist {

class Fields
{
public:
    // NUL separates nothing.
    Fields(std::string_view text, char separator)
        : m_next(text.data()), m_last(text.data() + text.size()), m_separator(separator)
    {}

    // Gives the next field, which may be empty; false when there is none.
    bool Next(std::string_view& field)
    {
        if (m_next == m_last)
            return false;
        const char* const end = std::find(m_next, m_last, m_separator);
        field = {m_next, static_cast<std::size_t>(end - m_next)};
        m_next = end != m_last ? end + 1 : end;
        return true;
    }

private:
    const char* m_next;
    const char* m_last;
    char m_separator;
};

// The separator that a text means: its first character, or the usual one for null.
inline char SeparatorOf(const char* separator, char usual)
{
    return separator != nullptr ? *separator : usual;
}

}  // namespace idlist
