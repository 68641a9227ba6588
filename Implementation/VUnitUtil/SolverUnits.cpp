// The two spellings of unit names: that of the catalogue and that of the solver.

#include "VUnitUtil/UnitSystems.h"
#include "VUnitUtil/UnitText.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>

#include <span>

namespace {

struct Spelling
{
    const char* catalogue;
    const char* solver;
};

constexpr Spelling LengthSpellings[] = {
    {"FT", "FOOT"},
    {"IN", "INCH"},
};
constexpr Spelling MassSpellings[] = {
    {"LB", "POUND"},
    {"DTON", "DTON"},
};
constexpr Spelling TimeSpellings[] = {
    {"MILLISEC", "MS"},
    {"MICROSEC", "US"},
    {"SEC", "S"},
};
constexpr Spelling HeatSpellings[] = {
    {"CENTIGRADE", "CELSIUS"},
    {"FAHRENHEIT", "FAHR"},
    {"RANKINE", "RANK"},
};

using Member = const char* Spelling::*;

const char* Respelt(std::span<const Spelling> spellings, const char* name, Member from, Member to)
{
    if (name != nullptr)
        for (const Spelling& spelling : spellings)
            if (BuCompareNoCase(spelling.*from, name) == 0)
                return spelling.*to;
    return name;
}

units::UnitNames AllRespelt(const units::UnitNames& names, Member from, Member to)
{
    return {Respelt(LengthSpellings, names.length, from, to), Respelt(MassSpellings, names.mass, from, to),
            Respelt(TimeSpellings, names.time, from, to), Respelt(HeatSpellings, names.heat, from, to)};
}

void Write(const char* name, char* text)
{
    if (text != nullptr)
        catalogue::CopyCut(text, units::TextSize, name);
}

}  // namespace

units::UnitNames units::ToSolverSpelling(const UnitNames& names)
{
    return AllRespelt(names, &Spelling::catalogue, &Spelling::solver);
}

units::UnitNames units::ToCatalogueSpelling(const UnitNames& names)
{
    return AllRespelt(names, &Spelling::solver, &Spelling::catalogue);
}

int VUnitUtlGetSolverUnitsOrDisplayUnits(const char* length, const char* mass, const char* time, const char* heat,
                                         int toSolver, char* outLength, char* outMass, char* outTime, char* outHeat)
{
    if (length == nullptr || mass == nullptr || time == nullptr || heat == nullptr)
        return -1;
    const units::UnitNames names = {length, mass, time, heat};
    const units::UnitNames result = toSolver != 0 ? units::ToSolverSpelling(names) : units::ToCatalogueSpelling(names);
    Write(result.length, outLength);
    Write(result.mass, outMass);
    Write(result.time, outTime);
    Write(result.heat, outHeat);
    return 0;
}
