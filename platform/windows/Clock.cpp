#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <ctime>

std::int64_t platform::SteadyNanoseconds() noexcept
{
    static const std::int64_t frequency = [] {
        LARGE_INTEGER ticksPerSecond;
        QueryPerformanceFrequency(&ticksPerSecond);
        return std::int64_t{ticksPerSecond.QuadPart};
    }();
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    const std::int64_t whole = ticks.QuadPart / frequency;
    const std::int64_t rest = ticks.QuadPart % frequency;
    return whole * 1'000'000'000 + rest * 1'000'000'000 / frequency;
}

bool platform::ToLocalTime(std::int64_t seconds, LocalTime& local) noexcept
{
    const __time64_t time = seconds;
    std::tm fields{};
    if (_localtime64_s(&fields, &time) != 0)
        return false;
    local = {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec};
    return true;
}
