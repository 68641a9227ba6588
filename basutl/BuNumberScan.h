// The integer reader behind BuNumber.h and BuString.h, for narrow and wide text.
#pragma once

#include <basutl/BuCharacter.h>

#include <limits>

namespace number {

template <typename Char>
const Char* SkipSpaces(const Char* text) noexcept
{
    while (BuIsSpace(*text))
        ++text;
    return text;
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
// character that was not read, `text` itself when no digit stands there.
template <typename Char>
long long ReadInteger(const Char* text, int base, const Char** end) noexcept
{
    using Limits = std::numeric_limits<long long>;
    const bool negative = *text == Char('-');
    const Char* const first = text + (negative || *text == Char('+'));
    const Char* next = first;
    unsigned long long magnitude = 0;
    bool overflow = false;
    for (; DigitValue(*next) < base; ++next) {
        overflow |= __builtin_mul_overflow(magnitude, static_cast<unsigned>(base), &magnitude);
        overflow |= __builtin_add_overflow(magnitude, static_cast<unsigned>(DigitValue(*next)), &magnitude);
    }
    *end = next == first ? text : next;
    const unsigned long long limit = static_cast<unsigned long long>(Limits::max()) + negative;
    if (overflow || magnitude >= limit)
        return negative ? Limits::min() : Limits::max();
    return negative ? -static_cast<long long>(magnitude) : static_cast<long long>(magnitude);
}

}  // namespace number
