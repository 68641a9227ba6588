// A plug-in that leaks, built twice with a function of another name each. It links nothing: the host says how to
// allocate.

#include <cstddef>

using Allocate = void* (*)(std::size_t size, const char* file, int line, int kind);

extern "C" void* PLUGIN_FUNCTION(Allocate allocate);

extern "C" void* PLUGIN_FUNCTION(Allocate allocate)
{
    auto* const block = static_cast<char*>(allocate(PLUGIN_SIZE, "plugin.cpp", __LINE__, 0));
    block[0] = 1;  // keeps this function on the stack
    return block;
}
