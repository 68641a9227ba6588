#include "tools/tuvo/model/ModelValues.h"

#include "tools/tuvo/Failure.h"
#include "tools/tuvo/NumberText.h"

#include <optional>
#include <utility>

namespace tool {
namespace {

void AddSolids(const SolidMeasures& measures, Variables& values)
{
    if (measures.materials.empty())
        return;
    const MaterialMeasure total = Total(measures);
    values["volume"] = total.volume;
    if (total.mass)
        values["mass"] = *total.mass;
}

}  // namespace

Variables ModelValues(const Model& model, const SolidMeasures& solids)
{
    Variables values;
    for (const Material& material : model.materials)
        for (const MaterialValue& value : material.values)
            values[material.name + ' ' + std::string(value.label)] = value.value;
    values["nodes"] = static_cast<double>(model.nodes.Count());
    values["elements"] = static_cast<double>(model.ElementCount());
    if (const std::optional<Extent> extent = BoundingBox(model.nodes))
        for (std::size_t axis = 0; axis < 3; ++axis)
            values[std::string(1, "xyz"[axis])] = extent->high[axis] - extent->low[axis];
    AddSolids(solids, values);
    return values;
}

SummaryTable Evaluate(const std::vector<std::string>& expressions, const Variables& values)
{
    Table table({{"Expression"}, {"Value", Table::Right}});
    for (const std::string& expression : expressions) {
        double value = 0.0;
        if (const std::string problem = EvaluateExpression(expression, values, value); !problem.empty())
            throw Failure(problem);
        table.AddRow({expression, NumberText(value)});
    }
    return {"Expressions", std::move(table), {}};
}

}  // namespace tool
