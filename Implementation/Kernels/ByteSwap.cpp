#include "Kernels/ByteSwap.h"

#include "Kernels/BlankCollapse.h"
#include "Kernels/DelimiterScan.h"

#include <immintrin.h>

#include <algorithm>
#include <cstring>

namespace kernels {
namespace {

// ---- Elements one by one -------------------------------------------------------------------------------------------

template <typename Word, Word (*Change)(Word)>
void ChangeEach(unsigned char* bytes, std::size_t count) noexcept
{
    for (const unsigned char* const end = bytes + count * sizeof(Word); bytes != end; bytes += sizeof(Word)) {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        word = Change(word);
        std::memcpy(bytes, &word, sizeof word);
    }
}

// ---- Whole vectors -------------------------------------------------------------------------------------------------

// An operation as vectors do it: byte i of 16 becomes what byte order[i] was.
struct Reverse2Operation
{
    static constexpr std::size_t size = 2;
    static constexpr auto ChangeAll = ChangeEach<std::uint16_t, Reversed2>;
    alignas(16) static constexpr std::uint8_t order[] = {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14};
};

struct Reverse4Operation
{
    static constexpr std::size_t size = 4;
    static constexpr auto ChangeAll = ChangeEach<std::uint32_t, Reversed4>;
    alignas(16) static constexpr std::uint8_t order[] = {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12};
};

struct HalfReverse8Operation
{
    static constexpr std::size_t size = 8;
    static constexpr auto ChangeAll = ChangeEach<std::uint64_t, HalfReversed8>;
    alignas(16) static constexpr std::uint8_t order[] = {7, 6, 5, 4, 4, 5, 6, 7, 15, 14, 13, 12, 12, 13, 14, 15};
};

// Both change `size` bytes, which are whole vectors.
[[gnu::target("ssse3")]] void ShuffleSsse3(unsigned char* bytes, std::size_t size, const std::uint8_t* order) noexcept
{
    const __m128i places = _mm_load_si128(reinterpret_cast<const __m128i*>(order));
    auto* vector = reinterpret_cast<__m128i*>(bytes);
    for (const auto* const end = vector + size / sizeof *vector; vector != end; ++vector)
        _mm_storeu_si128(vector, _mm_shuffle_epi8(_mm_loadu_si128(vector), places));
}

[[gnu::target("avx2")]] void ShuffleAvx2(unsigned char* bytes, std::size_t size, const std::uint8_t* order) noexcept
{
    const __m256i places = _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(order)));
    auto* vector = reinterpret_cast<__m256i*>(bytes);
    for (const auto* const end = vector + size / sizeof *vector; vector != end; ++vector)
        _mm256_storeu_si256(vector, _mm256_shuffle_epi8(_mm256_loadu_si256(vector), places));
}

// A store that crosses a cache line costs twice: the elements in front of an aligned address, where there is one
// between two elements, are changed one by one, and so are those behind the last whole vector.
template <typename Operation, auto Shuffle, std::size_t VectorSize>
void ChangeVectors(void* elements, std::size_t count) noexcept
{
    auto* const bytes = static_cast<unsigned char*>(elements);
    const std::size_t unaligned = -reinterpret_cast<std::uintptr_t>(bytes) % VectorSize;
    const std::size_t head = std::min(unaligned / Operation::size, count);
    const std::size_t headSize = head * Operation::size;
    const std::size_t wholeSize = (count - head) * Operation::size / VectorSize * VectorSize;
    Operation::ChangeAll(bytes, head);
    Shuffle(bytes + headSize, wholeSize, Operation::order);
    Operation::ChangeAll(bytes + headSize + wholeSize, count - head - wholeSize / Operation::size);
}

template <typename Operation>
void ChangeScalar(void* elements, std::size_t count) noexcept
{
    Operation::ChangeAll(static_cast<unsigned char*>(elements), count);
}

template <typename Operation>
constexpr auto ChangeSsse3 = ChangeVectors<Operation, ShuffleSsse3, 16>;

template <typename Operation>
constexpr auto ChangeAvx2 = ChangeVectors<Operation, ShuffleAvx2, 32>;

// ---- The choice ----------------------------------------------------------------------------------------------------

const ByteSwapFunctions& Chosen() noexcept
{
    static const ByteSwapFunctions& chosen = HasAvx2() && TUVO_VECTOR_BYTES >= 32 ? avx2ByteSwap
                                             : HasSsse3()                         ? ssse3ByteSwap
                                                                                  : scalarByteSwap;
    return chosen;
}

}  // namespace

constinit const ByteSwapFunctions scalarByteSwap = {ChangeScalar<Reverse2Operation>, ChangeScalar<Reverse4Operation>,
                                                    ChangeScalar<HalfReverse8Operation>};
constinit const ByteSwapFunctions ssse3ByteSwap = {ChangeSsse3<Reverse2Operation>, ChangeSsse3<Reverse4Operation>,
                                                   ChangeSsse3<HalfReverse8Operation>};
constinit const ByteSwapFunctions avx2ByteSwap = {ChangeAvx2<Reverse2Operation>, ChangeAvx2<Reverse4Operation>,
                                                  ChangeAvx2<HalfReverse8Operation>};

void Reverse2(void* elements, std::size_t count) noexcept
{
    Chosen().reverse2(elements, count);
}

void Reverse4(void* elements, std::size_t count) noexcept
{
    Chosen().reverse4(elements, count);
}

void HalfReverse8(void* elements, std::size_t count) noexcept
{
    Chosen().halfReverse8(elements, count);
}

}  // namespace kernels
