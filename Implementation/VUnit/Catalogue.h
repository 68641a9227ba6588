// The process-wide unit catalogue: how its records are found, appended and given back.
//
// Found records are in the catalogue's own arrays: a pointer is valid until the next record of its kind is appended.
#pragma once

#include <TuvoUtil/Units.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace catalogue {

// Ids of the length, mass, time and heat unit of a system; the exponents of a data type in the same order.
struct SystemUnits
{
    std::int32_t length, mass, time, heat;
    bool operator==(const SystemUnits&) const = default;
};
struct Exponents
{
    std::int32_t length, mass, time, heat;
    bool operator==(const Exponents&) const = default;
};

inline SystemUnits UnitsOf(const _UnitSystemStr& system)
{
    return {system.lengthUnit, system.massUnit, system.timeUnit, system.heatUnit};
}

inline Exponents ExponentsOf(const _UnitDataTypeStr& type)
{
    return {type.lengthExponent, type.massExponent, type.timeExponent, type.heatExponent};
}

// The catalogue, made without records at the first call. `Exists` tells whether it was made.
bool Exists();
VUnit& Get();

// Changes whenever a record is appended; never 0.
extern std::uint32_t g_generation;

// What VUnitUtlMain keeps: the directory (taken over; null for none) and the id of the system without units (0 at
// start).
const char* Directory();
void SetDirectory(char* directory);
std::int32_t EmptySystemId();
void SetEmptySystemId(std::int32_t id);

// The first record with an id, an abbreviation, a name, ...; null when there is none, and for a null text.
const _UnitBaseTypeStr* FindUnit(std::int32_t id);
const _UnitBaseTypeStr* FindUnit(const char* abbreviation);
const _UnitSystemStr* FindSystem(std::int32_t id);
const _UnitSystemStr* FindSystem(const SystemUnits& units);
const _UnitSystemStr* FindSystemByDisplayName(const char* displayName);
const _UnitDataTypeStr* FindDataType(std::int32_t id);
const _UnitDataTypeStr* FindDataType(const char* name);
const _UnitDataTypeStr* FindDataTypeByViewerName(const char* viewerName);
const _UnitDataTypeStr* FindDataType(const Exponents& exponents);  // of those without a multiplier of their own

// The last data type with an id; null when there is none.
const _UnitDataTypeStr* FindLastDataType(std::int32_t id);

// Appends a record that is all zero; null when memory is exhausted. The caller fills it in before anything is searched,
// and its names must not be null then.
_UnitBaseTypeStr* AppendUnit();
_UnitSystemStr* AppendSystem();
_UnitDataTypeStr* AppendDataType();

// The lengths of the three lists, and cutting them back to earlier lengths. Only records that were never searched for
// may be cut off.
struct Lengths
{
    std::int32_t units, systems, dataTypes;
};
Lengths CurrentLengths();
void CutBackTo(const Lengths& lengths);

// Copies a text into a field of a record or a caller's buffer, cut to what fits with its terminator.
void CopyCut(char* target, std::size_t size, std::string_view text);

// Gives everything back, as if no catalogue had been made.
void ResetForTests();

}  // namespace catalogue
