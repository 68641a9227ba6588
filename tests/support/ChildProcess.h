// Test cases that need a process of their own: read-once settings, process exits, crashes.
//
//   CHILD_SCENARIO(HeapSwitchedOff)
//   {
//       InitVxHeap();
//       return IsVxHeapEnabled() ? 1 : 0;
//   }
//
//   TEST(VxHeap, StaysOffWhenSwitchedOff)
//   {
//       EXPECT_EQ(RunChild("HeapSwitchedOff", {{L"DISABLE_VX_HEAP", L"1"}}).exitCode, 0);
//   }
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

using ChildScenario = int (*)();  // gives the exit code of the child

struct ChildResult
{
    int exitCode;
    std::string output;  // what it wrote to standard output, and
    std::string errors;  // to standard error, line ends as "\n"
};

// Starts this test program anew to run one scenario, with variables set (or removed) for it alone. The scenario finds the
// arguments in ChildArguments() and the input on its standard input.
using ChildVariables = std::vector<std::pair<std::wstring, std::optional<std::wstring>>>;
ChildResult RunChild(const char* scenario, const ChildVariables& variables = {},
                     const std::vector<std::wstring>& arguments = {}, const std::string& input = {});
const std::vector<std::string>& ChildArguments();

// The command that RunChild runs, for tests of what runs commands.
std::vector<std::wstring> ChildCommand(const char* scenario, const std::vector<std::wstring>& arguments = {});

// Runs any program the same way; arguments[0] is its path.
ChildResult RunAndCapture(const std::vector<std::wstring>& arguments, const ChildVariables& variables = {},
                          const std::string& input = {});

// For main: runs the scenario that the arguments ask for, if any, and gives its exit code.
std::optional<int> RunRequestedScenario(int argumentCount, char** arguments);

bool RegisterChildScenario(const char* name, ChildScenario scenario);

#define CHILD_SCENARIO(name)                                                                                   \
    static int ChildScenario##name();                                                                          \
    [[maybe_unused]] static const bool g_registered##name = RegisterChildScenario(#name, ChildScenario##name); \
    static int ChildScenario##name()
