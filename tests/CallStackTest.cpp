#include <TuvoUtil/CallStack.h>

#include "support/ChildProcess.h"
#include "support/CrashStack.h"

#include <TuvoUtil/Memory.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <regex>
#include <string>

namespace {

// What it does after the call keeps it on the stack.
[[gnu::noinline]] std::string StackHere(int signal)
{
    std::string text = "before\n";
    tuvo::utl::GetCallStack(text, signal);
    text += "after\n";
    return text;
}

TEST(CallStackText, NamesTheSignalFirst)
{
    const struct
    {
        int number;
        const char* line;
    } rows[] = {
        {0, ""},
        {2, "Signal SIGINT caught\n"},
        {4, "Signal SIGILL caught\n"},
        {SIGABRT, "Signal SIGABRT caught\n"},
        {7, "Signal  caught\n"},
        {8, "Signal SIGFPE caught\n"},
        {11, "Signal SIGSEGV caught\n"},
        {15, "Signal SIGTERM caught\n"},
        {22, "Signal SIGABRT caught\n"},
        {-1, "Signal  caught\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(StackHere(row.number).find("before\n" + std::string(row.line) + "\t"), 0u) << row.number;
}

TEST(CallStackText, HasOneOrTwoLinesAFrame)
{
    const std::string text = StackHere(0);
    const std::regex whole(R"(before\n(\tat .* in .*: line: \d+: address: 0x\d+\n)"
                           R"(|\tSymGetLineFromAddr64 returned error code \d+\.\n\tat .*, address 0x\d+\.\n)+after\n)");
    EXPECT_TRUE(std::regex_match(text, whole)) << text;
    EXPECT_TRUE(std::regex_search(text, std::regex(R"(\tat \S*.*StackHere.* in .*CallStackTest\.cpp: line: \d+)")))
        << text;
}

TEST(CallStackFrames, AreFreedWithOneCall)
{
    VMemSetGetFuncInfoPtr(TuvoCallStackProvider);
    char** frames = nullptr;
    const int depth = VMemoryResolveCallStack(VMemoryGetCallStack(&frames), &frames);
    VMemSetGetFuncInfoPtr(nullptr);
    ASSERT_GT(depth, 2);
    EXPECT_EQ(TuvoCallStackProvider(nullptr, &frames), 0);
    int again = depth;
    char** same = frames;
    EXPECT_EQ(TuvoCallStackProvider(&again, &same), 0);  // resolved already
    EXPECT_EQ(again, depth);
    EXPECT_EQ(same, frames);
    std::free(static_cast<void*>(frames));
}

void EndWith(int signal)
{
    std::fprintf(stderr, "signal %d\n", signal);
    std::_Exit(7);
}

CHILD_SCENARIO(RaiseSignal)
{
    tuvo::utl::AddSIgnalHandler(EndWith);
    std::raise(std::atoi(ChildArguments()[0].c_str()));
    return 0;
}

TEST(SignalHandlers, AreCalledForSixSignals)
{
    for (const int signal : {SIGINT, SIGABRT, SIGFPE, SIGILL, SIGSEGV, SIGTERM}) {
        const ChildResult result = RunChild("RaiseSignal", {}, {std::to_wstring(signal)});
        EXPECT_EQ(result.exitCode, 7) << signal;
        EXPECT_EQ(result.errors, "signal " + std::to_string(signal) + "\n");
    }
}

int* volatile g_nowhere;
volatile int g_zero;
volatile int g_result;

void Use(int result)
{
    g_result = result;
}

CRASHING void WriteToNull()
{
    g_crashLine = __LINE__, *g_nowhere = 1;
}

CRASHING void DivideByZero()
{
    g_crashLine = __LINE__, Use(100 / g_zero);
}

CRASHING void ExecuteNoInstruction()
{
    g_crashLine = __LINE__, __builtin_trap();
}

CRASHING void Abort()
{
    g_crashLine = __LINE__, std::abort();
}

CRASHING void Interrupt()
{
    g_crashLine = __LINE__, Use(std::raise(SIGINT));
}

struct Crash
{
    const char* signal;
    void (*happen)();
};

const std::map<std::string, Crash> Crashes = {
    {"WriteToNull", {"SIGSEGV", WriteToNull}},
    {"DivideByZero", {"SIGFPE", DivideByZero}},
    {"ExecuteNoInstruction", {"SIGILL", ExecuteNoInstruction}},
    {"Abort", {"SIGABRT", Abort}},
    {"Interrupt", {"SIGINT", Interrupt}},
};

CHILD_SCENARIO(Crash)
{
    tuvo::utl::AddSIgnalHandler(TellTheStack);
    Crashes.at(ChildArguments()[0]).happen();
    return 0;
}

TEST(CallStackText, NamesTheCrashingFunctionAndLine)
{
    for (const auto& [function, crash] : Crashes) {
        const ChildResult child = RunChild("Crash", {}, {std::wstring(function.begin(), function.end())});
        ExpectCrashIn(function, R"(CallStackTest\.cpp)", crash.signal, child);
    }
}

}  // namespace
