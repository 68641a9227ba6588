#include <TuvoUtil/StringMatch.h>
#include <basutl/BuCharacter.h>

#include "tests/support/Texts.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is a word and a text, divided by the first newline. Laws: a word in its own place changes nothing; once all
// occurrences of a word of letters and digits stand in quotes, none is a whole word any more.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t divide = std::min(input.find('\n'), input.size());
    std::string word = input.substr(0, divide).c_str();
    std::string text = divide < input.size() ? input.substr(divide + 1).c_str() : "";

    const auto replaced = [&word](std::string in, std::string by) {
        return Taken(UtlSearchAndReplaceByMatchWholeWord(in.data(), word.data(), by.data()));
    };
    if (replaced(text, word) != text)
        std::abort();
    const std::string quoted = replaced(text, "'" + word + "'");
    const bool isPlain = std::all_of(word.begin(), word.end(), [](char c) { return BuIsLetter(c) || BuIsDigit(c); });
    if (isPlain && replaced(quoted, "?") != quoted)
        std::abort();
    return 0;
}
