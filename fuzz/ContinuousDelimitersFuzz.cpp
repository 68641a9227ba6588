#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is a delimiter and a text, divided by the first newline. Laws: a text without the delimiter stays; with an
// ASCII character as the delimiter, rewriting twice is rewriting once, and no two delimiters stand side by side.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const begin = reinterpret_cast<const char*>(data);
    const std::string input(begin, std::find(begin, begin + size, '\0'));
    const std::size_t divide = std::min(input.find('\n'), input.size());
    const std::string delimiter = input.substr(0, divide);
    const BuString original(input.substr(std::min(divide + 1, input.size())).c_str());

    BuString once = original;
    if (UtlStrGetResolvedContinuousDelimString(once, delimiter.c_str()) == 0) {
        if (!(once == original))
            std::abort();
        return 0;
    }
    if (delimiter.size() != 1 || delimiter[0] == ' ' || (delimiter[0] & 0x80) != 0)
        return 0;
    BuString twice = once;
    UtlStrGetResolvedContinuousDelimString(twice, delimiter.c_str());
    const auto wide = static_cast<wchar_t>(delimiter[0]);
    const wchar_t pair[] = {wide, wide, 0};
    if (!(twice == once) || once.Find(pair) >= 0)
        std::abort();
    return 0;
}
