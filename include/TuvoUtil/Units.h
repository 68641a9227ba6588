// The physical units of engineering models: a catalogue read from a file, conversion between unit systems, unit texts.
//
// The catalogue is process-wide and holds three lists in the order of its file: base units (metre, pound, ...), unit
// systems (one length, mass, time and heat unit each) and data types (physical quantities, given by their exponents of
// length, mass, time and heat). A value "of data type t in system s" stands in the unit that these two make together.
//
//   VUnitUtlMain("/opt/tuvo/data");                              // first of all: reads unit.xml there
//   const int mm = VUnitUtlGetUnitSystemId("mm", "ton", "sec", "kelvin");
//   const int si = VUnitUtlGetBaseUnitSystemId();
//   const int area = VUnitUtlGetDataTypeId("Area");
//   double squareMetres;
//   VUnitUtlConvertFromOneToAnother(area, area, mm, si, 2500.0, &squareMetres);   // 0.0025
//
// Rules for all of it:
//  - Names are narrow text and compared without the case of ASCII letters, unless said otherwise. The first match in
//    the order of the catalogue wins. A null name is the name of nothing.
//  - Ids are those of the file. They need not be unique; "not found" is -1 unless said otherwise.
//  - Any query made before VUnitUtlMain leaves the process with an empty catalogue for good.
//  - An output buffer for text needs 256 bytes; a longer text is cut to 255 characters. A null output is skipped.
//  - Pointers to records stay valid until the next record of their kind is appended, names as long as the process.
//  - Exhausted memory gives the result of "not found", and the catalogue stays as it was.
//  - Lookups by id, name, exponents or units cost the same however long the lists are.
//  - One thread at a time; the functions of the fixed length table may be called from any thread.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuString.h>

#include <cstddef>
#include <cstdint>

// ---- Records -------------------------------------------------------------------------------------------------------

// A base unit, as "Millimeter", or a constant in which quantities are counted. The texts belong to the catalogue.
struct _UnitBaseTypeStr
{
    char* name;              // full name
    char* abbreviation;      // what units are named by everywhere else
    std::int32_t id;         // what systems refer to
    std::int32_t baseType;   // 0 length, 1 mass, 2 time, 3 heat, 4 constant
    double conversionValue;  // this many of the unit make one reference unit of its base type
    double additiveValue;    // offset of a temperature scale, else 0
};

// A unit system: a base unit for each of length, mass, time and heat.
struct _UnitSystemStr
{
    char name[256];           // the name that is looked up
    char displayName[256];    // what a list of systems shows; may be empty
    std::int32_t id;          // what models refer to
    std::int32_t lengthUnit;  // id of a base unit, as in the next three; -1 for none
    std::int32_t massUnit;    // of mass
    std::int32_t timeUnit;    // of time
    std::int32_t heatUnit;    // of heat
};

// The name that a quantity's unit has in one unit system in place of the composed one ("N" for "m kg/sec^2").
struct _UnitDisplayUnitStr
{
    char unitName[256];     // the name
    std::int32_t systemId;  // the system in which it holds
};

// A data type: a physical quantity and its dimension. Texts and display units belong to the catalogue.
struct _UnitDataTypeStr
{
    char* name;                         // the quantity, as "Pressure"
    std::int32_t id;                    // what models refer to
    std::int32_t lengthExponent;        // the dimension: exponent of length
    std::int32_t massExponent;          // of mass
    std::int32_t timeExponent;          // of time
    std::int32_t heatExponent;          // of heat
    std::int32_t constantId;            // the constant in which the quantity is counted; 0 for none
    char sequence[8];                   // order of the dimensions in a host's own label; not used here
    double multiplier;                  // 1 unless the file gives one
    std::int16_t hasMultiplier;         // 1 when the file gives one; such a type converts by its multiplier alone
    std::int32_t displayUnitCount;      // of the next array
    _UnitDisplayUnitStr* displayUnits;  // unit names of the quantity, at most one for a system
    char viewerName[32];                // of the same quantity in the ZamView product
};

