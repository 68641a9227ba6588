#include "Kernels/Crc32.h"

#include "support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Variant = std::uint32_t (*)(std::uint32_t crc, const void* bytes, std::size_t size) noexcept;

std::vector<std::pair<const char*, Variant>> Variants()
{
    std::vector<std::pair<const char*, Variant>> variants = {{"chosen", kernels::Crc32},
                                                             {"sliced", kernels::Crc32Sliced}};
    if (kernels::HasFolding128())
        variants.emplace_back("folded by 128 bits", kernels::Crc32Folded128);
    if (kernels::HasFolding512())
        variants.emplace_back("folded by 512 bits", kernels::Crc32Folded512);
    return variants;
}

// Bit by bit, as the polynomial division is done on paper.
std::uint32_t OnPaper(std::uint32_t crc, const std::string& bytes)
{
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc % 2 != 0 ? 0xEDB88320 : 0);
    }
    return crc;
}

TEST(Crc32, IsTheSameInEveryVariantAtEveryLengthAndPlace)
{
    std::mt19937 random(1);
    std::string bytes(1200, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
    for (std::size_t size = 0; size <= bytes.size(); size += size < 600 ? 1 : 7) {
        const std::string text = bytes.substr(0, size);
        const std::uint32_t expected = OnPaper(0x12345678, text);
        for (std::size_t before = 0; before < 64; before += size < 300 ? 1 : 9) {
            const GuardedBuffer atEnd(before + size), atStart(size + 64, GuardedBuffer::Edge::Start);
            for (char* const place : {atEnd.Data() + before, atStart.Data()}) {
                std::copy(text.begin(), text.end(), place);
                for (const auto& [name, variant] : Variants())
                    ASSERT_EQ(variant(0x12345678, place, size), expected) << name << ", " << size << " bytes";
            }
        }
    }
}

}  // namespace
