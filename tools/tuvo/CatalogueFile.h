// A unit catalogue as its file has it, read element by element, with everything that the library would pass over.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tool {

// What a unit can be a unit of; the number of a base type in the catalogue is its index here.
enum BaseType : std::size_t
{
    Length,
    Mass,
    Time,
    Heat,
    Constant
};
constexpr std::array<const char*, 5> BaseTypeNames = {"length", "mass", "time", "heat", "constant"};

struct BaseUnit
{
    std::string name;
    std::string abbreviation;
    int id = 0;
    BaseType baseType = Length;
    double factor = 0.0;  // this many make one reference unit
    double offset = 0.0;  // of a temperature scale
};

struct UnitSystem
{
    std::string name;
    std::string displayName;
    int id = 0;
    std::array<int, 4> units{};  // ids of base units in the order length, mass, time, heat; -1 for none

    const std::string& Title() const { return displayName.empty() ? name : displayName; }
};

struct DisplayUnit
{
    int systemId = 0;
    std::string unit;
};

struct DataType
{
    std::string name;
    int id = 0;
    std::array<int, 4> exponents{};    // in the same order
    int constantId = 0;                // id of the constant that a type with a multiplier is counted in
    std::optional<double> multiplier;  // such a type is the same in all systems
    std::vector<DisplayUnit> displayUnits;
    std::string viewerName;
};

struct CatalogueFile
{
    std::string path;
    std::vector<BaseUnit> units;
    std::vector<UnitSystem> systems;
    std::vector<DataType> types;
    std::vector<std::string> problems;  // elements and attributes that do not say what they must, a line each
};

// Throws Failure, with the reason, when the file cannot be read, is malformed, or holds nothing of a catalogue.
CatalogueFile ReadCatalogueFile(const std::string& path);

// The first record with an id, or the first unit with an abbreviation in any case; null when there is none.
const BaseUnit* FindUnit(const CatalogueFile& catalogue, int id);
const BaseUnit* FindUnit(const CatalogueFile& catalogue, const std::string& abbreviation);
const UnitSystem* FindSystem(const CatalogueFile& catalogue, int id);
const DataType* FindType(const CatalogueFile& catalogue, int id);

// What is wrong with a catalogue as a whole, a line each: ids and names given twice, references to what is not there,
// values that do not survive the way to another system and back. The library must have loaded it. Sets `roundTrips` to
// the number of conversions there and back that were tried.
std::vector<std::string> CheckCatalogue(const CatalogueFile& catalogue, int& roundTrips);

}  // namespace tool
