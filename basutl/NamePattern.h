// Names against patterns with '*' and '?', as both libraries match them.
#pragma once

#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

inline bool IsSameCharacter(wchar_t left, wchar_t right) noexcept
{
    return left == right;
}

inline bool IsSameLetter(wchar_t left, wchar_t right) noexcept
{
    return BuToLower(left) == BuToLower(right);
}

// Only the last '*' seen needs to be retried: a match found with an earlier one can always be moved to the last.
inline bool MatchesPattern(const wchar_t* pattern, const wchar_t* name, bool (*isSame)(wchar_t, wchar_t)) noexcept
{
    const wchar_t* afterStar = nullptr;
    const wchar_t* retryAt = nullptr;
    while (*name != L'\0') {
        if (*pattern == L'*') {
            afterStar = ++pattern;
            retryAt = name;
        } else if (*pattern != L'\0' && (*pattern == L'?' || isSame(*pattern, *name))) {
            ++pattern;
            ++name;
        } else if (afterStar != nullptr) {
            pattern = afterStar;
            name = ++retryAt;
        } else {
            return false;
        }
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == L'\0';
}

// '*' stands for any run of characters, the empty one included, '?' for exactly one. The case of ASCII letters counts
// where the file names of the system have it.
inline bool MatchesNamePattern(const wchar_t* pattern, const wchar_t* name) noexcept
{
    return MatchesPattern(pattern, name, platform::Separator() == L'\\' ? &IsSameLetter : &IsSameCharacter);
}
