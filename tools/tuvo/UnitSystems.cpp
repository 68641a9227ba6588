#include "tools/tuvo/UnitSystems.h"

#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Suggest.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>

#include <cmath>
#include <vector>

namespace tool {
namespace {

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

// The pound is 0.45359237 kg, the foot 0.3048 m and standard gravity 9.80665 m/s^2, all by definition.
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

std::vector<std::string> UnitNames(const CatalogueFile& catalogue, BaseType type)
{
    std::vector<std::string> names;
    for (const BaseUnit& unit : catalogue.units)
        if (unit.baseType == type)
            names.push_back(unit.abbreviation);
    return names;
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

double FactorOf(const CatalogueFile& catalogue, const std::string& abbreviation)
{
    const BaseUnit* const unit = FindUnit(catalogue, abbreviation);
    return unit != nullptr ? unit->factor : 0.0;
}

// How many of the system's own units of force make one reference unit.
double FactorOfForce(const CatalogueFile& catalogue, const std::string& length, const std::string& mass,
                     const std::string& time)
{
    const double perTime = 1.0 / FactorOf(catalogue, time);
    return FactorOf(catalogue, length) * FactorOf(catalogue, mass) * perTime * perTime;
}

// The mass unit that makes a force the own unit of force of the system.
std::string MassOfForce(const CatalogueFile& catalogue, const ForceUnit& force, const std::string& length,
                        const std::string& time)
{
    constexpr double Tolerance = 1e-5;  // for catalogues with rounded factors
    const double newton = FactorOfForce(catalogue, "m", "kg", "sec");
    for (const std::string& mass : UnitNames(catalogue, Mass)) {
        const double newtons = newton / FactorOfForce(catalogue, length, mass, time);
        if (std::abs(newtons - force.newtons) <= Tolerance * force.newtons)
            return mass;
    }
    throw Failure("the catalogue has no mass unit that makes " + std::string(force.name) + " the force of " + length +
                  " and " + time + "; name a mass in its place");
}

[[noreturn]] void ThrowUnknownUnit(const CatalogueFile& catalogue, BaseType type, const std::string& name)
{
    const std::string wanted = std::string(BaseTypeNames[type]) + " unit";
    const BaseUnit* const found = FindUnit(catalogue, name);
    if (found != nullptr)
        throw Failure(Quoted(name) + " is a " + BaseTypeNames[found->baseType] + " unit where a " + wanted +
                      " belongs (the order is length, mass, time, heat)");
    throw Failure("there is no " + wanted + ' ' + Quoted(name) + DidYouMean(name, UnitNames(catalogue, type)) +
                  " (tuvo units --units lists all)");
}

// The unit of a base type in any spelling of its name; null when there is none.
const BaseUnit* FindUnitOf(const CatalogueFile& catalogue, BaseType type, const std::string& name)
{
    for (const std::string& spelling : {name, DisplaySpelling(type, name)})
        if (const BaseUnit* const unit = FindUnit(catalogue, spelling); unit != nullptr && unit->baseType == type)
            return unit;
    return nullptr;
}

// The abbreviation of a unit as the catalogue has it.
std::string ResolveUnit(const CatalogueFile& catalogue, BaseType type, const std::string& name)
{
    if (const BaseUnit* const unit = FindUnitOf(catalogue, type, name))
        return unit->abbreviation;
    ThrowUnknownUnit(catalogue, type, name);
}

// The same where a force may stand in place of the mass.
std::string ResolveMass(const CatalogueFile& catalogue, const std::string& name, const std::string& length,
                        const std::string& time)
{
    const BaseUnit* const unit = FindUnit(catalogue, name);
    const ForceUnit* const force = unit != nullptr && unit->baseType == Mass ? nullptr : FindForce(name);
    return force != nullptr ? MassOfForce(catalogue, *force, length, time) : ResolveUnit(catalogue, Mass, name);
}

constexpr char WhatASystemHas[] = "; a unit system has length, mass, time and heat, as in mm,ton,sec,kelvin";

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

int SystemOfList(const CatalogueFile& catalogue, const std::string& text)
{
    std::vector<std::string> names = SplitAtCommas(text);
    if (names.size() == 3)
        names.emplace_back("kelvin");
    if (names.size() != 4)
        throw Failure(Quoted(text) + " lists " + std::to_string(names.size()) + " units" + WhatASystemHas);

    const std::string length = ResolveUnit(catalogue, Length, names[Length]);
    const std::string time = ResolveUnit(catalogue, Time, names[Time]);
    const std::string heat = ResolveUnit(catalogue, Heat, names[Heat]);
    return SystemOfUnits({length, ResolveMass(catalogue, names[Mass], length, time), time, heat});
}

const UnitSystem* FindNamed(const CatalogueFile& catalogue, const std::string& name)
{
    for (const auto equal : {EqualExactly, EqualNoCase})
        for (const UnitSystem& system : catalogue.systems)
            if (equal(system.displayName, name) || equal(system.name, name))
                return &system;
    for (const UnitSystem& system : catalogue.systems)
        if (std::to_string(system.id) == name)
            return &system;
    return nullptr;
}

// The id of a system that values can be converted with.
int UsableId(const CatalogueFile& catalogue, const UnitSystem& system)
{
    if (FindSystem(catalogue, system.id) != &system)
        throw Failure("the catalogue gives the id " + std::to_string(system.id) + " of the unit system " +
                      Quoted(system.name) + " to another one too");
    const FourUnits units = UnitsOfSystem(system.id);
    for (std::size_t i = 0; i < units.size(); ++i)
        if (units[i].empty())
            throw Failure("the unit system " + Quoted(system.name) + " has no " + BaseTypeNames[i] + " unit");
    return system.id;
}

std::vector<std::string> SystemNames(const CatalogueFile& catalogue)
{
    std::vector<std::string> names;
    for (const UnitSystem& system : catalogue.systems)
        names.insert(names.end(), {system.displayName, system.name});
    return names;
}

[[noreturn]] void ThrowUnknownSystem(const CatalogueFile& catalogue, const std::string& text)
{
    for (const BaseType type : {Length, Mass, Time, Heat})
        if (FindUnitOf(catalogue, type, text) != nullptr)
            throw Failure(Quoted(text) + " is a " + BaseTypeNames[type] + " unit" + WhatASystemHas);
    throw Failure("there is no unit system " + Quoted(text) + DidYouMean(text, SystemNames(catalogue)) +
                  " (tuvo units --systems lists all)");
}

}  // namespace

FourUnits UnitsOfSystem(int unitSystem)
{
    char units[4][256] = {};
    VUnitUtlGetUnitSystemStringsFromSystemId(unitSystem, units[0], units[1], units[2], units[3]);
    return {units[0], units[1], units[2], units[3]};
}

int FindUnitSystem(const CatalogueFile& catalogue, const std::string& text)
{
    if (const UnitSystem* const system = FindNamed(catalogue, text))
        return UsableId(catalogue, *system);
    if (text.find(',') != std::string::npos)
        return SystemOfList(catalogue, text);
    ThrowUnknownSystem(catalogue, text);
}

}  // namespace tool
