#include <TuvoUtil/StringClean.h>

#include "tests/support/Texts.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

// Laws: a text in quotes is cleared as the text in blanks is; what neither begins nor ends with a quote stays.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string text(input.substr(0, input.find('\0')));
    std::string cleared = " " + text + " ";
    UtlClearString(cleared.data());
    cleared.resize(std::strlen(cleared.data()));
    if (Taken(UtlClearDoubleQuotesFromString(("\"" + text + "\"").c_str())) != cleared ||
        Taken(UtlClearPythonString(("r\"" + text + "\"").c_str())) != cleared)
        std::abort();
    const std::string plain = "x" + text;
    if (Taken(UtlClearDoubleQuotesFromString(plain.c_str())) != plain ||
        Taken(UtlClearPythonString(plain.c_str())) != plain)
        std::abort();
    return 0;
}
