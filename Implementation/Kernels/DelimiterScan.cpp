#include "Kernels/DelimiterScan.h"

#include <immintrin.h>

#include <array>
#include <bit>
#include <cstring>

namespace kernels {
namespace {

// ---- Masks ---------------------------------------------------------------------------------------------------------

constexpr std::size_t MostCompared = 16;

std::size_t WholeBlocks(std::size_t length, const DelimiterSet& set) noexcept
{
    return set.Size() <= MostCompared ? length / BlockSize * BlockSize : 0;
}

void MasksScalar(const char* text, std::size_t length, const DelimiterSet& set, std::uint64_t* masks) noexcept
{
    for (std::size_t start = 0; start < length; start += BlockSize) {
        const std::size_t size = std::min(length - start, BlockSize);
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < size; ++i)
            mask |= std::uint64_t{set.Contains(text[start + i])} << i;
        *masks++ = mask;
    }
}

std::uint64_t Bits(__m128i bytes) noexcept
{
    return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes));
}

void MasksSse2(const char* text, std::size_t length, const DelimiterSet& set, std::uint64_t* masks) noexcept
{
    const std::size_t whole = WholeBlocks(length, set);
    for (std::size_t start = 0; start < whole; start += BlockSize) {
        const auto* const block = reinterpret_cast<const __m128i*>(text + start);
        const __m128i part0 = _mm_loadu_si128(block);
        const __m128i part1 = _mm_loadu_si128(block + 1);
        const __m128i part2 = _mm_loadu_si128(block + 2);
        const __m128i part3 = _mm_loadu_si128(block + 3);
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < set.Size(); ++i) {
            const __m128i wanted = _mm_set1_epi8(set[i]);
            mask |= Bits(_mm_cmpeq_epi8(part0, wanted)) | Bits(_mm_cmpeq_epi8(part1, wanted)) << 16 |
                    Bits(_mm_cmpeq_epi8(part2, wanted)) << 32 | Bits(_mm_cmpeq_epi8(part3, wanted)) << 48;
        }
        *masks++ = mask;
    }
    MasksScalar(text + whole, length - whole, set, masks);
}

[[gnu::target("avx2")]] void MasksAvx2(const char* text, std::size_t length, const DelimiterSet& set,
                                       std::uint64_t* masks) noexcept
{
    const std::size_t whole = WholeBlocks(length, set);
    for (std::size_t start = 0; start < whole; start += BlockSize) {
        const auto* const block = reinterpret_cast<const __m256i*>(text + start);
        const __m256i low = _mm256_loadu_si256(block);
        const __m256i high = _mm256_loadu_si256(block + 1);
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < set.Size(); ++i) {
            const __m256i wanted = _mm256_set1_epi8(set[i]);
            const auto inLow = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, wanted)));
            const auto inHigh = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, wanted)));
            mask |= inLow | std::uint64_t{inHigh} << 32;
        }
        *masks++ = mask;
    }
    MasksScalar(text + whole, length - whole, set, masks);
}

// ---- Erasing -------------------------------------------------------------------------------------------------------

void EraseScalar(char* text, std::size_t length, const std::uint64_t* masks) noexcept
{
    for (std::size_t start = 0; start < length; start += BlockSize)
        for (std::uint64_t mask = *masks++; mask != 0; mask &= mask - 1)
            text[start + static_cast<std::size_t>(std::countr_zero(mask))] = '\0';
}

// Eight bytes, of which those whose bit is set in the index are 0 and all others 0xFF.
constexpr auto keptBytes = [] {
    std::array<std::uint64_t, 256> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits)
        for (std::size_t i = 0; i < 8; ++i)
            table[bits] |= (bits >> i & 1) != 0 ? 0 : std::uint64_t{0xFF} << 8 * i;
    return table;
}();

// Writes whole blocks: a loop over the bits, whose end is hard to foresee, costs more.
void EraseSse2(char* text, std::size_t length, const std::uint64_t* masks) noexcept
{
    const std::size_t whole = length / BlockSize * BlockSize;
    for (const char* const end = text + whole; text != end; text += BlockSize) {
        const std::uint64_t mask = *masks++;
        for (std::size_t i = 0; mask != 0 && i < 8; ++i) {
            std::uint64_t bytes;
            std::memcpy(&bytes, text + 8 * i, 8);
            bytes &= keptBytes[mask >> 8 * i & 0xFF];
            std::memcpy(text + 8 * i, &bytes, 8);
        }
    }
    EraseScalar(text, length - whole, masks);
}

[[gnu::target("avx2")]] void EraseHalfBlock(char* text, std::uint32_t mask) noexcept
{
    // Each byte of the vector gets the byte of the mask that holds its bit, and then keeps that bit alone.
    const __m256i byteOfMask = _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303);
    const __m256i bitOfByte = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
    const __m256i spread = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(mask)), byteOfMask);
    const __m256i isErased = _mm256_cmpeq_epi8(_mm256_and_si256(spread, bitOfByte), bitOfByte);
    auto* const place = reinterpret_cast<__m256i*>(text);
    _mm256_storeu_si256(place, _mm256_andnot_si256(isErased, _mm256_loadu_si256(place)));
}

