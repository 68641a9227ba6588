// The text of a quantity's unit.
#pragma once

#include "VUnit/Catalogue.h"

#include <cstddef>

namespace units {

// What every output buffer for text has room for, the terminator included. Longer texts are cut.
inline constexpr std::size_t TextSize = 256;

// Writes the text of a quantity with these exponents from the abbreviations of these units: "m kg/sec^2".
void ComposeUnitText(const catalogue::SystemUnits& system, const catalogue::Exponents& exponents, char* text);

// Writes the unit of a data type in a system: its display unit, or else the composed text; nothing in a system without
// unit texts. Gives true for a display unit.
bool WriteUnitText(const _UnitDataTypeStr& type, const _UnitSystemStr& system, char* text);

}  // namespace units
