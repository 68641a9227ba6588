#include "support/ChildProcess.h"

#include <gtest/gtest.h>

// What stays allocated because callers count on it, for the leak sanitizer.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions()
{
    return "leak:UtlGetDirNameFromFileName\n"
           "leak:VbUtlBreakStringIntoStringsDbg\n";
}

int main(int argumentCount, char** arguments)
{
    if (const auto exitCode = RunRequestedScenario(argumentCount, arguments))
        return *exitCode;
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
