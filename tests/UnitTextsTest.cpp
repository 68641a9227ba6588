#include <TuvoUtil/Units.h>

#include "support/UnitCatalogue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

TEST_IN_CHILD(UnitTexts, AreDisplayUnitsOrComposed)
{
    LoadCatalogue();
    const struct
    {
        int dataType, system;
        const char* expected;
    } rows[] = {
        {4, 1, "N"},          {4, 2, "N"},     {4, 3, "in kg/millisec^2"},
        {1, 1, "m"},  // has a multiplier: its display unit does not count
        {3, 2, "mm^2"},       {6, 1, "1/sec"}, {10, 1, "m kg/sec^3/kelvin"},
        {5, 2, "centigrade"}, {8, 1, ""},      {4, 5, "m/sec^2"},  // units that are not in the catalogue are left out
        {5, 5, ""},           {3, 0, ""},                          // the system without units
        {3, 99, ""},          {99, 1, ""},     {-1, 1, ""},
        {3, -1, ""},
    };
    for (const auto& [dataType, system, expected] : rows) {
        EXPECT_EQ(UnitString(dataType, system), expected) << dataType << " in " << system;
        EXPECT_STREQ(VUnitUtlGetMappedUnitName(dataType, system, nullptr, nullptr, nullptr, nullptr), expected);
    }
    int L = 9, M = 9, T = 9, H = 9;
    VUnitUtlGetMappedUnitName(4, 99, &L, &M, &T, &H);
    EXPECT_EQ(std::vector({L, M, T, H}), (std::vector{1, 1, -2, 0}));
    VUnitUtlGetMappedUnitName(99, 1, &L, &M, &T, &H);
    EXPECT_EQ(std::vector({L, M, T, H}), (std::vector{0, 0, 0, 0}));
}

TEST_IN_CHILD(UnitTexts, OfSystemZeroAreEmptyWithoutAStart)
{
    const TemporaryFolder folder;
    folder.Write("unit.xml",
                 "<U><BASE_TYPE TYPE='LENGTH'><BASE_UNIT ABBR='m' ID='1' CONV_VAL='1'/></BASE_TYPE>"
                 "<UNIT_SYSTEM NAME='a' ID='0' LENGTH_UNIT='1' MASS_UNIT='1' TIME_UNIT='1' HEAT_UNIT='1'/>"
                 "<UNIT_SYSTEM NAME='b' ID='1' LENGTH_UNIT='1' MASS_UNIT='1' TIME_UNIT='1' HEAT_UNIT='1'/>"
                 "<DATA_TYPE NAME='Length' ID='1' NUM_L='1'/></U>");
    ASSERT_EQ(VUnitUtlFillObject(folder.NarrowPath("unit.xml").c_str(), nullptr), 1);
    EXPECT_EQ(UnitString(1, 0), "");
    EXPECT_EQ(UnitString(1, 1), "m");
}

TEST_IN_CHILD(UnitTexts, LeadToTheSystemAndTheQuantityOfTheirs)
{
    LoadCatalogue();
    EXPECT_EQ(VUnitUtlGetUnitSystemFromUnit(4, "M KG/SEC^2"), 1);
    EXPECT_EQ(VUnitUtlGetUnitSystemFromUnit(4, "N"), -1) << "display units are not asked";
    EXPECT_EQ(VUnitUtlGetUnitSystemFromUnit(3, ""), 0) << "nor the rule of the system without units";
    EXPECT_EQ(VUnitUtlGetUnitSystemFromUnit(99, "m"), -1);
    const struct
    {
        const char* name;
        int dataType;
        double factor;
    } rows[] = {
        {"mm^2", 3, 1e-6},    {"N", 4, 1.0}, {"MM", 2, 1e-3},   {"fahrenheit", 5, 1 / 1.8}, {"1/millisec", 6, 1e3},
        {"furlong", -1, 1.0}, {"", -1, 1.0}, {"mm^3", -1, 1.0},  // of a type that its id does not lead to
    };
    for (const auto& [name, expectedType, factor] : rows) {
        int dataType = 0, system = 0;
        EXPECT_NEAR(VUnitUtlGetMapNameConvFactorAndBaseUnitSystem(name, &dataType, &system), factor, factor * 1e-12);
        EXPECT_EQ(dataType, expectedType) << name;
        EXPECT_EQ(system, 1);
    }
}

