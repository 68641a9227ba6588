#include "Kernels/BlankCollapse.h"

#include <immintrin.h>
#include <array>
#include <cstdint>

namespace kernels {
namespace {

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// For each set of bytes out of eight, the order that brings these to the front.
using Order = std::array<std::uint8_t, 8>;

constexpr std::array<Order, 256> MakeOrders()
{
    std::array<Order, 256> orders{};
    for (unsigned set = 0; set < 256; ++set) {
        std::size_t count = 0;
        for (unsigned i = 0; i < 8; ++i)
            if ((set >> i & 1) != 0)
                orders[set][count++] = static_cast<std::uint8_t>(i);
    }
    return orders;
}

alignas(64) constexpr std::array<Order, 256> Orders = MakeOrders();

// One bit for each of the 16 characters that is white space.
unsigned BlankBits(__m128i text)
{
    // Shifted so that \t to \r are the five lowest values of a signed byte.
    const __m128i shifted = _mm_add_epi8(text, _mm_set1_epi8(static_cast<char>(0x80 - '\t')));
    const __m128i isControl = _mm_cmplt_epi8(shifted, _mm_set1_epi8(static_cast<char>(0x80 + 5)));
    const __m128i isBlank = _mm_cmpeq_epi8(text, _mm_set1_epi8(' '));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isControl, isBlank)));
}

// Stores those of the eight lowest characters whose bit is set, and gives the place behind them. Eight are written.
[[gnu::target("ssse3,popcnt")]] char* StoreKept(__m128i text, unsigned kept, char* target)
{
    const __m128i order = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&Orders[kept]));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(target), _mm_shuffle_epi8(text, order));
    return target + _mm_popcnt_u32(kept);
}

}  // namespace

std::size_t CollapseBlanksScalar(const char* source, std::size_t length, char* target, bool& afterBlank) noexcept
{
    char* next = target;
    bool wasBlank = afterBlank;
    for (std::size_t i = 0; i < length; ++i) {
        const char c = source[i];
        const bool isBlank = IsBlank(c);
        *next = c;
        next += !(isBlank && wasBlank);
        wasBlank = isBlank;
    }
    afterBlank = wasBlank;
    return static_cast<std::size_t>(next - target);
}

// Sixteen characters are read before any of theirs is written, and what is written ends where they end at the latest.
[[gnu::target("ssse3,popcnt")]] std::size_t CollapseBlanksSsse3(const char* source, std::size_t length, char* target,
                                                                bool& afterBlank) noexcept
{
    char* next = target;
    unsigned carry = afterBlank ? 1 : 0;
    std::size_t done = 0;
    for (; length - done >= 16; done += 16) {
        const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + done));
        const unsigned blank = BlankBits(text);
        const unsigned kept = ~(blank & (blank << 1 | carry));
        carry = blank >> 15;
        next = StoreKept(text, kept & 0xFF, next);
        next = StoreKept(_mm_srli_si128(text, 8), kept >> 8 & 0xFF, next);
    }
    afterBlank = carry != 0;
    next += CollapseBlanksScalar(source + done, length - done, next, afterBlank);
    return static_cast<std::size_t>(next - target);
}

bool HasSsse3() noexcept
{
    __builtin_cpu_init();  // for callers that run before the constructors
    return __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("popcnt");
}

std::size_t CollapseBlanks(const char* source, std::size_t length, char* target, bool& afterBlank) noexcept
{
    static const auto chosen = HasSsse3() ? CollapseBlanksSsse3 : CollapseBlanksScalar;
    return chosen(source, length, target, afterBlank);
}

}  // namespace kernels
