#include <TuvoUtil/StringMatch.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

// The input is two names, divided by the first newline. Laws: the order without case is one, with equal names equal; to
// have characters in common goes both ways; a name has the extension that is put behind it, and is found in a list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t divide = std::min(input.find('\n'), input.size());
    std::string left = input.substr(0, divide).c_str();
    std::string right = divide < input.size() ? input.substr(divide + 1).c_str() : "";

    const char* const l = left.c_str();
    const char* const r = right.c_str();
    const bool isOrder = UtlStrCompi(l, r) == -UtlStrCompi(r, l) && UtlStrCompi(l, l) == 0;
    const bool isCommon = UtlStringHasOneofCharacter(l, r) == UtlStringHasOneofCharacter(r, l);
    const bool isExtension =
        UtlStrExtensionMatch((left + '.' + right).c_str(), r) == (right.find('.') == std::string::npos ? 1 : 0);
    char* list[] = {nullptr, left.data(), right.data()};
    const int expected = right.empty() ? -1 : (left == right ? 1 : 2);
    if (!isOrder || !isCommon || !isExtension || UtlFindStringInList(3, list, right.data()) != expected)
        std::abort();
    return 0;
}
