// The integer reader behind BuNumber.h and BuString.h, for narrow and wide text.
#pragma once

#include <basutl/BuCharacter.h>

#include <limits>

namespace number {

// How the characters of a text are read: one that ends with a NUL, and one that ends before `last` as if one stood there.
struct Terminated
{
    template <typename Char>
    Char At(const Char* place) const noexcept
    {
        return *place;
    }
};

template <typename Char>
struct Bounded
{
    const Char* last;
    Char At(const Char* place) const noexcept { return place != last ? *place : Char(0); }
};

template <typename Char, typename Text = Terminated>
const Char* SkipSpaces(const Char* next, Text text = {}) noexcept
{
    while (BuIsSpace(text.At(next)))
        ++next;
    return next;
}

// The value of a digit or letter, 36 for everything else.
template <typename Char>
constexpr int DigitValue(Char c) noexcept
{
    if (BuIsDigit(c))
        return c - Char('0');
    return BuIsLetter(c) ? BuToLower(c) - Char('a') + 10 : 36;
}

// An optional sign and digits of the base, without white space: the value, which stays at its limit, and the first
// character that was not read, `start` itself when no digit stands there.
template <typename Char, typename Text = Terminated>
long long ReadInteger(const Char* start, int base, const Char** end, Text text = {}) noexcept
{
    using Limits = std::numeric_limits<long long>;
    const bool negative = text.At(start) == Char('-');
    const Char* const first = start + (negative || text.At(start) == Char('+'));
    const Char* next = first;
    unsigned long long magnitude = 0;
    bool overflow = false;
    for (; DigitValue(text.At(next)) < base; ++next) {
        overflow |= __builtin_mul_overflow(magnitude, static_cast<unsigned>(base), &magnitude);
        overflow |= __builtin_add_overflow(magnitude, static_cast<unsigned>(DigitValue(text.At(next))), &magnitude);
    }
    *end = next == first ? start : next;
    const unsigned long long limit = static_cast<unsigned long long>(Limits::max()) + negative;
    if (overflow || magnitude >= limit)
        return negative ? Limits::min() : Limits::max();
    return negative ? -static_cast<long long>(magnitude) : static_cast<long long>(magnitude);
}

}  // namespace number
