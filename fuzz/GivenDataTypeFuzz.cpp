#include <TuvoUtil/StringBreak.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

// Law: the values are those of the numbers at the start of each field.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr char whiteSpace[] = " \t\n\v\f\r";
    const char* const begin = reinterpret_cast<const char*>(data);
    const std::string original(begin, std::find(begin, begin + size, '\0'));
    std::string text = original;
    void* values = nullptr;
    const int count = UtlBreakStringToGivenDataType(text.data(), &values, 2);

    int expectedCount = 0;
    for (std::size_t at = original.find_first_not_of(whiteSpace); at != std::string::npos; ++expectedCount) {
        const std::size_t end = original.find_first_of(whiteSpace, at);
        const double expected = BuReadDouble(original.substr(at, end - at).c_str());
        const double value = expectedCount < count ? static_cast<double*>(values)[expectedCount] : 0.0;
        if (!(value == expected || (std::isnan(value) && std::isnan(expected))))
            std::abort();
        at = original.find_first_not_of(whiteSpace, end);
    }
    if (count != (expectedCount == 0 ? 1 : expectedCount))
        std::abort();
    return 0;
}
