#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// The input is delimiters and a text, divided by the first newline. Law: past a leading delimiter, fields and text become
// what strtok makes of them, with the start of the text as the first field.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const begin = reinterpret_cast<const char*>(data);
    const std::string input(begin, std::find(begin, begin + size, '\0'));
    const std::size_t divide = std::min(input.find('\n'), input.size());
    const std::string delimiters = input.substr(0, divide);
    std::string text = input.substr(std::min(divide + 1, input.size()));
    std::string expectedText = text;

    char** fields = nullptr;
    const int count = UtlBreakStringIntoStringsDbg(text.data(), &fields, delimiters.c_str(), "fuzz", 1);
    const bool isLeading = !text.empty() && delimiters.find(expectedText[0]) != std::string::npos;
    char* const start = expectedText.data() + isLeading;
    std::vector<std::string> expected(1, " ");
    std::vector<char*> found(1, start);
    for (std::strtok(start, delimiters.c_str()); char* const field = std::strtok(nullptr, delimiters.c_str());)
        found.push_back(field);
    expected.resize(isLeading);
    expected.insert(expected.end(), found.begin(), found.end());
    if (text != expectedText || std::vector<std::string>(fields, fields + count) != expected)
        std::abort();
    VBuFree(fields, "fuzz", 1);
    return 0;
}
