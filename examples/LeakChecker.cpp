// A program that forgets to free some of its memory, and is told which. See docs/leak-check.md.
#include <TuvoUtil/CallStack.h>
#include <TuvoUtil/LeakChecker.h>
#include <TuvoUtil/Memory.h>

#include <cstddef>
#include <cstdio>

namespace {

// What reports call this file. They cut paths with slashes to 15 characters, so __FILE__ would not do.
constexpr char File[] = "LeakChecker.cpp";

struct Part
{
    char* name;
    double* loads;
};

// Kept apart from their callers, so that an optimised build names them as well.
[[gnu::noinline]] Part* ReadPart(const char* name, std::size_t loadCount)
{
    auto* const part = static_cast<Part*>(VBuMalloc(sizeof(Part), File, __LINE__, 0));
    part->name = VBuStrDup(name, File, __LINE__);
    part->loads = static_cast<double*>(VBuCalloc(loadCount, sizeof(double), File, __LINE__));
    return part;
}

// Forgets the loads.
void FreePart(Part* part)
{
    VBU_FREE(part->name, File, __LINE__);
    VBU_FREE(part, File, __LINE__);
}

[[gnu::noinline]] bool ReadModel()
{
    for (const char* const name : {"bolt", "nut", "washer"})
        FreePart(ReadPart(name, 6));
    return ReadPart("bracket", 2) != nullptr;  // and never frees it
}

// Shows a report but for its first line, which tells the time.
void Show(const char* file)
{
    if (std::FILE* const report = std::fopen(file, "r")) {
        char line[512];
        for (int i = 0; std::fgets(line, sizeof line, report) != nullptr; ++i)
            if (i > 0)
                std::fputs(line, stdout);
        std::fclose(report);
    }
}

}  // namespace

int main()
{
    VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
    MovraInitMemory();  // starts checking with call stacks when MOVRA_MEM_DEBUG is set
    if (MovraIsMemCheckActive() == 0) {
        VMemorySetMode(1, 0);  // this program wants to know in any case, if without call stacks
        MovraStartMemoryLeakCheck();
    }

    if (!ReadModel())
        return 1;

    char reportFile[] = "leaks.txt";
    char stackFile[] = "stacks.txt";
    int leakedBytes = 0;
    MovraPrintMemoryLeak(reportFile, stackFile, nullptr, &leakedBytes);
    Show(reportFile);
    std::printf("%d bytes\n", leakedBytes);
    std::remove(reportFile);
}
