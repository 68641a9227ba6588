// A finite-element model in memory: nodes, elements by type, sets, materials, and what was wrong in its files.
//
// Plain data in a few large arrays, so that the model takes little more memory than its numbers. What is not known is -1
// or empty. Numbers have no units: they stand in the unit system of whoever wrote the deck.
#pragma once

#include "tools/tuvo/model/ElementType.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

using Point = std::array<double, 3>;

// Ids rise strictly. `coordinates` has one point for each, in the model's own cartesian system.
struct Nodes
{
    std::vector<std::int32_t> ids;
    std::vector<Point> coordinates;

    std::size_t Count() const { return ids.size(); }
};

// All elements of one type, in the order of the deck.
struct ElementBlock
{
    const ElementType* type = nullptr;
    std::vector<std::int32_t> ids;
    std::vector<std::int32_t> nodes;  // type->nodeCount for each element: positions in Nodes; -1: none, or not defined

    std::size_t Count() const { return ids.size(); }
    const std::int32_t* NodesOf(std::size_t element) const
    {
        return nodes.data() + element * static_cast<std::size_t>(type->nodeCount);
    }
};

enum class SetKind : std::uint8_t
{
    Node,
    Element
};

struct Set
{
    std::string name;  // as it was first written
    SetKind kind = SetKind::Node;
    std::vector<std::int32_t> ids;  // of the model, rising strictly
};

// One constant of a material; `dataType` is the name of its data type in the unit catalogue.
struct MaterialValue
{
    std::string_view label;     // "E", "NU", "Density", "E1", ...: text of static storage
    std::string_view dataType;  // "Young's Modulus", ...; empty: a plain number
    double value = 0.0;         // at the first temperature of its table
};

struct Material
{
    std::string name;
    std::vector<MaterialValue> values;  // in the order of the deck

    std::optional<double> Find(std::string_view label) const;
};

// Which material the elements of a set are made of: positions in Model::sets and Model::materials.
struct Section
{
    std::size_t set = 0;
    std::size_t material = 0;
};

enum class Severity : std::uint8_t
{
    Warning,  // odd, and read as it was meant
    Error     // not read
};

struct Problem
{
    Severity severity = Severity::Error;
    std::string file;        // as it was named
    std::uint64_t line = 0;  // from 1; 0: the file as a whole
    std::string text;
};

// The first problems, and how many there were in all.
struct Problems
{
    static constexpr std::size_t MostKept = 100;

    std::vector<Problem> kept;
    std::uint64_t errors = 0;
    std::uint64_t warnings = 0;

    void Add(Problem problem);
};

// A type of element that a deck defines.
struct UserType
{
    std::string name;
    ElementType type;
};

struct Model
{
    Model() = default;
    Model(Model&&) = default;  // not copied: blocks point into userTypes
    Model& operator=(Model&&) = default;

    std::string title;  // of the heading; may be empty
    Nodes nodes;
    std::vector<ElementBlock> blocks;  // none is empty, and each type has one at most
    std::vector<Set> sets;
    std::vector<Material> materials;
    std::vector<Section> sections;
    std::deque<UserType> userTypes;  // which the deck itself defines
    Problems problems;

    std::size_t ElementCount() const;
};

// Whether a model is as it is said to be above: what rises, rises, and what stands for a place, stands for one.
bool IsValid(const Model& model);

// The position of an id in an array that rises strictly; -1 when it is not there.
std::ptrdiff_t FindId(const std::vector<std::int32_t>& ids, std::int32_t id);

}  // namespace tool
