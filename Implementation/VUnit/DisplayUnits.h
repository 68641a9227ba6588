// The list of a data type's display units, "0:N;1:N;7:lbf": unit systems with the name that the unit has there.
#pragma once

#include <TuvoUtil/Units.h>

#include <string_view>

// Reads a list, which ends with a terminator, into a data type that has no display units yet. List and entries are split
// by the rules of FieldWalker; an entry that has not two parts makes a display unit that is all zero. What a name leaves
// of its field stays as the allocator gave it. False, with the type unchanged, when memory is exhausted.
bool ReadDisplayUnits(std::string_view list, _UnitDataTypeStr& type);
