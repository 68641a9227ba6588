#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

// Laws: without duplicates a list keeps the first place of each id, and its compact form reads as the same list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::size_t digits = 0;
    for (const char c : text)
        if ((digits = c >= '0' && c <= '9' ? digits + 1 : 0) > 4 && text.find_first_of("-:") != text.npos)
            return 0;  // a range of millions takes its time and says no more

    const auto read = [](const char* list, int keepDuplicates) {
        int* ids = nullptr;
        const int count = UtlGenerateIdListFromString(list, &ids, keepDuplicates);
        std::vector<int> result(ids, ids + (count > 0 ? count : 0));
        VBuFree(ids, "fuzz", __LINE__);
        return result;
    };
    std::set<int> seen;
    std::vector<int> distinct;
    for (const int id : read(text.c_str(), 1))
        if (seen.insert(id).second)
            distinct.push_back(id);
    if (read(text.c_str(), 0) != distinct)
        std::abort();

    char* compact = UtlStrGenerateIdStringSafe(distinct.data(), static_cast<int>(distinct.size()), nullptr);
    if (read(compact, 0) != distinct)
        std::abort();
    VBuFree(compact, "fuzz", __LINE__);
    return 0;
}
