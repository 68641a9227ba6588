#include <basutl/BuNumber.h>

#include "basutl/BuNumberScan.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace {

// A text that ends before `last`, or at its NUL when `last` is null.
struct Text
{
    const char* last;
    char At(const char* place) const { return place != last ? *place : '\0'; }
};

// What a number is made of: mantissa * radix^exponent, where the mantissa holds the first digits only.
struct Number
{
    const char* end = nullptr;  // behind its last character; null when there is no digit
    std::uint64_t mantissa = 0;
    int digits = 0;          // of the mantissa, zeros in front not counted
    bool isCut = false;      // there are more digits
    long long exponent = 0;  // of the last digit of the mantissa
};

template <int Radix>
const char* ReadDigits(Text text, const char* next, bool behindPoint, Number& number)
{
    constexpr int kept = Radix == 10 ? 19 : 15;  // as many as 64 bits hold
    for (;; ++next) {
        const int digit = number::DigitValue(text.At(next));
        if (digit >= Radix)
            return next;
        if (number.digits < kept) {
            number.mantissa = number.mantissa * Radix + static_cast<unsigned>(digit);
            number.digits += number.mantissa != 0;
            number.exponent -= behindPoint;
        } else {
            number.isCut = true;
            number.exponent += !behindPoint;
        }
    }
}

// Reads what follows the letter of an exponent; without a digit there, nothing is read.
void ReadExponent(Text text, const char* next, Number& number)
{
    constexpr long long limit = 1'000'000'000'000'000;  // more than the digits of any text can balance
    const bool negative = text.At(next) == '-';
    next += negative || text.At(next) == '+';
    if (!BuIsDigit(text.At(next)))
        return;
    long long exponent = 0;
    for (; BuIsDigit(text.At(next)); ++next)
        exponent = std::min(exponent * 10 + (text.At(next) - '0'), limit);
    number.exponent += negative ? -exponent : exponent;
    number.end = next;
}

// Digits with an optional point and an optional exponent, which counts powers of 10 or 2.
template <int Radix>
Number ReadNumber(Text text, const char* first)
{
    Number number;
    const char* next = ReadDigits<Radix>(text, first, false, number);
    bool hasDigits = next != first;
    if (text.At(next) == '.') {
        const char* const fraction = next + 1;
        next = ReadDigits<Radix>(text, fraction, true, number);
        hasDigits |= next != fraction;
    }
    if (!hasDigits)
        return number;
    number.end = next;
    if (Radix == 16)
        number.exponent *= 4;
    if (BuToLower(text.At(next)) == (Radix == 10 ? 'e' : 'p'))
        ReadExponent(text, next + 1, number);
    return number;
}

// The value of a number by the standard library, which gives none for one that is too large or too small.
double Convert(const char* first, const Number& number, std::chars_format format)
{
    double value = 0.0;
    const auto result = std::from_chars(first, number.end, value, format);
    if (result.ec == std::errc::result_out_of_range)
        return number.exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return value;
}

double DecimalValue(const char* first, const Number& number)
{
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr long long largest = std::size(powers) - 1;
    constexpr std::uint64_t exactLimit = std::uint64_t{1} << std::numeric_limits<double>::digits;
    if (number.mantissa == 0)
        return 0.0;
    // With both operands exact, one operation rounds once, as the number itself has to be rounded.
    if (!number.isCut && number.mantissa < exactLimit && number.exponent <= largest && number.exponent >= -largest) {
        const auto mantissa = static_cast<double>(static_cast<std::int64_t>(number.mantissa));
        return number.exponent < 0 ? mantissa / powers[-number.exponent] : mantissa * powers[number.exponent];
    }
    return Convert(first, number, std::chars_format::general);
}

// Hexadecimal behind "0x", decimal, or nothing: `end` is null then.
double ReadFinite(Text text, const char* first, const char*& end)
{
    if (text.At(first) == '0' && BuToLower(text.At(first + 1)) == 'x') {
        const Number number = ReadNumber<16>(text, first + 2);
        end = number.end != nullptr ? number.end : first + 1;
        return number.mantissa != 0 ? Convert(first + 2, number, std::chars_format::hex) : 0.0;
    }
    const Number number = ReadNumber<10>(text, first);
    end = number.end;
    return DecimalValue(first, number);
}

// The place behind a word of small letters, null when the text begins with another one.
const char* SkipWord(Text text, const char* next, const char* word)
{
    for (; *word != '\0'; ++word, ++next)
        if (BuToLower(text.At(next)) != *word)
            return nullptr;
    return next;
}

// "inf", "infinity", "nan", "nan(...)" in letters of any case, or nothing: `end` is null then.
double ReadWord(Text text, const char* first, const char*& end)
{
    if ((end = SkipWord(text, first, "inf")) != nullptr) {
        if (const char* const longer = SkipWord(text, first, "infinity"))
            end = longer;
        return std::numeric_limits<double>::infinity();
    }
    if ((end = SkipWord(text, first, "nan")) != nullptr && text.At(end) == '(') {
        const char* next = end + 1;
        while (number::DigitValue(text.At(next)) < 36 || text.At(next) == '_')
            ++next;
        if (text.At(next) == ')')
            end = next + 1;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

double BuReadDouble(const char* text, const char** end) noexcept
{
    return BuReadDouble(text, nullptr, end);
}

double BuReadDouble(const char* text, const char* last, const char** end) noexcept
{
    const char* behind = nullptr;
    double value = 0.0;
    bool negative = false;
    if (text != nullptr) {
        const Text bounded = {last};
        const char* next = text;
        while (BuIsSpace(bounded.At(next)))
            ++next;
        negative = bounded.At(next) == '-';
        next += negative || bounded.At(next) == '+';
        value = BuIsLetter(bounded.At(next)) ? ReadWord(bounded, next, behind) : ReadFinite(bounded, next, behind);
    }
    if (end != nullptr)
        *end = behind != nullptr ? behind : text;
    if (behind == nullptr)
        return 0.0;
    return negative ? -value : value;
}

long long BuReadInteger(const char* text, const char** end, int base) noexcept
{
    const char* behind = text;
    long long value = 0;
    if (text != nullptr && base >= 2 && base <= 36) {
        const char* const first = number::SkipSpaces(text);
        value = number::ReadInteger(first, base, &behind);
        if (behind == first)
            behind = text;
    }
    if (end != nullptr)
        *end = behind;
    return value;
}
