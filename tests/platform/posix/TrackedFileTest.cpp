#include <TuvoUtil/TrackedFile.h>

#include "Diagnostics/FileTracker.h"

#include <gtest/gtest.h>

namespace {

int CloseResultOfAFullDevice()
{
    std::FILE* const full = TuvoFOpen("/dev/full", "w", __FILE__, __LINE__);
    std::fputs("text", full);
    return TuvoFClose(full, __FILE__, __LINE__);
}

TEST(PosixTrackedFile, AFailedCloseIsToldOnlyWhileNothingIsTracked)
{
    EXPECT_EQ(CloseResultOfAFullDevice(), EOF);
    StartFileTracker();
    EXPECT_EQ(CloseResultOfAFullDevice(), 0);
    StopFileTracker();
}

}  // namespace
