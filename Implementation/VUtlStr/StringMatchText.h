// What comparison and replacement share: texts that may be missing, copies to work on, whole words.
#pragma once

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace match {

// A text as a view; null is the empty text.
inline std::string_view View(const char* text)
{
    return text != nullptr ? std::string_view(text) : std::string_view();
}

inline bool IsNullOrEmpty(const char* text)
{
    return text == nullptr || *text == '\0';
}

// A copy of a text to work on, as it is or in upper case. False when memory is exhausted.
class WorkingCopy
{
public:
    bool Assign(std::string_view text)
    {
        m_text.Clear();
        return m_text.Append(text.data(), text.size());
    }
    bool AssignUpper(std::string_view text)
    {
        if (!m_text.Resize(text.size()))
            return false;
        std::transform(text.begin(), text.end(), m_text.begin(), BuToUpper<char>);
        return true;
    }

    char* Data() noexcept { return m_text.Data(); }
    std::string_view View() const noexcept { return {m_text.Data(), m_text.Size()}; }

private:
    ScratchBuffer<char, 256> m_text{modules::VUtlStr};
};

inline bool IsSeparator(char c)
{
    return !BuIsLetter(c) && !BuIsDigit(c) && c != '_' && c != '"' && c != '\'';
}

// Whether what stands between two texts is a whole word. An end of either counts as a separator.
inline bool IsWholeWordBetween(std::string_view before, std::string_view after)
{
    return (before.empty() || IsSeparator(before.back())) && (after.empty() || IsSeparator(after.front()));
}

}  // namespace match
