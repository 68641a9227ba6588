// Numbers as "%f" prints them.
#pragma once

#include <cstddef>

namespace fixedpoint {

// The largest double has 309 digits in front of the point; 6 follow it.
inline constexpr std::size_t Room = 320;

// Writes a number with six decimals, the exact binary value rounded, ties to even, as printf does in the C locale.
// Returns the place behind its last character; `to` needs Room characters whatever the value.
char* Write(char* to, double value) noexcept;

}  // namespace fixedpoint
