// The catalogue that ships: its numbers, dimensions and texts. `tuvo units --check` finds what is wrong with its form.
#include <TuvoUtil/Units.h>

#include "VUnit/Catalogue.h"

#include "support/TestFiles.h"
#include "support/UnitsProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace {

class ShippedCatalogue : public testing::Test
{
protected:
    ShippedCatalogue()
    {
        catalogue::ResetForTests();
        VUnitUtlMain(SourceFile("data").c_str());
    }
    ~ShippedCatalogue() override { catalogue::ResetForTests(); }
};

// ---- Records -------------------------------------------------------------------------------------------------------

enum BaseType : std::size_t
{
    Length,
    Mass,
    Time,
    Heat,
    Constant
};
using Four = std::array<int, 4>;

Four UnitsOf(const _UnitSystemStr& system)
{
    return {system.lengthUnit, system.massUnit, system.timeUnit, system.heatUnit};
}

Four ExponentsOf(const _UnitDataTypeStr& type)
{
    return {type.lengthExponent, type.massExponent, type.timeExponent, type.heatExponent};
}

std::span<const _UnitBaseTypeStr> Units()
{
    return {catalogue::Get().m_baseUnits, static_cast<std::size_t>(catalogue::Get().m_baseUnitCount)};
}

std::span<const _UnitDataTypeStr> Types()
{
    return {catalogue::Get().m_dataTypes, static_cast<std::size_t>(catalogue::Get().m_dataTypeCount)};
}

// Copies, since more may be appended, of all systems but the one without units.
std::vector<_UnitSystemStr> Systems()
{
    const VUnit& all = catalogue::Get();
    std::vector<_UnitSystemStr> systems(all.m_systems, all.m_systems + all.m_systemCount);
    std::erase_if(systems, [](const _UnitSystemStr& system) { return UnitsOf(system) == Four{-1, -1, -1, -1}; });
    return systems;
}

TEST_F(ShippedCatalogue, HasOneSystemWithoutUnitsAndTheOthersOnce)
{
    EXPECT_EQ(Systems().size() + 1, static_cast<std::size_t>(catalogue::Get().m_systemCount));
    EXPECT_STREQ(catalogue::FindSystem(catalogue::EmptySystemId())->displayName, "");
    for (const _UnitSystemStr& system : Systems()) {
        EXPECT_STRNE(system.displayName, "") << system.name;
        EXPECT_EQ(catalogue::FindSystem(catalogue::UnitsOf(system))->id, system.id) << system.name;
    }
}

TEST_F(ShippedCatalogue, CountsEachTypeWithAMultiplierInAConstantOfItsOwn)
{
    std::set<int> seen;
    for (const _UnitDataTypeStr& type : Types()) {
        EXPECT_EQ(type.hasMultiplier != 0, type.constantId != 0) << type.name;
        EXPECT_STRNE(type.viewerName, "UN") << "that of a type made at run time: " << type.name;
        if (type.constantId == 0)
            continue;
        EXPECT_EQ(VUnitUtlGetBaseTypeFromId(type.constantId), static_cast<int>(Constant)) << type.name;
        EXPECT_EQ(ExponentsOf(type), Four{}) << type.name;
        EXPECT_TRUE(seen.insert(type.constantId).second) << type.name;
    }
}