static_assert(sizeof(_UnitDisplayUnitStr) == 260 && offsetof(_UnitDisplayUnitStr, systemId) == 256);
static_assert(sizeof(_UnitSystemStr) == 532 && offsetof(_UnitSystemStr, id) == 512);
static_assert(sizeof(_UnitBaseTypeStr) == 40 && offsetof(_UnitBaseTypeStr, conversionValue) == 24);
static_assert(sizeof(_UnitDataTypeStr) == 96 && offsetof(_UnitDataTypeStr, sequence) == 32 &&
              offsetof(_UnitDataTypeStr, displayUnits) == 56 && offsetof(_UnitDataTypeStr, viewerName) == 64);

// The catalogue itself. Hosts do not make one; its records may be read, and are changed by the functions below alone.
class TUVOUTIL_API VUnit
{
public:
    VUnit() = default;
    VUnit(const VUnit&) = delete;
    VUnit& operator=(const VUnit&) = delete;
    virtual ~VUnit();  // gives back all records

    // The records, in the order in which they were read or made, and their numbers.
    std::int32_t m_baseUnitCount = 0;
    _UnitBaseTypeStr* m_baseUnits = nullptr;
    std::uint64_t m_reserved = 0;  // never read
    std::int32_t m_systemCount = 0;
    _UnitSystemStr* m_systems = nullptr;
    std::int32_t m_dataTypeCount = 0;
    _UnitDataTypeStr* m_dataTypes = nullptr;
    std::int32_t m_currentSystem = 0;  // what VUnitUtlGetCurrentSystem gives
};

// A quantity as a caller names it.
struct _UnitDataStr
{
    std::int32_t dataTypeId;  // what it is
    std::int32_t systemId;    // the unit system of its value
};

// ---- Loading -------------------------------------------------------------------------------------------------------

// Makes the catalogue of this process and fills it from "unit.xml" in a directory; a null directory fills nothing. Does
// nothing when a catalogue exists already, be it that of an earlier call or the empty one of an earlier query. A file
// that is missing or malformed leaves the catalogue without units; VUnitUtlFillObject would say why.
//
// Looks up at last (and appends, when the file has none) the unit system without units, whose four units are -1:
// quantities in that system have no unit text.
TUVOUTIL_API void VUnitUtlMain(const char* directory);

// Appends the units, systems and data types of a file to the catalogue and returns 1.
//
// Returns -1, with the catalogue as it was, when the file cannot be read or is not well-formed or memory is exhausted;
// *errorText is then "ERROR : While loading file NAME\nREASON", which the caller frees with VBuFree, or null when not
// even that could be allocated. After a success *errorText is null. A null `errorText` is allowed, a null file name is
// that of a missing file. Attribute values are converted to narrow text; what does not fit the field of a record is
// cut.
TUVOUTIL_API int VUnitUtlFillObject(const char* fileName, char** errorText);

// The directory given to the call of VUnitUtlMain that made the catalogue; null when there was none.
TUVOUTIL_API const char* VUnitUtlGetPath();

// ---- Base units ----------------------------------------------------------------------------------------------------

// Stores a new array of the abbreviations of all units of a base type, in the order of the catalogue, and returns their
// number. The caller frees the array with VBuFree; the texts are the catalogue's own. Without units the array is null.
TUVOUTIL_API int VUnitBaseUnitForType(int baseType, char*** abbreviations);

// The id of the unit with this abbreviation, or -1.
TUVOUTIL_API int VUnitUtlGetBaseIdFromName(const char* abbreviation);

// The base type of the unit with this id, or -1.
TUVOUTIL_API int VUnitUtlGetBaseTypeFromId(int unitId);

