// What a data type in a unit system is for conversion, worked out once and kept.
#pragma once

#include <cstdint>

namespace conversion {

struct Quantity
{
    std::int32_t dataTypeId;
    std::int32_t systemId;
    std::uint32_t generation;  // of the catalogue for which the rest was worked out
    bool hasSystem;            // the system is in the catalogue; else only the multiplier counts
    bool isTemperature;        // nothing but a positive power of heat
    double factor;             // this many of its unit make one reference unit
    double offset;             // of the scales of its length, mass and time units, in reference units
    double heatOffset;         // of its temperature scale, in its unit
    double multiplier;
};

// Valid until the next call.
const Quantity& QuantityOf(std::int32_t dataTypeId, std::int32_t systemId);

}  // namespace conversion
