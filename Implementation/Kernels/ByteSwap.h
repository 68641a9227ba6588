// Changes the byte order of arrays in place. The arrays need not be aligned. May be called from any thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kernels {

// ---- One element ---------------------------------------------------------------------------------------------------

inline std::uint16_t Reversed2(std::uint16_t value) noexcept
{
    return __builtin_bswap16(value);
}

inline std::uint32_t Reversed4(std::uint32_t value) noexcept
{
    return __builtin_bswap32(value);
}

// The first four bytes become the last four, last one first; the last four stay. 01 02 03 04 05 06 07 08 gives
// 08 07 06 05 05 06 07 08.
inline std::uint64_t HalfReversed8(std::uint64_t value) noexcept
{
    const std::uint64_t last = value >> 32;  // in memory the first byte is the lowest
    return last << 32 | Reversed4(static_cast<std::uint32_t>(last));
}

// ---- Arrays --------------------------------------------------------------------------------------------------------

// The same for each of `count` elements, by the fastest variant that the processor has.
void Reverse2(void* elements, std::size_t count) noexcept;
void Reverse4(void* elements, std::size_t count) noexcept;
void HalfReverse8(void* elements, std::size_t count) noexcept;

// The variants. All give the same.
struct ByteSwapFunctions
{
    decltype(&Reverse2) reverse2;
    decltype(&Reverse4) reverse4;
    decltype(&HalfReverse8) halfReverse8;
};
extern const ByteSwapFunctions scalarByteSwap;
extern const ByteSwapFunctions ssse3ByteSwap;  // for processors that HasSsse3
extern const ByteSwapFunctions avx2ByteSwap;   // for processors that HasAvx2

}  // namespace kernels
