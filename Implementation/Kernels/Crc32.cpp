#include "Kernels/Crc32.h"

#include <immintrin.h>

#include <cstring>

namespace kernels {
namespace {

// Eight bytes at a time by tables.
[[gnu::always_inline]] inline std::uint32_t Slice(std::uint32_t crc, const void* bytes, std::size_t size) noexcept
{
    const auto* next = static_cast<const unsigned char*>(bytes);
    for (; size >= 8; next += 8, size -= 8) {
        std::uint64_t value;
        std::memcpy(&value, next, 8);
        crc = Crc32Of8(crc, value);
    }
    if (size >= 4) {
        std::uint32_t value;
        std::memcpy(&value, next, 4);
        crc = Crc32Of4(crc, value);
        next += 4;
        size -= 4;
    }
    for (; size != 0; --size)
        crc = Crc32Of1(crc, *next++);
    return crc;
}

// ---- Folding -------------------------------------------------------------------------------------------------------
//
// Sixteen bytes are a polynomial of degree 127 whose highest coefficient is the lowest bit of the first byte. What
// counts is its remainder, so sixteen bytes that stand d bits before the end of the text may be replaced there by their
// product with x^d. A carry-less multiplication of each half with a remainder of 32 bits gives it: it has 96 bits and
// is added to the sixteen bytes that it falls upon.
//
// Multiplying reflected numbers gives a product that lies one bit too low, so factors are shifted by one. With the
// remainder of x^n as its factor a half becomes itself times x^(n + 32). To move by d bits the last half takes
// n = d - 32; the first one, which stands 64 bits before it, n = d + 32.

constexpr std::size_t Lane = 16;

constexpr long long PowerOfX(int exponent) noexcept
{
    std::uint32_t power = 0x80000000;
    for (int i = 0; i < exponent; ++i)
        power = CrcTimesX(power);
    return static_cast<long long>(power) << 1;
}

// What moves sixteen bytes forward by a distance in bytes: a factor for the first eight and one for the last.
struct alignas(16) Distance
{
    long long first, last;

