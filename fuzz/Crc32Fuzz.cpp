#include "Kernels/Crc32.h"

#include <algorithm>
#include <cstdlib>

// Law: in two pieces, of which the first byte says where the second begins, every variant gives what byte for byte gives.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::size_t rest = size - 1, first = std::min<std::size_t>(*data++, rest);
    std::uint32_t expected = 0xFFFFFFFF;
    for (std::size_t i = 0; i < rest; ++i)
        expected = kernels::Crc32Of1(expected, data[i]);
    const auto isRight = [=](auto variant) {
        return variant(variant(0xFFFFFFFF, data, first), data + first, rest - first) == expected;
    };
    if (!isRight(kernels::Crc32) || !isRight(kernels::Crc32Sliced) ||
        (kernels::HasFolding128() && !isRight(kernels::Crc32Folded128)) ||
        (kernels::HasFolding512() && !isRight(kernels::Crc32Folded512)))
        std::abort();
    return 0;
}
