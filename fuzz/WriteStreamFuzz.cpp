#include "tests/support/StreamModel.h"

#include <cstdio>
#include <cstdlib>

// Law: whatever is written, sought and told, a file stream gives the file and the places of a model in memory, and a
// checksum stream the checksum of what the model says.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string difference = StreamDifference({reinterpret_cast<const char*>(data), size});
    if (difference.empty())
        return 0;
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
}
