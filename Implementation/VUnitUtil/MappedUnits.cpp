// Unit names of quantities, and quantities of unit names.

#include "VUnitUtil/Conversion.h"
#include "VUnitUtil/UnitText.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>

namespace {

// The text that callers read until the next one is asked for.
constinit char g_mappedName[units::TextSize] = {};

struct Match
{
    const _UnitDataTypeStr* type = nullptr;  // null: none
    const _UnitSystemStr* system = nullptr;
};

// Whether the ids lead to these records, and not to earlier ones with the same ids.
bool IsReachable(const Match& match)
{
    return catalogue::FindSystem(match.system->id) == match.system &&
           catalogue::FindDataType(match.type->id) == match.type;
}

Match FindByUnitText(const char* name)
{
    const VUnit& all = catalogue::Get();
    char text[units::TextSize];
    for (const _UnitSystemStr* system = all.m_systems; system != all.m_systems + all.m_systemCount; ++system)
        for (const _UnitDataTypeStr* type = all.m_dataTypes; type != all.m_dataTypes + all.m_dataTypeCount; ++type) {
            if (type->hasMultiplier != 0)
                continue;
            units::WriteUnitText(*type, *system, text);
            if (BuCompareNoCase(text, name) == 0 && IsReachable({type, system}))
                return {type, system};
        }
    return {};
}

void Store(int* output, int value)
{
    if (output != nullptr)
        *output = value;
}

}  // namespace

const char* VUnitUtlGetMappedUnitName(int dataTypeId, int unitSystemId, int* L, int* M, int* T, int* H)
{
    for (int* const exponent : {L, M, T, H})
        Store(exponent, 0);
    VUnitUtlGetNumLMTHForDataType(dataTypeId, L, M, T, H);
    const _UnitDataStr quantity = {dataTypeId, unitSystemId};
    VUnitUtlGetUnitString(&quantity, g_mappedName);
    return g_mappedName;
}

double VUnitUtlGetMapNameConvFactorAndBaseUnitSystem(const char* mappedName, int* dataTypeId, int* baseUnitSystemId)
{
    const int baseSystem = VUnitUtlGetBaseUnitSystemId();
    Store(baseUnitSystemId, baseSystem);
    Store(dataTypeId, -1);
    if (mappedName == nullptr || *mappedName == '\0')
        return 1.0;
    const Match match = FindByUnitText(mappedName);
    if (match.type == nullptr)
        return 1.0;
    Store(dataTypeId, match.type->id);
    const double fromFactor = conversion::QuantityOf(match.type->id, match.system->id).factor;
    return 1.0 / fromFactor * conversion::QuantityOf(match.type->id, baseSystem).factor;
}
