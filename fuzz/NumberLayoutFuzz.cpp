#include <TuvoUtil/NumberText.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

// Whether a text is blanks and digits with or without a point, of those that a layout prints back.
static bool IsPrintedBack(const std::string& text)
{
    const std::size_t lead = text.find_first_not_of(' ');
    if (lead == std::string::npos || text.find_first_not_of("0123456789.", lead) != std::string::npos)
        return false;
    const std::string number = text.substr(lead);
    const std::size_t point = std::min(number.find('.'), number.size());
    return point > 0 && number.size() <= 16 && (number[0] != '0' || point == 1) &&
           number.find('.', point + 1) == std::string::npos && (point < number.size() || number.size() <= 15);
}

// Law: the format of a number prints it back in its layout.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string text(input.substr(0, input.find('\0')));
    std::string format;
    UtlGetFormatOfNumberWithSpace(text.c_str(), format);
    if (!IsPrintedBack(text))
        return 0;
    std::string printed(text.size() + 64, '\0');
    std::snprintf(printed.data(), printed.size(), format.c_str(), BuReadDouble(text.c_str()));
    if (std::strcmp(text.c_str(), printed.c_str()) != 0)
        std::abort();
    return 0;
}
