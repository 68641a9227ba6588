#include <TuvoUtil/StringClean.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// The input is names, one a line. Laws: sorting keeps every name; sorting again moves none, and the opposite order is
// sorted to names that are equal, place by place.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    std::replace(text.begin(), text.end(), '\n', '\0');
    std::vector<char*> names;
    for (std::size_t start = 0; start < text.size(); start += std::strlen(text.data() + start) + 1)
        names.push_back(text.data() + start);
    const auto count = static_cast<int>(names.size());
    for (const auto sort : {UtlSortStringInAlphabaticOrder, UtlSortStringInAlphaNumricOrder}) {
        std::vector<char*> sorted = names, again;
        sort(count, sorted.data());
        again = sorted;
        sort(count, again.data());
        if (again != sorted)
            std::abort();
        std::sort(again.begin(), again.end());  // by their addresses, as they came
        if (again != names)
            std::abort();
        std::reverse(again.begin(), again.end());
        sort(count, again.data());
        for (std::size_t i = 0; i < names.size(); ++i)
            if (char* pair[] = {sorted[i], again[i]}; (sort(2, pair), pair[0] != sorted[i]))
                std::abort();
    }
    return 0;
}
