// Character classes and case by the ASCII rules alone, for narrow and wide characters, whatever the locale: the one
// place that says what a space, a letter or a digit is. Safe for every value, negative `char` included.
#pragma once

#include <type_traits>

// Whether a character is white space: blank \t \n \v \f \r.
template <typename Char>
constexpr bool BuIsSpace(Char c) noexcept
{
    return c == Char(' ') || (c >= Char('\t') && c <= Char('\r'));
}

// Whether a character is one of 0 to 9.
template <typename Char>
constexpr bool BuIsDigit(Char c) noexcept
{
    return c >= Char('0') && c <= Char('9');
}

// Whether a character is one of A to Z.
template <typename Char>
constexpr bool BuIsUpper(Char c) noexcept
{
    return c >= Char('A') && c <= Char('Z');
}

// Whether a character is one of a to z.
template <typename Char>
constexpr bool BuIsLower(Char c) noexcept
{
    return c >= Char('a') && c <= Char('z');
}

// Whether a character is a letter of either case.
template <typename Char>
constexpr bool BuIsLetter(Char c) noexcept
{
    return BuIsUpper(c) || BuIsLower(c);
}

// The lower-case form of a letter, any other character as it is.
template <typename Char>
constexpr Char BuToLower(Char c) noexcept
{
    return BuIsUpper(c) ? static_cast<Char>(c + ('a' - 'A')) : c;
}

// The upper-case form of a letter, any other character as it is.
template <typename Char>
constexpr Char BuToUpper(Char c) noexcept
{
    return BuIsLower(c) ? static_cast<Char>(c - ('a' - 'A')) : c;
}

// Compares two texts that end with 0, ASCII letters without case: below, at or above 0. Characters are unsigned here, so
// that a narrow one above 127 is above all others. Neither may be null.
template <typename Char>
constexpr int BuCompareNoCase(const Char* left, const Char* right) noexcept
{
    using Code = std::make_unsigned_t<Char>;
    for (; *left != 0 && BuToLower(*left) == BuToLower(*right); ++left, ++right) {
    }
    const auto l = static_cast<Code>(BuToLower(*left));
    const auto r = static_cast<Code>(BuToLower(*right));
    return l < r ? -1 : (l > r ? 1 : 0);
}
