#include "VUnitUtil/UnitSystems.h"

#include "VUnitUtil/NameList.h"
#include "VUnitUtil/UnitText.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>

#include <cstdio>

using catalogue::SystemUnits;

namespace {

std::int32_t IdOfUnit(const char* abbreviation)
{
    const _UnitBaseTypeStr* const unit = catalogue::FindUnit(abbreviation);
    return unit != nullptr ? unit->id : -1;
}

const _UnitSystemStr* AppendSystem(const SystemUnits& units)
{
    const std::int32_t count = catalogue::Get().m_systemCount;
    _UnitSystemStr* const system = catalogue::AppendSystem();
    if (system == nullptr)
        return nullptr;
    std::snprintf(system->name, sizeof system->name, "NewSystem%d", count + 1);
    std::snprintf(system->displayName, sizeof system->displayName, "NewSystem%d", count + 1);
    system->id = count;  // Kept: one less than the number in its name, whatever ids the file uses
    system->lengthUnit = units.length;
    system->massUnit = units.mass;
    system->timeUnit = units.time;
    system->heatUnit = units.heat;
    return system;
}

int IdOf(const _UnitSystemStr* system)
{
    return system != nullptr ? system->id : -1;
}

void WriteAbbreviation(std::int32_t unitId, char* text)
{
    const _UnitBaseTypeStr* const unit = catalogue::FindUnit(unitId);
    if (text != nullptr)
        catalogue::CopyCut(text, units::TextSize, unit != nullptr ? unit->abbreviation : "");
}

int WriteAbbreviations(const _UnitSystemStr* system, char* length, char* mass, char* time, char* heat)
{
    for (char* const text : {length, mass, time, heat})
        if (text != nullptr)
            *text = '\0';
    if (system == nullptr)
        return -1;
    WriteAbbreviation(system->lengthUnit, length);
    WriteAbbreviation(system->massUnit, mass);
    WriteAbbreviation(system->timeUnit, time);
    WriteAbbreviation(system->heatUnit, heat);
    return 0;
}

}  // namespace

SystemUnits units::UnitsNamed(const char* length, const char* mass, const char* time, const char* heat)
{
    return {IdOfUnit(length), IdOfUnit(mass), IdOfUnit(time), IdOfUnit(heat)};
}

const _UnitSystemStr* units::FindOrAppendSystem(const SystemUnits& units)
{
    const _UnitSystemStr* const found = catalogue::FindSystem(units);
    return found != nullptr ? found : AppendSystem(units);
}

// ---- Finding a system ----------------------------------------------------------------------------------------------

int VUnitUtlGetUnitSystemId(const char* length, const char* mass, const char* time, const char* heat)
{
    return IdOf(units::FindOrAppendSystem(units::UnitsNamed(length, mass, time, heat)));
}

int VUnitUtlGetUnitSystemIdGivenSolverUnits(const char* length, const char* mass, const char* time, const char* heat)
{
    const units::UnitNames names = units::ToCatalogueSpelling({length, mass, time, heat});
    return VUnitUtlGetUnitSystemId(names.length, names.mass, names.time, names.heat);
}

int VUnitUtlGetBaseUnitSystemId()
{
    return VUnitUtlGetUnitSystemId("m", "kg", "sec", "kelvin");
}

int VUnitUtlGetUnitSystemFromUnit(int dataTypeId, const char* unitText)
{
    const VUnit& all = catalogue::Get();
    const _UnitDataTypeStr* const type = catalogue::FindDataType(dataTypeId);
    if (type == nullptr || unitText == nullptr)
        return -1;
    char text[units::TextSize];
    for (const _UnitSystemStr* system = all.m_systems; system != all.m_systems + all.m_systemCount; ++system) {
        units::ComposeUnitText(catalogue::UnitsOf(*system), catalogue::ExponentsOf(*type), text);
        if (BuCompareNoCase(text, unitText) == 0)
            return system->id;
    }
    return -1;
}

// ---- The current system --------------------------------------------------------------------------------------------

int VUnitUtlGetCurrentSystem()
{
    return catalogue::Get().m_currentSystem;
}

int VUnitUtlSetCurrentSystem(const char* length, const char* mass, const char* time, const char* heat)
{
    const _UnitSystemStr* const system = units::FindOrAppendSystem(units::UnitsNamed(length, mass, time, heat));
    if (system != nullptr)
        catalogue::Get().m_currentSystem = system->id;
    return IdOf(system);
}

// ---- What a system is ----------------------------------------------------------------------------------------------

int VUnitUtlGetUnitSystems(_UnitSystemStr** systems)
{
    const VUnit& all = catalogue::Get();
    if (systems != nullptr)
        *systems = all.m_systems;
    return all.m_systemCount;
}

int VUnitUtlGetDisplayedSystemTypeList(char*** names)
{
    const VUnit& all = catalogue::Get();
    return units::CopyNames(all.m_systemCount, names, [&](int i) {
        const char* const name = all.m_systems[i].displayName;
        return *name != '\0' ? name : nullptr;
    });
}

int VUnitUtlGetUnitSystemDisplayName(const char* length, const char* mass, const char* time, const char* heat,
                                     char* displayName)
{
    const _UnitSystemStr* const system = catalogue::FindSystem(units::UnitsNamed(length, mass, time, heat));
    if (system == nullptr)
        return 0;
    if (displayName != nullptr)
        catalogue::CopyCut(displayName, units::TextSize, system->displayName);
    return 1;
}

int VUnitUtlGetUnitSystemStrFromSystemId(int systemId, char* length, char* mass, char* time)
{
    return WriteAbbreviations(catalogue::FindSystem(systemId), length, mass, time, nullptr);
}

int VUnitUtlGetUnitSystemStringsFromSystemId(int systemId, char* length, char* mass, char* time, char* heat)
{
    return WriteAbbreviations(catalogue::FindSystem(systemId), length, mass, time, heat);
}

int VUnitUtlGetUnitSystemStringsFromSystemDisplayName(const char* displayName, char* length, char* mass, char* time,
                                                      char* heat)
{
    return WriteAbbreviations(catalogue::FindSystemByDisplayName(displayName), length, mass, time, heat);
}
