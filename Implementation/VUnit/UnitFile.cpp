// Reads a unit file into the catalogue.

#include "TuvoMemory/ModuleNames.h"
#include "VUnit/Catalogue.h"
#include "VUnit/FieldWalker.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>
#include <basutl/BuNumber.h>
#include <basutl/BuXml.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr const char* BaseTypeNames[] = {"LENGTH", "MASS", "TIME", "HEAT", "CONSTANT"};

bool IsNamed(const BuXmlNode& node, const char* name)
{
    return std::strcmp(node.GetNameUtf8(), name) == 0;
}

// An attribute as narrow text. `Get` is null when there is none, and when its conversion ran out of memory.
class NarrowAttribute
{
public:
    NarrowAttribute(const BuXmlNode& node, const char* name) : m_text(node.GetAttributeUtf8(name))
    {
        if (m_text != nullptr && !IsAscii(m_text))
            Convert(node, name);
    }
    const char* Get() const { return m_text; }
    bool HasFailed() const { return m_hasFailed; }
    std::string_view TextOrEmpty() const { return m_text != nullptr ? m_text : ""; }

private:
    static bool IsAscii(const char* text)
    {
        return std::all_of(text, text + std::strlen(text), [](char c) { return (c & 0x80) == 0; });
    }

    void Convert(const BuXmlNode& node, const char* name)
    {
        BuString wide;
        node.GetAttribute(BuString(name), wide);
        m_converted = wide.ToNarrow();
        m_hasFailed = m_converted.empty();
        m_text = m_hasFailed ? nullptr : m_converted.c_str();
    }

    const char* m_text;
    std::string m_converted;
    bool m_hasFailed = false;
};

int IntegerOf(const BuXmlNode& node, const char* attribute)
{
    return BuReadInt(node.GetAttributeUtf8(attribute));
}

double NumberOf(const BuXmlNode& node, const char* attribute)
{
    return BuReadDouble(node.GetAttributeUtf8(attribute));
}

// A copy of an attribute for a record to own, the empty text when there is none; null when memory is exhausted.
char* CopyOf(const BuXmlNode& node, const char* name)
{
    const NarrowAttribute attribute(node, name);
    if (attribute.HasFailed())
        return nullptr;
    return VBuStrDup(attribute.TextOrEmpty().data(), modules::VUnit, __LINE__);
}

template <std::size_t Size>
bool CopyInto(char (&field)[Size], const BuXmlNode& node, const char* name)
{
    const NarrowAttribute attribute(node, name);
    catalogue::CopyCut(field, Size, attribute.TextOrEmpty());
    return !attribute.HasFailed();
}

// ---- Display units -------------------------------------------------------------------------------------------------

// Reads "7:N": the system 7, the unit name "N". An entry of another shape stays all zero.
void ReadDisplayUnit(std::string_view entry, _UnitDisplayUnitStr& unit)
{
    FieldWalker parts(entry, ':');
    std::string_view id, name, further;
    if (!parts.Next(id) || !parts.Next(name) || parts.Next(further))
        return;
    unit.systemId = BuReadInt(id.data());  // ends at the divider at the latest
    catalogue::CopyCut(unit.unitName, sizeof unit.unitName, name);
}

bool ReadDisplayUnits(std::string_view list, _UnitDataTypeStr& type)
{
    std::string_view entry;
    int count = 0;
    for (FieldWalker entries(list, ';'); entries.Next(entry);)
        ++count;
    type.displayUnits = static_cast<_UnitDisplayUnitStr*>(
        VBuCalloc(static_cast<std::size_t>(count), sizeof(_UnitDisplayUnitStr), modules::VUnit, __LINE__));
    if (type.displayUnits == nullptr)
        return false;
    for (FieldWalker entries(list, ';'); entries.Next(entry);)
        ReadDisplayUnit(entry, type.displayUnits[type.displayUnitCount++]);
    return true;
}

// ---- Elements ------------------------------------------------------------------------------------------------------

// The functions give false when memory is exhausted.
class UnitFileReader
{
public:
    bool Read(const BuXmlNode& root)
    {
        for (BuXmlNode node = root.GetFirstChild(); node; node = node.GetNextSibling())
            if (!ReadElement(node))
                return false;
        return true;
    }

private:
    bool ReadElement(const BuXmlNode& node)
    {
        if (IsNamed(node, "BASE_TYPE"))
            return ReadBaseType(node);
        if (IsNamed(node, "UNIT_SYSTEM"))
            return ReadSystem(node);
        if (IsNamed(node, "DATA_TYPE"))
            return ReadDataType(node);
        return true;
    }

