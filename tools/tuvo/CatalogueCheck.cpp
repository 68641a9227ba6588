// What can be wrong with a unit catalogue as a whole.
#include "tools/tuvo/CatalogueFile.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace tool {
namespace {

using Problems = std::vector<std::string>;

// The start of a problem's line.
std::string Of(const char* kind, const std::string& name)
{
    return kind + (' ' + Quoted(name)) + ": ";
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), BuToLower<char>);
    return text;
}

// Notes each record whose key, an id or a name, an earlier record has too. An empty name is no name.
template <typename Record, typename Key>
void CheckUnique(const std::vector<Record>& records, const char* kind, const char* what, Key key, Problems& problems)
{
    std::map<std::string, std::string> owners;
    for (const Record& record : records) {
        const std::string value = key(record);
        const auto [owner, isNew] = owners.emplace(Lower(value), record.name);
        if (!isNew && !value.empty())
            problems.push_back(Of(kind, record.name) + "the " + what + ' ' + Quoted(value) + " is that of " +
                               Quoted(owner->second) + " too");
    }
}

// Notes an id outside the range that keeps it apart from those of records that are made at run time.
void CheckRange(const char* kind, const std::string& name, int id, int first, std::size_t last, Problems& problems)
{
    if (id < first || id > static_cast<int>(last))
        problems.push_back(Of(kind, name) + "the id " + std::to_string(id) + " is not among " + std::to_string(first) +
                           " to " + std::to_string(last) + ", as many as there are");
}

void CheckUnits(const CatalogueFile& catalogue, Problems& problems)
{
    const auto id = [](const BaseUnit& unit) { return std::to_string(unit.id); };
    CheckUnique(catalogue.units, "BASE_UNIT", "id", id, problems);
    CheckUnique(
        catalogue.units, "BASE_UNIT", "abbreviation", [](const BaseUnit& u) { return u.abbreviation; }, problems);
    for (const BaseUnit& unit : catalogue.units) {
        if (unit.factor <= 0.0)
            problems.push_back(Of("BASE_UNIT", unit.name) + "the factor " + NumberText(unit.factor) +
                               " is not above 0");
        if (unit.id < 0)
            problems.push_back(Of("BASE_UNIT", unit.name) + "the id " + std::to_string(unit.id) +
                               " stands for no unit");
    }
}

void CheckUnitsOfSystem(const CatalogueFile& catalogue, const UnitSystem& system, Problems& problems)
{
    constexpr std::array<int, 4> None = {-1, -1, -1, -1};
    if (system.units == None)
        return;  // the system of quantities without units
    for (std::size_t i = 0; i < system.units.size(); ++i) {
        const std::string start = Of("UNIT_SYSTEM", system.name) + "the " + BaseTypeNames[i] + " unit ";
        const BaseUnit* const unit = FindUnit(catalogue, system.units[i]);
        if (unit == nullptr)
            problems.push_back(start + std::to_string(system.units[i]) + " does not exist");
        else if (unit->baseType != i)
            problems.push_back(start + Quoted(unit->name) + " is a unit of " + BaseTypeNames[unit->baseType]);
    }
}

void CheckSystems(const CatalogueFile& catalogue, Problems& problems)
{
    const auto id = [](const UnitSystem& system) { return std::to_string(system.id); };
    CheckUnique(catalogue.systems, "UNIT_SYSTEM", "id", id, problems);
    CheckUnique(
        catalogue.systems, "UNIT_SYSTEM", "name", [](const UnitSystem& s) { return s.name; }, problems);
    CheckUnique(
        catalogue.systems, "UNIT_SYSTEM", "display name", [](const UnitSystem& s) { return s.displayName; }, problems);
    for (const UnitSystem& system : catalogue.systems) {
        CheckUnitsOfSystem(catalogue, system, problems);
        CheckRange("UNIT_SYSTEM", system.name, system.id, 0, catalogue.systems.size() - 1, problems);
    }
}

