#include "support/ChildProcess.h"

#include <TuvoUtil/CallStack.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

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

[[gnu::noinline]] int Overflow()  // NOLINT(misc-no-recursion)
{
    volatile char room[4096] = {};
    g_depth = g_depth + 1;
    return g_depth > 0 ? Overflow() + room[0] : 0;
}

CHILD_SCENARIO(OverflowTheStack)
{
    tuvo::utl::AddSIgnalHandler([](int) { std::_Exit(9); });
    return Overflow();
}

TEST(SignalHandlers, SurviveAStackOverflow)
{
    EXPECT_EQ(RunChild("OverflowTheStack").exitCode, 9);
}

}  // namespace
