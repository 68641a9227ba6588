#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is delimiters and a text, divided by the first newline; with '!' in front the option of continuous
// delimiters is on for them. Law: what is neither a delimiter, white space nor used for masking comes out as it went in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const begin = reinterpret_cast<const char*>(data);
    const std::string input(begin, std::find(begin, begin + size, '\0'));
    const std::size_t divide = std::min(input.find('\n'), input.size());
    const bool isOn = input.starts_with('!');
    std::string delimiters = input.substr(isOn ? 1 : 0, divide - (isOn ? 1 : 0));
    std::string text = input.substr(std::min(divide + 1, input.size()));
    const auto kept = [&](std::string all) {
        const std::string others = " \t\n\v\f\r#`~.," + delimiters;
        all.erase(std::remove_if(all.begin(), all.end(), [&](char c) { return others.find(c) != others.npos; }),
                  all.end());
        return all;
    };
    const std::string expected = kept(text);

    UtlSetBreakContinuousDelimsOption(isOn, delimiters.data());
    char** fields = nullptr;
    const int count = UtlBreakStringIntoStringsAndVariables(text.data(), &fields, delimiters.c_str());
    std::string joined;
    for (int i = 0; i < count; ++i)
        joined += fields[i];
    if (kept(joined) != expected)
        std::abort();
    VBuFree(fields, "fuzz", 1);
    return 0;
}
