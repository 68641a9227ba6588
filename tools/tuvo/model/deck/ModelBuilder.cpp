#include "tools/tuvo/model/deck/ModelBuilder.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>

namespace tool {
namespace {

bool RisesStrictly(const std::vector<std::int32_t>& ids)
{
    return std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<>()) == ids.end();
}

std::string Subject(const ElementType& type, std::int32_t id)
{
    return "element " + std::to_string(id) + " (" + std::string(type.name) + ")";
}

// Whether an element is whole without the node at a position: springs and the like may end at nothing, and what lies
// between corners may be left out.
bool MayLack(const ElementType& type, int position)
{
    return type.elementClass == ElementClass::Other || position >= type.shape->cornerCount;
}

// Removes elements of a block; their positions rise.
void RemoveElements(ElementBlock& block, const std::vector<std::size_t>& removed)
{
    const auto nodeCount = static_cast<std::size_t>(block.type->nodeCount);
    std::size_t to = removed.empty() ? block.Count() : removed.front();
    auto next = removed.begin();
    for (std::size_t from = to; from < block.Count(); ++from) {
        if (next != removed.end() && *next == from) {
            ++next;
            continue;
        }
        block.ids[to] = block.ids[from];
        std::copy_n(block.nodes.data() + from * nodeCount, nodeCount, block.nodes.data() + to * nodeCount);
        ++to;
    }
    block.ids.resize(to);
    block.nodes.resize(to * nodeCount);
}

}  // namespace

std::string PlainName(std::string_view text)
{
    std::string name;
    std::copy_if(text.begin(), text.end(), std::back_inserter(name),
                 [](char c) { return c != ' ' && c != '\t' && c != '"'; });
    return name;
}

std::string UpperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) { return BuToUpper(c); });
    return upper;
}

// ---- Nodes ---------------------------------------------------------------------------------------------------------

void ModelBuilder::AddNode(std::int32_t id, const Point& point)
{
    Nodes& nodes = m_model.nodes;
    m_nodesRise = m_nodesRise && (nodes.ids.empty() || nodes.ids.back() < id);
    nodes.ids.push_back(id);
    nodes.coordinates.push_back(point);
}

// Sorts the nodes by their ids; of those with one id the last stays.
void ModelBuilder::FinishNodes()
{
    if (m_nodesRise)
        return;
    Nodes& nodes = m_model.nodes;
    std::vector<std::uint32_t> order(nodes.Count());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t left, std::uint32_t right) {
        return nodes.ids[left] != nodes.ids[right] ? nodes.ids[left] < nodes.ids[right] : left < right;
    });
    Nodes sorted;
    sorted.ids.reserve(order.size());
    sorted.coordinates.reserve(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i + 1 < order.size() && nodes.ids[order[i]] == nodes.ids[order[i + 1]])
            continue;
        sorted.ids.push_back(nodes.ids[order[i]]);
        sorted.coordinates.push_back(nodes.coordinates[order[i]]);
    }
    nodes = std::move(sorted);
}

// ---- Elements ------------------------------------------------------------------------------------------------------

const ElementType* ModelBuilder::AddUserType(const std::string& name, int nodeCount)
{
    if (FindUserType(name) != nullptr)
        return nullptr;
    UserType& added = m_model.userTypes.emplace_back();
    added.name = name;
    added.type = {added.name, nodeCount, ElementClass::Other, &NoShape()};
    return &added.type;
}

const ElementType* ModelBuilder::FindUserType(std::string_view name) const
{
    for (const UserType& user : m_model.userTypes)
        if (UpperCase(user.name) == UpperCase(name))
            return &user.type;
    return nullptr;
}

void ModelBuilder::SelectType(const ElementType* type)
{
    auto& blocks = m_model.blocks;
    if (m_block < blocks.size() && blocks[m_block].type == type)
        return;
    m_block = static_cast<std::size_t>(
        std::find_if(blocks.begin(), blocks.end(), [&](const ElementBlock& block) { return block.type == type; }) -
        blocks.begin());
    if (m_block < blocks.size())
        return;
    blocks.emplace_back().type = type;
    m_runs.emplace_back();
}

