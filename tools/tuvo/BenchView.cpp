// tuvo bench-view: the histories that chronometers wrote to a log, as a picture.
#include "tools/tuvo/BenchIcicle.h"
#include "tools/tuvo/BenchLog.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/OutputFile.h"
#include "tools/tuvo/TextFile.h"

#include <iostream>
#include <memory>
#include <string>

namespace tool {
namespace {

struct Options
{
    std::string log;
    std::string output = "-";
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo bench-view solver.log -o solver.svg\n"
    "  BU_LOG_LEVEL=6 QD_BENCH_LEVEL=1 ./program 2>&1 | tuvo bench-view - > program.svg\n"
    "\n"
    "LOG is whatever received the log of a program: all benchmark histories in it are drawn, one below the other, and\n"
    "other lines are skipped. Any browser shows the picture; the pointer over a section shows its whole name and "
    "times.";

ExitCode Run(const Options& options)
{
    const std::vector<BenchEntry> entries = ReadBenchLog(ReadText(options.log));
    if (entries.empty())
        throw Failure("there is no benchmark history in " + SourceName(options.log));
    const std::string picture = DrawBenchIcicle(entries, "Benchmark history of " + SourceName(options.log));
    if (options.output == "-") {
        std::cout << picture;
        return Done;
    }
    OutputFile file(options.output);
    file.Append(picture);
    file.Keep();
    return Done;
}

}  // namespace

Command AddBenchView(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("bench-view", "Draw the benchmark histories of a log as an SVG picture");
    const auto options = std::make_shared<Options>();
    command.add_option("LOG", options->log, "The log; - reads it from standard input")
        ->required()
        ->check(NotEmpty())
        ->type_name("");
    command.add_option("-o,--output", options->output, "Write the picture to this file; to standard output otherwise")
        ->check(NotEmpty())
        ->type_name("FILE");
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
