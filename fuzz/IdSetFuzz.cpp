#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// Laws: any text with any separators is a list, which reads as the same with the step 1 behind it and when it is printed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const char set[] = {static_cast<char>(data[0] | 0x20), '\0'};
    const char range[] = {static_cast<char>(data[1] | 0x20), '\0'};
    const std::string text(reinterpret_cast<const char*>(data) + 2, size - 2);
    std::size_t digits = 0;
    for (const char c : text)
        if ((digits = c >= '0' && c <= '9' ? digits + 1 : 0) > 4)
            return 0;  // a range of millions takes its time and says no more

    int* ids = nullptr;
    const auto take = [&ids](int count) {
        std::vector<int> result(ids, ids + count);
        VBuFree(ids, "fuzz", __LINE__);
        return result;
    };
    std::vector<int> list = take(UtlGetIdListFromGivenSet(text.c_str(), &ids, set, range));
    std::string stepped = text.c_str() + std::string(set) + '1';
    if (set[0] != '1' && take(UtlGetIncrementalIdList(stepped.data(), &ids, range[0], set[0])) != list)
        std::abort();

    char* printed = UtlGenerateStringFromIdList(list.data(), static_cast<int>(list.size()), nullptr);
    if (take(UtlGetIdListFromGivenSet(printed, &ids, nullptr, nullptr)) != list)
        std::abort();
    VBuFree(printed, "fuzz", __LINE__);
    return 0;
}
