#include "tools/tuvo/model/Model.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tool {
namespace {

bool RisesStrictly(const std::vector<std::int32_t>& ids)
{
    return std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<>()) == ids.end();
}

bool IsValidBlock(const ElementBlock& block, std::size_t nodeCount)
{
    const auto isPlace = [&](std::int32_t node) {
        return node == -1 || (node >= 0 && static_cast<std::size_t>(node) < nodeCount);
    };
    return block.type != nullptr && !block.ids.empty() &&
           block.nodes.size() == block.Count() * static_cast<std::size_t>(block.type->nodeCount) &&
           std::all_of(block.nodes.begin(), block.nodes.end(), isPlace);
}

}  // namespace

std::optional<double> Material::Find(std::string_view label) const
{
    for (const MaterialValue& value : values)
        if (value.label == label)
            return value.value;
    return std::nullopt;
}

void Problems::Add(Problem problem)
{
    ++(problem.severity == Severity::Error ? errors : warnings);
    if (kept.size() < MostKept)
        kept.push_back(std::move(problem));
}

std::size_t Model::ElementCount() const
{
    std::size_t count = 0;
    for (const ElementBlock& block : blocks)
        count += block.Count();
    return count;
}

bool IsValid(const Model& model)
{
    const auto isPlace = [&](const Section& section) {
        return section.set < model.sets.size() && model.sets[section.set].kind == SetKind::Element &&
               section.material < model.materials.size();
    };
    return RisesStrictly(model.nodes.ids) && model.nodes.ids.size() == model.nodes.coordinates.size() &&
           std::all_of(model.blocks.begin(), model.blocks.end(),
                       [&](const ElementBlock& block) { return IsValidBlock(block, model.nodes.Count()); }) &&
           std::all_of(model.sets.begin(), model.sets.end(), [](const Set& set) { return RisesStrictly(set.ids); }) &&
           std::all_of(model.sections.begin(), model.sections.end(), isPlace);
}

std::ptrdiff_t FindId(const std::vector<std::int32_t>& ids, std::int32_t id)
{
    const auto found = std::lower_bound(ids.begin(), ids.end(), id);
    return found != ids.end() && *found == id ? found - ids.begin() : -1;
}

}  // namespace tool
