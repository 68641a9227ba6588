#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

// Laws: printed values print as the same once they are read; checked values are none at all, or none of them is 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    const auto reprint = [](const char* list) {
        float* values = nullptr;
        const int count = UtlGetFloatListFromString(list, &values, nullptr);
        char* printed = UtlGenerateStringFromFloatList(values, count, nullptr);
        VBuFree(values, "fuzz", __LINE__);
        std::string result = printed != nullptr ? printed : "";
        VBuFree(printed, "fuzz", __LINE__);
        return result;
    };
    const std::string printed = reprint(text.c_str());
    if (reprint(printed.c_str()) != printed)
        std::abort();

    int count = 0;
    double* values = nullptr;
    char message[53] = "";
    const int result = UtlGetTvCoordValuesFromString(text.data(), &count, &values, nullptr, message);
    if ((result != 0) != (message[0] != '\0') || (values == nullptr) != (count == 0) || (result != 0 && count != 0))
        std::abort();
    for (int i = 0; i < count; ++i)
        if (!(std::fabs(values[i]) >= 1e-7))
            std::abort();
    VBuFree(values, "fuzz", __LINE__);
    return 0;
}
