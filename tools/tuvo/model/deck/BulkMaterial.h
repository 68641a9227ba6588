// The material cards of a NASTRAN deck: MAT1, MAT2, MAT3, MAT4, MAT5, MAT8, MAT9, MAT10.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tool {

// A constant, by its field behind the id of the material.
struct BulkConstant
{
    std::uint8_t field;
    std::string_view label;  // as in MaterialValue
    std::string_view dataType;
};

// The constants of a card; none when it is no material.
std::span<const BulkConstant> BulkConstants(std::string_view card);

}  // namespace tool