void ModelBuilder::AddElement(std::int32_t id, std::span<const std::int32_t> nodes, const Place& place)
{
    ElementBlock& block = m_model.blocks[m_block];
    std::vector<Run>& runs = m_runs[m_block];
    const std::size_t element = block.Count();
    const std::uint64_t ordinal = m_elementCount++;
    block.ids.push_back(id);
    block.nodes.insert(block.nodes.end(), nodes.begin(), nodes.end());
    if (!runs.empty() && runs.back().place.file == place.file) {
        Run& run = runs.back();
        const std::size_t behind = element - run.first;
        if (behind == 1) {
            run.lineStep = place.line - run.place.line;
            run.ordinalStep = ordinal - run.ordinal;
            return;
        }
        if (place.line == run.place.line + behind * run.lineStep && ordinal == run.ordinal + behind * run.ordinalStep)
            return;
    }
    runs.push_back({element, place, 0, ordinal, 0});
}

ModelBuilder::ElementPlace ModelBuilder::PlaceOf(std::size_t block, std::size_t element) const
{
    const std::vector<Run>& runs = m_runs[block];
    const Run& run = *std::prev(std::upper_bound(runs.begin(), runs.end(), element,
                                                 [](std::size_t e, const Run& other) { return e < other.first; }));
    const std::size_t behind = element - run.first;
    return {{run.place.file, run.place.line + behind * run.lineStep}, run.ordinal + behind * run.ordinalStep};
}

// Turns the ids of nodes into their positions.
void ModelBuilder::ResolveNodes(std::size_t number, const NodeIndex& index)
{
    ElementBlock& block = m_model.blocks[number];
    const int nodeCount = block.type->nodeCount;
    std::int32_t* node = block.nodes.data();
    for (std::size_t element = 0; element < block.Count(); ++element) {
        for (int position = 0; position < nodeCount; ++position, ++node) {
            const std::int32_t id = *node;
            *node = index.Find(id);
            if (*node >= 0 || (id == 0 && MayLack(*block.type, position)))
                continue;
            const std::string what = id == 0 ? " has no node " + std::to_string(position + 1)
                                             : " has the node " + std::to_string(id) + ", which is not defined";
            m_deck.Add(Severity::Error, PlaceOf(number, element).place,
                       Subject(*block.type, block.ids[element]) + what);
        }
    }
}

