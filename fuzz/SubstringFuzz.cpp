#include <TuvoUtil/StringMatch.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is a pattern and a text, divided by the first newline. Law: the positions are those that std::string finds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t divide = std::min(input.find('\n'), input.size());
    const std::string pattern = input.substr(0, divide).c_str();
    const std::string text = divide < input.size() ? input.substr(divide + 1).c_str() : "";

    BuArrayTempl<int> positions;
    const int count = UtlFindSubstringLocationsInString(text.c_str(), pattern.c_str(), positions);
    if (count != positions.GetCount() || (pattern.empty() && count != 0))
        std::abort();
    std::size_t expected = pattern.empty() ? std::string::npos : text.find(pattern);
    for (const int position : positions) {
        if (static_cast<std::size_t>(position) != expected)
            std::abort();
        expected = text.find(pattern, expected + 1);
    }
    if (expected != std::string::npos)
        std::abort();
    return 0;
}
