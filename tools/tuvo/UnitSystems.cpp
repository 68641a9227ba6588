#include "tools/tuvo/UnitSystems.h"

#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Suggest.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace tool {
namespace {

enum BaseType : int
{
    Length,
    Mass,
    Time,
    Heat
};

bool EqualExactly(const std::string& left, const std::string& right)
{
    return left == right;
}

bool EqualNoCase(const std::string& left, const std::string& right)
{
    return BuCompareNoCase(left.c_str(), right.c_str()) == 0;
}

struct ForceUnit
{
    const char* name;
    double newtons;
};

// The pound is 0.45359237 kg, the inch 0.0254 m and standard gravity 9.80665 m/s^2, all by definition.
constexpr ForceUnit ForceUnits[] = {
    {"n", 1.0},
    {"kn", 1e3},
    {"dyn", 1e-5},
    {"kgf", 9.80665},
    {"ozf", 0.45359237 / 16.0 * 9.80665},
    {"lbf", 0.45359237 * 9.80665},
    {"kip", 453.59237 * 9.80665},
    {"pdl", 0.45359237 * 0.3048},
};

const ForceUnit* FindForce(const std::string& name)
{
    for (const ForceUnit& unit : ForceUnits)
        if (EqualNoCase(unit.name, name))
            return &unit;
    return nullptr;
}

std::vector<std::string> UnitNames(BaseType type)
{
    char** abbreviations = nullptr;
    const int count = VUnitBaseUnitForType(type, &abbreviations);
    std::vector<std::string> names(abbreviations, abbreviations + count);
    VBU_FREE(abbreviations, "tuvo", __LINE__);
    return names;
}

int TypeOfUnit(const std::string& abbreviation)
{
    return VUnitUtlGetBaseTypeFromId(VUnitUtlGetBaseIdFromName(abbreviation.c_str()));
}

// The symbols of temperatures, as the display names of systems have them.
struct Symbol
{
    const char* symbol;
    const char* abbreviation;
};
constexpr Symbol HeatSymbols[] = {
    {"K", "kelvin"},     {"degC", "centigrade"}, {"C", "centigrade"}, {"degF", "fahrenheit"},
    {"F", "fahrenheit"}, {"degR", "rankine"},    {"R", "rankine"},
};

// The catalogue's abbreviation for a name that is a symbol or in the solver's spelling; else the name itself.
std::string DisplaySpelling(BaseType type, const std::string& name)
{
    if (type == Heat)
        for (const auto& [symbol, abbreviation] : HeatSymbols)
            if (EqualNoCase(symbol, name))
                return abbreviation;
    char units[4][256];
    if (name.size() >= sizeof units[0])
        return name;
    VUnitUtlGetSolverUnitsOrDisplayUnits(name.c_str(), name.c_str(), name.c_str(), name.c_str(), 0, units[0], units[1],
                                         units[2], units[3]);
    return units[type];
}

// The id of the system of four units, which is made when the catalogue has none.
int SystemOfUnits(const FourUnits& units)
{
    const int id = VUnitUtlGetUnitSystemId(units[0].c_str(), units[1].c_str(), units[2].c_str(), units[3].c_str());
    // The new system's id is the number of systems, which the catalogue may have given to another one.
    const FourUnits found = UnitsOfSystem(id);
    for (std::size_t i = 0; i < found.size(); ++i)
        if (!EqualNoCase(found[i], units[i]))
            throw Failure("the catalogue numbers its unit systems so that none can be added (see tuvo units --check)");
    return id;
}

// How many newtons the unit of force of a system is.
double NewtonsOfSystem(int unitSystem)
{
    const int force = VUnitUtlGetDataTypeId(VUnitUtlGetDataTypeName(1, 1, -2, 0, 1));
    double newtons = 0.0;
    VUnitUtlConvertFromOneToAnother(force, force, unitSystem, VUnitUtlGetBaseUnitSystemId(), 1.0, &newtons);
    return newtons;
}

// The mass unit that makes a force the own unit of force of the system.
std::string MassOfForce(const ForceUnit& force, const FourUnits& units)
{
    constexpr double Tolerance = 1e-5;  // for catalogues with rounded factors
    for (const std::string& mass : UnitNames(Mass)) {
        const double newtons = NewtonsOfSystem(SystemOfUnits({units[Length], mass, units[Time], units[Heat]}));
        if (std::abs(newtons - force.newtons) <= Tolerance * force.newtons)
            return mass;
    }
    throw Failure("the catalogue has no mass unit that makes " + std::string(force.name) + " the force of " +
                  units[Length] + " and " + units[Time] + "; name a mass in its place");
}

[[noreturn]] void ThrowUnknownUnit(BaseType type, const std::string& name)
{
    const std::string wanted = std::string(BaseTypeNames[static_cast<std::size_t>(type)]) + " unit";
    const int found = TypeOfUnit(name);
    if (found >= Length && found <= Heat)
        throw Failure(Quoted(name) + " is a " + BaseTypeNames[static_cast<std::size_t>(found)] + " unit where a " +
                      wanted + " belongs (the order is length, mass, time, heat)");
    throw Failure("there is no " + wanted + ' ' + Quoted(name) + DidYouMean(name, UnitNames(type)) +
                  " (tuvo units --units lists all)");
}

// The abbreviation of a unit as the catalogue has it.
std::string ResolveUnit(BaseType type, const std::string& name)
{
    for (const std::string& spelling : {name, DisplaySpelling(type, name)})
        if (TypeOfUnit(spelling) == type)
            return spelling;
    ThrowUnknownUnit(type, name);
}

std::vector<std::string> SplitAtCommas(const std::string& text)
{
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == ',')
            parts.emplace_back();
        else if (!BuIsSpace(c))
            parts.back() += c;
    }
    return parts;
}

