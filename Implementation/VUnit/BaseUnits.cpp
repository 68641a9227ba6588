#include "TuvoMemory/ModuleNames.h"
#include "VUnit/Catalogue.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>

#include <algorithm>

int VUnitBaseUnitForType(int baseType, char*** abbreviations)
{
    const VUnit& all = catalogue::Get();
    if (abbreviations == nullptr)
        return 0;
    *abbreviations = nullptr;

    const _UnitBaseTypeStr* const begin = all.m_baseUnits;
    const _UnitBaseTypeStr* const end = begin + all.m_baseUnitCount;
    const auto isOfType = [baseType](const _UnitBaseTypeStr& unit) { return unit.baseType == baseType; };
    const auto count = static_cast<std::size_t>(std::count_if(begin, end, isOfType));
    if (count == 0)
        return 0;
    auto* const found = static_cast<char**>(VBuMalloc(count * sizeof(char*), modules::VUnit, __LINE__, 0));
    if (found == nullptr)
        return 0;
    char** next = found;
    for (const _UnitBaseTypeStr* unit = begin; unit != end; ++unit)
        if (isOfType(*unit))
            *next++ = unit->abbreviation;
    *abbreviations = found;
    return static_cast<int>(count);
}
