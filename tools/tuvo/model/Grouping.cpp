#include "tools/tuvo/model/Grouping.h"

#include <algorithm>
#include <numeric>

namespace tool {
namespace {

// Groups before they are limited in number: their names, and the one of each element.
struct Assignment
{
    std::vector<std::string> names;
    std::vector<std::vector<std::uint32_t>> groupOf;
};

Grouping Limited(const Assignment& assignment)
{
    const std::size_t count = assignment.names.size();
    std::vector<std::uint64_t> sizes(count, 0);
    for (const auto& block : assignment.groupOf)
        for (const std::uint32_t group : block)
            ++sizes[group];

    std::vector<std::size_t> shown;  // in their own order
    for (std::size_t group = 0; group < count; ++group)
        if (sizes[group] > 0)
            shown.push_back(group);
    if (shown.size() > Grouping::MostGroups) {
        std::stable_sort(shown.begin(), shown.end(), [&](std::size_t a, std::size_t b) { return sizes[a] > sizes[b]; });
        shown.resize(Grouping::MostGroups - 1);
        std::sort(shown.begin(), shown.end());
    }

    Grouping grouping;
    constexpr std::uint8_t Others = Grouping::MostGroups - 1;
    std::vector<std::uint8_t> place(count, Others);
    for (const std::size_t group : shown) {
        place[group] = static_cast<std::uint8_t>(grouping.groups.size());
        grouping.groups.push_back({assignment.names[group], sizes[group]});
        sizes[group] = 0;
    }
    if (const auto rest = std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{0}); rest > 0)
        grouping.groups.push_back({"others", rest});
    for (const auto& block : assignment.groupOf) {
        std::vector<std::uint8_t>& to = grouping.groupOf.emplace_back(block.size());
        std::transform(block.begin(), block.end(), to.begin(), [&](std::uint32_t group) { return place[group]; });
    }
    return grouping;
}

// An element by its id.
struct Element
{
    std::int32_t id;
    std::uint32_t block;
    std::size_t position;
};

std::vector<Element> ElementsById(const Model& model)
{
    std::vector<Element> elements;
    elements.reserve(model.ElementCount());
    for (std::uint32_t block = 0; block < model.blocks.size(); ++block)
        for (std::size_t i = 0; i < model.blocks[block].Count(); ++i)
            elements.push_back({model.blocks[block].ids[i], block, i});
    std::sort(elements.begin(), elements.end(), [](const Element& a, const Element& b) { return a.id < b.id; });
    return elements;
}

}  // namespace

Grouping GroupByType(const Model& model)
{
    Assignment assignment;
    for (const ElementBlock& block : model.blocks) {
        assignment.groupOf.emplace_back(block.Count(), static_cast<std::uint32_t>(assignment.names.size()));
        assignment.names.push_back(std::string(block.type->name) + " (" + std::to_string(block.type->nodeCount) +
                                   (block.type->nodeCount == 1 ? " node)" : " nodes)"));
    }
    return Limited(assignment);
}

Grouping GroupBySet(const Model& model, const std::vector<std::size_t>& sets)
{
    Assignment assignment;
    std::vector<const Set*> chosen;
    for (const std::size_t set : sets)
        if (model.sets[set].kind == SetKind::Element) {
            assignment.names.push_back(model.sets[set].name);
            chosen.push_back(&model.sets[set]);
        }
    std::vector<std::size_t> bySize(chosen.size());  // the largest first, so that smaller ones take their elements over
    std::iota(bySize.begin(), bySize.end(), std::size_t{0});
    std::stable_sort(bySize.begin(), bySize.end(),
                     [&](std::size_t a, std::size_t b) { return chosen[a]->ids.size() > chosen[b]->ids.size(); });

    assignment.names.emplace_back("in no set");
    for (const ElementBlock& block : model.blocks)
        assignment.groupOf.emplace_back(block.Count(), static_cast<std::uint32_t>(chosen.size()));
    const std::vector<Element> elements = ElementsById(model);
    for (const std::size_t group : bySize)
        for (const std::int32_t id : chosen[group]->ids) {
            const auto found =
                std::lower_bound(elements.begin(), elements.end(), id,
                                 [](const Element& element, std::int32_t wanted) { return element.id < wanted; });
            if (found != elements.end() && found->id == id)
                assignment.groupOf[found->block][found->position] = static_cast<std::uint32_t>(group);
        }
    return Limited(assignment);
}

}  // namespace tool
