#include <TuvoUtil/StringMatch.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is a pattern and a text, divided by the first newline. Laws: a '*' more never loses a match, a text matches
// itself with any of its characters hidden, and letters in either case match what the same letters match.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t divide = std::min(input.find('\n'), input.size());
    std::string pattern = input.substr(0, divide).c_str();
    std::string text = divide < input.size() ? input.substr(divide + 1).c_str() : "";

    const int matches = UtlStrWildCmp(pattern.c_str(), text.c_str());
    bool isLawful = UtlStrMatchString(pattern.data(), text.c_str(), 0) == matches &&
                    UtlStrMatchString(pattern.data(), text.c_str(), 1) >= matches;
    for (std::size_t i = 0; i <= std::min<std::size_t>(pattern.size(), 64); ++i)
        isLawful = isLawful && UtlStrWildCmp(std::string(pattern).insert(i, 1, '*').c_str(), text.c_str()) >= matches;

    std::string hidden = text;
    for (std::size_t i = 0; i < hidden.size(); i += 1 + pattern.size() % 5)
        hidden[i] = i % 2 == 0 ? '?' : '*';
    if (!isLawful || UtlStrWildCmp(hidden.c_str(), text.c_str()) == 0)
        std::abort();
    return 0;
}
