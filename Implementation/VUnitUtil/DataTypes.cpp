#include "TuvoMemory/ModuleNames.h"
#include "VUnit/Catalogue.h"
#include "VUnitUtil/NameList.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>

#include <cstdio>

namespace {

// Appends a data type with a name, which it takes over in any case, and gives it. Its id is one more than the number of
// types before it. Null when the name is or memory is exhausted.
_UnitDataTypeStr* AppendDataType(char* name)
{
    if (name == nullptr)
        return nullptr;
    _UnitDataTypeStr* const type = catalogue::AppendDataType();
    if (type == nullptr) {
        VBU_FREE(name, modules::VUnitUtil, __LINE__);
        return nullptr;
    }
    type->name = name;
    type->id = catalogue::Get().m_dataTypeCount;
    type->multiplier = 1.0;
    return type;
}

const char* AppendUnknownType(const catalogue::Exponents& exponents)
{
    constexpr std::size_t nameSize = 50;
    const int id = catalogue::Get().m_dataTypeCount + 1;
    auto* const name = static_cast<char*>(VBuMalloc(nameSize, modules::VUnitUtil, __LINE__, 0));
    if (name != nullptr)
        std::snprintf(name, nameSize, "UnKnown%d", id);
    _UnitDataTypeStr* const type = AppendDataType(name);
    if (type == nullptr)
        return nullptr;
    type->lengthExponent = exponents.length;
    type->massExponent = exponents.mass;
    type->timeExponent = exponents.time;
    type->heatExponent = exponents.heat;
    return type->name;
}

void Store(int* output, int value)
{
    if (output != nullptr)
        *output = value;
}

}  // namespace

int VUnitUtlGetDataTypeId(const char* name)
{
    const _UnitDataTypeStr* const type = catalogue::FindDataType(name);
    return type != nullptr ? type->id : -1;
}

int VUnitUtlGetDataTypeIdNoCaseCompare(const char* name)
{
    return VUnitUtlGetDataTypeId(name);
}

int VUnitUtlGetDataTypeList(char*** names)
{
    const VUnit& all = catalogue::Get();
    return units::CopyNames(all.m_dataTypeCount, names, [&](int i) -> const char* { return all.m_dataTypes[i].name; });
}

double VUnitUtlGetDataTypeMuliplier(int dataTypeId)
{
    const _UnitDataTypeStr* const type = catalogue::FindDataType(dataTypeId);
    return type != nullptr ? type->multiplier : 1.0;
}

const char* VUnitUtlGetDataTypeName(int L, int M, int T, int H, int create)
{
    const catalogue::Exponents exponents = {L, M, T, H};
    if (const _UnitDataTypeStr* const type = catalogue::FindDataType(exponents))
        return type->name;
    return create != 0 ? AppendUnknownType(exponents) : nullptr;
}

const char* VUnitUtlGetDataTypeNameFromId(int dataTypeId)
{
    const _UnitDataTypeStr* const type = catalogue::FindDataType(dataTypeId);
    return type != nullptr ? type->name : "";
}

const char* VUnitUtlGetDataTypeNameFromZamViewDataTypeName(const char* viewerName)
{
    if (const _UnitDataTypeStr* const type = catalogue::FindDataTypeByViewerName(viewerName))
        return type->name;
    _UnitDataTypeStr* const type = AppendDataType(VBuStrDup(viewerName, modules::VUnitUtil, __LINE__));
    if (type == nullptr)
        return nullptr;
    // Kept: not the name that was asked for, so that an unknown name is appended again at each call.
    catalogue::CopyCut(type->viewerName, sizeof type->viewerName, "UN");
    return type->name;
}

int VUnitUtlGetNumLMTHForDataType(int dataTypeId, int* L, int* M, int* T, int* H)
{
    const _UnitDataTypeStr* const type = catalogue::FindDataType(dataTypeId);
    if (type == nullptr)
        return -1;
    Store(L, type->lengthExponent);
    Store(M, type->massExponent);
    Store(T, type->timeExponent);
    Store(H, type->heatExponent);
    return type->id;
}
