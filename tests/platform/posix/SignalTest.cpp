#include "support/ChildProcess.h"
#include "support/CrashStack.h"

#include <TuvoUtil/CallStack.h>

#include <gtest/gtest.h>

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <thread>

namespace {

volatile std::sig_atomic_t g_calls;

void Count(int)
{
    g_calls = g_calls + 1;
}

CHILD_SCENARIO(RaiseTwice)
{
    tuvo::utl::AddSIgnalHandler(Count);
    std::raise(SIGTERM);
    std::raise(SIGTERM);
    std::printf("%d", static_cast<int>(g_calls));
    std::fflush(stdout);
    tuvo::utl::AddSIgnalHandler(nullptr);
    std::raise(SIGTERM);
    return 0;
}

TEST(SignalHandlers, StayUntilTheyAreRemoved)
{
    const ChildResult result = RunChild("RaiseTwice");
    EXPECT_EQ(result.output, "2");
    EXPECT_EQ(result.exitCode, 128 + SIGTERM);
}

// Signals arrive while a call waits, which goes on waiting.
CHILD_SCENARIO(WaitThroughSignals)
{
    int ends[2];
    if (pipe(ends) != 0)
        return 1;
    tuvo::utl::AddSIgnalHandler(Count);
    std::thread sender([waiting = pthread_self(), end = ends[1]] {
        for (int i = 0; i < 20; ++i) {
            pthread_kill(waiting, SIGTERM);
            usleep(1000);
        }
        close(end);
    });
    char byte = 0;
    const bool isAtEnd = read(ends[0], &byte, 1) == 0;
    sender.join();
    return isAtEnd && g_calls > 0 ? 0 : 2;
}

TEST(SignalHandlers, LetInterruptedCallsGoOn)
{
    EXPECT_EQ(RunChild("WaitThroughSignals").exitCode, 0);
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