TEST_IN_CHILD(UnitTexts, AreGivenForNamesWithoutAppending)
{
    LoadCatalogue();
    const struct
    {
        const wchar_t *type, *text;
        const char *length, *mass, *heat;
        int result;
    } rows[] = {
        {L"force", L"N", "m", "kg", "kelvin", 1},
        {L"Area", L"m^2", "m", "kg", "kelvin", 0},
        {L"Force", L"in ton/sec^2", "in", "ton", "?", 0},
        {L"Speed", L"", "m", "kg", "kelvin", 0},  // no such type
    };
    for (const auto& [type, expected, length, mass, heat, result] : rows) {
        BuString text(L"before");
        EXPECT_EQ(VUnitUtlGetUnitRepresentation(type, length, mass, "sec", heat, text), result);
        EXPECT_EQ(text, BuString(expected));
    }
    EXPECT_EQ(SystemCount(), 6);
}

TEST_IN_CHILD(UnitTexts, AreCutToTheirBuffers)
{
    const std::string longName(300, 'A');
    LoadCatalogue("<U><BASE_TYPE TYPE='LENGTH'><BASE_UNIT ABBR='" + longName + "' ID='1'/></BASE_TYPE>" +
                  "<UNIT_SYSTEM NAME='" + longName + "' DISPLAY_NAME='" + longName +
                  "' ID='5' LENGTH_UNIT='1' MASS_UNIT='1' TIME_UNIT='1' HEAT_UNIT='1'/>"
                  "<DATA_TYPE NAME='" +
                  longName + "' ID='1' NUM_L='3' NUM_M='-1'/></U>");
    EXPECT_EQ(UnitString(1, 5), std::string(255, 'a'));
    char text[257];
    text[256] = '!';
    VUnitUtlGetUnitSystemStrFromSystemId(5, text, nullptr, nullptr);
    EXPECT_EQ(text, longName.substr(0, 255));
    VUnitUtlGetUnitSystemDisplayName(longName.c_str(), longName.c_str(), longName.c_str(), longName.c_str(), text);
    EXPECT_EQ(text, longName.substr(0, 255));
    EXPECT_EQ(text[256], '!');
    EXPECT_EQ(VUnitUtlGetDataTypeNameFromId(1), longName) << "names are not fields";
}

TEST(UnitSpellings, AreRespeltBothWays)
{
    const struct
    {
        const char *length, *mass, *time, *heat;
        int toSolver;
        Strings expected;
    } rows[] = {
        {"ft", "Lb", "millisec", "centigrade", 1, {"FOOT", "POUND", "MS", "CELSIUS"}},
        {"IN", "dton", "MICROSEC", "Fahrenheit", 1, {"INCH", "DTON", "US", "FAHR"}},
        {"mm", "kg", "sec", "rankine", -1, {"mm", "kg", "S", "RANK"}},
        {"foot", "pound", "ms", "celsius", 0, {"FT", "LB", "MILLISEC", "CENTIGRADE"}},
        {"INCH", "DTon", "us", "FAHR", 0, {"IN", "DTON", "MICROSEC", "FAHRENHEIT"}},
        {"FT", "", "s", "rank", 0, {"FT", "", "SEC", "RANKINE"}},
        {nullptr, "kg", "sec", "kelvin", 1, {"?", "?", "?", "?"}},
        {"m", nullptr, "sec", "kelvin", 1, {"?", "?", "?", "?"}},
        {"m", "kg", nullptr, "kelvin", 0, {"?", "?", "?", "?"}},
        {"m", "kg", "sec", nullptr, 1, {"?", "?", "?", "?"}},
    };
    for (const auto& row : rows) {
        char length[256] = "?", mass[256] = "?", time[256] = "?", heat[256] = "?";
        const int result = VUnitUtlGetSolverUnitsOrDisplayUnits(row.length, row.mass, row.time, row.heat, row.toSolver,
                                                                length, mass, time, heat);
        EXPECT_EQ(result, row.expected.back() == "?" ? -1 : 0);
        EXPECT_EQ(Strings({length, mass, time, heat}), row.expected);
    }

    char names[4][256] = {"in", "x", "sec", "y"};
    VUnitUtlGetSolverUnitsOrDisplayUnits(names[0], names[1], names[2], names[3], 1, names[0], names[1], names[2],
                                         names[3]);
    EXPECT_EQ(Strings({names[0], names[1], names[2], names[3]}), (Strings{"INCH", "x", "S", "y"})) << "in place";
}

}  // namespace
