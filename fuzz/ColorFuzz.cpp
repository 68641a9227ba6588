#include <TuvoUtil/Color.h>

#include <cstdint>
#include <cstdlib>
#include <string>

// Laws: what is read is a colour, and its text is read as that colour; a text that is refused leaves the colour as it was.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    constexpr unsigned int before = 0xABCDEF01;
    unsigned int color = before;
    const BuErrObj* const error = BuConvertStringToRGBColor(text.c_str(), color);
    if (error != nullptr) {
        if (color != before || BuGetErrorDescription(error).IsEmpty())
            std::abort();
        return 0;
    }
    unsigned int again = before;
    if (color > 0xFFFFFF || BuConvertStringToRGBColor(BuConvertRGBColorToString(color), again) != nullptr ||
        again != color)
        std::abort();
    return 0;
}
