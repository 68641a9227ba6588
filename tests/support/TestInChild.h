// Tests that run in a process of their own.
#pragma once

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

// A TEST for state that a process has once, or that no test may leave behind.
#define TEST_IN_CHILD(suite, name)                                       \
    static void suite##name();                                           \
    CHILD_SCENARIO(suite##name)                                          \
    {                                                                    \
        suite##name();                                                   \
        return testing::Test::HasFailure() ? 1 : 0;                      \
    }                                                                    \
    TEST(suite, name)                                                    \
    {                                                                    \
        const ChildResult result = RunChild(#suite #name);               \
        EXPECT_EQ(result.exitCode, 0) << result.output << result.errors; \
    }                                                                    \
    static void suite##name()
