// Tracked allocation with the leak checker on, in each mode, against plain malloc.

#include "AllocationPatterns.h"

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/LeakChecker.h>
#include <TuvoUtil/Memory.h>
#include <basutl/BuMessage.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdlib>
#include <string>

namespace {

// Starts the mode whenever another one was measured before.
template <int Mode>
struct Checked
{
    static void* Allocate(std::size_t size) { return VBuMalloc(size, "LeakCheckerBench", 1, 0); }
    static void Free(void* block) { VBuFree(block, "LeakCheckerBench", 1); }
    static void Begin()
    {
        if (VMemoryGetMode() == Mode)
            return;
        VMemorySetMode(1, 0);  // from which every mode can be reached
        VMemorySetMode(Mode, 0);
        MovraStartMemoryLeakCheck();
    }
};

struct Plain
{
    static void* Allocate(std::size_t size) { return std::malloc(size); }
    static void Free(void* block) { std::free(block); }
};

template <typename Allocator>
void RegisterAs(int mode, const char* who)
{
    patterns::Register<Allocator>("LeakChecker/mode " + std::to_string(mode) + ' ', who);
}

template <int Mode>
void RegisterMode()
{
    RegisterAs<Checked<Mode>>(Mode, "ours");
    RegisterAs<Plain>(Mode, "plain");
}

// A block that is left over is reported, one that is freed is not.
template <int Mode>
bool FindsLeaks()
{
    Checked<Mode>::Begin();
    void* const block = Checked<Mode>::Allocate(10);
    const int before = MovraGetMemoryInUse();
    Checked<Mode>::Free(block);
    return before == 10 && MovraGetMemoryInUse() == 0 && patterns::KeepsContent<Checked<Mode>>();
}

[[maybe_unused]] const bool g_registered = [] {
    BuSetOutputHandler([](int, const wchar_t*) {});
    InitVxHeap();
    MovraInitMemory();
    if (!FindsLeaks<1>() || !FindsLeaks<2>() || !FindsLeaks<4>())
        std::abort();
    RegisterMode<0>();
    RegisterMode<1>();
    RegisterMode<2>();
    RegisterMode<3>();
    RegisterMode<4>();
    return true;
}();

}  // namespace
