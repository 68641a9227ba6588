#include "tools/tuvo/CatalogueFile.h"

#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuXml.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace tool {
namespace {

std::string NarrowText(const BuString& text)
{
    return platform::Narrow(text.GetText());
}

bool IsInt(double value)
{
    return value >= INT_MIN && value <= INT_MAX && std::trunc(value) == value;
}

// The attributes of one element; a bad one is noted, and reads as the library reads it: empty or 0.
class ElementReader
{
public:
    ElementReader(const BuXmlNode& node, std::size_t number, std::vector<std::string>& problems)
        : m_node(node), m_problems(problems), m_label(NarrowText(node.GetName()))
    {
        const std::string name = Find("NAME").value_or("");
        m_label += name.empty() ? " number " + std::to_string(number) : ' ' + Quoted(name);
    }

    std::optional<std::string> Find(const char* attribute) const
    {
        BuString value;
        if (!m_node.GetAttribute(platform::Widen(attribute).c_str(), value))
            return std::nullopt;
        return NarrowText(value);
    }

    std::string Text(const char* attribute)
    {
        const std::optional<std::string> text = Find(attribute);
        if (!text)
            Note(std::string(attribute) + " is missing");
        return text.value_or("");
    }

    // A text that must not be empty.
    std::string Name(const char* attribute)
    {
        std::string text = Text(attribute);
        if (text.empty() && Find(attribute))
            Note(std::string(attribute) + " is empty");
        return text;
    }

    // A text that may be absent, and of which the library keeps so many characters.
    std::string LimitedText(const char* attribute, std::size_t limit)
    {
        std::string text = Find(attribute).value_or("");
        if (text.size() > limit)
            Note(std::string(attribute) + ": only the first " + std::to_string(limit) + " characters are kept");
        return text;
    }

    double Number(const char* attribute)
    {
        const std::optional<std::string> text = Find(attribute);
        double value = 0.0;
        if (!text)
            Note(std::string(attribute) + " is missing");
        else if (const std::string problem = ReadNumber(*text, value); !problem.empty())
            Note(std::string(attribute) + ": " + problem);
        return std::isfinite(value) ? value : 0.0;
    }

    int Integer(const char* attribute)
    {
        const double value = Number(attribute);
        if (!IsInt(value))
            Note(std::string(attribute) + ": " + NumberText(value) + " is not a whole number");
        return IsInt(value) ? static_cast<int>(value) : 0;
    }

