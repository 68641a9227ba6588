#include "tools/tuvo/model/SelfCheck.h"

#include "platform/Platform.h"
#include "tools/tuvo/Console.h"

#include <TuvoUtil/Benchmark.h>
#include <TuvoUtil/LeakChecker.h>
#include <TuvoUtil/Memory.h>

#include <string>

namespace tool {
namespace {

constexpr int LevelOfReports = 6;   // in the log
constexpr int ModeWithHeaders = 4;  // which follows blocks that are reallocated

void SetUnlessSet(const wchar_t* name, const wchar_t* value)
{
    if (!platform::EnvironmentValue(name))
        platform::SetEnvironmentValue(name, value);
}

}  // namespace

void MeasureTimes()
{
    SetUnlessSet(L"QD_BENCH_LEVEL", L"1");
    SetUnlessSet(L"QD_BENCH_THRESHOLD_SEC", L"0.000001");
    ShowLogEntries(LevelOfReports);
    const tuvo::benchmark::Benchmark first(L"", tuvo::benchmark::BENCH_LEVEL_0);  // which is never timed
}

LeakCheck::LeakCheck()
{
    const SilenceScope silence;
    MovraInitMemory();
    VMemorySetMode(ModeWithHeaders, 0);
    MovraStartMemoryLeakCheck();
}

LeakCheck::~LeakCheck()
{
    const SilenceScope silence;
    MovraStopMemoryLeakCheck();
}

ExitCode LeakCheck::Report(OutputFile& file)
{
    int leaked = 0;
    {
        const SilenceScope silence;
        std::string path = file.PartPath();
        MovraPrintMemoryLeak(path.data(), nullptr, nullptr, &leaked);
    }
    file.Keep();
    if (leaked == 0)
        return Done;
    PostError(std::to_string(leaked) + " bytes were not freed; " + Printable(file.Path()) + " says which");
    return WorkFailed;
}

}  // namespace tool