// The unit of a base type with this conversion value; else the nearest one when it differs from `factor` by less than
// the factor times a tolerance, or at most by the tolerance itself; else null. The tolerance is 1e-4, 1e-3 or 1e-2 for
// a factor with the decimal exponent 1 or -1, 2 or -2, 3 or -3, and 1e-3 for any other. Cost: linear in the units.
TUVOUTIL_API const _UnitBaseTypeStr* VUnitUtlGetBaseTypeFromConversionFactor(int baseType, double factor, int ignored);

// ---- Unit systems --------------------------------------------------------------------------------------------------

// The id of the first system whose units have these abbreviations. An abbreviation that is not in the catalogue stands
// for the unit id -1.
//
// When there is none, a system with these units is appended: its id is the number of systems before it, its name and
// display name are "NewSystemN" with N one more than its id. -1 when memory is exhausted.
TUVOUTIL_API int VUnitUtlGetUnitSystemId(const char* length, const char* mass, const char* time, const char* heat);

// The same for names in the solver's spelling (see VUnitUtlGetSolverUnitsOrDisplayUnits).
TUVOUTIL_API int VUnitUtlGetUnitSystemIdGivenSolverUnits(const char* length, const char* mass, const char* time,
                                                         const char* heat);

// The same for "m", "kg", "sec", "kelvin", the base unit system.
TUVOUTIL_API int VUnitUtlGetBaseUnitSystemId();

// The id of the current unit system, 0 until one is set. Setting takes the system that VUnitUtlGetUnitSystemId finds or
// appends and returns its id; -1, with the current system unchanged, when memory is exhausted.
TUVOUTIL_API int VUnitUtlGetCurrentSystem();
TUVOUTIL_API int VUnitUtlSetCurrentSystem(const char* length, const char* mass, const char* time, const char* heat);

// Stores the catalogue's own array of systems, for reading, and returns their number; null and 0 when there are none.
TUVOUTIL_API int VUnitUtlGetUnitSystems(_UnitSystemStr** systems);

// Stores a new array of copies of all display names that are not empty, those of appended systems included, and returns
// their number; null and 0 when there are none. The caller frees each name and the array with VBuFree.
TUVOUTIL_API int VUnitUtlGetDisplayedSystemTypeList(char*** names);

// Copies the display name of the first system whose units have these abbreviations and returns 1; returns 0, with the
// buffer unchanged, when there is none.
TUVOUTIL_API int VUnitUtlGetUnitSystemDisplayName(const char* length, const char* mass, const char* time,
                                                  const char* heat, char* displayName);

// The id of the first system in which the composed unit text of a data type (see VUnitUtlGetUnitString; display units
// are not asked) equals a text, or -1. Cost: linear in the systems.
TUVOUTIL_API int VUnitUtlGetUnitSystemFromUnit(int dataTypeId, const char* unitText);

// Writes the abbreviations of the units of a system, an empty text for a unit that is not in the catalogue, and returns
// 0. Returns -1, with all buffers emptied, when there is no such system.
TUVOUTIL_API int VUnitUtlGetUnitSystemStrFromSystemId(int systemId, char* length, char* mass, char* time);
TUVOUTIL_API int VUnitUtlGetUnitSystemStringsFromSystemId(int systemId, char* length, char* mass, char* time,
                                                          char* heat);
TUVOUTIL_API int VUnitUtlGetUnitSystemStringsFromSystemDisplayName(const char* displayName, char* length, char* mass,
                                                                   char* time, char* heat);

// Writes four unit names in the solver's spelling ("FOOT", "INCH", "POUND", "MS", "US", "S", "CELSIUS", "FAHR", "RANK")
// for those of the catalogue ("FT", "IN", "LB", "MILLISEC", "MICROSEC", "SEC", "CENTIGRADE", "FAHRENHEIT", "RANKINE")
// or, when `toSolver` is 0, the other way round; other names are copied as they are. A buffer may be its own input.
// Returns 0; -1, with nothing written, when a name is null.
TUVOUTIL_API int VUnitUtlGetSolverUnitsOrDisplayUnits(const char* length, const char* mass, const char* time,
                                                      const char* heat, int toSolver, char* outLength, char* outMass,
                                                      char* outTime, char* outHeat);

