// The catalogue that ships: its form is checked in the file, its numbers and texts through the library.
#include <TuvoUtil/Units.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"
#include "support/UnitsProgram.h"

#include <basutl/BuNumber.h>
#include <basutl/BuXml.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

// ---- The file ------------------------------------------------------------------------------------------------------

enum BaseType : std::size_t
{
    Length,
    Mass,
    Time,
    Heat,
    Constant
};

struct Unit
{
    std::string name, abbreviation;
    int id;
    std::size_t baseType;
    double factor;
};

struct System
{
    std::string name, displayName;
    int id;
    std::array<int, 4> units;
    bool IsWithoutUnits() const { return units == std::array{-1, -1, -1, -1}; }
};

struct Type
{
    std::string name, sequence, viewerName;
    int id;
    std::array<int, 4> exponents;
    int constant;
    double multiplier;                               // 0 when there is none
    std::vector<std::pair<int, std::string>> shown;  // systems and display units
};

struct Catalogue
{
    std::vector<Unit> units;
    std::vector<System> systems;
    std::vector<Type> types;

    const Unit& UnitOf(int id) const
    {
        const auto found = std::find_if(units.begin(), units.end(), [id](const Unit& unit) { return unit.id == id; });
        if (found == units.end())
            throw std::runtime_error("there is no unit " + std::to_string(id));
        return *found;
    }
};

std::string Text(BuXmlNode node, const char* attribute)
{
    const char* const value = node.GetAttributeUtf8(attribute);
    return value != nullptr ? value : "";
}

int Number(BuXmlNode node, const char* attribute)
{
    return BuReadInt(node.GetAttributeUtf8(attribute));
}

double Factor(BuXmlNode node, const char* attribute)
{
    return BuReadDouble(node.GetAttributeUtf8(attribute));
}

std::vector<std::pair<int, std::string>> DisplayUnits(const std::string& list)
{
    std::vector<std::pair<int, std::string>> entries;
    std::istringstream stream(list);
    for (std::string entry; std::getline(stream, entry, ';');)
        entries.emplace_back(std::stoi(entry), entry.substr(entry.find(':') + 1));
    return entries;
}

void ForEachChild(BuXmlNode parent, const char* name, const std::function<void(BuXmlNode)>& visit)
{
    for (BuXmlNode node = parent.GetFirstChild(); node; node = node.GetNextSibling())
        if (std::string(node.GetNameUtf8()) == name)
            visit(node);
}

Catalogue ReadCatalogue()
{
    BuXmlDocument document;
    if (!document.Load(platform::Widen(SourceFile("data/unit.xml")).c_str()))
        throw std::runtime_error("cannot read the catalogue");

    Catalogue catalogue;
    ForEachChild(document.GetRoot(), "BASE_TYPE", [&](BuXmlNode group) {
        const std::vector<std::string> names = {"LENGTH", "MASS", "TIME", "HEAT", "CONSTANT"};
        const auto at = std::find(names.begin(), names.end(), Text(group, "TYPE"));
        ForEachChild(group, "BASE_UNIT", [&](BuXmlNode node) {
            catalogue.units.push_back({Text(node, "NAME"), Text(node, "ABBR"), Number(node, "ID"),
                                       static_cast<std::size_t>(at - names.begin()), Factor(node, "CONV_VAL")});
        });
    });
    ForEachChild(document.GetRoot(), "UNIT_SYSTEM", [&](BuXmlNode node) {
        const std::array units = {Number(node, "LENGTH_UNIT"), Number(node, "MASS_UNIT"), Number(node, "TIME_UNIT"),
                                  Number(node, "HEAT_UNIT")};
        catalogue.systems.push_back({Text(node, "NAME"), Text(node, "DISPLAY_NAME"), Number(node, "ID"), units});
    });
    ForEachChild(document.GetRoot(), "DATA_TYPE", [&](BuXmlNode node) {
        const std::array exponents = {Number(node, "NUM_L"), Number(node, "NUM_M"), Number(node, "NUM_T"),
                                      Number(node, "NUM_H")};
        catalogue.types.push_back({Text(node, "NAME"), Text(node, "SEQUENCE"), Text(node, "ZAMVIEW_NAME"),
                                   Number(node, "ID"), exponents, Number(node, "CONST_ID"), Factor(node, "MULTIPLIER"),
                                   DisplayUnits(Text(node, "DISPLAY_UNIT_ID_NAME"))});
    });
    return catalogue;
}

