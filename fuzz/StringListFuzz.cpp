#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// The input is a delimiter and a text. Laws: fields in place, joined by the delimiter, are the text; the same fields as
// new strings have " " for nothing; a segment between two delimiters is every second field.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const begin = reinterpret_cast<const char*>(data);
    const std::string input(begin, std::find(begin, begin + size, '\0'));
    const std::string delimiter = input.substr(0, 1), original = input.empty() ? "" : input.substr(1);
    std::string text = original;
    char** inPlace = nullptr;
    const int count = UtlStringTok(text.data(), &inPlace, delimiter.c_str());
    char **copies = nullptr, **segments = nullptr;
    int copyCount = UtlBreakStringIntoChars(original.c_str(), &copies, delimiter.c_str());
    int segmentCount = UtlGetStringsIncludedInDelimiters(original.c_str(), delimiter[0], delimiter[0], &segments);

    std::string joined;
    bool isRight = copyCount == (original.empty() ? 0 : count);
    for (int i = 0; i < count; ++i) {
        const std::string field = inPlace[i];
        joined += (i > 0 ? delimiter : "") + field;
        isRight = isRight && (i >= copyCount || copies[i] == (field.empty() ? " " : field));
        isRight = isRight && (i % 2 == 0 || i / 2 >= segmentCount || segments[i / 2] == field);
    }
    joined += joined.size() < original.size() ? delimiter : "";
    if (!isRight || joined != original)
        std::abort();
    VBuFree(inPlace, "fuzz", 1);
    UtlFreeStringList(copyCount, copies);
    UtlFreeStringList(segmentCount, segments);
    return 0;
}