int SystemOfList(const std::string& text)
{
    std::vector<std::string> names = SplitAtCommas(text);
    if (names.size() == 3)
        names.emplace_back("kelvin");
    if (names.size() != 4)
        throw Failure(Quoted(text) + " lists " + std::to_string(names.size()) +
                      " units; a unit system has length, mass, time and heat, as in mm,ton,sec,kelvin");

    FourUnits units;
    units[Length] = ResolveUnit(Length, names[Length]);
    units[Time] = ResolveUnit(Time, names[Time]);
    units[Heat] = ResolveUnit(Heat, names[Heat]);
    const ForceUnit* const force = TypeOfUnit(names[Mass]) == Mass ? nullptr : FindForce(names[Mass]);
    units[Mass] = force != nullptr ? MassOfForce(*force, units) : ResolveUnit(Mass, names[Mass]);
    return SystemOfUnits(units);
}

bool HasName(const _UnitSystemStr& system, const std::string& name,
             bool (*equal)(const std::string&, const std::string&))
{
    return equal(system.displayName, name) || equal(system.name, name);
}

const _UnitSystemStr* FindNamed(std::span<const _UnitSystemStr> systems, const std::string& name)
{
    for (const auto equal : {EqualExactly, EqualNoCase})
        for (const _UnitSystemStr& system : systems)
            if (HasName(system, name, equal))
                return &system;
    for (const _UnitSystemStr& system : systems)
        if (std::to_string(system.id) == name)
            return &system;
    return nullptr;
}

// The id of a system that values can be converted with.
int UsableId(std::span<const _UnitSystemStr> systems, const _UnitSystemStr& system)
{
    const auto sharesId = [&](const _UnitSystemStr& other) { return other.id == system.id; };
    if (&*std::find_if(systems.begin(), systems.end(), sharesId) != &system)
        throw Failure("the catalogue gives the id " + std::to_string(system.id) + " of the unit system " +
                      Quoted(system.name) + " to another one too");
    const FourUnits units = UnitsOfSystem(system.id);
    for (std::size_t i = 0; i < units.size(); ++i)
        if (units[i].empty())
            throw Failure("the unit system " + Quoted(system.name) + " has no " + BaseTypeNames[i] + " unit");
    return system.id;
}

std::vector<std::string> SystemNames(std::span<const _UnitSystemStr> systems)
{
    std::vector<std::string> names;
    for (const _UnitSystemStr& system : systems)
        if (*system.displayName != '\0')
            names.insert(names.end(), {system.displayName, system.name});
    return names;
}

}  // namespace

FourUnits UnitsOfSystem(int unitSystem)
{
    char units[4][256] = {};
    VUnitUtlGetUnitSystemStringsFromSystemId(unitSystem, units[0], units[1], units[2], units[3]);
    return {units[0], units[1], units[2], units[3]};
}

int FindUnitSystem(const std::string& text)
{
    _UnitSystemStr* first = nullptr;
    const int count = VUnitUtlGetUnitSystems(&first);
    const std::span<const _UnitSystemStr> systems(first, static_cast<std::size_t>(count));
    if (const _UnitSystemStr* const system = FindNamed(systems, text))
        return UsableId(systems, *system);
    if (text.find(',') != std::string::npos)
        return SystemOfList(text);
    throw Failure("there is no unit system " + Quoted(text) + DidYouMean(text, SystemNames(systems)) +
                  " (tuvo units --systems lists all)");
}

}  // namespace tool
