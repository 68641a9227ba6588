// The white space at the ends of a text.
#pragma once

#include <basutl/BuCharacter.h>

#include <string_view>

namespace strings {

// The first character that is no white space, the NUL when there is none.
inline const char* SkipSpace(const char* text)
{
    while (BuIsSpace(*text))
        ++text;
    return text;
}

inline std::string_view WithoutSpaceAtEnd(std::string_view text)
{
    while (!text.empty() && BuIsSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

inline std::string_view WithoutSpaceAtFront(std::string_view text)
{
    while (!text.empty() && BuIsSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

inline std::string_view WithoutSpaceAtEnds(std::string_view text)
{
    return WithoutSpaceAtFront(WithoutSpaceAtEnd(text));
}

}  // namespace strings
