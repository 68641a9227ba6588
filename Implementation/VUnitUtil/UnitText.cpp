#include "VUnitUtil/UnitText.h"

#include "VUnitUtil/UnitSystems.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuString.h>

#include <cstdio>
#include <string>

namespace units {
namespace {

// Appends to a caller's buffer; what does not fit is dropped.
class TextWriter
{
public:
    explicit TextWriter(char* text) : m_text(text) { *text = '\0'; }

    bool IsEmpty() const { return m_length == 0; }

    void Append(const char* text)
    {
        for (; *text != '\0' && m_length < TextSize - 1; ++text)
            m_text[m_length++] = *text;
        m_text[m_length] = '\0';
    }

    void AppendInLowerCase(const char* text)
    {
        char* const start = m_text + m_length;
        Append(text);
        for (char* c = start; *c != '\0'; ++c)
            *c = BuToLower(*c);
    }

private:
    char* m_text;
    std::size_t m_length = 0;
};

void AppendTerm(TextWriter& text, std::int32_t unitId, std::int32_t exponent)
{
    if (exponent == 0)
        return;
    const _UnitBaseTypeStr* const unit = catalogue::FindUnit(unitId);
    if (unit == nullptr)
        return;
    if (exponent > 0)
        text.Append(text.IsEmpty() ? "" : " ");
    else
        text.Append(text.IsEmpty() ? "1/" : "/");
    text.AppendInLowerCase(unit->abbreviation);

    const std::uint32_t size =
        exponent > 0 ? static_cast<std::uint32_t>(exponent) : 0u - static_cast<std::uint32_t>(exponent);
    if (size > 1) {
        char number[16];
        std::snprintf(number, sizeof number, "^%u", size);
        text.Append(number);
    }
}

const char* DisplayUnit(const _UnitDataTypeStr& type, std::int32_t systemId)
{
    if (type.hasMultiplier == 0)
        for (std::int32_t i = 0; i < type.displayUnitCount; ++i)
            if (type.displayUnits[i].systemId == systemId)
                return type.displayUnits[i].unitName;
    return nullptr;
}

}  // namespace

void ComposeUnitText(const catalogue::SystemUnits& system, const catalogue::Exponents& exponents, char* text)
{
    TextWriter writer(text);
    AppendTerm(writer, system.length, exponents.length);
    AppendTerm(writer, system.mass, exponents.mass);
    AppendTerm(writer, system.time, exponents.time);
    AppendTerm(writer, system.heat, exponents.heat);
}

bool WriteUnitText(const _UnitDataTypeStr& type, const _UnitSystemStr& system, char* text)
{
    *text = '\0';
    if (type.id < 0 || system.id < 0 || system.id == catalogue::EmptySystemId())
        return false;
    const char* const displayUnit = DisplayUnit(type, system.id);
    if (displayUnit != nullptr)
        catalogue::CopyCut(text, TextSize, displayUnit);
    else
        ComposeUnitText(catalogue::UnitsOf(system), catalogue::ExponentsOf(type), text);
    return displayUnit != nullptr;
}

}  // namespace units

void VUnitUtlGetUnitString(const _UnitDataStr* data, char* text)
{
    const _UnitDataTypeStr* const type = data != nullptr ? catalogue::FindDataType(data->dataTypeId) : nullptr;
    const _UnitSystemStr* const system = data != nullptr ? catalogue::FindSystem(data->systemId) : nullptr;
    if (text == nullptr)
        return;
    *text = '\0';
    if (type != nullptr && system != nullptr)
        units::WriteUnitText(*type, *system, text);
}

int VUnitUtlGetUnitRepresentation(const wchar_t* dataTypeName, const char* length, const char* mass, const char* time,
                                  const char* heat, BuString& text)
{
    text.Empty();
    const std::string name = BuString(dataTypeName).ToNarrow();
    const catalogue::SystemUnits units = units::UnitsNamed(length, mass, time, heat);
    // A name that lost its text had no memory for it.
    if (dataTypeName == nullptr || name.empty() != (*dataTypeName == L'\0'))
        return 0;
    const _UnitDataTypeStr* const type = catalogue::FindDataType(name.c_str());
    if (type == nullptr)
        return 0;

    char unit[units::TextSize];
    bool isDisplayUnit = false;
    if (const _UnitSystemStr* const system = catalogue::FindSystem(units))
        isDisplayUnit = units::WriteUnitText(*type, *system, unit);
    else
        units::ComposeUnitText(units, catalogue::ExponentsOf(*type), unit);
    text = unit;
    return isDisplayUnit && text.IsEmpty() == (*unit == '\0') ? 1 : 0;
}
