// Programs that crash on purpose: a handler tells the stack, and a test looks in it for the function and line of the crash.
//
//   CRASHING void WriteToNull()
//   {
//       g_crashLine = __LINE__, *g_nowhere = 1;
//   }
//
// runs in a child process (ChildProcess.h) that has called tuvo::utl::AddSIgnalHandler(TellTheStack).
#pragma once

#include "support/ChildProcess.h"

#include <TuvoUtil/CallStack.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>

// Sanitizers would tell of such faults before they happen. What the function does last has to keep it on the stack.
#define CRASHING [[gnu::noinline]] __attribute__((no_sanitize("undefined")))

inline volatile int g_crashLine;
constexpr int CrashToldExitCode = 7;

inline void TellTheStack(int signal)
{
    std::string text;
    tuvo::utl::GetCallStack(text, signal);
    std::printf("%d", g_crashLine);
    std::fprintf(stderr, "%s", text.c_str());
    std::fflush(stdout);
    std::_Exit(CrashToldExitCode);
}

// `file` is a regular expression.
inline void ExpectCrashIn(const std::string& function, const std::string& file, const std::string& signal,
                          const ChildResult& child)
{
    const std::string innermost = child.errors.substr(0, 5000);
    EXPECT_EQ(child.exitCode, CrashToldExitCode) << function;
    EXPECT_EQ(innermost.find("Signal " + signal + " caught\n\t"), 0u) << innermost;
    const std::regex frame("\tat [^\n]*" + function + "[^\n]* in [^\n]*" + file + ": line: " + child.output + ": ");
    EXPECT_TRUE(std::regex_search(innermost, frame)) << "line " << child.output << '\n' << innermost;
}