    constexpr explicit Distance(int bytes) noexcept : first(PowerOfX(bytes * 8 + 32)), last(PowerOfX(bytes * 8 - 32)) {}
    constexpr Distance() noexcept : first(0), last(0) {}  // makes everything 0
};

constexpr Distance by1Lane(16), by2Lanes(32), by3Lanes(48), by4Lanes(64), by8Lanes(128), by12Lanes(192), by16Lanes(256);
alignas(64) constexpr Distance toLastLane[4] = {by3Lanes, by2Lanes, by1Lane, Distance()};

[[gnu::target("sse2"), gnu::always_inline]] inline __m128i Load(const void* bytes) noexcept
{
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

[[gnu::target("pclmul,sse4.1"), gnu::always_inline]] inline __m128i Fold(__m128i lane,
                                                                         const Distance& distance) noexcept
{
    const __m128i factors = _mm_load_si128(reinterpret_cast<const __m128i*>(&distance));
    return _mm_xor_si128(_mm_clmulepi64_si128(lane, factors, 0x00), _mm_clmulepi64_si128(lane, factors, 0x11));
}

// The register 0 after these sixteen bytes: the first eight, moved forward, and the last make 96 bits.
[[gnu::target("pclmul,sse4.1"), gnu::always_inline]] inline std::uint32_t Reduce(__m128i lane) noexcept
{
    const __m128i factors = _mm_load_si128(reinterpret_cast<const __m128i*>(&by1Lane));
    const __m128i rest = _mm_xor_si128(_mm_clmulepi64_si128(lane, factors, 0x10), _mm_srli_si128(lane, 8));
    return Crc32Of8(0, static_cast<std::uint64_t>(_mm_cvtsi128_si64(rest))) ^
           static_cast<std::uint32_t>(_mm_extract_epi32(rest, 2));
}

// Byte orders: the window that begins at s brings byte s + i - 16 to place i, and zeros where there is none.
alignas(16) constexpr std::uint8_t slide[48] = {0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
                                                0x80, 0x80, 0x80, 0x80, 0,    1,    2,    3,    4,    5,    6,    7,
                                                8,    9,    10,   11,   12,   13,   14,   15,   0x80, 0x80, 0x80, 0x80,
                                                0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80};

// Takes 1 to 15 bytes more, the last of at least sixteen in front of `end`: of the old bytes and the new ones in a row
// the first ones fold upon the last sixteen.
[[gnu::target("pclmul,sse4.1"), gnu::always_inline]] inline __m128i FoldRest(__m128i lane, const unsigned char* end,
                                                                             std::size_t size) noexcept
{
    const __m128i down = Load(slide + Lane + size);
    const __m128i first = _mm_shuffle_epi8(lane, Load(slide + size));
    const __m128i last = _mm_blendv_epi8(_mm_shuffle_epi8(lane, down), Load(end - Lane), down);
    return _mm_xor_si128(Fold(first, by1Lane), last);
}

// The register after `lane` and `size` bytes more, before which at least sixteen stand.
[[gnu::target("pclmul,sse4.1"), gnu::always_inline]] inline std::uint32_t Finish(__m128i lane,
                                                                                 const unsigned char* next,
                                                                                 std::size_t size) noexcept
{
    for (; size >= Lane; next += Lane, size -= Lane)
        lane = _mm_xor_si128(Fold(lane, by1Lane), Load(next));
    return Reduce(size == 0 ? lane : FoldRest(lane, next + size, size));
}

[[gnu::target("pclmul,sse4.1"), gnu::always_inline]] inline __m128i FirstLane(std::uint32_t crc,
                                                                              const unsigned char* bytes) noexcept
{
    return _mm_xor_si128(_mm_cvtsi32_si128(static_cast<int>(crc)), Load(bytes));
}

// ---- Folding 64 bytes at a time ------------------------------------------------------------------------------------

#define TUVO_FOLD_512 gnu::target("avx512f,vpclmulqdq,pclmul,sse4.1"), gnu::always_inline

[[TUVO_FOLD_512]] inline __m512i LoadLanes(const unsigned char* bytes) noexcept
{
    return _mm512_loadu_si512(bytes);
}

// To move four lanes forward by the same distance.
[[TUVO_FOLD_512]] inline __m512i Factors(const Distance& distance) noexcept
{
    return _mm512_set4_epi64(distance.last, distance.first, distance.last, distance.first);
}

[[TUVO_FOLD_512]] inline __m512i FoldOnto(__m512i lanes, __m512i factors, __m512i target) noexcept
{
    constexpr int exclusiveOr = 0x96;
    return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(lanes, factors, 0x00),
                                     _mm512_clmulepi64_epi128(lanes, factors, 0x11), target, exclusiveOr);
}

[[TUVO_FOLD_512]] inline __m128i ToOneLane(__m512i lanes) noexcept
{
    const __m512i last = _mm512_maskz_mov_epi64(0xC0, lanes);
    __m128i parts[4];
    _mm512_storeu_si512(parts, FoldOnto(lanes, _mm512_load_si512(toLastLane), last));
    return _mm_xor_si128(_mm_xor_si128(parts[0], parts[1]), _mm_xor_si128(parts[2], parts[3]));
}

// At least 256 bytes, of which all whole 256 are taken; the four lanes that stand for them.
[[TUVO_FOLD_512]] inline __m512i FoldBlocks(__m512i first, const unsigned char*& next, std::size_t& size) noexcept
{
    __m512i lanes0 = first, lanes1 = LoadLanes(next + 64), lanes2 = LoadLanes(next + 128),
            lanes3 = LoadLanes(next + 192);
    const __m512i by256Bytes = Factors(by16Lanes);
    for (next += 256, size -= 256; size >= 256; next += 256, size -= 256) {
        lanes0 = FoldOnto(lanes0, by256Bytes, LoadLanes(next));
        lanes1 = FoldOnto(lanes1, by256Bytes, LoadLanes(next + 64));
        lanes2 = FoldOnto(lanes2, by256Bytes, LoadLanes(next + 128));
        lanes3 = FoldOnto(lanes3, by256Bytes, LoadLanes(next + 192));
    }
    const __m512i half = FoldOnto(lanes0, Factors(by12Lanes), FoldOnto(lanes1, Factors(by8Lanes), lanes3));
    return FoldOnto(lanes2, Factors(by4Lanes), half);
}

#undef TUVO_FOLD_512

}  // namespace

// ---- The variants --------------------------------------------------------------------------------------------------

std::uint32_t Crc32Sliced(std::uint32_t crc, const void* bytes, std::size_t size) noexcept
{
    return Slice(crc, bytes, size);
}

[[gnu::target("pclmul,sse4.1")]] std::uint32_t Crc32Folded128(std::uint32_t crc, const void* bytes,
                                                              std::size_t size) noexcept
{
    if (size < Lane)
        return Crc32Sliced(crc, bytes, size);
    const auto* next = static_cast<const unsigned char*>(bytes);
    const __m128i first = FirstLane(crc, next);
    if (size < 4 * Lane)
        return Finish(first, next + Lane, size - Lane);
    __m128i lane0 = first, lane1 = Load(next + Lane), lane2 = Load(next + 2 * Lane), lane3 = Load(next + 3 * Lane);
    for (next += 4 * Lane, size -= 4 * Lane; size >= 4 * Lane; next += 4 * Lane, size -= 4 * Lane) {
        lane0 = _mm_xor_si128(Fold(lane0, by4Lanes), Load(next));
        lane1 = _mm_xor_si128(Fold(lane1, by4Lanes), Load(next + Lane));
        lane2 = _mm_xor_si128(Fold(lane2, by4Lanes), Load(next + 2 * Lane));
        lane3 = _mm_xor_si128(Fold(lane3, by4Lanes), Load(next + 3 * Lane));
    }
    const __m128i half = _mm_xor_si128(Fold(lane0, by3Lanes), Fold(lane1, by2Lanes));
    return Finish(_mm_xor_si128(half, _mm_xor_si128(Fold(lane2, by1Lane), lane3)), next, size);
}

[[gnu::target("avx512f,vpclmulqdq,pclmul,sse4.1")]] std::uint32_t Crc32Folded512(std::uint32_t crc, const void* bytes,
                                                                                 std::size_t size) noexcept
{
    if (size < Lane)
        return Crc32Sliced(crc, bytes, size);
    const auto* next = static_cast<const unsigned char*>(bytes);
    if (size < 64)
        return Finish(FirstLane(crc, next), next + Lane, size - Lane);
    const __m512i start = _mm512_zextsi128_si512(_mm_cvtsi32_si128(static_cast<int>(crc)));
    __m512i lanes = _mm512_xor_si512(start, LoadLanes(next));
    if (size >= 256) {
        lanes = FoldBlocks(lanes, next, size);
    } else {
        next += 64;
        size -= 64;
    }
    for (const __m512i by64Bytes = Factors(by4Lanes); size >= 64; next += 64, size -= 64)
        lanes = FoldOnto(lanes, by64Bytes, LoadLanes(next));
    return Finish(ToOneLane(lanes), next, size);
}

bool HasFolding128() noexcept
{
    __builtin_cpu_init();  // for callers that run before the constructors
    return __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
}

bool HasFolding512() noexcept
{
    return HasFolding128() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("vpclmulqdq");
}

std::uint32_t Crc32(std::uint32_t crc, const void* bytes, std::size_t size) noexcept
{
    if (size < Lane)
        return Slice(crc, bytes, size);
    static const auto chosen = HasFolding512() && TUVO_VECTOR_BYTES >= 32 ? Crc32Folded512
                               : HasFolding128()                          ? Crc32Folded128
                                                                          : Crc32Sliced;
    return chosen(crc, bytes, size);
}

}  // namespace kernels
