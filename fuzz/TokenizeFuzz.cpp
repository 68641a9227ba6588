#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is delimiters and a text, divided by the first newline. Laws: the tokens joined are the text without the
// blanks and tabs that divide, and a token holds no delimiter unless it is one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const begin = reinterpret_cast<const char*>(data);
    const std::string input(begin, std::find(begin, begin + size, '\0'));
    const std::size_t divide = std::min(input.find('\n'), input.size());
    std::string delimiters = input.substr(0, divide);
    std::string text = input.substr(std::min(divide + 1, input.size()));

    std::string joined;
    char* cursor = text.data();
    while (char* const token = UtlTokenize(&cursor, delimiters.data())) {
        const std::string copy = token;
        if (copy.size() != 1 && copy.find_first_of(delimiters) != std::string::npos)
            std::abort();
        joined += copy;
        VBuFree(token, "fuzz", 1);
    }
    const auto isSkipped = [&](char c) { return (c == ' ' || c == '\t') && delimiters.find(c) != std::string::npos; };
    std::string kept = text;
    kept.erase(std::remove_if(kept.begin(), kept.end(), isSkipped), kept.end());
    if (joined != kept || *cursor != '\0')
        std::abort();
    return 0;
}
