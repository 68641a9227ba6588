#include <TuvoUtil/Progress.h>

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

namespace {

class Counter : public ProgressListener
{
public:
    int OnProgress(const double&, const BuString&, double&, int& flag) override { return ++flag; }
};

TEST(ProgressMemory, AListenerIsAddedOrNot)
{
    Counter counter;
    const BuString message;
    const int failures = allocation::ForEachFailure([&] {
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(ProgressManager::AddListener(&counter), 0);
        double value = 0;
        int calls = 0;
        ProgressManager::InvokeListeners(0, message, value, calls);
        EXPECT_EQ(calls == 20, !allocation::HasFailed());
        for (int i = 0; i < 20; ++i)
            ProgressManager::RemoveListener(&counter);
        EXPECT_EQ(ProgressManager::InvokeListeners(0, message, value, calls), 1);
    });
    EXPECT_GE(failures, 2);
}

}  // namespace
