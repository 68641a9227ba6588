// tuvo units: what stands in the unit catalogue, and whether it is in order.
#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/CatalogueFile.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Conversion.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/Table.h"

#include <TuvoUtil/Units.h>

#include <algorithm>
#include <iostream>
#include <memory>

namespace tool {
namespace {

struct Options
{
    std::string catalogue;
    std::string type;
    bool listsTypes = false;
    bool listsSystems = false;
    bool listsUnits = false;
    bool checks = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo units                   the catalogue in numbers\n"
    "  tuvo units --systems         all unit systems\n"
    "  tuvo units --type            all data types\n"
    "  tuvo units --type Pressure   one data type and its unit in every system\n"
    "  tuvo units --check --catalogue draft/unit.xml";

std::string AbbreviationOf(const CatalogueFile& catalogue, int unit)
{
    const BaseUnit* const found = FindUnit(catalogue, unit);
    return found != nullptr ? found->abbreviation : "-";
}

bool HasUnits(const CatalogueFile& catalogue, const UnitSystem& system)
{
    return std::all_of(system.units.begin(), system.units.end(),
                       [&](int unit) { return FindUnit(catalogue, unit) != nullptr; });
}

// "L^-1 M T^-2"; "-" for a quantity without a dimension.
std::string Dimension(const DataType& type)
{
    constexpr std::array<const char*, 4> Letters = {"L", "M", "T", "H"};
    std::string text;
    for (std::size_t i = 0; i < Letters.size(); ++i)
        if (const int exponent = type.exponents[i]; exponent != 0)
            text += (text.empty() ? "" : " ") + std::string(Letters[i]) +
                    (exponent == 1 ? "" : '^' + std::to_string(exponent));
    return text.empty() ? "-" : text;
}

void PrintOverview(const CatalogueFile& catalogue)
{
    std::string kinds;
    for (std::size_t i = 0; i < BaseTypeNames.size(); ++i) {
        const auto count = std::count_if(catalogue.units.begin(), catalogue.units.end(),
                                         [i](const BaseUnit& unit) { return unit.baseType == i; });
        kinds += (kinds.empty() ? "" : ", ") + std::string(BaseTypeNames[i]) + ' ' + std::to_string(count);
    }
    Table table({{""}, {"", Table::Right}, {""}});
    table.AddRow({"Base units", std::to_string(catalogue.units.size()), kinds});
    table.AddRow({"Unit systems", std::to_string(catalogue.systems.size())});
    table.AddRow({"Data types", std::to_string(catalogue.types.size())});
    std::cout << "Unit catalogue " << catalogue.path << "\n\n"
              << table.Text()
              << "\n--units, --systems and --type list them, --type NAME shows one, --check verifies all.\n";
}

void PrintUnits(const CatalogueFile& catalogue)
{
    Table table({{"kind"}, {"id", Table::Right}, {"unit"}, {"name"}, {"per reference unit"}, {"offset"}});
    for (const BaseUnit& unit : catalogue.units)
        table.AddRow({BaseTypeNames[unit.baseType], std::to_string(unit.id), unit.abbreviation, unit.name,
                      NumberText(unit.factor), unit.offset != 0.0 ? NumberText(unit.offset) : ""});
    std::cout << table.Text();
}

void PrintSystems(const CatalogueFile& catalogue)
{
    Table table({{"id", Table::Right}, {"display name"}, {"name"}, {"length"}, {"mass"}, {"time"}, {"heat"}});
    for (const UnitSystem& system : catalogue.systems) {
        std::vector<std::string> row = {std::to_string(system.id), system.displayName, system.name};
        for (const int unit : system.units)
            row.push_back(AbbreviationOf(catalogue, unit));
        table.AddRow(std::move(row));
    }
    std::cout << table.Text();
}

void PrintTypes(const CatalogueFile& catalogue)
{
    const int baseSystem = VUnitUtlGetBaseUnitSystemId();
    Table table({{"id", Table::Right}, {"data type"}, {"dimension"}, {"SI unit"}, {"viewer name"}});
    for (const DataType& type : catalogue.types)
        table.AddRow({std::to_string(type.id), type.name, Dimension(type), UnitLabel(catalogue, type, baseSystem),
                      type.viewerName});
    std::cout << table.Text();
}

void PrintType(const CatalogueFile& catalogue, const DataType& type)
{
    Table facts({{""}, {""}});
    facts.AddRow({"Data type", type.name});
    facts.AddRow({"Id", std::to_string(type.id)});
    facts.AddRow({"Dimension", Dimension(type)});
    if (type.multiplier)
        facts.AddRow({"Multiplier", NumberText(*type.multiplier)});
    if (!type.viewerName.empty())
        facts.AddRow({"Viewer name", type.viewerName});
    if (IsIndependentOfSystem(type)) {
        const std::string unit = UnitLabel(catalogue, type, VUnitUtlGetBaseUnitSystemId());
        facts.AddRow({"Unit", (unit.empty() ? "none" : unit) + " in all systems"});
        std::cout << facts.Text();
        return;
    }
    std::cout << facts.Text() << '\n';

    Table units({{"id", Table::Right}, {"system"}, {"unit"}});
    for (const UnitSystem& system : catalogue.systems)
        if (HasUnits(catalogue, system))
            units.AddRow({std::to_string(system.id), system.Title(), UnitLabel(catalogue, type, system.id)});
    std::cout << units.Text();
}

ExitCode Check(const CatalogueFile& catalogue)
{
    int roundTrips = 0;
    const std::vector<std::string> problems = CheckCatalogue(catalogue, roundTrips);
    for (const std::string& problem : problems)
        std::cout << problem << '\n';
    if (!problems.empty())
        throw Failure(catalogue.path + ": " + Plural(problems.size(), "problem"));
    std::cout << catalogue.path << ": " << Plural(catalogue.units.size(), "base unit") << ", "
              << Plural(catalogue.systems.size(), "unit system") << ", " << Plural(catalogue.types.size(), "data type")
              << ", " << Plural(static_cast<std::size_t>(roundTrips), "conversion") << " there and back: no problems\n";
    return Done;
}

ExitCode Run(const Options& options)
{
    const CatalogueFile catalogue = LoadCatalogue(options.catalogue);
    if (!options.listsTypes && !options.listsSystems && !options.listsUnits && !options.checks)
        PrintOverview(catalogue);
    if (options.listsSystems)
        PrintSystems(catalogue);
    if (options.listsUnits)
        PrintUnits(catalogue);
    if (options.listsTypes && options.type.empty())
        PrintTypes(catalogue);
    if (options.listsTypes && !options.type.empty())
        PrintType(catalogue, FindDataType(catalogue, options.type));
    return options.checks ? Check(catalogue) : Done;
}

}  // namespace

Command AddUnits(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("units", "Show or check the unit catalogue");
    const auto options = std::make_shared<Options>();
    CLI::Option* const type =
        command.add_option("--type", options->type, "List all data types, or show one by its name or id")
            ->expected(0, 1)
            ->type_name("[TYPE]");
    command.add_flag("--systems", options->listsSystems, "List the unit systems");
    command.add_flag("--units", options->listsUnits, "List the base units with their factors");
    command.add_flag("--check", options->checks, "Verify the catalogue; the exit code is 1 when something is wrong");
    AddCatalogueOption(command, options->catalogue);
    command.footer(Examples);
    return {&command, [options, type] {
                options->listsTypes = type->count() > 0;
                return Run(*options);
            }};
}

}  // namespace tool