    void Note(const std::string& problem) { m_problems.push_back(m_label + ": " + problem); }

private:
    const BuXmlNode& m_node;
    std::vector<std::string>& m_problems;
    std::string m_label;
};

// The children of an element that have a name, each with a reader.
template <typename Visit>
void ForEachElement(const BuXmlNode& parent, const wchar_t* name, std::vector<std::string>& problems, Visit visit)
{
    std::size_t number = 0;
    for (BuXmlNode node = parent.GetFirstChild(); node; node = node.GetNextSibling())
        if (node.IsNamed(name)) {
            ElementReader reader(node, ++number, problems);
            visit(node, reader);
        }
}

// The base type that an element names; that of the element before it when it names none.
BaseType ReadBaseType(ElementReader& reader, BaseType before)
{
    constexpr std::array<const char*, 5> Names = {"LENGTH", "MASS", "TIME", "HEAT", "CONSTANT"};
    const std::string name = reader.Text("TYPE");
    const auto found = std::find(Names.begin(), Names.end(), name);
    if (found != Names.end())
        return static_cast<BaseType>(found - Names.begin());
    reader.Note("TYPE " + Quoted(name) + " is not LENGTH, MASS, TIME, HEAT or CONSTANT");
    return before;
}

BaseUnit ReadBaseUnit(ElementReader& reader, BaseType baseType)
{
    return {.name = reader.Name("NAME"),
            .abbreviation = reader.Name("ABBR"),
            .id = reader.Integer("ID"),
            .baseType = baseType,
            .factor = reader.Number("CONV_VAL"),
            .offset = reader.Find("ADD_VAL") ? reader.Number("ADD_VAL") : 0.0};
}

void ReadBaseUnits(const BuXmlNode& root, CatalogueFile& catalogue)
{
    BaseType baseType = Length;
    ForEachElement(root, L"BASE_TYPE", catalogue.problems, [&](const BuXmlNode& group, ElementReader& groupReader) {
        baseType = ReadBaseType(groupReader, baseType);
        ForEachElement(group, L"BASE_UNIT", catalogue.problems, [&](const BuXmlNode&, ElementReader& reader) {
            catalogue.units.push_back(ReadBaseUnit(reader, baseType));
        });
    });
}

// Reading ends at the first system that lacks an attribute.
void ReadSystems(const BuXmlNode& root, CatalogueFile& catalogue)
{
    bool ended = false;
    ForEachElement(root, L"UNIT_SYSTEM", catalogue.problems, [&](const BuXmlNode&, ElementReader& reader) {
        for (const char* const attribute : {"NAME", "LENGTH_UNIT", "MASS_UNIT", "TIME_UNIT", "HEAT_UNIT", "ID"})
            if (!ended && !reader.Find(attribute)) {
                reader.Note(std::string(attribute) + " is missing: this system and all after it are not read");
                ended = true;
            }
        if (!ended)
            catalogue.systems.push_back({.name = reader.Name("NAME"),
                                         .displayName = reader.LimitedText("DISPLAY_NAME", 255),
                                         .id = reader.Integer("ID"),
                                         .units = {reader.Integer("LENGTH_UNIT"), reader.Integer("MASS_UNIT"),
                                                   reader.Integer("TIME_UNIT"), reader.Integer("HEAT_UNIT")}});
    });
}

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

// Entries "ID:UNIT" divided by semicolons.
std::vector<DisplayUnit> ReadDisplayUnits(ElementReader& reader)
{
    std::vector<DisplayUnit> units;
    for (const std::string& entry : Split(reader.Find("DISPLAY_UNIT_ID_NAME").value_or(""), ';')) {
        if (entry.empty())
            continue;
        const std::vector<std::string> parts = Split(entry, ':');
        double id = 0.0;
        if (parts.size() == 2 && !parts[1].empty() && ReadNumber(parts[0], id).empty() && IsInt(id))
            units.push_back({static_cast<int>(id), parts[1]});
        else
            reader.Note("display unit " + Quoted(entry) + " is not of the form ID:UNIT");
    }
    return units;
}

DataType ReadDataType(ElementReader& reader)
{
    DataType type{.name = reader.Name("NAME"),
                  .id = reader.Integer("ID"),
                  .exponents = {reader.Integer("NUM_L"), reader.Integer("NUM_M"), reader.Integer("NUM_T"),
                                reader.Integer("NUM_H")},
                  .constantId = reader.Find("CONST_ID") ? reader.Integer("CONST_ID") : 0,
                  .multiplier = {},
                  .displayUnits = ReadDisplayUnits(reader),
                  .viewerName = reader.LimitedText("ZAMVIEW_NAME", 31)};
    reader.LimitedText("SEQUENCE", 7);
    if (reader.Find("MULTIPLIER"))
        type.multiplier = reader.Number("MULTIPLIER");
    return type;
}

template <typename Record>
const Record* FindById(const std::vector<Record>& records, int id)
{
    const auto found = std::find_if(records.begin(), records.end(), [id](const Record& r) { return r.id == id; });
    return found != records.end() ? &*found : nullptr;
}

}  // namespace

CatalogueFile ReadCatalogueFile(const std::string& path)
{
    // It is read twice, which a pipe cannot be, and devices may have no end.
    const std::wstring file = platform::Widen(path);
    platform::FileStatus status;
    if (platform::Status(file.c_str(), status) && status.kind == platform::FileKind::Other)
        throw Failure("cannot read the unit catalogue " + path + ": it is not a regular file");

    BuXmlDocument document;
    if (!document.Load(file.c_str()))
        throw Failure("cannot read the unit catalogue " + path + ": " + NarrowText(document.GetErrorText()));

    CatalogueFile catalogue;
    catalogue.path = path;
    const BuXmlNode root = document.GetRoot();
    ReadBaseUnits(root, catalogue);
    ReadSystems(root, catalogue);
    ForEachElement(root, L"DATA_TYPE", catalogue.problems,
                   [&](const BuXmlNode&, ElementReader& reader) { catalogue.types.push_back(ReadDataType(reader)); });
    if (catalogue.units.empty() && catalogue.systems.empty() && catalogue.types.empty())
        throw Failure(path + " is not a unit catalogue: it has no base units, unit systems or data types");
    return catalogue;
}

const BaseUnit* FindUnit(const CatalogueFile& catalogue, int id)
{
    return FindById(catalogue.units, id);
}

const BaseUnit* FindUnit(const CatalogueFile& catalogue, const std::string& abbreviation)
{
    const auto found = std::find_if(catalogue.units.begin(), catalogue.units.end(), [&](const BaseUnit& unit) {
        return BuCompareNoCase(unit.abbreviation.c_str(), abbreviation.c_str()) == 0;
    });
    return found != catalogue.units.end() ? &*found : nullptr;
}

const UnitSystem* FindSystem(const CatalogueFile& catalogue, int id)
{
    return FindById(catalogue.systems, id);
}

const DataType* FindType(const CatalogueFile& catalogue, int id)
{
    return FindById(catalogue.types, id);
}

}  // namespace tool
