// Finds the delimiters of a text: one bit for each byte, 64 bytes at a time.
//
//   const kernels::DelimiterSet set(",;");
//   std::size_t count = 0;
//   kernels::ForEachChunk(text, length, set,
//                         [&](const kernels::Chunk& chunk) { count += CountBits(chunk.masks, chunk.blocks); });
//
// Nothing but the text's own bytes is read. May be called from any thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kernels {

// Some of the 255 bytes that are not NUL.
class DelimiterSet
{
public:
    explicit DelimiterSet(char delimiter) noexcept { Add(delimiter); }  // NUL makes the empty set
    explicit DelimiterSet(const char* delimiters) noexcept              // and so does null
    {
        while (delimiters != nullptr && *delimiters != '\0')
            Add(*delimiters++);
    }

    bool Contains(char c) const noexcept { return (m_bits[Byte(c) / 64] >> (Byte(c) % 64) & 1) != 0; }

    // Its members, each once.
    std::size_t Size() const noexcept { return m_size; }
    char operator[](std::size_t index) const noexcept { return m_members[index]; }

private:
    static std::size_t Byte(char c) noexcept { return static_cast<unsigned char>(c); }
    void Add(char c) noexcept
    {
        if (c == '\0' || Contains(c))
            return;
        m_bits[Byte(c) / 64] |= std::uint64_t{1} << Byte(c) % 64;
        m_members[m_size++] = c;
    }

    std::uint64_t m_bits[4] = {};
    std::size_t m_size = 0;
    char m_members[255];
};

inline constexpr std::size_t BlockSize = 64;

// ---- What is done to the blocks of a text --------------------------------------------------------------------------

// Bit i of masks[b] tells whether byte 64 * b + i of the text is in the set; bits past the text are 0. Writes one mask
// for each block that the text begins. Up to 16 delimiters are compared with whole vectors, more are looked up byte by
// byte.
void DelimiterMasks(const char* text, std::size_t length, const DelimiterSet& set, std::uint64_t* masks) noexcept;

// Writes a NUL over each byte of the text whose bit is set. Bytes of a whole block may be written with what they hold.
void EraseBytes(char* text, std::size_t length, const std::uint64_t* masks) noexcept;

// The number of bits that are set.
std::size_t CountBits(const std::uint64_t* masks, std::size_t blocks) noexcept;

// Stores text + i for each bit i that is set, in rising order, and gives the place behind the last one. What lies from
// there up to `end` may be overwritten.
char** StorePositions(char* text, const std::uint64_t* masks, std::size_t blocks, char** out,
                      char* const* end) noexcept;

// Ways to do that, of which all give the same. The functions above take the fastest one that the processor has, which
// the first call decides.
struct BlockFunctions
{
    decltype(&DelimiterMasks) masks;
    decltype(&EraseBytes) erase;
    decltype(&CountBits) count;
    decltype(&StorePositions) store;
};
extern const BlockFunctions scalarFunctions;
extern const BlockFunctions sse2Functions;
extern const BlockFunctions avx2Functions;  // for processors that HasAvx2
bool HasAvx2() noexcept;                    // and BMI and POPCNT

// ---- Walking a text ------------------------------------------------------------------------------------------------

// Some blocks of a text and their delimiters.
struct Chunk
{
    static constexpr std::size_t MostBlocks = 64;

    std::size_t start;  // in the text
    std::size_t size;   // in bytes; the last block of the text need not be whole
    std::size_t blocks;
    std::uint64_t masks[MostBlocks];  // the visitor's to change
};

// Calls visit(chunk) for all parts of the text, front to back. The visitor may change the text up to the end of the
// chunk.
template <typename Visit>
void ForEachChunk(const char* text, std::size_t length, const DelimiterSet& set, Visit visit)
{
    Chunk chunk;
    for (chunk.start = 0; chunk.start < length; chunk.start += chunk.size) {
        chunk.size = std::min(length - chunk.start, Chunk::MostBlocks * BlockSize);
        chunk.blocks = (chunk.size + BlockSize - 1) / BlockSize;
        DelimiterMasks(text + chunk.start, chunk.size, set, chunk.masks);
        visit(chunk);
    }
}

}  // namespace kernels
