// The CRC-32 of IEEE 802.3 (reflected polynomial 0xEDB88320) as a bare register, which is neither preset nor inverted:
// who wants the usual CRC-32 starts at 0xFFFFFFFF and inverts the result. May be called from any thread.
//
//   std::uint32_t crc = 0xFFFFFFFF;
//   crc = kernels::Crc32(crc, "123456789", 9);   // 0x340BC6D9, however the nine bytes are split over calls
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kernels {

// ---- Tables --------------------------------------------------------------------------------------------------------

inline constexpr std::uint32_t CrcPolynomial = 0xEDB88320;

// The register times x. A register is a polynomial whose highest coefficient, that of x^31, is the lowest bit.
constexpr std::uint32_t CrcTimesX(std::uint32_t crc) noexcept
{
    return crc >> 1 ^ ((crc & 1) != 0 ? CrcPolynomial : 0);
}

// crcTables[n][byte]: the register 0 after this byte and n zeros.
inline constexpr auto crcTables = [] {
    std::array<std::array<std::uint32_t, 256>, 8> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (auto& table : tables) {
            for (int bit = 0; bit < 8; ++bit)
                crc = CrcTimesX(crc);
            table[byte] = crc;
        }
    }
    return tables;
}();

// ---- A few bytes ---------------------------------------------------------------------------------------------------
// The register after one byte, or after the bytes of a value in the order in which they lie in memory.

inline std::uint32_t Crc32Of1(std::uint32_t crc, std::uint8_t value) noexcept
{
    return crc >> 8 ^ crcTables[0][(crc ^ value) & 0xFF];
}

inline std::uint32_t Crc32Of4(std::uint32_t crc, std::uint32_t value) noexcept
{
    value ^= crc;
    return crcTables[3][value & 0xFF] ^ crcTables[2][value >> 8 & 0xFF] ^ crcTables[1][value >> 16 & 0xFF] ^
           crcTables[0][value >> 24];
}

inline std::uint32_t Crc32Of8(std::uint32_t crc, std::uint64_t value) noexcept
{
    const std::uint32_t low = static_cast<std::uint32_t>(value) ^ crc;
    return crcTables[7][low & 0xFF] ^ crcTables[6][low >> 8 & 0xFF] ^ crcTables[5][low >> 16 & 0xFF] ^
           crcTables[4][low >> 24] ^ Crc32Of4(0, static_cast<std::uint32_t>(value >> 32));
}

// ---- Blocks --------------------------------------------------------------------------------------------------------

// The register after `size` bytes, which may be null when there are none, by the fastest variant that the processor
// has.
std::uint32_t Crc32(std::uint32_t crc, const void* bytes, std::size_t size) noexcept;

// The variants. All give the same; the folding ones need a processor that has it.
std::uint32_t Crc32Sliced(std::uint32_t crc, const void* bytes, std::size_t size) noexcept;
std::uint32_t Crc32Folded128(std::uint32_t crc, const void* bytes, std::size_t size) noexcept;
std::uint32_t Crc32Folded512(std::uint32_t crc, const void* bytes, std::size_t size) noexcept;
bool HasFolding128() noexcept;  // PCLMULQDQ and SSE4.1
bool HasFolding512() noexcept;  // VPCLMULQDQ and AVX-512F as well

}  // namespace kernels