// A type with a multiplier is counted in a constant, whose factor is the multiplier.
void CheckConstant(const CatalogueFile& catalogue, const DataType& type, Problems& problems)
{
    const std::string start = Of("DATA_TYPE", type.name);
    const BaseUnit* const constant = FindUnit(catalogue, type.constantId);
    if (type.multiplier == 0.0)
        problems.push_back(start + "the multiplier is 0");
    if (type.constantId == 0)
        return;
    if (constant == nullptr)
        problems.push_back(start + "the constant " + std::to_string(type.constantId) + " does not exist");
    else if (type.multiplier && *type.multiplier != constant->factor)
        problems.push_back(start + "the multiplier " + NumberText(*type.multiplier) +
                           " is not the factor of its constant " + Quoted(constant->abbreviation) + ", " +
                           NumberText(constant->factor));
}

void CheckDisplayUnits(const CatalogueFile& catalogue, const DataType& type, Problems& problems)
{
    std::set<int> systems;
    for (const DisplayUnit& unit : type.displayUnits) {
        std::string text = Of("DATA_TYPE", type.name) + "the display unit " + Quoted(unit.unit);
        text += " for the unit system " + std::to_string(unit.systemId);
        if (FindSystem(catalogue, unit.systemId) == nullptr)
            problems.push_back(text + ", which does not exist");
        if (!systems.insert(unit.systemId).second)
            problems.push_back(text + " is hidden by an earlier one");
    }
}

void CheckTypes(const CatalogueFile& catalogue, Problems& problems)
{
    const auto id = [](const DataType& type) { return std::to_string(type.id); };
    CheckUnique(catalogue.types, "DATA_TYPE", "id", id, problems);
    CheckUnique(
        catalogue.types, "DATA_TYPE", "name", [](const DataType& type) { return type.name; }, problems);
    CheckUnique(
        catalogue.types, "DATA_TYPE", "viewer name", [](const DataType& type) { return type.viewerName; }, problems);
    for (const DataType& type : catalogue.types) {
        CheckConstant(catalogue, type, problems);
        CheckDisplayUnits(catalogue, type, problems);
        CheckRange("DATA_TYPE", type.name, type.id, 1, catalogue.types.size(), problems);
    }
}

void CheckBaseSystem(Problems& problems)
{
    for (const char* const unit : {"m", "kg", "sec", "kelvin"})
        if (VUnitUtlGetBaseIdFromName(unit) < 0)
            problems.push_back("the base unit system needs a unit " + Quoted(unit));
}

bool IsComplete(const UnitSystem& system)
{
    return std::all_of(system.units.begin(), system.units.end(), [](int unit) { return unit >= 0; });
}

// Whether a value comes back from another system as it went.
bool SurvivesRoundTrip(int type, int from, int to)
{
    constexpr double Value = 1.25;
    double there = 0.0;
    double back = 0.0;
    VUnitUtlConvertFromOneToAnother(type, type, from, to, Value, &there);
    VUnitUtlConvertFromOneToAnother(type, type, to, from, there, &back);
    return std::abs(back - Value) <= 1e-9 * Value;
}

int CheckRoundTrips(const CatalogueFile& catalogue, Problems& problems)
{
    int roundTrips = 0;
    for (const DataType& type : catalogue.types)
        for (const UnitSystem& from : catalogue.systems)
            for (const UnitSystem& to : catalogue.systems) {
                if (&from == &to || !IsComplete(from) || !IsComplete(to))
                    continue;
                ++roundTrips;
                if (!SurvivesRoundTrip(type.id, from.id, to.id))
                    problems.push_back(Of("DATA_TYPE", type.name) + "a value does not come back from " +
                                       Quoted(from.name) + " to " + Quoted(to.name) + " and back");
            }
    return roundTrips;
}

}  // namespace

Problems CheckCatalogue(const CatalogueFile& catalogue, int& roundTrips)
{
    Problems problems = catalogue.problems;
    CheckUnits(catalogue, problems);
    CheckSystems(catalogue, problems);
    CheckTypes(catalogue, problems);
    CheckBaseSystem(problems);
    roundTrips = CheckRoundTrips(catalogue, problems);
    return problems;
}

}  // namespace tool