// A density would be composed as "1/m^3 kg": only powers of one length or mass do without display units. They have no
// text of their own to be judged by, so their dimensions stand here.
TEST_F(ShippedCatalogue, ShowsEveryTypeInEverySystemUnlessItComposesWell)
{
    const struct
    {
        int length, mass;
        std::vector<std::string> types;
    } composed[] = {
        {0, 0, {"Dimensionless", "Ratio", "Strain", "Volumetric Strain", "Poisson's Ratio", "Damping Ratio"}},
        {0, 0, {"Friction Coefficient", "Porosity", "Emissivity"}},
        {1, 0, {"Length", "Displacement", "Coordinate", "Thickness"}},
        {-1, 0, {"Curvature"}},
        {2, 0, {"Area", "Permeability"}},
        {3, 0, {"Volume", "Section Modulus"}},
        {4, 0, {"Second Moment of Area", "Torsion Constant"}},
        {6, 0, {"Warping Constant"}},
        {0, 1, {"Mass"}},
    };
    std::map<std::string, Four> dimensions;
    for (const auto& [length, mass, types] : composed)
        for (const std::string& type : types)
            dimensions[type] = {length, mass, 0, 0};

    std::vector<int> systems;
    for (const _UnitSystemStr& system : Systems())
        systems.push_back(system.id);
    for (const _UnitDataTypeStr& type : Types()) {
        std::vector<int> shown;
        for (int i = 0; i < type.displayUnitCount; ++i)
            shown.push_back(type.displayUnits[i].systemId);
        if (const auto composes = dimensions.find(type.name); composes != dimensions.end()) {
            EXPECT_EQ(ExponentsOf(type), composes->second) << type.name;
            dimensions.erase(composes);
        } else if (type.constantId == 0) {
            EXPECT_EQ(shown, systems) << type.name;
        }
    }
    EXPECT_TRUE(dimensions.empty()) << dimensions.begin()->first << " is no type";
}

// ---- In the language of GNU units ----------------------------------------------------------------------------------

// Units of the catalogue that the program does not know by their abbreviation, or takes for something else.
constexpr char UnitExpressions[] =
    ";ftus=surveyfoot;ton=tonne;dton=N s^2/cm;st=stone;shton=shortton;lgton=longton;slug=lbf s^2/foot"
    ";kslug=kip s^2/foot;slinch=lbf s^2/inch;kslinch=kip s^2/inch;hyl=kgf s^2/m;khyl=kgf s^2/mm;year=julianyear"
    ";rankine=degR;centigrade=degC;fahrenheit=degF;one=1;permille=1/1000;microstrain=1/1000000;rad=radian"
    ";mrad=radian/1000;gn=gravity;km/h=km/hour;";

// What the constants measure that are not of one or of the radian.
const std::map<std::string, std::string> MeasuredTypes = {
    {"hz", "Frequency"},  {"rpm", "Angular Velocity"}, {"deg/s", "Angular Velocity"}, {"gn", "Acceleration"},
    {"km/h", "Velocity"}, {"mph", "Velocity"},         {"knot", "Velocity"},
};

std::string ExpressionOf(const std::string& word)
{
    const std::string all = UnitExpressions;
    const std::size_t at = all.find(';' + word + '=');
    const std::size_t start = at + word.size() + 2;
    return at != all.npos ? all.substr(start, all.find(';', start) - start) : word;
}

