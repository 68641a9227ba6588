#include "tools/tuvo/model/Summary.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/Failure.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/Suggest.h"
#include "tools/tuvo/Table.h"
#include "tools/tuvo/model/IdText.h"
#include "tools/tuvo/model/Measure.h"

#include <TuvoUtil/StringMatch.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <ostream>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t MostIdItems = 8;
constexpr int MeasureDigits = 10;

std::string Count(std::uint64_t count)
{
    return std::to_string(count);
}

std::string Quantity(double value, const std::string& unit, int digits)
{
    return NumberText(value, digits) + (unit.empty() ? "" : ' ' + unit);
}

std::vector<std::int32_t> Rising(std::vector<std::int32_t> ids)
{
    if (!std::is_sorted(ids.begin(), ids.end()))
        std::sort(ids.begin(), ids.end());
    return ids;
}

SummaryTable CountElements(const Model& model)
{
    Table table({{"Count", Table::Right}, {"Type"}, {"Class"}, {"Ids"}});
    table.AddRow({Count(model.nodes.Count()), "nodes", "", CompactIds(model.nodes.ids, MostIdItems)});
    table.AddRow({Count(model.ElementCount()), "elements"});
    for (const ElementBlock& block : model.blocks) {
        const std::string nodes = " (" + Plural(static_cast<std::uint64_t>(block.type->nodeCount), "node") + ')';
        table.AddRow({Count(block.Count()), "  " + std::string(block.type->name) + nodes,
                      std::string(ClassName(block.type->elementClass)), CompactIds(Rising(block.ids), MostIdItems)});
    }
    return {"Contents", std::move(table), {}};
}

std::optional<SummaryTable> ListSets(const Model& model, const std::vector<std::size_t>& sets)
{
    if (sets.empty())
        return std::nullopt;
    Table table({{"Set"}, {"Kind"}, {"Size", Table::Right}, {"Ids"}});
    for (const std::size_t position : sets) {
        const Set& set = model.sets[position];
        table.AddRow({set.name, set.kind == SetKind::Node ? "nodes" : "elements", Count(set.ids.size()),
                      CompactIds(set.ids, MostIdItems)});
    }
    return SummaryTable{"Sets", std::move(table), {}};
}

std::optional<SummaryTable> MeasureExtent(const Model& model, const ModelUnits& units)
{
    const std::optional<Extent> extent = BoundingBox(model.nodes);
    if (!extent)
        return std::nullopt;
    const std::string unit = units.Label("Coordinate");
    Table table({{"Extent"}, {"From", Table::Right}, {"To", Table::Right}, {"Size", Table::Right}});
    for (std::size_t axis = 0; axis < 3; ++axis)
        table.AddRow({std::string(1, "xyz"[axis]), Quantity(extent->low[axis], unit, MeasureDigits),
                      Quantity(extent->high[axis], unit, MeasureDigits),
                      Quantity(extent->high[axis] - extent->low[axis], unit, MeasureDigits)});
    return SummaryTable{"Extent", std::move(table), {}};
}

std::optional<SummaryTable> ListMaterials(const Model& model, const ModelUnits& units)
{
    if (model.materials.empty())
        return std::nullopt;
    Table table({{"Material"}, {"Constant"}, {"Value"}});
    for (const Material& material : model.materials) {
        std::string name = material.name;
        if (material.values.empty())
            table.AddRow({name, "none"});
        for (const MaterialValue& value : material.values) {
            table.AddRow(
                {name, std::string(value.label), Quantity(value.value, units.Label(value.dataType), DefaultDigits)});
            name.clear();
        }
    }
    return SummaryTable{"Materials", std::move(table), {}};
}

std::optional<SummaryTable> WeighSolids(const Model& model, const SolidMeasures& measures, const ModelUnits& units)
{
    if (measures.materials.empty())
        return std::nullopt;
    Table table({{"Solids of"}, {"Elements", Table::Right}, {"Volume", Table::Right}, {"Mass", Table::Right}});
    const std::string volumeUnit = units.Label("Volume");
    const std::string massUnit = units.Label("Mass");
    const auto addRow = [&](const std::string& name, const MaterialMeasure& measure) {
        table.AddRow({name, Count(measure.elements), Quantity(measure.volume, volumeUnit, MeasureDigits),
                      measure.mass ? Quantity(*measure.mass, massUnit, MeasureDigits) : "no density"});
    };
    for (const MaterialMeasure& measure : measures.materials)
        addRow(measure.material ? model.materials[*measure.material].name : "no material", measure);
    if (measures.materials.size() > 1)
        addRow("all", Total(measures));
    SummaryTable summary = {"Volume and mass", std::move(table), {}};
    if (measures.insideOut > 0)
        summary.notes.push_back(Plural(measures.insideOut, "solid element") + " inside out");
    if (measures.incomplete > 0)
        summary.notes.push_back(Plural(measures.incomplete, "solid element") +
                                " without all corners, of no volume here");
    return summary;
}

