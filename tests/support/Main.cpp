#include "support/ChildProcess.h"

#include <gtest/gtest.h>

int main(int argumentCount, char** arguments)
{
    if (const auto exitCode = RunRequestedScenario(argumentCount, arguments))
        return *exitCode;
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
