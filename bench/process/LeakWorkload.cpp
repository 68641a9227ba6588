// The program that LeakProcessBench runs as a whole under each leak checker: a thousand live blocks of random sizes, one
// of which is replaced at a time, and the last ones left over. Built once for the checker of the library, which then
// writes a report, and once for those that follow malloc.
//
// usage: PROGRAM REPORT [stacks]
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <random>

#ifdef TUVO_WORKLOAD
#include <TuvoUtil/CallStack.h>
#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/LeakChecker.h>
#include <TuvoUtil/Memory.h>

namespace {

void Begin(bool withStacks)
{
    InitVxHeap();
    MovraInitMemory();
    VMemorySetMode(4, withStacks ? 1 : 0);
    if (withStacks)
        VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
    MovraStartMemoryLeakCheck();
}
void* Take(std::size_t size)
{
    return VBuMalloc(size, __FILE__, __LINE__, 0);
}
void Give(void* block)
{
    VBuFree(block, __FILE__, __LINE__);
}
void End(char* report)
{
    MovraPrintMemoryLeak(report, nullptr, nullptr, nullptr);
}

}  // namespace
#else
namespace {

void Begin(bool /*withStacks*/) {}
void* Take(std::size_t size)
{
    return std::malloc(size);
}
void Give(void* block)
{
    std::free(block);
}
void End(const char* /*report*/) {}

}  // namespace
#endif

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2)
        return 1;
    constexpr std::size_t Live = 1000;
    constexpr int Replacements = 1'000'000;
    Begin(argumentCount > 2);
    static void* blocks[Live];
    std::minstd_rand random(3);
    for (int i = 0; i < Replacements; ++i) {
        void*& block = blocks[random() % Live];
        if (block != nullptr)
            Give(block);
        const std::size_t size = 1 + random() % 128;
        block = Take(size);
        if (block != nullptr)
            std::memset(block, i, size);
    }
    for (std::size_t i = 100; i < Live; ++i)
        Give(blocks[i]);
    std::memset(blocks, 0, sizeof blocks);  // nobody points to the others any more
    End(arguments[1]);
}
