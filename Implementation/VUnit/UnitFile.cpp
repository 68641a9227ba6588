// Reads a unit file into the catalogue.

#include "TuvoMemory/ModuleNames.h"
#include "VUnit/Catalogue.h"
#include "VUnit/DisplayUnits.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>
#include <basutl/BuXml.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr const char* BaseTypeNames[] = {"LENGTH", "MASS", "TIME", "HEAT", "CONSTANT"};

bool IsNamed(const BuXmlNode& node, std::string_view name)
{
    return node.GetNameUtf8() == name;
}

// The number of a text. Short ones that are nothing but a number, as most are, are read in place.
int ReadInteger(const char* text)
{
    if (text == nullptr)
        return 0;
    const bool isNegative = *text == '-';
    const char* const digits = text + (isNegative ? 1 : 0);
    const char* end = digits;
    int value = 0;
    for (; BuIsDigit(*end) && end - digits < 9; ++end)
        value = value * 10 + (*end - '0');
    if (end == digits || *end != '\0')
        return BuReadInt(text);
    return isNegative ? -value : value;
}

bool IsAscii(std::string_view text)
{
    std::uint64_t bits = 0;
    for (std::uint64_t eight = 0; text.size() >= sizeof eight; text.remove_prefix(sizeof eight)) {
        std::memcpy(&eight, text.data(), sizeof eight);
        bits |= eight;
    }
    for (const char c : text)
        bits |= static_cast<std::uint64_t>(c & 0x80);
    return (bits & 0x8080808080808080) == 0;
}

// The attributes of an element, in the order of a table of their names.
template <std::size_t Count>
class Attributes
{
public:
    Attributes(const BuXmlNode& node, const char* const (&names)[Count]) : m_node(node), m_names(names)
    {
        node.GetAttributesUtf8(names, m_values, Count);
    }

    bool Has(std::size_t which) const { return m_values[which] != nullptr; }
    int Integer(std::size_t which) const { return ReadInteger(m_values[which]); }
    double Number(std::size_t which) const { return BuReadDouble(m_values[which]); }

    // Hands the attribute as narrow text, which ends with a terminator, to `take`, which tells whether it succeeded; the
    // empty text when there is none. False also when the conversion ran out of memory.
    template <typename Take>
    bool Text(std::size_t which, Take take) const
    {
        const std::string_view value = Has(which) ? m_values[which] : "";
        if (IsAscii(value))
            return take(value);
        BuString wide;
        m_node.GetAttribute(BuString(m_names[which]), wide);
        const std::string narrow = wide.ToNarrow();
        return !narrow.empty() && take(std::string_view(narrow));
    }

    // A copy for a record to own; null when memory is exhausted.
    char* Copy(std::size_t which) const
    {
        char* copy = nullptr;
        Text(which, [&](std::string_view text) {
            copy = static_cast<char*>(VBuMalloc(text.size() + 1, modules::VUnit, __LINE__, 0));
            if (copy != nullptr)
                catalogue::CopyCut(copy, text.size() + 1, text);
            return copy != nullptr;
        });
        return copy;
    }

    // A copy in a field of a record, cut to what fits.
    template <std::size_t Size>
    bool CopyInto(char (&field)[Size], std::size_t which) const
    {
        return Text(which, [&](std::string_view text) {
            catalogue::CopyCut(field, Size, text);
            return true;
        });
    }

private:
    const BuXmlNode& m_node;
    const char* const (&m_names)[Count];
    const char* m_values[Count];
};

enum UnitAttribute
{
    UnitId,
    UnitName,
    UnitAbbreviation,
    UnitConversionValue,
    UnitAdditiveValue
};
constexpr const char* UnitAttributes[] = {"ID", "NAME", "ABBR", "CONV_VAL", "ADD_VAL"};