[[gnu::target("avx2")]] void EraseAvx2(char* text, std::size_t length, const std::uint64_t* masks) noexcept
{
    const std::size_t whole = length / BlockSize * BlockSize;
    for (const char* const end = text + whole; text != end; text += BlockSize) {
        const std::uint64_t mask = *masks++;
        if (mask == 0)
            continue;
        EraseHalfBlock(text, static_cast<std::uint32_t>(mask));
        EraseHalfBlock(text + BlockSize / 2, static_cast<std::uint32_t>(mask >> 32));
    }
    EraseScalar(text, length - whole, masks);
}

// ---- Counting and storing ------------------------------------------------------------------------------------------

// Written once; a second time compiled with the instructions for it.
[[gnu::always_inline]] inline std::size_t CountInline(const std::uint64_t* masks, std::size_t blocks) noexcept
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < blocks; ++i)
        count += static_cast<std::size_t>(std::popcount(masks[i]));
    return count;
}

std::size_t CountPlain(const std::uint64_t* masks, std::size_t blocks) noexcept
{
    return CountInline(masks, blocks);
}

[[gnu::target("popcnt")]] std::size_t CountPopcnt(const std::uint64_t* masks, std::size_t blocks) noexcept
{
    return CountInline(masks, blocks);
}

char** StoreScalar(char* text, const std::uint64_t* masks, std::size_t blocks, char** out, char* const*) noexcept
{
    for (std::size_t i = 0; i < blocks; ++i, text += BlockSize)
        for (std::uint64_t mask = masks[i]; mask != 0; mask &= mask - 1)
            *out++ = text + std::countr_zero(mask);
    return out;
}

// Stores the next `count` positions of a mask, or anything when it has no more.
[[gnu::always_inline]] inline void StoreNext(int count, char* text, std::uint64_t& mask, char** out) noexcept
{
    for (int i = 0; i < count; ++i, mask &= mask - 1)
        out[i] = text + std::countr_zero(mask);
}

// Eight at once whatever the mask holds, then four by four: a jump that is hard to foresee costs more than some stores
// too many.
[[gnu::always_inline]] inline char** StoreInline(char* text, const std::uint64_t* masks, std::size_t blocks, char** out,
                                                 char* const* end) noexcept
{
    for (; blocks != 0 && static_cast<std::size_t>(end - out) >= BlockSize; --blocks, text += BlockSize) {
        std::uint64_t mask = *masks++;
        char** const last = out + std::popcount(mask);
        StoreNext(8, text, mask, out);
        for (out += 8; out < last; out += 4)
            StoreNext(4, text, mask, out);
        out = last;
    }
    return StoreScalar(text, masks, blocks, out, end);
}

char** StorePlain(char* text, const std::uint64_t* masks, std::size_t blocks, char** out, char* const* end) noexcept
{
    return StoreInline(text, masks, blocks, out, end);
}

[[gnu::target("bmi,popcnt")]] char** StoreBmi(char* text, const std::uint64_t* masks, std::size_t blocks, char** out,
                                              char* const* end) noexcept
{
    return StoreInline(text, masks, blocks, out, end);
}

// ---- The choice ----------------------------------------------------------------------------------------------------

bool HasBmi() noexcept
{
    __builtin_cpu_init();  // static constructors may come here before it has run
    return __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt");
}

const BlockFunctions& Chosen() noexcept
{
    static const BlockFunctions chosen = [] {
        const bool isWide = HasAvx2() && TUVO_VECTOR_BYTES >= 32;
        const BlockFunctions& vectors = isWide ? avx2Functions : sse2Functions;
        const BlockFunctions& bits = HasBmi() ? avx2Functions : sse2Functions;
        return BlockFunctions{vectors.masks, vectors.erase, bits.count, bits.store};
    }();
    return chosen;
}

}  // namespace

constinit const BlockFunctions scalarFunctions = {MasksScalar, EraseScalar, CountPlain, StoreScalar};
constinit const BlockFunctions sse2Functions = {MasksSse2, EraseSse2, CountPlain, StorePlain};
constinit const BlockFunctions avx2Functions = {MasksAvx2, EraseAvx2, CountPopcnt, StoreBmi};

bool HasAvx2() noexcept
{
    return HasBmi() && __builtin_cpu_supports("avx2");
}

void DelimiterMasks(const char* text, std::size_t length, const DelimiterSet& set, std::uint64_t* masks) noexcept
{
    Chosen().masks(text, length, set, masks);
}

void EraseBytes(char* text, std::size_t length, const std::uint64_t* masks) noexcept
{
    Chosen().erase(text, length, masks);
}

std::size_t CountBits(const std::uint64_t* masks, std::size_t blocks) noexcept
{
    return Chosen().count(masks, blocks);
}

char** StorePositions(char* text, const std::uint64_t* masks, std::size_t blocks, char** out, char* const* end) noexcept
{
    return Chosen().store(text, masks, blocks, out, end);
}

}  // namespace kernels