std::string InLowerCase(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

template <typename Record, typename Key>
void ExpectUnique(const std::vector<Record>& records, Key key)
{
    std::set<decltype(key(records.front()))> seen;
    for (const Record& record : records)
        EXPECT_TRUE(seen.insert(key(record)).second) << record.name;
}

TEST(UnitCatalogueFile, HoldsAsMuchAsPromisedAndEverythingOnce)
{
    const Catalogue catalogue = ReadCatalogue();
    EXPECT_GE(catalogue.units.size(), 60u);
    EXPECT_GE(catalogue.systems.size(), 25u);
    EXPECT_GE(catalogue.types.size(), 120u);

    ExpectUnique(catalogue.units, [](const Unit& unit) { return unit.id; });
    ExpectUnique(catalogue.units, [](const Unit& unit) { return InLowerCase(unit.abbreviation); });
    ExpectUnique(catalogue.systems, [](const System& system) { return InLowerCase(system.name); });
    ExpectUnique(catalogue.systems, [](const System& system) { return InLowerCase(system.displayName); });
    ExpectUnique(catalogue.systems, [](const System& system) { return system.units; });
    ExpectUnique(catalogue.types, [](const Type& type) { return type.id; });
    ExpectUnique(catalogue.types, [](const Type& type) { return InLowerCase(type.name); });

    std::vector<Type> viewed = catalogue.types;
    std::erase_if(viewed, [](const Type& type) { return type.viewerName.empty(); });
    ExpectUnique(viewed, [](const Type& type) { return InLowerCase(type.viewerName); });
}

// A record made at run time is numbered by the count of records and must not meet one of the file; a type so made has
// the viewer name "UN".
TEST(UnitCatalogueFile, LeavesRoomForRecordsMadeAtRunTime)
{
    const Catalogue catalogue = ReadCatalogue();
    for (std::size_t i = 0; i < catalogue.systems.size(); ++i)
        EXPECT_EQ(catalogue.systems[i].id, static_cast<int>(i)) << catalogue.systems[i].name;
    for (const Type& type : catalogue.types) {
        EXPECT_TRUE(type.id >= 1 && type.id <= static_cast<int>(catalogue.types.size())) << type.name;
        EXPECT_NE(InLowerCase(type.viewerName), "un") << type.name;
    }
}

TEST(UnitCatalogueFile, RefersToUnitsOfTheRightKind)
{
    const Catalogue catalogue = ReadCatalogue();
    int withoutUnits = 0;
    for (const System& system : catalogue.systems) {
        withoutUnits += system.IsWithoutUnits();
        EXPECT_EQ(system.IsWithoutUnits(), system.displayName.empty()) << system.name;
        for (std::size_t i = 0; i < system.units.size() && !system.IsWithoutUnits(); ++i)
            EXPECT_EQ(catalogue.UnitOf(system.units[i]).baseType, i) << system.name;
    }
    EXPECT_EQ(withoutUnits, 1);

    std::vector<Type> counted = catalogue.types;
    std::erase_if(counted, [](const Type& type) { return type.constant == 0 && type.multiplier == 0.0; });
    ExpectUnique(counted, [](const Type& type) { return type.constant; });
    for (const Type& type : counted) {
        EXPECT_EQ(catalogue.UnitOf(type.constant).baseType, Constant) << type.name;
        EXPECT_EQ(catalogue.UnitOf(type.constant).factor, type.multiplier) << type.name;
        EXPECT_EQ(type.exponents, (std::array{0, 0, 0, 0})) << type.name;
    }
}

TEST(UnitCatalogueFile, FitsTheFieldsOfTheRecords)
{
    const Catalogue catalogue = ReadCatalogue();
    for (const System& system : catalogue.systems)
        EXPECT_TRUE(system.name.size() < 256 && system.displayName.size() < 256) << system.name;
    for (const Type& type : catalogue.types) {
        EXPECT_TRUE(type.sequence.size() < 8 && type.viewerName.size() < 32) << type.name;
        for (const auto& [system, text] : type.shown)
            EXPECT_TRUE(!text.empty() && text.size() < 256) << type.name;
    }
}

// The composed text of a density would be "1/m^3 kg": only powers of one length or mass do without display units.
TEST(UnitCatalogueFile, ShowsEveryTypeInEverySystemUnlessItComposesWell)
{
    const Catalogue catalogue = ReadCatalogue();
    std::vector<int> systems;
    for (const System& system : catalogue.systems)
        if (!system.IsWithoutUnits())
            systems.push_back(system.id);

    for (const Type& type : catalogue.types) {
        const auto& [length, mass, time, heat] = type.exponents;
        std::vector<int> shown;
        for (const auto& [system, text] : type.shown)
            shown.push_back(system);
        if (shown.empty())
            EXPECT_TRUE((length == 0 || mass == 0) && time == 0 && heat == 0) << type.name;
        else
            EXPECT_EQ(shown, systems) << type.name;
    }
}

// ---- In the language of GNU units ----------------------------------------------------------------------------------

// Units of the catalogue that the program does not know by their abbreviation, or takes for something else.
const std::map<std::string, std::string> UnitExpressions = {
    {"ftus", "surveyfoot"},
    {"ton", "tonne"},
    {"dton", "N s^2/cm"},
    {"st", "stone"},
    {"shton", "shortton"},
    {"lgton", "longton"},
    {"slug", "lbf s^2/foot"},
    {"kslug", "kip s^2/foot"},
    {"slinch", "lbf s^2/inch"},
    {"kslinch", "kip s^2/inch"},
    {"hyl", "kgf s^2/m"},
    {"khyl", "kgf s^2/mm"},
    {"year", "julianyear"},
    {"rankine", "degR"},
    {"centigrade", "degC"},
    {"fahrenheit", "degF"},
    {"one", "1"},
    {"permille", "1/1000"},
    {"microstrain", "1/1000000"},
    {"rad", "radian"},
    {"mrad", "radian/1000"},
    {"gn", "gravity"},
    {"km/h", "km/hour"},
};

// The scales as functions of the program.
const std::map<std::string, std::string> ScaleFunctions = {
    {"kelvin", "tempK"},
    {"rankine", "tempR"},
    {"centigrade", "tempC"},
    {"fahrenheit", "tempF"},
};

// What the constants measure that are not of one or of the radian.
const std::map<std::string, std::string> MeasuredTypes = {
    {"hz", "Frequency"},  {"rpm", "Angular Velocity"}, {"deg/s", "Angular Velocity"}, {"gn", "Acceleration"},
    {"km/h", "Velocity"}, {"mph", "Velocity"},         {"knot", "Velocity"},
};

std::string ExpressionOf(const std::string& word)
{
    const auto found = UnitExpressions.find(word);
    return found != UnitExpressions.end() ? found->second : word;
}

// A unit text to a power, which the square of "MPa mm^0.5" needs: "(MPa)^2 (mm)^1".
std::string ExpressionOfText(const std::string& text, double power)
{
    const auto isLetter = [](unsigned char c) { return std::isalpha(c) != 0; };
    std::string expression;
    for (auto at = text.begin(); at != text.end();) {
        const auto wordEnd = std::find_if_not(at, text.end(), isLetter);
        if (wordEnd == at) {
            expression += *at++;
            continue;
        }
        double exponent = 1.0;
        std::size_t length = 0;
        if (wordEnd != text.end() && *wordEnd == '^')
            exponent = std::stod(std::string(wordEnd + 1, text.end()), &length);
        expression += '(' + ExpressionOf({at, wordEnd}) + ")^" + std::to_string(std::lround(exponent * power));
        at = wordEnd + static_cast<std::ptrdiff_t>(length == 0 ? 0 : length + 1);
    }
    return expression;
}

// What the exponents of a type make of the units of a system.
std::string Composed(const Catalogue& catalogue, const Type& type, const System& system)
{
    std::string expression = "1";
    for (std::size_t i = 0; i < type.exponents.size(); ++i)
        if (type.exponents[i] != 0)
            expression += " (" + ExpressionOf(catalogue.UnitOf(system.units[i]).abbreviation) + ")^" +
                          std::to_string(type.exponents[i]);
    return expression;
}

// ---- Through the library -------------------------------------------------------------------------------------------
//
// A process has one catalogue for good, so this runs in a process of its own.

constexpr int StressIntensity = 49;  // a square root: its exponents are those of its square

double Convert(int fromType, int toType, int fromSystem, int toSystem, double value)
{
    double result = std::nan("");
    VUnitUtlConvertFromOneToAnother(fromType, toType, fromSystem, toSystem, value, &result);
    return result;
}

std::string UnitText(const Type& type, const System& system)
{
    const _UnitDataStr data = {type.id, system.id};
    char text[256];
    VUnitUtlGetUnitString(&data, text);
    return text;
}

bool IsTemperature(const Type& type)
{
    const auto& [length, mass, time, heat] = type.exponents;
    return length == 0 && mass == 0 && time == 0 && heat >= 1;
}

Catalogue LoadedCatalogue()
{
    VUnitUtlMain(SourceFile("data").c_str());
    return ReadCatalogue();
}

// Every unit but the constants, in a system that is made for it.
void ExpectUnits(UnitsProgram& program, const Catalogue& catalogue)
{
    constexpr std::array References = {"m", "kg", "sec", "kelvin"};
    constexpr std::array Probes = {"Length", "Mass", "Time", "Temperature Gradient"};
    for (const Unit& unit : catalogue.units) {
        if (unit.baseType == Constant)
            continue;
        auto units = References;
        units[unit.baseType] = unit.abbreviation.c_str();
        const int system = VUnitUtlGetUnitSystemId(units[Length], units[Mass], units[Time], units[Heat]);
        const int type = VUnitUtlGetDataTypeId(Probes[unit.baseType]);
        program.Expect(Convert(type, type, VUnitUtlGetBaseUnitSystemId(), system, 1.0), References[unit.baseType],
                       ExpressionOf(unit.abbreviation), unit.name);
    }
}

void ExpectTemperatures(UnitsProgram& program, const Catalogue& catalogue)
{
    const int type = VUnitUtlGetDataTypeId("Temperature");
    for (const System& from : catalogue.systems)
        for (const System& to : catalogue.systems)
            if (!from.IsWithoutUnits() && !to.IsWithoutUnits()) {
                const std::string& fromScale = catalogue.UnitOf(from.units[Heat]).abbreviation;
                const std::string& toScale = catalogue.UnitOf(to.units[Heat]).abbreviation;
                program.Expect(Convert(type, type, from.id, to.id, 451.0), ScaleFunctions.at(fromScale) + "(451)",
                               ScaleFunctions.at(toScale), from.name + " to " + to.name);
            }
}

// What a unit is called is worth as much as what its exponents make of the units of the system.
void ExpectText(UnitsProgram& program, const Type& type, const System& system, const std::string& composed)
{
    const std::string text = UnitText(type, system);
    for (const auto& [id, name] : type.shown)
        if (id == system.id) {
            EXPECT_EQ(text, name) << type.name << " in " << system.name;
        }
    if (!text.empty())
        program.Expect(1.0, ExpressionOfText(text, type.id == StressIntensity ? 2.0 : 1.0), composed,
                       type.name + " in " + system.name + " is called " + text);
}

// A quantity in a unit of its own, converted from the type that its reference unit measures.
void ExpectConstant(UnitsProgram& program, const Catalogue& catalogue, const Type& type, const System& system)
{
    const std::string& constant = catalogue.UnitOf(type.constant).abbreviation;
    const auto named = MeasuredTypes.find(constant);
    const std::string measured = named != MeasuredTypes.end() ? named->second : "Ratio";
    const auto found = std::find_if(catalogue.types.begin(), catalogue.types.end(),
                                    [&](const Type& other) { return other.name == measured; });
    program.Expect(Convert(found->id, type.id, system.id, 0, 1.0), Composed(catalogue, *found, system),
                   ExpressionOf(constant), type.name + " from " + system.name);
}

CHILD_SCENARIO(CatalogueAgainstUnits)
{
    const Catalogue catalogue = LoadedCatalogue();
    UnitsProgram program;
    ExpectUnits(program, catalogue);
    ExpectTemperatures(program, catalogue);

    struct Place
    {
        const Type& type;
        const System& system;
        std::size_t answer;  // how many of the unit make one reference unit
    };
    std::vector<std::vector<Place>> places;
    for (const Type& type : catalogue.types) {
        places.emplace_back();
        for (const System& system : catalogue.systems) {
            if (system.IsWithoutUnits())
                continue;
            if (type.constant != 0) {
                ExpectConstant(program, catalogue, type, system);
                continue;
            }
            const std::string composed = Composed(catalogue, type, system);
            ExpectText(program, type, system, composed);
            if (!IsTemperature(type))
                places.back().push_back(
                    {type, system, program.Ask(Composed(catalogue, type, catalogue.systems[0]), composed)});
        }
    }

    const std::vector<double> answers = program.Compare();
    for (const std::vector<Place>& sameType : places)
        for (const Place& from : sameType)
            for (const Place& to : sameType) {
                const int type = from.type.id;
                const double factor = answers[to.answer] / answers[from.answer];
                EXPECT_NEAR(Convert(type, type, from.system.id, to.system.id, 1.0) /
                                (type == StressIntensity ? std::sqrt(factor) : factor),
                            1.0, 1e-12)
                    << from.type.name << " from " << from.system.name << " to " << to.system.name;
            }
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(UnitCatalogue, AgreesWithGnuUnits)
{
    if (!UnitsProgram::IsInstalled())
        GTEST_SKIP() << "the program units is not installed";
    const ChildResult result = RunChild("CatalogueAgainstUnits");
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
}

}  // namespace
