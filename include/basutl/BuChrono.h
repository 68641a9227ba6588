// A stopwatch on the steady clock.
//
//   BuChrono chrono(0, 0);
//   float seconds = BuChrono::FromTickCountToMillisec(chrono.GetIntermediate(), 1000.0);
#pragma once

#include <basutl/Export.h>

// Gives the current tick: nanoseconds from an arbitrary start. It must not throw.
using BuTickSource = long long (*)();

// The clock of all chronometers. Null brings the steady clock back. For tests; not locked.
BASUTL_API void BuSetTickSource(BuTickSource source) noexcept;
BASUTL_API long long BuGetTick() noexcept;

class BuChrono
{
public:
    // Starts at once. Both arguments are accepted for the hosts that pass them and have no effect.
    explicit BuChrono(int = 0, int = 0) noexcept : m_start(BuGetTick()) {}

    // Ticks since the start; the chronometer goes on.
    long long GetIntermediate() const noexcept { return BuGetTick() - m_start; }

    // Ticks from the start to the first call of GetElapsed, which stops the chronometer; later calls give the same.
    long long GetElapsed(int = 1) noexcept
    {
        if (m_elapsed < 0)
            m_elapsed = BuGetTick() - m_start;
        return m_elapsed;
    }

    // Milliseconds in a number of ticks, divided by `divisor`: 1000.0 gives seconds. Computed in double, then rounded.
    static float FromTickCountToMillisec(long long ticks, double divisor) noexcept
    {
        return static_cast<float>(static_cast<double>(ticks) * (1.0 / (1.0e6 * divisor)));
    }

private:
    long long m_start;
    long long m_elapsed = -1;  // below 0 while running
};
