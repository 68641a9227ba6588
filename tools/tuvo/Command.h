// What the subcommands of tuvo share with the program: how they enter it and how they end.
#pragma once

#include "tools/tuvo/Failure.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace tool {

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
Command AddModel(CLI::App& tuvo);
Command AddInfo(CLI::App& tuvo);

// Refuses an empty text, which comes from a variable of a script that has no value.
inline CLI::Validator NotEmpty()
{
    return {[](const std::string& text) { return std::string(text.empty() ? "must not be empty" : ""); }, ""};
}

}  // namespace tool
