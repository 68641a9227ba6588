#include "TuvoMemory/LeakDataFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

// Law: what was read from any text is read again from the text that a checker would write of it, and the memory that it
// takes is bounded by the text, whatever number of indices that announces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const leaks::DataFileContent content = leaks::ParseDataFile(text.c_str());
    std::string written =
        std::to_string(content.indices.Size()) + ' ' + std::to_string(static_cast<int>(content.startCounter)) + '\n';
    for (const std::int32_t index : content.indices)
        written += std::to_string(index) + ' ';
    const leaks::DataFileContent again = leaks::ParseDataFile(written.c_str());
    const bool isSame =
        content.startCounter == again.startCounter &&
        std::equal(content.indices.begin(), content.indices.end(), again.indices.begin(), again.indices.end());
    if (!isSame || content.indices.Size() > size / 2)
        std::abort();
    return 0;
}
