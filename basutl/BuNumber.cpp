#include <basutl/BuNumber.h>

#include "basutl/BuNumberScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

namespace {

using number::Bounded;
using number::Terminated;

// A number is its digits, read as one integer, times a power of 10, or of 2 when it is hexadecimal.
struct Number
{
    const char* end = nullptr;   // behind its last character; null when there is no digit
    std::uint64_t mantissa = 0;  // the low bits of the integer: all of it when isWhole
    long long digits = 0;        // at least as many as follow the leading zeros
    bool isWhole = true;
    long long exponent = 0;
};

template <int Radix, typename Text>
const char* ReadDigits(Text text, const char* next, std::uint64_t& mantissa)
{
    for (;; ++next) {
        const char c = text.At(next);
        const int digit = Radix == 10 ? static_cast<unsigned char>(c - '0') : number::DigitValue(c);
        if (digit >= Radix)
            return next;
        mantissa = mantissa * Radix + static_cast<unsigned>(digit);
    }
}

// Reads what follows the letter of an exponent; without a digit there, nothing is read.
template <typename Text>
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

// The digits between two places, without the zeros in front.
long long SignificantDigits(const char* first, const char* last)
{
    const char* const nonZero = std::find_if(first, last, [](char c) { return c != '0' && c != '.'; });
    return last - nonZero - std::count(nonZero, last, '.');
}

// Digits with an optional point and an optional exponent.
template <int Radix, typename Text>
Number ReadNumber(Text text, const char* first)
{
    Number number;
    const char* next = ReadDigits<Radix>(text, first, number.mantissa);
    number.digits = next - first;
    if (text.At(next) == '.') {
        const char* const fraction = next + 1;
        next = ReadDigits<Radix>(text, fraction, number.mantissa);
        number.digits += next - fraction;
        number.exponent = (fraction - next) * (Radix == 10 ? 1 : 4);
    }
    if (number.digits == 0)
        return number;
    constexpr int most = Radix == 10 ? 19 : 16;  // digits that 64 bits hold
    if (number.digits > most)
        number.digits = SignificantDigits(first, next);
    number.isWhole = number.digits <= most;
    number.end = next;
    if (BuToLower(text.At(next)) == (Radix == 10 ? 'e' : 'p'))
        ReadExponent(text, next + 1, number);
    return number;
}

bool IsZero(const Number& number)
{
    return number.isWhole && number.mantissa == 0;
}

// The value of a number by the standard library, which gives none for one that is too large or too small.
double Convert(const char* first, const Number& number, std::chars_format format)
{
    double value = 0.0;
    const auto result = std::from_chars(first, number.end, value, format);
    if (result.ec != std::errc::result_out_of_range)
        return value;
    const long long powersPerDigit = format == std::chars_format::hex ? 4 : 1;
    return number.exponent + number.digits * powersPerDigit > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

double DecimalValue(const char* first, const Number& number)
{
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr long long largest = std::size(powers) - 1;
    constexpr std::uint64_t exactLimit = std::uint64_t{1} << std::numeric_limits<double>::digits;
    if (IsZero(number))
        return 0.0;
    // With both operands exact, one operation rounds once, as the number itself has to be rounded.
    if (number.isWhole && number.mantissa < exactLimit && number.exponent <= largest && number.exponent >= -largest) {
        const auto mantissa = static_cast<double>(static_cast<std::int64_t>(number.mantissa));
        return number.exponent < 0 ? mantissa / powers[-number.exponent] : mantissa * powers[number.exponent];
    }
    return Convert(first, number, std::chars_format::general);
}

// Hexadecimal behind "0x", decimal, or nothing: `end` is null then.
template <typename Text>
double ReadFinite(Text text, const char* first, const char*& end)
{
    if (text.At(first) == '0' && BuToLower(text.At(first + 1)) == 'x') {
        const Number number = ReadNumber<16>(text, first + 2);
        end = number.end != nullptr ? number.end : first + 1;
        return IsZero(number) ? 0.0 : Convert(first + 2, number, std::chars_format::hex);
    }
    const Number number = ReadNumber<10>(text, first);
    end = number.end;
    return DecimalValue(first, number);
}

// The place behind a word of small letters, null when the text begins with another one.
template <typename Text>
const char* SkipWord(Text text, const char* next, const char* word)
{
    for (; *word != '\0'; ++word, ++next)
        if (BuToLower(text.At(next)) != *word)
            return nullptr;
    return next;
}

// "inf", "infinity", "nan", "nan(...)" in letters of any case, or nothing: `end` is null then.
template <typename Text>
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

template <typename Text>
double Read(Text text, const char* first, const char** end)
{
    const char* next = number::SkipSpaces(first, text);
    const bool negative = text.At(next) == '-';
    next += negative || text.At(next) == '+';
    const char* behind = nullptr;
    const double value = BuIsLetter(text.At(next)) ? ReadWord(text, next, behind) : ReadFinite(text, next, behind);
    if (end != nullptr)
        *end = behind != nullptr ? behind : first;
    if (behind == nullptr)
        return 0.0;
    return negative ? -value : value;
}

// White space, then an integer; `end` stays at `start` when there is none.
template <typename Text>
long long ReadInteger(Text text, const char* start, const char** end, int base)
{
    const char* behind = start;
    long long value = 0;
    if (start != nullptr && base >= 2 && base <= 36) {
        const char* const first = number::SkipSpaces(start, text);
        value = number::ReadInteger(first, base, &behind, text);
        if (behind == first)
            behind = start;
    }
    if (end != nullptr)
        *end = behind;
    return value;
}

// ---- Writing -------------------------------------------------------------------------------------------------------

// The three digits of each number below 1000, zeros in front included, in the bytes of a word from the lowest on; the
// highest byte tells the bits of the zeros in front, of which the last digit is none.
constexpr auto Groups = [] {
    std::array<std::uint32_t, 1000> groups{};
    for (std::uint32_t i = 0; i < 1000; ++i) {
        const std::uint32_t zeroBits = i < 10 ? 16 : (i < 100 ? 8 : 0);
        groups[i] = ('0' + i / 100) | ('0' + i / 10 % 10) << 8 | ('0' + i % 10) << 16 | zeroBits << 24;
    }
    return groups;
}();
static_assert(std::endian::native == std::endian::little);

// Writes three digits, in a word of four characters.
char* WriteGroup(char* to, std::uint32_t number)
{
    std::memcpy(to, &Groups[number], sizeof Groups[number]);
    return to + 3;
}

// The same without zeros in front.
char* WriteFirstGroup(char* to, std::uint32_t number)
{
    const std::uint32_t zeroBits = Groups[number] >> 24;
    const std::uint32_t digits = Groups[number] >> zeroBits;
    std::memcpy(to, &digits, sizeof digits);
    return to + 3 - zeroBits / 8;
}

constexpr std::uint32_t ThreeGroups = 1'000'000'000;

char* WriteBelowThreeGroups(char* to, std::uint32_t number)
{
    if (number < 1000)
        return WriteFirstGroup(to, number);
    const std::uint32_t thousands = number / 1000;
    if (thousands < 1000)
        to = WriteFirstGroup(to, thousands);
    else
        to = WriteGroup(WriteFirstGroup(to, thousands / 1000), thousands % 1000);
    return WriteGroup(to, number % 1000);
}

char* WriteMagnitude(char* to, std::uint64_t magnitude)
{
    if (magnitude < ThreeGroups)
        return WriteBelowThreeGroups(to, static_cast<std::uint32_t>(magnitude));
    to = WriteMagnitude(to, magnitude / ThreeGroups);
    const auto low = static_cast<std::uint32_t>(magnitude % ThreeGroups);
    to = WriteGroup(to, low / 1'000'000);
    to = WriteGroup(to, low / 1000 % 1000);
    return WriteGroup(to, low % 1000);
}

}  // namespace

double BuReadDouble(const char* text, const char** end) noexcept
{
    if (text != nullptr)
        return Read(Terminated{}, text, end);
    return BuReadDouble(nullptr, nullptr, end);
}

double BuReadDouble(const char* text, const char* last, const char** end) noexcept
{
    if (text != nullptr)
        return Read(Bounded<char>{last}, text, end);
    if (end != nullptr)
        *end = nullptr;
    return 0.0;
}

long long BuReadInteger(const char* text, const char** end, int base) noexcept
{
    return ReadInteger(Terminated{}, text, end, base);
}

long long BuReadInteger(const char* text, const char* last, const char** end, int base) noexcept
{
    return ReadInteger(Bounded<char>{last}, text, end, base);
}

char* BuWriteInteger(char* to, long long value) noexcept
{
    const auto bits = static_cast<std::uint64_t>(value);
    *to = '-';
    to += value < 0;
    return WriteMagnitude(to, value < 0 ? 0 - bits : bits);
}