struct ShownGuess
{
    const char* introduction;
    const char* fit;
    std::string systems;
    const std::vector<std::string>* reasons;
};

std::string Titles(const std::vector<int>& systems, const CatalogueFile& catalogue)
{
    std::string titles;
    for (const int system : systems)
        titles += (titles.empty() ? "" : " or ") + FindSystem(catalogue, system)->Title();
    return titles;
}

std::vector<ShownGuess> Judge(const std::vector<UnitGuess>& guesses, const CatalogueFile& catalogue)
{
    constexpr std::size_t MostShown = 3;
    constexpr double PoorFit = 0.7;  // twice or half of the real constants, as a mean
    std::vector<ShownGuess> shown;
    for (const UnitGuess& guess : guesses) {
        const bool isPoor = guess.distance > PoorFit;
        if (shown.size() == MostShown || (isPoor && !shown.empty()))
            break;
        ShownGuess& judged = shown.emplace_back();
        judged.introduction = isPoor              ? "No unit system fits well; the nearest: "
                              : shown.size() == 1 ? "Unit system: "
                                                  : "Less likely: ";
        judged.fit = isPoor ? "poor, but the best" : shown.size() == 1 ? "likely" : "less likely";
        judged.systems = Titles(guess.systems, catalogue);
        judged.reasons = &guess.reasons;
    }
    return shown;
}

}  // namespace

std::vector<SummaryTable> Summarise(const Model& model, const SolidMeasures& solids,
                                    const std::vector<std::size_t>& sets, const ModelUnits& units)
{
    std::vector<SummaryTable> tables = {CountElements(model)};
    for (const std::optional<SummaryTable>& table : {ListSets(model, sets), MeasureExtent(model, units),
                                                     ListMaterials(model, units), WeighSolids(model, solids, units)})
        if (table)
            tables.push_back(*table);
    return tables;
}

void WriteSummary(std::ostream& out, const Model& model, const std::vector<SummaryTable>& tables)
{
    if (!model.title.empty())
        out << Emphasised(Printable(model.title)) << "\n\n";
    const char* divide = "";
    for (const SummaryTable& summary : tables) {
        out << divide << summary.table.Text();
        for (const std::string& note : summary.notes)
            out << note << '\n';
        divide = "\n";
    }
}

SummaryTable ListGuesses(const std::vector<UnitGuess>& guesses, const CatalogueFile& catalogue)
{
    Table table({{"Unit system"}, {"Fit"}, {"Why"}});
    for (const ShownGuess& guess : Judge(guesses, catalogue)) {
        std::string systems = guess.systems;
        std::string fit = guess.fit;
        for (const std::string& reason : *guess.reasons)
            table.AddRow({std::exchange(systems, {}), std::exchange(fit, {}), reason});
    }
    return {"Guess at the unit system", std::move(table), {}};
}

void WriteGuesses(std::ostream& out, const std::vector<UnitGuess>& guesses, const CatalogueFile& catalogue)
{
    for (const ShownGuess& guess : Judge(guesses, catalogue)) {
        out << '\n' << guess.introduction << guess.systems << '\n';
        for (const std::string& reason : *guess.reasons)
            out << "  " << Printable(reason) << '\n';
    }
}

std::vector<std::size_t> SelectSets(const Model& model, const std::string& pattern)
{
    std::vector<std::size_t> sets(model.sets.size());
    std::iota(sets.begin(), sets.end(), std::size_t{0});
    if (pattern.empty())
        return sets;
    std::string copy = pattern;
    std::erase_if(
        sets, [&](std::size_t set) { return UtlStrMatchString(copy.data(), model.sets[set].name.c_str(), 1) == 0; });
    if (!sets.empty())
        return sets;
    std::vector<std::string> names;
    for (const Set& set : model.sets)
        names.push_back(set.name);
    throw Failure("there is no set " + Quoted(pattern) + DidYouMean(pattern, names));
}

}  // namespace tool
