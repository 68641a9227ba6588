// Reading numbers from narrow text and writing them, independently of the locale and of the system's C library.
//
// May be called from any thread; allocates nothing.
//
//   const char* end;
//   BuReadDouble("1.5e3 mm", &end)   // 1500.0, end at " mm"
//
//   char text[BuIntegerRoom];
//   const std::string_view written(text, static_cast<std::size_t>(BuWriteInteger(text, -12) - text));   // "-12"
#pragma once

#include <basutl/Export.h>

// The number that a text begins with, as strtod reads it in the C locale: white space skipped, optional sign, decimal
// or hexadecimal digits, inf, infinity, nan, nan(...); out of range gives infinity or zero with the sign. `end`, when
// given, receives the first character not read, `text` itself when there is no number (result 0.0). Null reads as "".
BASUTL_API double BuReadDouble(const char* text, const char** end = nullptr) noexcept;

// The same for a text that ends before `last` at the latest; what lies at or after `last` is not touched.
BASUTL_API double BuReadDouble(const char* text, const char* last, const char** end) noexcept;

// White space, an optional sign and digits of the base (2 to 36, letters without case, no prefix) as a 64-bit value
// that stays at its limit when it overflows; 0 with `end` at `text` when no digit stands there. Null reads as "".
BASUTL_API long long BuReadInteger(const char* text, const char** end = nullptr, int base = 10) noexcept;

// The same for a text that ends before `last` at the latest.
BASUTL_API long long BuReadInteger(const char* text, const char* last, const char** end, int base = 10) noexcept;

// What atoi is used for: BuReadInteger cast to int, so that 99999999999 gives 1215752191 on every system.
inline int BuReadInt(const char* text) noexcept
{
    return static_cast<int>(BuReadInteger(text));
}

// Writes an integer as "%lld" does, without a terminator, and returns the place behind its last digit. `to` needs room
// for BuIntegerRoom characters whatever the value (the longest has 20); those behind the last digit may be written to.
inline constexpr int BuIntegerRoom = 24;
BASUTL_API char* BuWriteInteger(char* to, long long value) noexcept;
