// An evaluator takes no memory: exhausted memory changes no result.

#include <TuvoUtil/EquationEvaluator.h>

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

namespace {

TEST(EquationEvaluatorMemory, TakesNone)
{
    const int failures = allocation::ForEachFailure([] {
        VEquationEvaluator evaluator(nullptr, [](const char*, const void*) { return 4.0; });
        EXPECT_EQ(evaluator.Evaluate("(1+2)*<name>(3.123456789012345678901234567890)"), 12 * 3.1234567890123457);
        EXPECT_EQ(VEquationEvaluator(evaluator).Evaluate("1/0"), 0.0);
        EXPECT_STREQ(evaluator.GetErrorString(), "no error");
    });
    EXPECT_EQ(failures, 0);
}

}  // namespace
