#include "TuvoMemory/LeakSuppressions.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

std::size_t CountTakes(leaks::Suppressions& suppressions)
{
    leaks::CallFrame frames[] = {{"Load", 12, "Model.cpp"}, {"main", leaks::UnknownLine, ""}};
    const leaks::CallStack stack = {2, reinterpret_cast<char**>(frames)};
    std::size_t count = 0;
    while (suppressions.Take(stack))
        ++count;
    return count;
}

}  // namespace

// Law: a group that is added behind any text is one group more, which suppresses one stack more.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    leaks::Suppressions without(text);
    leaks::Suppressions with(text + "\nBEGIN\nLoad at 12 in Model.cpp\nmain - NO_INFO -\n");
    if (with.GroupCount() != without.GroupCount() + 1 || CountTakes(with) != CountTakes(without) + 1 ||
        with.GroupCount() != without.GroupCount())
        std::abort();
    return 0;
}
