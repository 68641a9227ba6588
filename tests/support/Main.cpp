#include "support/ChildProcess.h"

#include <gtest/gtest.h>

// What stays allocated because callers count on it, for the leak sanitizer.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions()
{
    return "leak:UtlGetDirNameFromFileName\n"
           "leak:VbUtlBreakStringIntoStringsDbg\n";
}

// Processes of scenarios leak on purpose, or end where the sanitizer finds no /proc. The tests that start them are checked.
static bool g_isScenario = false;
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off();
int __lsan_is_turned_off()
{
    return g_isScenario ? 1 : 0;
}

int main(int argumentCount, char** arguments)
{
    g_isScenario = true;
    if (const auto exitCode = RunRequestedScenario(argumentCount, arguments))
        return *exitCode;
    g_isScenario = false;
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
