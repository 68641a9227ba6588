// tuvo leaks: what the leak checker reported, by the place that allocated it.
#include "tools/tuvo/Command.h"
#include "tools/tuvo/LeakReports.h"
#include "tools/tuvo/LeakRows.h"
#include "tools/tuvo/TextFile.h"

#include <iostream>
#include <memory>
#include <optional>

namespace tool {
namespace {

struct Options
{
    std::string report;
    std::string against;
    bool last = false;
    bool ifExists = false;
    bool json = false;
    bool csv = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo leaks leaks.txt\n"
    "  tuvo leaks leaks.txt --against leaks-of-release.txt\n"
    "  tuvo leaks stacks.txt --last --json > leaks.json\n"
    "  rm -f leaks.txt; ./program; tuvo leaks leaks.txt --if-exists\n"
    "\n"
    "REPORT is a report file of the leak checker, or an append file, whose reports are added up. The exit code is 1\n"
    "when there are leaks, with --against when there are new ones, and when a report cannot be read; 0 when there are\n"
    "none.";

// ---- Reading -------------------------------------------------------------------------------------------------------

LeakReports Load(const std::string& path, const Options& options)
{
    const std::optional<std::string> text = options.ifExists ? ReadTextIfExists(path) : ReadText(path);
    LeakReports reports;
    if (!text)
        return reports;
    const ReportChoice choice = options.last ? ReportChoice::Last : ReportChoice::All;
    if (const auto problem = ReadLeakReports(*text, choice, reports))
        throw Failure(SourceName(path) + ":" + std::to_string(problem->line) + ": " + problem->reason);
    if (reports.count == 0)
        throw Failure("there is no leak report in " + SourceName(path));
    return reports;
}

// ---- The command ---------------------------------------------------------------------------------------------------

ExitCode Run(const Options& options)
{
    if (options.json && options.csv)
        throw Failure("--json and --csv exclude each other", WrongUsage);
    if (options.report == "-" && options.against == "-")
        throw Failure("only one of the reports can come from standard input", WrongUsage);
    LeakReports reports = Load(options.report, options);
    const LeakRows rows = options.against.empty() ? ShowAll(std::move(reports))
                                                  : ShowNew(std::move(reports), Load(options.against, options));
    const auto write = options.json ? WriteJson : options.csv ? WriteCsv : WriteTable;
    write(std::cout, rows);
    return rows.rows.empty() ? Done : WorkFailed;
}

}  // namespace

Command AddLeaks(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("leaks", "Sum up reports of the leak checker by file and line");
    const auto options = std::make_shared<Options>();
    command.add_option("REPORT", options->report, "The report; - reads it from standard input")
        ->required()
        ->check(NotEmpty())
        ->type_name("");
    command.add_option("--against", options->against, "Show only what is more than in this report")
        ->check(NotEmpty())
        ->type_name("OLD");
    command.add_flag("--last", options->last, "Take only the last one of the reports in a file");
    command.add_flag("--if-exists", options->ifExists, "Take a file that is not there for a report without leaks");
    command.add_flag("--json", options->json, "Write one JSON object");
    command.add_flag("--csv", options->csv, "Write comma-separated values with a line of names");
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
