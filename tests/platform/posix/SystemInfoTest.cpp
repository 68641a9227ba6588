// The counts of machines that are described to the topology library by a variable.

#include <TuvoUtil/SystemInfo.h>

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

CHILD_SCENARIO(PrintProcessorCounts)
{
    std::printf("%d %d %d", TuvoGetSystemCPUCount(), TuvoGetSystemPhysicalCores(), TuvoGetSystemLogicalCores());
    return 0;
}

TEST(SystemInfo, CountsTheWholeMachine)
{
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"package:1 core:8 pu:2", "2 8 16"},
        {L"package:2 core:4 pu:1", "3 8 8"},
        {L"package:2 core:32 pu:2", "3 64 128"},
    };
    for (const auto& [machine, counts] : rows)
        EXPECT_EQ(RunChild("PrintProcessorCounts", {{L"HWLOC_SYNTHETIC", machine}}).output, counts);
}

}  // namespace
