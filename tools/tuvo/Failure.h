// How the work of a subcommand fails, and with which exit code.
#pragma once

#include <stdexcept>
#include <string>

namespace tool {

enum ExitCode : int
{
    Done = 0,
    WorkFailed = 1,
    WrongUsage = 2
};

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
