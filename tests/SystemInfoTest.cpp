#include <TuvoUtil/SystemInfo.h>

#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

TEST(SystemInfo, CountsOfThisMachineFitTogether)
{
    EXPECT_GE(TuvoGetSystemCPUCount(), 2) << "the count starts at 1";
    EXPECT_GE(TuvoGetSystemPhysicalCores(), TuvoGetSystemCPUCount() - 1);
    EXPECT_GE(TuvoGetSystemLogicalCores(), TuvoGetSystemPhysicalCores());
    EXPECT_GE(TuvoGetSystemLogicalCores(), static_cast<int>(platform::UsableProcessors()));
}

TEST(SystemInfo, TheLibraryDescribesItself)
{
    EXPECT_STREQ(TuvoUtil_get_module_info(0), "Dynamic linked library");
    EXPECT_STREQ(TuvoUtil_get_module_info(1), "24.0.0.000");
    const std::string build = TuvoUtil_get_module_info(2);
    EXPECT_EQ(build.find("TuvoUtil 24.0.0.000, built "), 0u) << build;
    EXPECT_EQ(build.size(), std::string("TuvoUtil 24.0.0.000, built Nov 21 2026 16:38:00").size()) << build;
    for (const int other : {-1, 3, INT_MIN, INT_MAX})
        EXPECT_EQ(TuvoUtil_get_module_info(other), build);
}

}  // namespace
