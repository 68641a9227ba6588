// tuvo model: what a finite-element deck holds.
#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/UnitSystems.h"
#include "tools/tuvo/model/ModelFile.h"
#include "tools/tuvo/model/ModelUnits.h"
#include "tools/tuvo/model/Summary.h"

#include <iostream>
#include <memory>
#include <optional>

namespace tool {
namespace {

struct Options
{
    std::string deck;
    std::string catalogue;
    std::string from;
    std::string to;
    std::string set;
    bool guess = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo model bracket.inp\n"
    "  tuvo model bracket.inp.gz --from mm,ton,sec --to m,kg,sec\n"
    "  tuvo model bracket.inp --set \"LOAD*\"\n"
    "  tuvo model wing.bdf --guess\n"
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

ExitCode Run(const Options& options)
{
    CheckOptions(options);
    std::optional<CatalogueFile> catalogue;
    if (!options.from.empty() || options.guess)
        catalogue = LoadCatalogue(options.catalogue);
    Model model = ReadModel(options.deck);
    PostProblems(model.problems);
    const std::vector<std::size_t> sets = SelectSets(model, options.set);
    const std::vector<UnitGuess> guesses = options.guess ? GuessUnits(model, *catalogue) : std::vector<UnitGuess>();
    const ModelUnits units = catalogue ? FindUnits(model, options, *catalogue) : ModelUnits();
    WriteSummary(std::cout, model, sets, units);
    if (options.guess)
        WriteGuesses(std::cout, guesses, *catalogue);
    return model.problems.errors > 0 ? WorkFailed : Done;
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
    command.add_flag("--guess", options->guess, "Propose the unit system from the materials");
    AddCatalogueOption(command, options->catalogue);
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
