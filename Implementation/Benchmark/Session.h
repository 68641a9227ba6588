// What the environment says about a session.
#pragma once

#include <TuvoUtil/Benchmark.h>

namespace tuvo::benchmark {

// Reads the settings; what is not set, or not valid, stays as it is. Bad values, and what is switched on, go to the log.
void ReadSessionSettings(_Level& level, float& thresholdSec) noexcept;

}  // namespace tuvo::benchmark
