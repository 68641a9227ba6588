// Which group each element of a model belongs to: the ones that a picture shows in one colour.
#pragma once

#include "tools/tuvo/model/Model.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tool {

struct Group
{
    std::string name;
    std::uint64_t elements = 0;
};

struct Grouping
{
    static constexpr std::size_t MostGroups = 8;  // the smallest ones of more share the last

    std::vector<Group> groups;                       // none is empty
    std::vector<std::vector<std::uint8_t>> groupOf;  // [block][element]: position in groups
};

Grouping GroupByType(const Model& model);

// By the element sets among `sets` (positions in Model::sets): an element belongs to the smallest one that holds it.
Grouping GroupBySet(const Model& model, const std::vector<std::size_t>& sets);

}  // namespace tool
