// What a data type in a unit system is for conversion, worked out once and kept.
#pragma once

#include <cstdint>

namespace conversion {

// Offsets that do not apply are 0, so that subtracting them changes nothing, not even the sign of a zero.
struct Quantity
{
    std::int32_t dataTypeId;
    std::int32_t systemId;
    std::uint32_t generation;  // of the catalogue for which the rest was worked out; 0 for none
    bool hasSystem;            // the system is in the catalogue
    bool hasMultiplier;        // other than 1
    bool isTemperature;        // nothing but a positive power of heat
    double factor;             // this many of its unit make one reference unit
    double offset;             // of the scales of its length, mass and time units, in reference units
    double heatOffset;         // of a temperature's scale, in its unit
    double minusHeatOffset;
    double multiplier;
};

// Valid until the next call.
const Quantity& QuantityOf(std::int32_t dataTypeId, std::int32_t systemId);

}  // namespace conversion
