// What the subcommands of tuvo share with the program: how they enter it and how they end.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <stdexcept>
#include <string>

namespace tool {

enum ExitCode : int
{
    Done = 0,
    WorkFailed = 1,
    WrongUsage = 2
};

// A subcommand as the argument reader knows it, and what it does once its arguments are read.
struct Command
{
    CLI::App* arguments;
    std::function<ExitCode()> run;
};

Command AddConvert(CLI::App& tuvo);
Command AddUnits(CLI::App& tuvo);
Command AddIds(CLI::App& tuvo);
Command AddEval(CLI::App& tuvo);
Command AddChecksum(CLI::App& tuvo);
Command AddLeaks(CLI::App& tuvo);
Command AddBenchView(CLI::App& tuvo);
Command AddParams(CLI::App& tuvo);
Command AddInfo(CLI::App& tuvo);

// Refuses an empty text, which comes from a variable of a script that has no value.
inline CLI::Validator NotEmpty()
{
    return {[](const std::string& text) { return std::string(text.empty() ? "must not be empty" : ""); }, ""};
}

// Ends a subcommand; the program shows the text as an error and exits with the code.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const std::string& text, ExitCode code = WorkFailed) : std::runtime_error(text), m_code(code) {}
    ExitCode Code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

}  // namespace tool
