// What the records of a machine's processors add up to, apart from the machine.
#pragma once

#include "platform/Platform.h"

#include <span>

namespace sysinfo {

struct ProcessorCounts
{
    int packages = 0;
    int cores = 0;
    int logicalProcessors = 0;  // set bits in the masks of all cores
};

// Records of other relations count for nothing.
ProcessorCounts CountProcessors(std::span<const platform::ProcessorRecord> records) noexcept;

}  // namespace sysinfo
