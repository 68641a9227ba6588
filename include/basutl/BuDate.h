// A moment of calendar time, to the second.
#pragma once

#include <basutl/Export.h>

#include <cstdint>

// Gives the current time in seconds since 1970-01-01 UTC. It must not throw.
using BuTimeSource = std::int64_t (*)();

// The clock of BuDate. Null brings the system's clock back. For tests; not locked.
BASUTL_API void BuSetTimeSource(BuTimeSource source) noexcept;

class BASUTL_API BuDate
{
public:
    // The moment so many seconds after 1970-01-01 00:00:00 UTC, without a number that moment.
    BuDate() noexcept = default;
    explicit BuDate(std::int64_t seconds) noexcept : m_seconds(seconds) {}

    // Now.
    static BuDate getCurrentDate() noexcept;

    // Seconds since 1970-01-01 00:00:00 UTC.
    std::int64_t GetSeconds() const noexcept { return m_seconds; }

    // Fields of the calendar and the clock.
    struct Fields
    {
        // Month and day count from 1, all else from 0.
        int year = 0;
        int month = 0;
        int day = 0;
        int hour = 0;
        int minute = 0;
        int second = 0;
    };

    // The fields in the local time zone; all 0 when the time has none.
    Fields GetLocalFields() const noexcept;

    // Seconds from `earlier` to `later`.
    static double Difference(const BuDate& later, const BuDate& earlier) noexcept
    {
        return static_cast<double>(later.m_seconds) - static_cast<double>(earlier.m_seconds);
    }

private:
    std::int64_t m_seconds = 0;
};
