#include <TuvoUtil/CallStack.h>

#include "support/ChildProcess.h"

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
volatile int g_line;  // at which the program is about to end

void Use(int result)
{
    g_result = result;
}

// Sanitizers would tell of these faults before they happen. What a function does last keeps it on the stack.
#define CRASHING [[gnu::noinline]] __attribute__((no_sanitize("undefined")))

CRASHING void WriteToNull()
{
    g_line = __LINE__, *g_nowhere = 1;
}

CRASHING void DivideByZero()
{
    g_line = __LINE__, Use(100 / g_zero);
}

CRASHING void ExecuteNoInstruction()
{
    g_line = __LINE__, __builtin_trap();
}

CRASHING void Abort()
{
    g_line = __LINE__, std::abort();
}

CRASHING void Interrupt()
{
    g_line = __LINE__, Use(std::raise(SIGINT));
}

const std::map<std::string, void (*)()> Crashes = {
    {"WriteToNull", WriteToNull},
    {"DivideByZero", DivideByZero},
    {"ExecuteNoInstruction", ExecuteNoInstruction},
    {"Abort", Abort},
    {"Interrupt", Interrupt},
};

void TellTheStack(int signal)
{
    std::string text;
    tuvo::utl::GetCallStack(text, signal);
    std::printf("%d", g_line);
    std::fprintf(stderr, "%s", text.c_str());
    std::fflush(stdout);
    std::_Exit(7);
}

CHILD_SCENARIO(Crash)
{
    tuvo::utl::AddSIgnalHandler(TellTheStack);
    Crashes.at(ChildArguments()[0])();
    return 0;
}

TEST(CallStackText, NamesTheCrashingFunctionAndLine)
{
    const std::map<std::string, std::string> signals = {
        {"WriteToNull", "SIGSEGV"}, {"DivideByZero", "SIGFPE"}, {"ExecuteNoInstruction", "SIGILL"},
        {"Abort", "SIGABRT"},       {"Interrupt", "SIGINT"},
    };
    for (const auto& [function, signal] : signals) {
        const ChildResult result = RunChild("Crash", {}, {std::wstring(function.begin(), function.end())});
        EXPECT_EQ(result.exitCode, 7) << function;
        EXPECT_EQ(result.errors.find("Signal " + signal + " caught\n\t"), 0u) << result.errors;
        const std::regex frame("\tat [^\n]*" + function +
                               "[^\n]* in [^\n]*CallStackTest\\.cpp: line: " + result.output + ": address: 0x");
        EXPECT_TRUE(std::regex_search(result.errors, frame)) << result.output << '\n' << result.errors;
    }
}

}  // namespace
