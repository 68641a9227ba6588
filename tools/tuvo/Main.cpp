// tuvo, the host program of the library. Results go to standard output, messages to standard error; it exits with 0 when
// the work is done, 1 when it failed, 2 when the arguments are wrong.
#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Suggest.h"

#include <TuvoUtil/FixedHeap.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <iostream>
#include <new>
#include <vector>

namespace tool {
namespace {

constexpr char Closing[] =
    "Examples:\n"
    "  tuvo convert 210000 --type Pressure --from mm,ton,sec,kelvin --to in,lbf,sec,fahrenheit\n"
    "  tuvo units --systems\n"
    "  tuvo ids 1,5,10-20\n"
    "  tuvo eval \"2*(<width> + 1.5)\" width=4\n"
    "  tuvo checksum model.bin\n"
    "  tuvo leaks leaks.txt\n"
    "  tuvo bench-view solver.log -o solver.svg\n"
    "  tuvo model bracket.inp\n"
    "  tuvo info\n"
    "\n"
    "Results go to standard output, messages to standard error. Exit codes: 0 done, 1 the work failed, 2 wrong usage.\n"
    "tuvo COMMAND --help tells more about a command.";

std::vector<std::string> OptionNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

std::vector<std::string> CommandNames(const CLI::App& tuvo)
{
    std::vector<std::string> names;
    for (const CLI::App* command : tuvo.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

// What is wrong with arguments that could not be read. An argument that nothing expects says more than what is missing
// because of it.
std::string UsageProblem(const CLI::App& tuvo, const CLI::ParseError& error)
{
    const auto commands = tuvo.get_subcommands();
    const CLI::App& command = commands.empty() ? tuvo : *commands.front();
    std::vector<std::string> unexpected = tuvo.remaining(true);
    std::erase(unexpected, "--");  // begins the values; the argument reader lists it though it takes it
    if (unexpected.empty())
        return error.what();
    const std::string& first = unexpected.front();
    if (first.front() == '-')
        return "there is no option " + Quoted(first) + DidYouMean(first, OptionNames(command));
    if (commands.empty())
        return "there is no command " + Quoted(first) + DidYouMean(first, CommandNames(tuvo));
    return Quoted(first) + " is one argument too many";
}

std::string HelpHint(const CLI::App& command)
{
    const std::string name = command.get_parent() != nullptr ? "tuvo " + command.get_name() : command.get_name();
    return " (see " + name + " --help)";
}

ExitCode ReportUsage(const CLI::App& tuvo, const CLI::ParseError& error)
{
    const auto commands = tuvo.get_subcommands();
    PostError(UsageProblem(tuvo, error) + HelpHint(commands.empty() ? tuvo : *commands.front()));
    return WrongUsage;
}

// Whether an argument is a number or an expression in the shape of an option: -.5, -(2), -<x>, -+1.
bool LooksLikeOption(const std::string& argument)
{
    if (argument.size() < 2 || argument.front() != '-')
        return false;
    const char next = argument[1];
    return next == '(' || next == '<' || next == '+' || (next == '.' && argument.size() > 2 && BuIsDigit(argument[2]));
}

// The arguments in the order that CLI11 takes them, last first. A blank in front keeps it from taking one for an option.
std::vector<std::string> ReversedArguments(int count, char** arguments)
{
    std::vector<std::string> reversed(arguments + std::min(count, 1), arguments + count);
    for (std::string& argument : reversed)
        if (LooksLikeOption(argument))
            argument.insert(0, " ");
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}

ExitCode RunCommand(const Command& command)
{
    try {
        return command.run();
    } catch (const Failure& failure) {
        PostError(failure.what() + (failure.Code() == WrongUsage ? HelpHint(*command.arguments) : ""));
        return failure.Code();
    }
}

ExitCode RunParsed(const CLI::App& tuvo, const std::vector<Command>& commands)
{
    for (const Command& command : commands)
        if (command.arguments->parsed())
            return RunCommand(command);
    std::cout << tuvo.help();
    return Done;
}

ExitCode ParseAndRun(std::vector<std::string> arguments)
{
    CLI::App tuvo("Unit conversion and the other services of TuvoUtil at the command line.", "tuvo");
    tuvo.allow_windows_style_options(false);
    tuvo.set_version_flag("--version", "tuvo " TUVO_VERSION, "Show the version and exit");
    tuvo.set_help_flag("-h,--help", "Show this text and exit");
    tuvo.get_formatter()->column_width(28);
    tuvo.footer(Closing);
    tuvo.require_subcommand(0, 1);  // a second name of a command is an argument like any other
    const std::vector<Command> commands = {
        AddConvert(tuvo), AddUnits(tuvo),     AddIds(tuvo),    AddEval(tuvo),  AddChecksum(tuvo),
        AddLeaks(tuvo),   AddBenchView(tuvo), AddParams(tuvo), AddModel(tuvo), AddInfo(tuvo),
    };
    try {
        tuvo.parse(arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0)
            return ReportUsage(tuvo, error);
        tuvo.exit(error, std::cout, std::cerr);
        return Done;
    }
    return RunParsed(tuvo, commands);
}

ExitCode RunGuarded(std::vector<std::string> arguments)
{
    try {
        return ParseAndRun(std::move(arguments));
    } catch (const std::bad_alloc&) {
        PostError("memory is exhausted");
    } catch (const std::exception& error) {
        PostError(error.what());
    }
    return WorkFailed;
}

// Whether all results have reached standard output.
bool FlushResults()
{
    if (std::cout.flush())
        return true;
    const int code = platform::LastNativeError();
    PostError("cannot write the results: " + platform::Narrow(platform::NativeErrorText(code)));
    return false;
}

}  // namespace
}  // namespace tool

int main(int argumentCount, char** arguments)
{
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    InitVxHeap();
    const tool::ConsoleScope console;
    const tool::ExitCode code = tool::RunGuarded(tool::ReversedArguments(argumentCount, arguments));
    return tool::FlushResults() ? code : std::max(code, tool::WorkFailed);
}