enum SystemAttribute
{
    SystemId,
    SystemName,
    SystemLength,
    SystemMass,
    SystemTime,
    SystemHeat,
    SystemDisplayName,
};
constexpr std::size_t RequiredSystemAttributes = SystemDisplayName;  // those before it
constexpr const char* SystemAttributes[] = {"ID",        "NAME",      "LENGTH_UNIT", "MASS_UNIT",
                                            "TIME_UNIT", "HEAT_UNIT", "DISPLAY_NAME"};

enum TypeAttribute
{
    TypeId,
    TypeName,
    TypeLength,
    TypeMass,
    TypeTime,
    TypeHeat,
    TypeConstant,
    TypeSequence,
    TypeMultiplier,
    TypeViewerName,
    TypeDisplayUnits
};
constexpr const char* TypeAttributes[] = {"ID",
                                          "NAME",
                                          "NUM_L",
                                          "NUM_M",
                                          "NUM_T",
                                          "NUM_H",
                                          "CONST_ID",
                                          "SEQUENCE",
                                          "MULTIPLIER",
                                          "ZAMVIEW_NAME",
                                          "DISPLAY_UNIT_ID_NAME"};

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
        if (IsNamed(node, "DATA_TYPE"))
            return ReadDataType(node);
        if (IsNamed(node, "UNIT_SYSTEM"))
            return ReadSystem(node);
        if (IsNamed(node, "BASE_TYPE"))
            return ReadBaseType(node);
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
        const Attributes attributes(node, UnitAttributes);
        unit->id = attributes.Integer(UnitId);
        unit->name = attributes.Copy(UnitName);
        unit->abbreviation = attributes.Copy(UnitAbbreviation);
        unit->baseType = m_baseType;
        unit->conversionValue = attributes.Number(UnitConversionValue);
        unit->additiveValue = attributes.Number(UnitAdditiveValue);
        return unit->name != nullptr && unit->abbreviation != nullptr;
    }

    bool ReadSystem(const BuXmlNode& node)
    {
        const Attributes attributes(node, SystemAttributes);
        for (std::size_t i = 0; i < RequiredSystemAttributes; ++i)
            m_systemsEnded |= !attributes.Has(i);
        if (m_systemsEnded)
            return true;
        _UnitSystemStr* const system = catalogue::AppendSystem();
        if (system == nullptr)
            return false;
        system->id = attributes.Integer(SystemId);
        system->lengthUnit = attributes.Integer(SystemLength);
        system->massUnit = attributes.Integer(SystemMass);
        system->timeUnit = attributes.Integer(SystemTime);
        system->heatUnit = attributes.Integer(SystemHeat);
        return attributes.CopyInto(system->name, SystemName) &&
               attributes.CopyInto(system->displayName, SystemDisplayName);
    }

    static bool ReadDataType(const BuXmlNode& node)
    {
        _UnitDataTypeStr* const type = catalogue::AppendDataType();
        if (type == nullptr)
            return false;
        const Attributes attributes(node, TypeAttributes);
        type->id = attributes.Integer(TypeId);
        type->name = attributes.Copy(TypeName);
        type->lengthExponent = attributes.Integer(TypeLength);
        type->massExponent = attributes.Integer(TypeMass);
        type->timeExponent = attributes.Integer(TypeTime);
        type->heatExponent = attributes.Integer(TypeHeat);
        type->constantId = attributes.Integer(TypeConstant);
        type->hasMultiplier = attributes.Has(TypeMultiplier);
        type->multiplier = type->hasMultiplier != 0 ? attributes.Number(TypeMultiplier) : 1.0;
        if (type->name == nullptr || !attributes.CopyInto(type->sequence, TypeSequence) ||
            !attributes.CopyInto(type->viewerName, TypeViewerName))
            return false;
        return !attributes.Has(TypeDisplayUnits) ||
               attributes.Text(TypeDisplayUnits, [&](std::string_view list) { return ReadDisplayUnits(list, *type); });
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
