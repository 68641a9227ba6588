#include "support/ChildProcess.h"

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>

namespace {

constexpr char ScenarioOption[] = "--child-scenario=";

std::map<std::string, ChildScenario>& Scenarios()
{
    static std::map<std::string, ChildScenario> scenarios;
    return scenarios;
}

std::vector<std::string>& Arguments()
{
    static std::vector<std::string> arguments;
    return arguments;
}

// Sets variables of this process, which its children inherit, until the end of the scope.
class VariableScope
{
public:
    explicit VariableScope(const ChildVariables& variables)
    {
        for (const auto& [name, value] : variables) {
            m_before.emplace_back(name, platform::EnvironmentValue(name.c_str()));
            platform::SetEnvironmentValue(name.c_str(), value);
        }
    }
    ~VariableScope()
    {
        for (const auto& [name, value] : m_before)
            platform::SetEnvironmentValue(name.c_str(), value);
    }
    VariableScope(const VariableScope&) = delete;
    VariableScope& operator=(const VariableScope&) = delete;

private:
    ChildVariables m_before;
};

}  // namespace

bool RegisterChildScenario(const char* name, ChildScenario scenario)
{
    return Scenarios().emplace(name, scenario).second;
}

std::optional<int> RunRequestedScenario(int argumentCount, char** arguments)
{
    if (argumentCount < 2 || std::strncmp(arguments[1], ScenarioOption, sizeof ScenarioOption - 1) != 0)
        return std::nullopt;
    Arguments().assign(arguments + 2, arguments + argumentCount);
    return Scenarios().at(arguments[1] + sizeof ScenarioOption - 1)();
}

const std::vector<std::string>& ChildArguments()
{
    return Arguments();
}

std::vector<std::wstring> ChildCommand(const char* scenario, const std::vector<std::wstring>& arguments)
{
    if (Scenarios().count(scenario) == 0)
        throw std::invalid_argument(std::string("no such child scenario: ") + scenario);
    static const char anchor = 0;
    std::vector<std::wstring> command = {platform::ModuleFile(&anchor),
                                         platform::Widen(ScenarioOption + std::string(scenario))};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

ChildResult RunChild(const char* scenario, const ChildVariables& variables, const std::vector<std::wstring>& arguments,
                     const std::string& input)
{
    return RunAndCapture(ChildCommand(scenario, arguments), variables, input);
}

ChildResult RunAndCapture(const std::vector<std::wstring>& arguments, const ChildVariables& variables,
                          const std::string& input)
{
    const TemporaryFolder folder;
    const std::wstring inputFile = folder.Write("input", input);
    const std::wstring outputFile = folder.Path("output");
    const std::wstring errorFile = folder.Path("errors");
    const VariableScope scope(variables);
    platform::ProgramStreams streams;
    streams.inputFile = inputFile.c_str();
    streams.outputFile = outputFile.c_str();
    streams.errorFile = errorFile.c_str();
    const int exitCode = platform::RunProgram(arguments, streams);
    return {exitCode, ReadTextFile(outputFile), ReadTextFile(errorFile)};
}
