#include <basutl/BuNumber.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

// Law: any text reads as strtod reads it in the C locale, to the last bit, and up to the same place.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    char* expectedEnd = nullptr;
    const double expected = std::strtod(text.c_str(), &expectedEnd);
    const char* end = nullptr;
    const double value = BuReadDouble(text.c_str(), &end);
    const bool isSame = std::isnan(expected) ? std::isnan(value) : std::memcmp(&value, &expected, sizeof value) == 0;
    if (!isSame || end != expectedEnd)
        std::abort();
    return 0;
}