// ---- Data types ----------------------------------------------------------------------------------------------------

// The id of the data type with this name, or -1. Both functions do the same.
TUVOUTIL_API int VUnitUtlGetDataTypeId(const char* name);
TUVOUTIL_API int VUnitUtlGetDataTypeIdNoCaseCompare(const char* name);

// Stores a new array of copies of the names of all data types and returns their number; null and 0 when there are none.
// The caller frees each name and the array with VBuFree.
TUVOUTIL_API int VUnitUtlGetDataTypeList(char*** names);

// The multiplier of a data type; 1.0 when there is no such type.
TUVOUTIL_API double VUnitUtlGetDataTypeMuliplier(int dataTypeId);

// The name of the first data type without a multiplier of its own that has these exponents of length, mass, time and
// heat. When there is none: null, or, with `create` not 0, the name of a type that is appended for them: "UnKnownN"
// with the id N, one more than the number of types before it. Null when memory is exhausted.
TUVOUTIL_API const char* VUnitUtlGetDataTypeName(int L, int M, int T, int H, int create);

// The name of the data type with this id; "" when there is none.
TUVOUTIL_API const char* VUnitUtlGetDataTypeNameFromId(int dataTypeId);

// The name of the data type with this name in the viewer. When there is none a type is appended, and its name returned:
// named as asked for, without exponents, its id one more than the number of types before it. The appended type has the
// viewer name "UN", so that asking again appends again. Null for a null name or when memory is exhausted.
TUVOUTIL_API const char* VUnitUtlGetDataTypeNameFromZamViewDataTypeName(const char* viewerName);

// Stores the exponents of length, mass, time and heat of a data type and returns its id; -1, with the outputs
// unchanged, when there is none.
TUVOUTIL_API int VUnitUtlGetNumLMTHForDataType(int dataTypeId, int* L, int* M, int* T, int* H);

// ---- Unit texts ----------------------------------------------------------------------------------------------------

// Writes the unit of a data type in a system: the type's display unit for that system, unless the type has a multiplier
// of its own; else the abbreviations of the system's units in lower case with the type's exponents, in the order
// length, mass, time, heat: "m kg/sec^2", "1/sec". A unit that is not in the catalogue is left out.
//
// The text is empty for a null reference, a negative or unknown id, and for the system without units (the one that
// VUnitUtlMain looked up; system 0 when it did not run).
TUVOUTIL_API void VUnitUtlGetUnitString(const _UnitDataStr* data, char* text);

// The same text, together with the type's exponents as they are in the catalogue. For an unknown type the text is empty
// and the exponents are 0. The text lies in a buffer of the library and is valid until the next call.
TUVOUTIL_API const char* VUnitUtlGetMappedUnitName(int dataTypeId, int unitSystemId, int* L, int* M, int* T, int* H);

// Finds out what a unit name of VUnitUtlGetMappedUnitName stands for: takes the first system, and in it the first data
// type without a multiplier of its own, whose unit has this name, stores the type's id, and returns the number by which
// a value in that unit is multiplied to stand in the base unit system (offsets of temperature scales are not part of
// it). Returns 1.0 with the type -1 when no unit has this name, or it is empty or null. The id of the base unit system
// is stored in any case, as VUnitUtlGetBaseUnitSystemId gives it.
//
//   VUnitUtlGetMapNameConvFactorAndBaseUnitSystem("mm^2", &type, &base)   // 1e-06, the type of areas
//
// Cost: systems times data types.
TUVOUTIL_API double VUnitUtlGetMapNameConvFactorAndBaseUnitSystem(const char* mappedName, int* dataTypeId,
                                                                  int* baseUnitSystemId);

