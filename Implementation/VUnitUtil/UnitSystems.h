// Unit systems by the units they are made of.
#pragma once

#include "VUnit/Catalogue.h"

namespace units {

// The ids of four units; -1 for an abbreviation that is not in the catalogue.
catalogue::SystemUnits UnitsNamed(const char* length, const char* mass, const char* time, const char* heat);

// The first system of these units; one that is appended for them when there is none; null when memory is exhausted.
const _UnitSystemStr* FindOrAppendSystem(const catalogue::SystemUnits& units);

// Names in the catalogue's spelling for names in the solver's, or the other way round. A name that is spelt alike in
// both, null included, is given back itself.
struct UnitNames
{
    const char *length, *mass, *time, *heat;
};
UnitNames ToSolverSpelling(const UnitNames& names);
UnitNames ToCatalogueSpelling(const UnitNames& names);

}  // namespace units