// Gives the ids of all elements, rising strictly.
std::vector<std::int32_t> ModelBuilder::FinishElements()
{
    std::vector<std::int32_t> ids;
    ids.reserve(m_model.ElementCount());
    const NodeIndex index(m_model.nodes.ids);
    for (std::size_t block = 0; block < m_model.blocks.size(); ++block) {
        ResolveNodes(block, index);
        const auto& own = m_model.blocks[block].ids;
        ids.insert(ids.end(), own.begin(), own.end());
    }
    if (RisesStrictly(ids))
        return ids;
    std::sort(ids.begin(), ids.end());
    std::vector<std::int32_t> repeated;
    for (std::size_t i = 1; i < ids.size(); ++i)
        if (ids[i] == ids[i - 1] && (repeated.empty() || repeated.back() != ids[i]))
            repeated.push_back(ids[i]);
    if (!repeated.empty())
        RemoveRedefined(repeated);
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

// Keeps of each of these elements what is defined last. `repeated` rises strictly.
void ModelBuilder::RemoveRedefined(const std::vector<std::int32_t>& repeated)
{
    std::vector<ElementPlace> last(repeated.size());
    const auto forEach = [&](auto use) {
        for (std::size_t number = 0; number < m_model.blocks.size(); ++number) {
            const auto& ids = m_model.blocks[number].ids;
            for (std::size_t element = 0; element < ids.size(); ++element)
                if (const std::ptrdiff_t found = FindId(repeated, ids[element]); found >= 0)
                    use(number, element, last[static_cast<std::size_t>(found)]);
        }
    };
    forEach([&](std::size_t number, std::size_t element, ElementPlace& kept) {
        const ElementPlace place = PlaceOf(number, element);
        if (place.ordinal >= kept.ordinal)
            kept = place;
    });
    std::vector<std::vector<std::size_t>> removed(m_model.blocks.size());
    forEach([&](std::size_t number, std::size_t element, const ElementPlace& kept) {
        if (PlaceOf(number, element).ordinal != kept.ordinal)
            removed[number].push_back(element);
    });
    for (std::size_t i = 0; i < repeated.size(); ++i)
        m_deck.Add(Severity::Warning, last[i].place,
                   "element " + std::to_string(repeated[i]) + " is defined again; this definition counts");
    for (std::size_t number = 0; number < m_model.blocks.size(); ++number)
        RemoveElements(m_model.blocks[number], removed[number]);
}

// ---- Sets, materials, sections -------------------------------------------------------------------------------------

IdRanges& ModelBuilder::SetOf(SetKind kind, std::string_view name, const Place& place)
{
    const auto [entry, isNew] =
        m_setPositions[static_cast<std::size_t>(kind)].try_emplace(UpperCase(name), m_sets.size());
    if (isNew) {
        m_model.sets.push_back({std::string(name), kind, {}});
        m_sets.push_back({{}, place});
    }
    return m_sets[entry->second].ranges;
}

const IdRanges* ModelBuilder::FindSet(SetKind kind, std::string_view name) const
{
    const Positions& positions = m_setPositions[static_cast<std::size_t>(kind)];
    const auto found = positions.find(UpperCase(name));
    return found != positions.end() ? &m_sets[found->second].ranges : nullptr;
}

Material& ModelBuilder::MaterialOf(std::string_view name)
{
    const auto [entry, isNew] = m_materialPositions.try_emplace(UpperCase(name), m_model.materials.size());
    if (isNew)
        m_model.materials.push_back({std::string(name), {}});
    return m_model.materials[entry->second];
}

void ModelBuilder::AddSection(std::string_view set, std::string_view material, const Place& place)
{
    m_sections.push_back({std::string(set), std::string(material), place});
}

void ModelBuilder::FinishSets(const std::vector<std::int32_t>& elements)
{
    for (std::size_t i = 0; i < m_sets.size(); ++i) {
        Set& set = m_model.sets[i];
        const bool holdsNodes = set.kind == SetKind::Node;
        IdRanges::Missing missing;
        set.ids = m_sets[i].ranges.Expand(holdsNodes ? m_model.nodes.ids : elements, missing);
        m_sets[i].ranges = {};
        if (missing.count == 0)
            continue;
        const std::string noun = holdsNodes ? "node" : "element";
        m_deck.Add(Severity::Warning, m_sets[i].place,
                   "the set " + Quoted(set.name) + " names " + Plural(missing.count, noun) + " not defined: " + noun +
                       ' ' + std::to_string(missing.first) + (missing.count > 1 ? " and others" : ""));
    }
}

void ModelBuilder::FinishSections()
{
    const Positions& sets = m_setPositions[static_cast<std::size_t>(SetKind::Element)];
    for (const NamedSection& section : m_sections) {
        const auto set = sets.find(UpperCase(section.set));
        const auto material = m_materialPositions.find(UpperCase(section.material));
        if (set == sets.end())
            m_deck.Add(Severity::Error, section.place, "there is no element set " + Quoted(section.set));
        else if (material == m_materialPositions.end())
            m_deck.Add(Severity::Error, section.place, "there is no material " + Quoted(section.material));
        else
            m_model.sections.push_back({set->second, material->second});
    }
}

void ModelBuilder::Finish()
{
    FinishNodes();
    const std::vector<std::int32_t> elements = FinishElements();
    std::erase_if(m_model.blocks, [](const ElementBlock& block) { return block.ids.empty(); });
    FinishSets(elements);
    FinishSections();
}

}  // namespace tool
