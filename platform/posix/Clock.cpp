#include "platform/Platform.h"

#include <ctime>

std::int64_t platform::SteadyNanoseconds() noexcept
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

bool platform::ToLocalTime(std::int64_t seconds, LocalTime& local) noexcept
{
    const std::time_t time = seconds;
    std::tm fields{};
    if (localtime_r(&time, &fields) == nullptr)
        return false;
    local = {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec};
    return true;
}
