#include <TuvoUtil/Units.h>

#include "support/UnitCatalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

double Convert(int fromType, int toType, int fromSystem, int toSystem, double value, double before = -7.0)
{
    VUnitUtlConvertFromOneToAnother(fromType, toType, fromSystem, toSystem, value, &before);
    return before;
}

TEST_IN_CHILD(UnitConversion, GoesThroughTheReferenceUnits)
{
    LoadCatalogue();
    const struct
    {
        int fromType, toType, fromSystem, toSystem;
        double value, expected;
    } rows[] = {
        {2, 2, 2, 1, 2500, 2.5},   {3, 3, 2, 1, 2.5e6, 2.5}, {4, 4, 3, 1, 39.37007874015748, 1e6},  // in kg/ms^2
        {5, 5, 2, 1, 20, 293.15},  {5, 5, 2, 3, 100, 212},   {5, 5, 3, 2, 212, 100},
        {7, 7, 2, 3, 10, 457.736},                         // the offsets count for higher powers of heat as well
        {49, 49, 1, 2, 3, 3000},                           // square roots of the factors
        {49, 49, 2, 1, 3000, 3},   {1, 8, 1, 2, 50, 0.5},  // by the multiplier alone, though it has exponents
        {8, 1, 1, 2, 0.5, 50},     {1, 2, 1, 2, 50, 500},    {10, 10, 1, 2, 1, 1},
        {999, 999, 2, 1, 5, 5},    // no such type
        {4, 4, 5, 1, 5, 5},        // no such mass unit
        {2, 2, 77, 2, 5, -7000},   // no such system: the output is the input
        {2, 2, 2, 77, 2500, 2.5},  // reference units come out
        {2, 2, 77, 78, 5, -7},     {2, 2, -1, 2, 5, -7000},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(Convert(row.fromType, row.toType, row.fromSystem, row.toSystem, row.value), row.expected,
                    1e-12 * std::abs(row.expected))
            << row.fromType << " in " << row.fromSystem << " to " << row.toType << " in " << row.toSystem;
}

TEST_IN_CHILD(UnitConversion, SeesWhatIsAppended)
{
    LoadCatalogue();
    EXPECT_EQ(Convert(2, 2, 6, 1, 5000), -7.0);
    EXPECT_EQ(Convert(2, 13, 2, 2, 5000), 5.0) << "a type that is not there has no dimension";
    EXPECT_EQ(VUnitUtlGetUnitSystemId("mm", "kg", "sec", "kelvin"), 6);
    EXPECT_EQ(Convert(2, 2, 6, 1, 5000), 5.0);
    VUnitUtlGetDataTypeNameFromZamViewDataTypeName("Foo");
    EXPECT_STREQ(VUnitUtlGetDataTypeName(5, 0, 0, 0, 1), "UnKnown13");
    EXPECT_EQ(Convert(2, 13, 2, 2, 5000), 5e15);
}

TEST_IN_CHILD(UnitConversion, GivesFactorsAndOffsets)
{
    LoadCatalogue();
    const auto factors = [](const _UnitDataStr& from, const _UnitDataStr& to) {
        std::vector<double> result(4, -7.0);
        VUnitGetFactorsToConvert(&from, &to, &result[0], &result[1], &result[2], &result[3]);
        return result;
    };
    EXPECT_EQ(factors({3, 2}, {5, 3}), (std::vector{1e6, 0.0, 1.8, -459.67}));
    EXPECT_EQ(factors({1, 2}, {49, 2}), (std::vector{1e3, 0.0, 1e6, 0.0})) << "the exponents as they stand";
    EXPECT_EQ(factors({999, 2}, {2, 999}), (std::vector{1.0, 0.0, 1.0, 0.0}));
}

TEST_IN_CHILD(UnitSubModels, ScaleByExponentsAndMultiplierButTemperaturesByTheirCode)
{
    LoadCatalogue();
    EXPECT_EQ(Convert(0, 4, -1, -1, 100), 100.0) << "no scales at start";
    const struct
    {
        int type, code;
        double value, expected;
    } rows[] = {
        {4, 5, 100, 24},    {10, 5, 125, 6},  {1, 5, 50, 5000},   {999, 5, 50, 50},   {2, 5, 10, 80},  // the last 2
        {5, 1, 212, 100},   {5, 2, 100, 212}, {5, 3, 32, 273.15}, {5, 4, 273.15, 32}, {5, 5, 273.15, 0},
        {5, 6, -273.15, 0}, {5, 0, 300, 300}, {5, 7, 300, 300},   {7, 5, 300, 300},  // heat to the power 2
    };
    for (const auto& [type, code, value, expected] : rows) {
        VUnitUtlSetScaleFatorForSubModelUnitConversion(2, 3, 5, code);
        EXPECT_NEAR(Convert(0, type, -1, -1, value), expected, 1e-11) << type << ", code " << code;
    }
}

// ---- The fixed length table ----------------------------------------------------------------------------------------

// Stored models depend on the factors, the unphysical ones of rows 9 and 10 included.
TEST(UnitLengthTable, HoldsItsRowsAndItsShortEntries)
{
    const struct
    {
        double inches;
        const char *abbreviation, *name;  // of the short table
    } rows[] = {
        {0.03937007874015748, "MM", "Millimeter"},
        {39.370078740157474, "M", "Meter"},
        {0.39370078740157477, "CM", "Centimeter"},
        {12.0, "FT", "Feet"},
        {1.0, "IN", "Inch"},
        {39370.07874015748, "KM", "Kilometer"},
        {0.001, "MIL", "Mile"},
        {63360.00000000001, "MIC", "Micron"},
        {39370078.74015748, "UM", nullptr},
        {1e-07, "UIN", nullptr},
    };
    char text[256] = "before";
    int row = 0, id = 0;
    double factor = -7.0;
    EXPECT_EQ(VUnitUtlGetUnitConvFactor(0, 5, factor), 1);
    EXPECT_EQ(VUnitUtlGetUnitConvFactor(11, 5, factor), 1);
    EXPECT_EQ(VUnitUtlGetUnitStrFromId(0, text), -1);
    EXPECT_EQ(factor, -7.0);
    EXPECT_STREQ(text, "before");
    for (const auto& [inches, abbreviation, name] : rows) {
        EXPECT_EQ(VUnitUtlGetUnitConvFactor(++row, 5, factor), 0);
        EXPECT_EQ(factor, inches) << row;
        EXPECT_EQ(VUnitUtlGetUnitConvFactor(4, row, factor), 0);
        EXPECT_EQ(factor, 12.0 / inches) << row;
        const int result = name != nullptr ? 0 : -1;
        EXPECT_EQ(VUnitUtlGetUnitIdFromStr(abbreviation, &id), result);
        EXPECT_EQ(id, std::min(row, 8));
        EXPECT_EQ(VUnitUtlGetUnitStrFromId(row, text), result);
        EXPECT_STREQ(text, result == 0 ? abbreviation : "Micron");
        EXPECT_EQ(VUnitUtlGetFullUnitNameFromId(row, text), result);
        EXPECT_STREQ(text, result == 0 ? name : "Micron");
    }
    EXPECT_EQ(VUnitUtlGetUnitIdFromStr("mm", &id), -1);
    EXPECT_EQ(VUnitUtlGetUnitConvFactor(5, 11, factor), 0);
    EXPECT_EQ(factor, 0.0);
}

TEST(UnitLengthTable, TakesTheLastRowWithAName)
{
    const struct
    {
        const char* name;
        int row;
    } rows[] = {{"mm", 1},    {"METERS", 2},     {"Meter", 2},      {"Centimeters", 3}, {"Foot", 4},
                {"iN", 5},    {"kilometers", 6}, {"KILOMETERS", 6}, {"mil", 7},         {"Mil", 9},
                {"Miles", 7}, {"Mile", 7},       {"mi", 8},         {"Microns", 8},     {"um", 9},
                {"MILS", 9},  {"Microinch", 10}, {"Kilometers", 0}, {"meters", 0},      {"MIC", 0},
                {"", 0}};
    for (const auto& [name, row] : rows) {
        double factor = -7.0, expected = -7.0;
        EXPECT_EQ(VUnitUtlGetUnitConversionFactor(name, "INCHES", factor), row == 0 ? -8 : 0) << name;
        VUnitUtlGetUnitConvFactor(row, 5, expected);
        EXPECT_EQ(factor, expected) << name;
        EXPECT_EQ(VUnitUtlGetUnitConversionFactor("IN", name, factor), row == 0 ? -8 : 0) << name;
    }
}

}  // namespace
