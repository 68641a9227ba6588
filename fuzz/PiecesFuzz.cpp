#include <TuvoUtil/StringMatch.h>

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

// The input is a text, a pattern and a token, one a line. Laws: an equal text matches, a text in whole words is one that
// matches, and a token behind a pattern without one changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream input(std::string(reinterpret_cast<const char*>(data), size).c_str());
    std::string text, pattern, token;
    std::getline(input, text);
    std::getline(input, pattern);
    std::getline(input, token, '\0');

    const auto compare = [&](const std::string& with, int caseSensitive, int wholeWord) {
        return UtlCompareCompleteWord(text.c_str(), with.c_str(), token.c_str(), caseSensitive, wholeWord);
    };
    const int matches = UtlCompareStrings(text.c_str(), pattern.c_str(), token.c_str(), 1);
    bool isLawful = compare(pattern, 1, 0) == matches && compare(pattern, 1, 1) <= matches &&
                    compare(pattern, 0, 1) <= compare(pattern, 0, 0);
    if (!token.empty() && token.size() <= text.size())
        isLawful = isLawful && compare(text, 0, 1) == 1;
    if (token.size() == 1 && !pattern.empty() && pattern.find(token) == std::string::npos && text != pattern &&
        text != pattern + token)
        isLawful = isLawful && compare(pattern + token, 1, 0) == matches;
    if (!isLawful)
        std::abort();
    return 0;
}
