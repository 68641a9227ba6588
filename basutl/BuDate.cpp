#include <basutl/BuDate.h>

#include "platform/Platform.h"

#include <ctime>

namespace {

constinit BuTimeSource g_source = nullptr;

}  // namespace

void BuSetTimeSource(BuTimeSource source) noexcept
{
    g_source = source;
}

BuDate BuDate::getCurrentDate() noexcept
{
    return BuDate(g_source == nullptr ? std::int64_t{std::time(nullptr)} : g_source());
}

BuDate::Fields BuDate::GetLocalFields() const noexcept
{
    platform::LocalTime local;
    if (!platform::ToLocalTime(m_seconds, local))
        return {};
    return {local.year, local.month, local.day, local.hour, local.minute, local.second};
}
