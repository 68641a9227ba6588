#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// The input is the number of fields, their widths and a source, a byte each. Laws: both functions give the same fields,
// which joined are the start of the source; two bytes more than the widths suffice.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size <= data[0])
        return 0;
    const int count = data[0];
    std::vector<int> widths(data + 1, data + 1 + count);
    const char* const begin = reinterpret_cast<const char*>(data);
    std::string source(begin + 1 + count, std::find(begin + 1 + count, begin + size, '\0'));
    std::size_t total = 0;
    for (int& width : widths) {
        total += static_cast<std::size_t>(width);
        width -= width == 0 ? 7 : 0;  // negative counts as 0
    }
    std::vector<char> buffer(total + 2 * widths.size() + 1), fastBuffer(buffer.size());
    std::vector<char*> fields(widths.size() + 1), fastFields(fields.size());
    UtlBreakString(count, fields.data(), source.data(), widths.data(), buffer.data());
    UtlOptimizeBreakString(count, fastFields.data(), source.c_str(), widths.data(), fastBuffer.data(), 0);
    std::string joined;
    for (int i = 0; i < count; ++i) {
        const std::string field = fields[static_cast<std::size_t>(i)];
        if (field != fastFields[static_cast<std::size_t>(i)])
            std::abort();
        joined += field;
    }
    if (joined != source.substr(0, total))
        std::abort();
    return 0;
}
