// tuvo model: what a finite-element deck holds.
#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/UnitSystems.h"
#include "tools/tuvo/model/Measure.h"
#include "tools/tuvo/model/ModelFile.h"
#include "tools/tuvo/model/ModelOutputs.h"
#include "tools/tuvo/model/ModelUnits.h"
#include "tools/tuvo/model/ModelValues.h"
#include "tools/tuvo/model/SelfCheck.h"
#include "tools/tuvo/model/Summary.h"

#include <TuvoUtil/Benchmark.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>

namespace tool {
namespace {

using tuvo::benchmark::BENCH_LEVEL_1;
using tuvo::benchmark::Benchmark;

struct Options
{
    std::string deck;
    std::string catalogue;
    std::string from;
    std::string to;
    std::string set;
    std::vector<std::string> expressions;
    bool guess = false;
    OutputOptions outputs;
    bool bench = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo model bracket.inp\n"
    "  tuvo model bracket.inp.gz --from mm,ton,sec --to m,kg,sec\n"
    "  tuvo model bracket.inp --set \"LOAD*\"\n"
    "  tuvo model wing.bdf --guess\n"
    "  tuvo model wing.bdf --eval \"<mass> / <volume>\"\n"
    "  tuvo model bracket.inp --html bracket.html --colour-sets\n"
    "  tuvo model bracket.inp --write bracket.bin --report bracket.txt\n"
    "\n"
    "DECK is a deck of CalculiX or a bulk deck of NASTRAN, also packed by gzip or bzip2. What is wrong in it is told\n"
    "with file and line, the rest is read; the exit code is then 1.";

void PostProblems(const Problems& problems)
{
    for (const Problem& problem : problems.kept) {
        const std::string line = problem.line > 0 ? ':' + std::to_string(problem.line) : std::string();
        const auto post = problem.severity == Severity::Error ? PostError : PostWarning;
        post(Printable(problem.file) + line + ": " + problem.text);
    }
    const std::uint64_t all = problems.errors + problems.warnings;
    if (all > problems.kept.size())
        PostWarning("more is wrong, in all " + Plural(problems.errors, "error") + " and " +
                    Plural(problems.warnings, "warning"));
}

void CheckOptions(const Options& options)
{
    if (!options.to.empty() && options.from.empty())
        throw Failure("--to needs --from, the unit system that the deck is in", WrongUsage);
}

// What is known of the model's units; the model is converted when another system is asked for.
ModelUnits FindUnits(Model& model, const Options& options, const CatalogueFile& catalogue)
{
    if (options.from.empty())
        return {};
    const int from = FindUnitSystem(catalogue, options.from);
    if (options.to.empty())
        return {catalogue, from};
    const int to = FindUnitSystem(catalogue, options.to);
    ConvertModel(model, catalogue, from, to);
    return {catalogue, to};
}

Model Read(const std::string& deck)
{
    const Benchmark section(L"read the deck", BENCH_LEVEL_1);
    return ReadModel(deck);
}

CatalogueFile Load(const std::string& catalogue)
{
    const Benchmark section(L"load the unit catalogue", BENCH_LEVEL_1);
    return LoadCatalogue(catalogue);
}

std::vector<SummaryTable> Measure(const Model& model, const Options& options, const std::vector<std::size_t>& sets,
                                  const ModelUnits& units)
{
    const Benchmark section(L"measure the model", BENCH_LEVEL_1);
    const SolidMeasures solids = MeasureSolids(model);
    std::vector<SummaryTable> tables = Summarise(model, solids, sets, units);
    if (!options.expressions.empty())
        tables.push_back(Evaluate(options.expressions, ModelValues(model, solids)));
    return tables;
}

ExitCode Show(const Options& options, const std::optional<CatalogueFile>& catalogue)
{
    ModelOutputs outputs(options.outputs, options.deck);
    Model model = Read(options.deck);
    PostProblems(model.problems);
    const std::vector<std::size_t> sets = SelectSets(model, options.set);
    const std::vector<UnitGuess> guesses = options.guess ? GuessUnits(model, *catalogue) : std::vector<UnitGuess>();
    const ModelUnits units = catalogue ? FindUnits(model, options, *catalogue) : ModelUnits();
    std::vector<SummaryTable> tables = Measure(model, options, sets, units);
    WriteSummary(std::cout, model, tables);
    if (!guesses.empty()) {
        WriteGuesses(std::cout, guesses, *catalogue);
        tables.push_back(ListGuesses(guesses, *catalogue));
    }
    const bool cannotGuess = options.guess && guesses.empty();
    if (cannotGuess)
        PostError("the unit system cannot be guessed: no material has a modulus, a density or a thermal constant");
    outputs.Write(model, sets, tables, units);
    return model.problems.errors > 0 || cannotGuess ? WorkFailed : Done;
}

// Asks the library once for all that will be asked, so that what it keeps of the catalogue for good is there before the
// leak check starts.
void Rehearse(const Options& options, const CatalogueFile& catalogue)
{
    Model sample;
    sample.materials.push_back({"", {{"E", "Young's Modulus", 1.0}, {"Density", "Density", 1.0}}});
    GuessUnits(sample, catalogue);
    FindUnits(sample, options, catalogue).Label("Density");
}

ExitCode Run(const Options& options)
{
    CheckOptions(options);
    if (options.bench)
        MeasureTimes();
    const Benchmark section(L"tuvo model", BENCH_LEVEL_1);
    std::optional<CatalogueFile> catalogue;
    if (!options.from.empty() || options.guess)
        catalogue = Load(options.catalogue);
    if (options.outputs.leaks.empty())
        return Show(options, catalogue);
    OutputFile report(options.outputs.leaks);
    if (catalogue)
        Rehearse(options, *catalogue);
    LeakCheck check;
    const ExitCode code = Show(options, catalogue);
    return std::max(code, check.Report(report));
}

}  // namespace

Command AddModel(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("model", "Show what a finite-element deck holds");
    const auto options = std::make_shared<Options>();
    command.add_option("DECK", options->deck, "The deck")->required()->check(NotEmpty())->type_name("");
    command.add_option("--from", options->from, "The unit system of the deck; labels all values")
        ->check(NotEmpty())
        ->type_name("SYSTEM");
    command.add_option("--to", options->to, "Convert all values to this unit system")
        ->check(NotEmpty())
        ->type_name("SYSTEM");
    command.add_option("--set", options->set, "Show only the sets whose names match, with * and ?")
        ->check(NotEmpty())
        ->type_name("PATTERN");
    command
        .add_option("--eval", options->expressions,
                    "Evaluate an expression of the model's numbers, as \"<mass>/<volume>\"")
        ->check(NotEmpty())
        ->type_name("EXPR")
        ->allow_extra_args(false);
    command.add_flag("--guess", options->guess, "Propose the unit system from the materials");
    command.add_flag("--bench", options->bench, "Show how long each part of the work took");
    AddOutputOptions(command, options->outputs);
    AddCatalogueOption(command, options->catalogue);
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
