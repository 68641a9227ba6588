#include <basutl/BuNumber.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// Law: any text reads as strtod reads it in the C locale, to the last bit, and up to the same place. Hexadecimal numbers
// below the least normal one are left out: the C library rounds some of them the wrong way.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    char* expectedEnd = nullptr;
    const double expected = std::strtod(text.c_str(), &expectedEnd);
    const char* end = nullptr;
    const double value = BuReadDouble(text.c_str(), &end);
    const bool isHexadecimal =
        std::string_view(text.c_str(), static_cast<std::size_t>(expectedEnd - text.c_str())).find_first_of("xX") !=
        std::string::npos;
    if (isHexadecimal && std::fpclassify(value) == FP_SUBNORMAL)
        return 0;
    const bool isSame = std::isnan(expected)
                            ? std::isnan(value)
                            : std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(expected);
    if (!isSame || end != expectedEnd)
        std::abort();
    return 0;
}
