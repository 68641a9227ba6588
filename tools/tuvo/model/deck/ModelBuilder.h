// Makes a model of what a deck says piece by piece, in whatever order it stands there.
//
// A node or an element that is defined again is taken as it was defined last. Names are compared without case.
#pragma once

#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/deck/DeckText.h"
#include "tools/tuvo/model/deck/IdRanges.h"
#include "tools/tuvo/model/deck/NodeIndex.h"

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace tool {

class ModelBuilder
{
public:
    ModelBuilder(Model& model, DeckText& deck) : m_model(model), m_deck(deck) {}

    void AddNode(std::int32_t id, const Point& point);
    std::size_t NodeCount() const { return m_model.nodes.Count(); }
    Nodes& NodesSoFar() { return m_model.nodes; }  // in the order of the deck; an id may stand there again

    // Elements of the type are added until the next call. `nodes` are ids, 0 for none; there are type->nodeCount.
    void SelectType(const ElementType* type);
    void AddElement(std::int32_t id, std::span<const std::int32_t> nodes, const Place& place);

    // A type that the deck defines; null when it has one of that name.
    const ElementType* AddUserType(const std::string& name, int nodeCount);
    const ElementType* FindUserType(std::string_view name) const;

    IdRanges& SetOf(SetKind kind, std::string_view name, const Place& place);  // made when there is none
    const IdRanges* FindSet(SetKind kind, std::string_view name) const;        // null: there is none

    Material& MaterialOf(std::string_view name);  // made when there is none

    // Says what the elements of a set are made of; both may come later.
    void AddSection(std::string_view set, std::string_view material, const Place& place);

    // Puts everything in order and tells what is missing. Nothing is added afterwards.
    void Finish();

private:
    // Where elements stand that follow one another evenly, in the deck and among all of its elements.
    struct Run
    {
        std::size_t first;  // element of the block
        Place place;
        std::uint64_t lineStep;
        std::uint64_t ordinal;
        std::uint64_t ordinalStep;
    };
    struct NamedSet
    {
        IdRanges ranges;
        Place place;
    };
    struct NamedSection
    {
        std::string set;
        std::string material;
        Place place;
    };
    struct ElementPlace
    {
        Place place;
        std::uint64_t ordinal;  // among all elements, in the order of the deck
    };
    using Positions = std::unordered_map<std::string, std::size_t>;

    ElementPlace PlaceOf(std::size_t block, std::size_t element) const;
    void FinishNodes();
    void ResolveNodes(std::size_t block, const NodeIndex& index);
    std::vector<std::int32_t> FinishElements();
    void RemoveRedefined(const std::vector<std::int32_t>& ids);
    void FinishSets(const std::vector<std::int32_t>& elements);
    void FinishSections();

    Model& m_model;
    DeckText& m_deck;
    bool m_nodesRise = true;
    std::size_t m_block = 0;
    std::uint64_t m_elementCount = 0;
    std::vector<std::vector<Run>> m_runs;  // one list for each block
    std::vector<NamedSet> m_sets;          // one for each set of the model
    Positions m_setPositions[2];
    Positions m_materialPositions;
    std::vector<NamedSection> m_sections;
};

// A name without blanks and quotes, as decks compare it but for case.
std::string PlainName(std::string_view text);

std::string UpperCase(std::string_view text);

}  // namespace tool
