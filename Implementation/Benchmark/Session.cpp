#include "Benchmark/Session.h"

#include "Benchmark/Log.h"
#include "Benchmark/Trace.h"

#include <basutl/BuVariable.h>

namespace tuvo::benchmark {
namespace {

void LogInvalid(const wchar_t* message, const BuString& value) noexcept
{
    BuLogger::GetInstance().Log(LogError, BuLocalizeStringExW(message, 0), value.GetText());
}

void ReadLevel(_Level& level) noexcept
{
    const BuString value(BuVariableGetValue("QD_BENCH_LEVEL", 1));
    if (value.IsEmpty() || value == L"0")
        level = BENCH_LEVEL_0;
    else if (value == L"1")
        level = BENCH_LEVEL_1;
    else if (value == L"2")
        level = BENCH_LEVEL_2;
    else
        LogInvalid(
            L"Benchmark activation: invalid value for 'QD_BENCH_LEVEL' environment variable (%s): "
            L"Expected 0, 1 or 2\n",
            value);
}

void ReadThreshold(float& thresholdSec) noexcept
{
    const wchar_t* const value = BuVariableGetValue("QD_BENCH_THRESHOLD_SEC", 1);
    if (value == nullptr)
        return;
    const BuString text(value);
    const auto seconds = static_cast<float>(text.ToDouble());
    if (seconds > 0)
        thresholdSec = seconds;
    else
        LogInvalid(
            L"Benchmark activation: invalid value for 'QD_BENCH_THRESHOLD_SEC' environment variable (%s): "
            L"Expected positive time in seconds\n",
            text);
}

void ReadTrace() noexcept
{
    const BuString file(BuVariableGetValue("QD_BENCH_TRACE", 1));
    if (!file.IsEmpty() && !trace::Open(file))
        LogInvalid(
            L"Benchmark activation: invalid value for 'QD_BENCH_TRACE' environment variable (%s): "
            L"Expected a file that can be written\n",
            file);
}

}  // namespace

void ReadSessionSettings(_Level& level, float& thresholdSec) noexcept
{
    ReadLevel(level);
    ReadThreshold(thresholdSec);
    // Kept: without a line end, unlike all others, as those expect who search logs for it.
    if (level != BENCH_LEVEL_0)
        BuLogger::GetInstance().Log(LogReport,
                                    BuLocalizeStringExW(L"Benchmark is activated: level=%d - threshold=%gsec", 0),
                                    static_cast<int>(level), static_cast<double>(thresholdSec));
    ReadTrace();
}

}  // namespace tuvo::benchmark
