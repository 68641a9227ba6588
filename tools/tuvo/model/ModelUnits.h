// The units of a model: labels for its numbers, conversion to another unit system, a guess at the one it is in.
#pragma once

#include "tools/tuvo/CatalogueFile.h"
#include "tools/tuvo/model/Model.h"

#include <string>
#include <string_view>
#include <vector>

namespace tool {

// How numbers of a model are labelled. Without a unit system they have no labels.
class ModelUnits
{
public:
    ModelUnits() = default;
    ModelUnits(const CatalogueFile& catalogue, int unitSystem) : m_catalogue(&catalogue), m_unitSystem(unitSystem) {}

    bool AreKnown() const { return m_catalogue != nullptr; }
    const UnitSystem* System() const { return AreKnown() ? FindSystem(*m_catalogue, m_unitSystem) : nullptr; }

    // The unit of a data type, given by its name in the catalogue; empty when it has none.
    std::string Label(std::string_view dataType) const;

private:
    const CatalogueFile* m_catalogue = nullptr;
    int m_unitSystem = 0;
};

// Converts all coordinates and all constants of materials.
void ConvertModel(Model& model, const CatalogueFile& catalogue, int from, int to);

// A unit system in which the materials of a model are like real ones.
struct UnitGuess
{
    std::vector<int> systems;          // ids: they differ in what no material of the model tells
    double distance = 0.0;             // from the nearest real materials: 0 the same, 1 a factor of e in each constant
    std::vector<std::string> reasons;  // a line for each material, with its name as the deck has it
};

// The likeliest first; none when no material has constants that tell.
std::vector<UnitGuess> GuessUnits(const Model& model, const CatalogueFile& catalogue);

}  // namespace tool
