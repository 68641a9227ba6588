#include "Kernels/BlankCollapse.h"
#include "Kernels/ByteSwap.h"
#include "Kernels/DelimiterScan.h"

#include "support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr kernels::ByteSwapFunctions ChosenByteSwap = {kernels::Reverse2, kernels::Reverse4, kernels::HalfReverse8};

std::vector<const kernels::ByteSwapFunctions*> Variants()
{
    std::vector<const kernels::ByteSwapFunctions*> variants = {&ChosenByteSwap, &kernels::scalarByteSwap};
    if (kernels::HasSsse3())
        variants.push_back(&kernels::ssse3ByteSwap);
    if (kernels::HasAvx2())
        variants.push_back(&kernels::avx2ByteSwap);
    return variants;
}

// Elements of `size` bytes, each turned round byte by byte; of eight bytes only the first four are written.
std::string Expected(std::string bytes, std::size_t size)
{
    for (auto first = bytes.begin(); first != bytes.end(); first += static_cast<std::ptrdiff_t>(size))
        if (size == 8)
            std::reverse_copy(first + 4, first + 8, first);
        else
            std::reverse(first, first + static_cast<std::ptrdiff_t>(size));
    return bytes;
}

TEST(ByteSwap, IsTheSameInEveryVariantAtEveryPlace)
{
    const struct
    {
        std::size_t size;
        decltype(kernels::ByteSwapFunctions::reverse4) kernels::ByteSwapFunctions::*operation;
    } operations[] = {{2, &kernels::ByteSwapFunctions::reverse2},
                      {4, &kernels::ByteSwapFunctions::reverse4},
                      {8, &kernels::ByteSwapFunctions::halfReverse8}};
    std::mt19937 random(3);
    std::string bytes(300 * 8 + 32, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
    for (const auto& [size, operation] : operations)
        for (std::size_t count = 0; count <= 300; ++count) {
            const std::string expected = Expected(bytes.substr(0, count * size), size);
            for (std::size_t rest = 0; rest < 32; ++rest) {
                // Ends that many bytes before memory does; they stay as they are.
                const GuardedBuffer buffer(count * size + rest);
                for (const kernels::ByteSwapFunctions* const variant : Variants()) {
                    std::copy_n(bytes.data(), count * size + rest, buffer.Data());
                    (variant->*operation)(buffer.Data(), count);
                    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), buffer.Data()) &&
                                std::equal(buffer.Data() + count * size, buffer.Data() + count * size + rest,
                                           bytes.data() + count * size))
                        << count << " elements of " << size << " bytes, " << rest << " before the end";
                }
            }
        }
}

}  // namespace
