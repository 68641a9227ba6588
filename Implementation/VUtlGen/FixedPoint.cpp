#include "VUtlGen/FixedPoint.h"

#include <basutl/BuNumber.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

// A fraction of one in millionths, rounded: its mantissa times a million has at most 73 bits, so nothing is lost.
std::int64_t Millionths(double fraction)
{
    constexpr int fractionBits = 52;
    constexpr int exponentBias = 1023;
    constexpr int allLost = 74;  // the shift that leaves less than one half of anything
    const auto bits = std::bit_cast<std::uint64_t>(fraction);
    const int exponent = static_cast<int>(bits >> fractionBits);
    const int shift = exponentBias + fractionBits - exponent;
    if (shift >= allLost)
        return 0;
    const std::uint64_t implied = std::uint64_t{1} << fractionBits;
    const unsigned __int128 scaled = static_cast<unsigned __int128>(implied | (bits & (implied - 1))) * 1'000'000;
    const unsigned __int128 half = static_cast<unsigned __int128>(1) << (shift - 1);
    const auto whole = static_cast<std::int64_t>(scaled >> shift);
    const unsigned __int128 rest = scaled & (2 * half - 1);
    return whole + (rest > half || (rest == half && whole % 2 != 0));
}

}  // namespace

char* fixedpoint::Write(char* to, double value) noexcept
{
    const double magnitude = std::fabs(value);
    if (!(magnitude < 0x1p63))
        return std::to_chars(to, to + Room, value, std::chars_format::fixed, 6).ptr;
    *to = '-';
    to += std::signbit(value);

    auto whole = static_cast<std::int64_t>(magnitude);
    std::int64_t millionths = Millionths(magnitude - static_cast<double>(whole));
    if (millionths == 1'000'000) {
        ++whole;
        millionths = 0;
    }
    char* const point = BuWriteInteger(to, whole);
    // A seventh digit in front keeps the zeros of the six; the point takes its place.
    char* const end = BuWriteInteger(point, 1'000'000 + millionths);
    *point = '.';
    return end;
}
