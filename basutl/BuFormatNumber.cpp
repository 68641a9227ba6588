#include "basutl/BuFormat.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace format {

namespace {

// The parts of a number in the order in which they are printed.
struct NumberParts
{
    char sign = 0;  // 0 for none
    char base = 0;  // 'x' or 'X', with a zero before it; 0 for none
    long long leadingZeros = 0;
    std::string_view digits;
    bool point = false;  // whether '#' asks for a point that is not among the digits
    long long trailingZeros = 0;
    std::string_view exponent;
};

char Sign(const Conversion& conversion, bool negative)
{
    return negative ? '-' : conversion.plus ? '+' : conversion.blank ? ' ' : '\0';
}

void MakeUpper(char* first, std::size_t count)
{
    std::transform(first, first + count, first, BuToUpper<char>);
}

wchar_t* Put(std::string_view text, wchar_t* to)
{
    for (const char character : text)
        *to++ = static_cast<wchar_t>(character);
    return to;
}

// Prints a number into its field; `padZeros` tells whether the flag '0' counts for it.
void AppendNumber(Sink& sink, const Conversion& conversion, const NumberParts& parts, bool padZeros)
{
    const std::size_t texts =
        (parts.sign != 0) + 2 * (parts.base != 0) + parts.digits.size() + parts.point + parts.exponent.size();
    const long long length = static_cast<long long>(texts) + parts.leadingZeros + parts.trailingZeros;
    const long long padding = std::max(conversion.width - length, 0LL);
    const bool zeros = padZeros && conversion.zero && !conversion.left;

    wchar_t* to = sink.Add(static_cast<std::size_t>(length + padding));
    if (!zeros && !conversion.left)
        to = std::fill_n(to, padding, L' ');
    if (parts.sign != 0)
        *to++ = static_cast<wchar_t>(parts.sign);
    if (parts.base != 0) {
        *to++ = L'0';
        *to++ = static_cast<wchar_t>(parts.base);
    }
    to = std::fill_n(to, parts.leadingZeros + (zeros ? padding : 0), L'0');
    to = Put(parts.digits, to);
    if (parts.point)
        *to++ = L'.';
    to = std::fill_n(to, parts.trailingZeros, L'0');
    to = Put(parts.exponent, to);
    if (conversion.left)
        std::fill_n(to, padding, L' ');
}

// ---- Floating point ------------------------------------------------------------------------------------------------

// No double has more digits than this behind its point (1074), nor in all (767); what a precision asks for beyond it
// are zeros. 309 digits may stand before the point.
constexpr int DigitLimit = 1100;
constexpr std::size_t BufferSize = DigitLimit + 400;

struct Notation
{
    std::chars_format format;
    long long precision;  // negative: as many digits as the value needs
};

// Prints a finite value that is not negative, with at most DigitLimit digits of the precision.
std::string_view Print(char* buffer, double value, const Notation& notation)
{
    const auto precision = static_cast<int>(std::min<long long>(notation.precision, DigitLimit));
    char* const last = buffer + BufferSize;
    const char* const end = precision < 0 ? std::to_chars(buffer, last, value, notation.format).ptr
                                          : std::to_chars(buffer, last, value, notation.format, precision).ptr;
    return {buffer, static_cast<std::size_t>(end - buffer)};
}

// The notation of %#g, which keeps trailing zeros: it goes by the exponent of the value as rounded for %e.
Notation GeneralWithZeros(double value, long long digits)
{
    char buffer[BufferSize];
    const std::string_view text = Print(buffer, value, {std::chars_format::scientific, digits - 1});
    const char* const sign = text.data() + text.find('e') + 1;
    int exponent = 0;
    std::from_chars(sign + (*sign == '+'), text.data() + text.size(), exponent);
    if (exponent < -4 || exponent >= digits)
        return {std::chars_format::scientific, digits - 1};
    return {std::chars_format::fixed, digits - 1 - exponent};
}

Notation NotationOf(const Conversion& conversion, wchar_t letter, double value)
{
    const long long precision = conversion.precision < 0 ? 6 : conversion.precision;
    switch (letter) {
        case L'a':
            return {std::chars_format::hex, conversion.precision};
        case L'e':
            return {std::chars_format::scientific, precision};
        case L'f':
            return {std::chars_format::fixed, precision};
        default:
            break;
    }
    return conversion.alternate ? GeneralWithZeros(value, std::max(precision, 1LL))
                                : Notation{std::chars_format::general, precision};
}

// Divides a printed number so that the zeros and the point that are still missing can come before its exponent.
void Split(std::string_view text, char exponentLetter, NumberParts& parts)
{
    const std::size_t mantissa = std::min(text.find(exponentLetter), text.size());
    parts.digits = text.substr(0, mantissa);
    parts.exponent = text.substr(mantissa);
    parts.point = parts.digits.find('.') == std::string_view::npos;
}

void AppendFinite(Sink& sink, const Conversion& conversion, double value)
{
    const wchar_t letter = BuToLower(conversion.letter);
    const bool isUpper = letter != conversion.letter;
    const Notation notation = NotationOf(conversion, letter, std::fabs(value));
    char buffer[BufferSize];
    const std::string_view text = Print(buffer, std::fabs(value), notation);

    NumberParts parts;
    parts.sign = Sign(conversion, std::signbit(value));
    if (letter == L'a')
        parts.base = isUpper ? 'X' : 'x';
    parts.digits = text;
    if (notation.format != std::chars_format::general)
        parts.trailingZeros = std::max(notation.precision - DigitLimit, 0LL);
    if (conversion.alternate || parts.trailingZeros > 0)
        Split(text, letter == L'a' ? 'p' : 'e', parts);
    if (isUpper)
        MakeUpper(buffer, text.size());
    AppendNumber(sink, conversion, parts, true);
}

}  // namespace