// A temperature scale as a function of the program: tempK.
std::string ScaleFunction(const _UnitSystemStr& system)
{
    const char letter = catalogue::FindUnit(system.heatUnit)->abbreviation[0];
    return std::string("temp") + static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
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
std::string Composed(const _UnitDataTypeStr& type, const _UnitSystemStr& system)
{
    const Four exponents = ExponentsOf(type);
    std::string expression = "1";
    for (std::size_t i = 0; i < exponents.size(); ++i)
        if (exponents[i] != 0)
            expression += " (" + ExpressionOf(catalogue::FindUnit(UnitsOf(system)[i])->abbreviation) + ")^" +
                          std::to_string(exponents[i]);
    return expression;
}

// ---- Against GNU units ---------------------------------------------------------------------------------------------

constexpr int StressIntensity = 49;  // a square root: its exponents are those of its square

double Convert(int fromType, int toType, int fromSystem, int toSystem, double value)
{
    double result = std::nan("");
    VUnitUtlConvertFromOneToAnother(fromType, toType, fromSystem, toSystem, value, &result);
    return result;
}

// Every unit but the constants, in a system that is made for it.
void ExpectUnits(UnitsProgram& program)
{
    constexpr std::array References = {"m", "kg", "sec", "kelvin"};
    constexpr std::array Probes = {"Length", "Mass", "Time", "Temperature Gradient"};
    for (const _UnitBaseTypeStr& unit : Units()) {
        const auto baseType = static_cast<std::size_t>(unit.baseType);
        if (baseType == Constant)
            continue;
        auto units = References;
        units[baseType] = unit.abbreviation;
        const int system = VUnitUtlGetUnitSystemId(units[Length], units[Mass], units[Time], units[Heat]);
        const int type = VUnitUtlGetDataTypeId(Probes[baseType]);
        program.Expect(Convert(type, type, VUnitUtlGetBaseUnitSystemId(), system, 1.0), References[baseType],
                       ExpressionOf(unit.abbreviation), unit.name);
    }
}

void ExpectTemperatures(UnitsProgram& program, const _UnitSystemStr& from, const _UnitSystemStr& to)
{
    const int type = VUnitUtlGetDataTypeId("Temperature");
    program.Expect(Convert(type, type, from.id, to.id, 451.0), ScaleFunction(from) + "(451)", ScaleFunction(to),
                   std::string(from.name) + " to " + to.name);
}

// What a unit is called is worth as much as what its exponents make of the units of the system.
void ExpectText(UnitsProgram& program, const _UnitDataTypeStr& type, const _UnitSystemStr& system)
{
    const std::string text = VUnitUtlGetMappedUnitName(type.id, system.id, nullptr, nullptr, nullptr, nullptr);
    if (!text.empty())
        program.Expect(1.0, ExpressionOfText(text, type.id == StressIntensity ? 2.0 : 1.0), Composed(type, system),
                       std::string(type.name) + " in " + system.name + " is called " + text);
}

// A quantity in a unit of its own, converted from the type that its reference unit measures.
void ExpectConstant(UnitsProgram& program, const _UnitDataTypeStr& type, const _UnitSystemStr& system)
{
    const std::string constant = catalogue::FindUnit(type.constantId)->abbreviation;
    const auto named = MeasuredTypes.find(constant);
    const _UnitDataTypeStr* const measured =
        catalogue::FindDataType(named != MeasuredTypes.end() ? named->second.c_str() : "Ratio");
    program.Expect(Convert(measured->id, type.id, system.id, 0, 1.0), Composed(*measured, system),
                   ExpressionOf(constant), std::string(type.name) + " from " + system.name);
}

TEST_F(ShippedCatalogue, AgreesWithGnuUnits)
{
    if (!UnitsProgram::IsInstalled())
        GTEST_SKIP() << "the program units is not installed";
    UnitsProgram program;
    const std::vector<_UnitSystemStr> systems = Systems();
    ExpectUnits(program);
    for (const _UnitSystemStr& from : systems)
        for (const _UnitSystemStr& to : systems)
            ExpectTemperatures(program, from, to);

    // The places of the answers that tell how many of a type's unit make one reference unit, system by system.
    std::map<const _UnitDataTypeStr*, std::vector<std::size_t>> places;
    for (const _UnitDataTypeStr& type : Types())
        for (const _UnitSystemStr& system : systems) {
            if (type.constantId != 0) {
                ExpectConstant(program, type, system);
                continue;
            }
            ExpectText(program, type, system);
            if (type.id != VUnitUtlGetDataTypeId("Temperature"))
                places[&type].push_back(program.Ask(Composed(type, systems[0]), Composed(type, system)));
        }

    const std::vector<double> answers = program.Compare();
    for (const auto& [type, answerOf] : places)
        for (std::size_t from = 0; from < systems.size(); ++from)
            for (std::size_t to = 0; to < systems.size(); ++to) {
                const double factor = answers[answerOf[to]] / answers[answerOf[from]];
                const double expected = type->id == StressIntensity ? std::sqrt(factor) : factor;
                const double converted = Convert(type->id, type->id, systems[from].id, systems[to].id, 1.0);
                EXPECT_NEAR(converted / expected, 1.0, 1e-12)
                    << type->name << " from " << systems[from].name << " to " << systems[to].name;
            }
}

}  // namespace
