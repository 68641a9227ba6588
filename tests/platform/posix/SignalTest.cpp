#include "support/ChildProcess.h"

#include <TuvoUtil/CallStack.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>

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
volatile int g_line;

[[gnu::noinline]] int Overflow()  // NOLINT(misc-no-recursion)
{
    volatile char room[4096] = {};
    g_depth = g_depth + 1;
    g_line = __LINE__ + 1;
    return g_depth > 0 ? Overflow() + room[0] : 0;
}

void TellTheStack(int signal)
{
    std::string text;
    tuvo::utl::GetCallStack(text, signal);
    std::printf("%d", g_line);
    std::fprintf(stderr, "%s", text.c_str());
    std::fflush(stdout);
    std::_Exit(9);
}

CHILD_SCENARIO(OverflowTheStack)
{
    tuvo::utl::AddSIgnalHandler(TellTheStack);
    return Overflow();
}

TEST(SignalHandlers, TellOfAStackOverflow)
{
    const ChildResult result = RunChild("OverflowTheStack");
    EXPECT_EQ(result.exitCode, 9);
    const std::string innermost = result.errors.substr(0, 2000);
    EXPECT_EQ(innermost.find("Signal SIGSEGV caught\n\t"), 0u) << innermost;
    const std::regex frame("\tat [^\n]*Overflow[^\n]* in [^\n]*SignalTest\\.cpp: line: " + result.output + ": ");
    EXPECT_TRUE(std::regex_search(innermost, frame)) << innermost;
}

}  // namespace
