#include <TuvoUtil/StringMatch.h>

#include "tests/support/Texts.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

// The input is a pattern, a replacement and a text, divided by newlines. Laws: a pattern in its own place changes nothing,
// what is removed is what is replaced by nothing, and a text without delimiters stays.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream input(std::string(reinterpret_cast<const char*>(data), size).c_str());
    std::string pattern, replacement, text;
    std::getline(input, pattern);
    std::getline(input, replacement);
    std::getline(input, text, '\0');

    const auto replaced = [&](const std::string& by, int caseSensitive) {
        return Taken(UtlReplaceStringWithString(text.c_str(), pattern.c_str(), by.c_str(), caseSensitive, 0));
    };
    const std::string fields = Taken(UtlReplaceString(text.c_str(), pattern.c_str(), replacement.c_str()));
    const std::string removed = Taken(UtlReplaceStringWithNothing(text.c_str(), pattern.c_str(), 1));
    bool isLawful = replaced(pattern, 1) == text;
    if (!pattern.empty())
        isLawful = isLawful && removed == replaced("", 1) && replaced("", 0).size() <= removed.size();
    if (!pattern.empty() && text.find_first_of(pattern) == std::string::npos)
        isLawful = isLawful && fields == text;
    if (!isLawful)
        std::abort();
    return 0;
}
