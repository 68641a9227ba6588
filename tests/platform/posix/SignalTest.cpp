#include "support/ChildProcess.h"
#include "support/CrashStack.h"

#include <TuvoUtil/CallStack.h>

#include <gtest/gtest.h>

#include <csignal>

namespace {

int g_calls;

CHILD_SCENARIO(RaiseTwice)
{
    tuvo::utl::AddSIgnalHandler([](int) { ++g_calls; });
    std::raise(SIGTERM);
    std::raise(SIGTERM);
    tuvo::utl::AddSIgnalHandler(nullptr);
    if (g_calls == 2)
        std::raise(SIGTERM);
    return 0;
}

TEST(SignalHandlers, StayUntilTheyAreRemoved)
{
    EXPECT_EQ(RunChild("RaiseTwice").exitCode, 128 + SIGTERM);
}

volatile int g_depth;

CRASHING int Overflow()  // NOLINT(misc-no-recursion)
{
    volatile char room[4096] = {};
    g_depth = g_depth + 1;
    g_crashLine = __LINE__ + 1;
    return g_depth > 0 ? Overflow() + room[0] : 0;
}

CHILD_SCENARIO(OverflowTheStack)
{
    tuvo::utl::AddSIgnalHandler(TellTheStack);
    return Overflow();
}

TEST(SignalHandlers, TellOfAStackOverflow)
{
    ExpectCrashIn("Overflow", R"(SignalTest\.cpp)", "SIGSEGV", RunChild("OverflowTheStack"));
}

}  // namespace