void AppendFloat(Sink& sink, const Conversion& conversion, double value)
{
    if (std::isfinite(value))
        return AppendFinite(sink, conversion, value);
    const bool isUpper = BuIsUpper(conversion.letter);
    NumberParts parts;
    parts.sign = Sign(conversion, value < 0);
    parts.digits = std::isnan(value) ? (isUpper ? "NAN" : "nan") : (isUpper ? "INF" : "inf");
    AppendNumber(sink, conversion, parts, false);
}

// ---- Integers ------------------------------------------------------------------------------------------------------

namespace {

int BaseOf(wchar_t letter)
{
    switch (letter) {
        case L'o':
            return 8;
        case L'x':
        case L'X':
            return 16;
        default:
            return 10;
    }
}

}  // namespace

void AppendInteger(Sink& sink, const Conversion& conversion, bool negative, unsigned long long magnitude)
{
    const int base = BaseOf(conversion.letter);
    char digits[std::numeric_limits<unsigned long long>::digits / 3 + 1];
    const char* const end = std::to_chars(digits, std::end(digits), magnitude, base).ptr;
    std::size_t count = static_cast<std::size_t>(end - digits);
    if (conversion.letter == L'X')
        MakeUpper(digits, count);
    if (conversion.precision == 0 && magnitude == 0)
        count = 0;

    NumberParts parts;
    if (conversion.letter == L'd' || conversion.letter == L'i')
        parts.sign = Sign(conversion, negative);
    if (base == 16 && conversion.alternate && magnitude != 0)
        parts.base = static_cast<char>(conversion.letter);
    parts.digits = {digits, count};
    parts.leadingZeros = std::max(conversion.precision - static_cast<long long>(count), 0LL);
    // The alternate form of an octal number begins with a zero.
    if (base == 8 && conversion.alternate && parts.leadingZeros == 0 && (count == 0 || digits[0] != '0'))
        parts.leadingZeros = 1;
    AppendNumber(sink, conversion, parts, conversion.precision < 0);
}

}  // namespace format
