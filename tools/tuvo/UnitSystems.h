// Unit systems as the user names them.
#pragma once

#include "tools/tuvo/CatalogueFile.h"

#include <array>
#include <string>

namespace tool {

// Unit abbreviations in the order length, mass, time, heat.
using FourUnits = std::array<std::string, 4>;

// The id of the unit system that a text means:
//  - the display name or name of a system of the catalogue, in any case, or its id;
//  - a list of its units, "mm,ton,sec,kelvin", also as symbols of temperatures ("degC") and in the solver's
//    spelling ("INCH"); the fourth may be missing and is then kelvin;
//  - such a list with a force in place of the mass, "in,lbf,sec": the mass is then the one that makes this the
//    system's own unit of force.
// Throws Failure, with the nearest names where there are some.
int FindUnitSystem(const CatalogueFile& catalogue, const std::string& text);

FourUnits UnitsOfSystem(int unitSystem);

}  // namespace tool