// Sets `text` to the unit of a data type, found by its name, in the system of four abbreviations. Returns 1 when that
// is a display unit; 0 when it was composed, or is empty because there is no such type. Without such a system the text
// is composed from the four units; nothing is appended to the catalogue.
TUVOUTIL_API int VUnitUtlGetUnitRepresentation(const wchar_t* dataTypeName, const char* length, const char* mass,
                                               const char* time, const char* heat, BuString& text);

// ---- Conversion ----------------------------------------------------------------------------------------------------

// Converts a value of one data type in one system to another data type in another system; both types are the same in
// most uses. A null `out` does nothing.
//
// When `fromSystem` is not in the catalogue *out is taken as it is for the value in reference units, when `toSystem` is
// not, *out receives the value in reference units. A type that is not in the catalogue has no dimension, a type with a
// multiplier of its own neither. For temperatures the offsets of the scales are applied. The data type 49 converts with
// the square roots of the factors. A multiplier of 0 gives infinity or nan.
//
// With both systems -1 the value is scaled as VUnitUtlSetScaleFatorForSubModelUnitConversion says, by the exponents and
// the multiplier of `toType`; of several types with that id the last one counts.
//
// Cost: a few nanoseconds once a type was converted in a system, until the next record is appended.
TUVOUTIL_API void VUnitUtlConvertFromOneToAnother(int fromType, int toType, int fromSystem, int toSystem, double value,
                                                  double* out);

// Sets the scales of length, mass and time of a sub-model (1 at start) and what happens to its temperatures:
//   1 Fahrenheit to Celsius   2 Celsius to Fahrenheit   3 Fahrenheit to Kelvin   4 Kelvin to Fahrenheit
//   5 Kelvin to Celsius       6 Celsius to Kelvin       any other (0 at start): nothing
TUVOUTIL_API void VUnitUtlSetScaleFatorForSubModelUnitConversion(double length, double mass, double time,
                                                                 int temperatureCode);

// Stores for each of two quantities its factor, the product of the conversion values of the system's units to the
// powers of the type's exponents, and its offset, the sum of the additive values of the units with an exponent other
// than 0. 1.0 and 0.0 for a null reference, or a type or system that is not in the catalogue.
TUVOUTIL_API void VUnitGetFactorsToConvert(const _UnitDataStr* from, const _UnitDataStr* to, double* fromFactor,
                                           double* fromOffset, double* toFactor, double* toOffset);

// ---- The fixed length table ----------------------------------------------------------------------------------------
//
// Ten length units that need no catalogue: 1 MM, 2 M, 3 CM, 4 FT, 5 IN, 6 KM, 7 MIL, 8 MI, 9 UM, 10 UIN. Stored models
// depend on the factors and the names of rows 7 to 10 as they are: the names "Miles", "Microns" and "Mils" stand in the
// rows MIL, MI and UM, and the factors of rows 9 and 10 are not the physical ones.

// Stores the factor between two rows, 0.0 when there is no row `to`, and returns 0; returns 1, with the factor
// unchanged, when there is no row `from`.
TUVOUTIL_API int VUnitUtlGetUnitConvFactor(int from, int to, double& factor);

// The same by names: the abbreviation in any case, or exactly the plural ("Meters"), the plural in capitals or the
// singular. The last row with such a name wins. Returns 0; -8, with the factor unchanged, when a name is in no row.
TUVOUTIL_API int VUnitUtlGetUnitConversionFactor(const char* from, const char* to, double& factor);

// A shorter table with its own ids: 1 "MM", 2 "M", 3 "CM", 4 "FT", 5 "IN", 6 "KM", 7 "MIL", 8 "MIC". The first function
// takes the abbreviation exactly as it stands here, the others write the abbreviation or the singular name ("Meter") of
// an id. They return 0; -1, with the output unchanged, when the table has no such entry.
TUVOUTIL_API int VUnitUtlGetUnitIdFromStr(const char* abbreviation, int* id);
TUVOUTIL_API int VUnitUtlGetUnitStrFromId(int id, char* abbreviation);
TUVOUTIL_API int VUnitUtlGetFullUnitNameFromId(int id, char* name);
