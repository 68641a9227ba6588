#include <TuvoUtil/NumberText.h>

#include <cstdint>
#include <cstdlib>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

// Law: a text is a float exactly when an input stream reads all of it as one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::string text(input.substr(0, input.find('\0')));
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    float value = 0.0F;
    stream >> std::noskipws >> value;
    if (UtlIsFloatValue(text.data()) != (stream.fail() || !stream.eof() ? 1 : 0))
        std::abort();
    return 0;
}
