// The cards of a CalculiX deck that give constants of a material: how many numbers they hold, and what these are.
#pragma once

#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/deck/KeywordCard.h"

#include <span>
#include <string_view>

namespace tool {

struct ConstantLabel
{
    std::string_view label;
    std::string_view dataType;  // as in MaterialValue
};

// The constants of one temperature, in the order of their card; null when the card gives none that the model has.
// Empty when the card has a TYPE that is not known.
const std::span<const ConstantLabel>* FindConstants(const KeywordCard& card);

// Removes what an earlier card of this keyword gave, whatever its TYPE.
void RemoveConstants(Material& material, std::string_view keyword);

}  // namespace tool
