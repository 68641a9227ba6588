#include <TuvoUtil/NumberText.h>
#include <TuvoUtil/StringClean.h>
#include <basutl/BuNumber.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

// The input is a column, a width and a text. Laws: an integer reads the same as a number, as the coordinate of a point
// and from its own text; every function finds the same fields empty.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int column = data[0], width = data[1];
    const std::string_view input(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::string text(input.substr(0, input.find('\0')));
    std::string field(static_cast<std::size_t>(width), '\0');
    const bool isEmpty = UtlReadString(text.c_str(), column, width, field.data()) == 1;
    field.resize(std::strlen(field.data()));
    int value = -1, own = -1;
    const int result = UtlReadInt(text.c_str(), column, width, &value);
    if (isEmpty != field.empty() || isEmpty != (result == 1))
        std::abort();
    if (result != 0)
        return 0;
    _TvPoint3Str point = {};
    UtlReadPoint3(text.c_str(), column, width, &point);
    UtlStrGetInt(&own, field.data(), 1, width);
    if (value != BuReadInt(field.c_str()) || value != own || value != point.x)
        std::abort();
    return 0;
}
