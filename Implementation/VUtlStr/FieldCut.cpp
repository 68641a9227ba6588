#include "VUtlStr/FieldCut.h"

#include <TuvoUtil/Memory.h>

#include <climits>

using kernels::Chunk;
using kernels::DelimiterSet;

namespace {

// Calls visit(chunk, ends) for all parts of a text: the chunk's masks tell where fields begin by the rules of strtok,
// the others where they end.
template <typename Visit>
void ForEachTokenChunk(const char* text, std::size_t length, const DelimiterSet& set, Visit visit)
{
    std::uint64_t isAfterDelimiter = 1;
    kernels::ForEachChunk(text, length, set, [&](Chunk& chunk) {
        std::uint64_t ends[Chunk::MostBlocks];
        for (std::size_t i = 0; i < chunk.blocks; ++i) {
            const std::uint64_t delimiters = chunk.masks[i];
            const std::uint64_t behindDelimiters = delimiters << 1 | isAfterDelimiter;
            isAfterDelimiter = delimiters >> 63;
            ends[i] = delimiters & ~behindDelimiters;
            chunk.masks[i] = ~delimiters & behindDelimiters;
        }
        if (const std::size_t inLast = chunk.size % kernels::BlockSize; inLast != 0)
            chunk.masks[chunk.blocks - 1] &= (std::uint64_t{1} << inLast) - 1;
        visit(chunk, ends);
    });
}

}  // namespace

std::size_t fieldcut::CountDelimiters(const char* text, std::size_t length, const DelimiterSet& set) noexcept
{
    std::size_t count = 0;
    kernels::ForEachChunk(text, length, set,
                          [&](const Chunk& chunk) { count += kernels::CountBits(chunk.masks, chunk.blocks); });
    return count;
}

void fieldcut::CutAtEach(char* text, std::size_t length, const DelimiterSet& set, char** fields,
                         std::size_t count) noexcept
{
    char* const* const end = fields + count;
    *fields++ = text;
    kernels::ForEachChunk(text, length, set, [&](const Chunk& chunk) {
        char* const start = text + chunk.start;
        kernels::EraseBytes(start, chunk.size, chunk.masks);
        fields = kernels::StorePositions(start + 1, chunk.masks, chunk.blocks, fields, end);
    });
}

std::size_t fieldcut::CountTokens(const char* text, std::size_t length, const DelimiterSet& set) noexcept
{
    std::size_t count = 0;
    ForEachTokenChunk(text, length, set, [&](const Chunk& chunk, const std::uint64_t*) {
        count += kernels::CountBits(chunk.masks, chunk.blocks);
    });
    return std::max<std::size_t>(count, 1);
}

void fieldcut::CutTokens(char* text, std::size_t length, const DelimiterSet& set, char** fields,
                         std::size_t count) noexcept
{
    char** const first = fields;
    char* const* const end = fields + count;
    ForEachTokenChunk(text, length, set, [&](const Chunk& chunk, const std::uint64_t* ends) {
        char* const start = text + chunk.start;
        kernels::EraseBytes(start, chunk.size, ends);
        fields = kernels::StorePositions(start, chunk.masks, chunk.blocks, fields, end);
    });
    // Kept: the first field keeps the delimiters in front of it, as callers of the splitter know it.
    *first = text;
}

char** fieldcut::NewArray(std::size_t count, const char* file, int line, std::size_t tail)
{
    return count <= INT_MAX ? static_cast<char**>(VBuMalloc(count * sizeof(char*) + tail, file, line, 0)) : nullptr;
}