    bool ReadBaseType(const BuXmlNode& node)
    {
        const char* const type = node.GetAttributeUtf8("TYPE");
        for (int i = 0; type != nullptr && i < 5; ++i)
            if (std::strcmp(type, BaseTypeNames[i]) == 0)
                m_baseType = i;
        for (BuXmlNode child = node.GetFirstChild(); child; child = child.GetNextSibling())
            if (IsNamed(child, "BASE_UNIT") && !ReadUnit(child))
                return false;
        return true;
    }

    bool ReadUnit(const BuXmlNode& node) const
    {
        _UnitBaseTypeStr* const unit = catalogue::AppendUnit();
        if (unit == nullptr)
            return false;
        unit->name = CopyOf(node, "NAME");
        unit->abbreviation = CopyOf(node, "ABBR");
        unit->id = IntegerOf(node, "ID");
        unit->baseType = m_baseType;
        unit->conversionValue = NumberOf(node, "CONV_VAL");
        unit->additiveValue = NumberOf(node, "ADD_VAL");
        return unit->name != nullptr && unit->abbreviation != nullptr;
    }

    bool ReadSystem(const BuXmlNode& node)
    {
        for (const char* const required : {"NAME", "LENGTH_UNIT", "MASS_UNIT", "TIME_UNIT", "HEAT_UNIT", "ID"})
            m_systemsEnded |= node.GetAttributeUtf8(required) == nullptr;
        if (m_systemsEnded)
            return true;
        _UnitSystemStr* const system = catalogue::AppendSystem();
        if (system == nullptr)
            return false;
        system->id = IntegerOf(node, "ID");
        system->lengthUnit = IntegerOf(node, "LENGTH_UNIT");
        system->massUnit = IntegerOf(node, "MASS_UNIT");
        system->timeUnit = IntegerOf(node, "TIME_UNIT");
        system->heatUnit = IntegerOf(node, "HEAT_UNIT");
        return CopyInto(system->name, node, "NAME") && CopyInto(system->displayName, node, "DISPLAY_NAME");
    }

    static bool ReadDataType(const BuXmlNode& node)
    {
        _UnitDataTypeStr* const type = catalogue::AppendDataType();
        if (type == nullptr)
            return false;
        type->name = CopyOf(node, "NAME");
        type->id = IntegerOf(node, "ID");
        type->lengthExponent = IntegerOf(node, "NUM_L");
        type->massExponent = IntegerOf(node, "NUM_M");
        type->timeExponent = IntegerOf(node, "NUM_T");
        type->heatExponent = IntegerOf(node, "NUM_H");
        type->constantId = IntegerOf(node, "CONST_ID");
        type->hasMultiplier = node.GetAttributeUtf8("MULTIPLIER") != nullptr;
        type->multiplier = type->hasMultiplier != 0 ? NumberOf(node, "MULTIPLIER") : 1.0;
        const NarrowAttribute displayUnits(node, "DISPLAY_UNIT_ID_NAME");
        return type->name != nullptr && CopyInto(type->sequence, node, "SEQUENCE") &&
               CopyInto(type->viewerName, node, "ZAMVIEW_NAME") && !displayUnits.HasFailed() &&
               (displayUnits.Get() == nullptr || ReadDisplayUnits(displayUnits.TextOrEmpty(), *type));
    }

    int m_baseType = 0;
    bool m_systemsEnded = false;  // by the first one that lacks an attribute
};

// ---- Errors --------------------------------------------------------------------------------------------------------

char* ErrorText(const char* fileName, std::string_view reason)
{
    const std::string_view parts[] = {"ERROR : While loading file ", fileName != nullptr ? fileName : "", "\n", reason};
    std::size_t length = 0;
    for (const std::string_view part : parts)
        length += part.size();
    auto* const text = static_cast<char*>(VBuMalloc(length + 1, modules::VUnit, __LINE__, 0));
    if (text == nullptr)
        return nullptr;
    char* end = text;
    for (const std::string_view part : parts)
        end = std::copy(part.begin(), part.end(), end);
    *end = '\0';
    return text;
}

}  // namespace

int VUnitUtlFillObject(const char* fileName, char** errorText)
{
    const catalogue::Lengths lengths = catalogue::CurrentLengths();
    if (errorText != nullptr)
        *errorText = nullptr;

    BuXmlDocument document;
    const bool isLoaded = document.Load(BuString(fileName));
    if (isLoaded && UnitFileReader().Read(document.GetRoot()))
        return 1;

    catalogue::CutBackTo(lengths);
    if (errorText != nullptr) {
        const std::string parserText = document.GetErrorText().ToNarrow();
        *errorText = ErrorText(fileName, isLoaded ? std::string_view("Out of memory") : parserText);
    }
    return -1;
}
