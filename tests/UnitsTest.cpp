#include <TuvoUtil/Units.h>

#include <TuvoUtil/Memory.h>

#include "support/UnitCatalogue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

Strings TakeList(int (*getList)(char***))
{
    char** list = nullptr;
    const int count = getList(&list);
    const Strings names(list, list + count);
    for (int i = 0; i < count; ++i)
        VBuFree(list[i], "UnitsTest", __LINE__);
    VBuFree(list, "UnitsTest", __LINE__);
    return names;
}

// ---- Loading -------------------------------------------------------------------------------------------------------

TEST_IN_CHILD(UnitLoading, IsDoneOnceAndKeepsTheDirectory)
{
    EXPECT_EQ(VUnitUtlGetPath(), nullptr);
    const TemporaryFolder folder;
    folder.Write("unit.xml", TestCatalogue);
    std::string directory = folder.NarrowPath();
    directory.pop_back();
    for (const std::string& given : {directory, std::string("elsewhere")}) {
        VUnitUtlMain(given.c_str());
        EXPECT_EQ(VUnitUtlGetPath(), directory);
        EXPECT_EQ(SystemCount(), 6);
    }
}

TEST_IN_CHILD(UnitLoading, LeavesAnEmptyCatalogueWithoutAFile)
{
    VUnitUtlMain("no such directory");
    _UnitSystemStr* systems = nullptr;
    ASSERT_EQ(VUnitUtlGetUnitSystems(&systems), 1);  // the one without units, appended
    EXPECT_STREQ(systems[0].name, "NewSystem1");
    EXPECT_EQ(systems[0].id, 0);
    EXPECT_STREQ(VUnitUtlGetPath(), "no such directory");
}

TEST_IN_CHILD(UnitLoading, ComesTooLateAfterAQuery)
{
    EXPECT_EQ(VUnitUtlGetBaseIdFromName("m"), -1);
    LoadCatalogue();
    EXPECT_EQ(VUnitUtlGetBaseIdFromName("m"), -1);
    EXPECT_EQ(SystemCount(), 0);
    EXPECT_EQ(VUnitUtlGetPath(), nullptr);
}

TEST_IN_CHILD(UnitLoading, TellsWhyAFileWasRefused)
{
    const TemporaryFolder folder;
    folder.Write("broken.xml", "<UNITS><BASE_TYPE TYPE=\"LENGTH\"></UNITS>");
    for (const std::string& name :
         {folder.NarrowPath("missing.xml"), folder.NarrowPath(), folder.NarrowPath("broken.xml")}) {
        char* text = nullptr;
        EXPECT_EQ(VUnitUtlFillObject(name.c_str(), &text), -1) << name;
        const std::string start = "ERROR : While loading file " + name + "\n";
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(std::string(text).substr(0, start.size()), start);
        EXPECT_GT(std::string(text).size(), start.size()) << "gives no reason";
        VBuFree(text, "UnitsTest", __LINE__);
        EXPECT_EQ(VUnitUtlFillObject(name.c_str(), nullptr), -1);
    }
    EXPECT_EQ(VUnitUtlFillObject(nullptr, nullptr), -1);
}

TEST_IN_CHILD(UnitLoading, AppendsAFurtherFileAndFirstMatchesWin)
{
    LoadCatalogue();
    const TemporaryFolder folder;
    folder.Write("more.xml",
                 "<X><BASE_TYPE TYPE='MASS'><BASE_UNIT ABBR='kg' ID='500'/><BASE_UNIT ABBR='lb' ID='501'/></BASE_TYPE>"
                 "<DATA_TYPE NAME='force' ID='502'/><DATA_TYPE NAME='Power' ID='503'/></X>");
    char stays = 'x';
    char* text = &stays;
    EXPECT_EQ(VUnitUtlFillObject(folder.NarrowPath("more.xml").c_str(), &text), 1);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(VUnitUtlGetBaseIdFromName("kg"), 11);
    EXPECT_EQ(VUnitUtlGetBaseIdFromName("LB"), 501);
    EXPECT_EQ(VUnitUtlGetDataTypeId("FORCE"), 4);
    EXPECT_EQ(VUnitUtlGetDataTypeId("power"), 503);
}

// ---- Base units ----------------------------------------------------------------------------------------------------

TEST_IN_CHILD(UnitBases, AreFoundByAbbreviationIdAndType)
{
    LoadCatalogue();
    EXPECT_EQ(VUnitUtlGetBaseIdFromName("mm"), 2);
    EXPECT_EQ(VUnitUtlGetBaseIdFromName("Metre"), -1) << "a name is no abbreviation";
    EXPECT_EQ(VUnitUtlGetBaseTypeFromId(2), 0);
    EXPECT_EQ(VUnitUtlGetBaseTypeFromId(41), 4);
    EXPECT_EQ(VUnitUtlGetBaseTypeFromId(0), -1);

    char** list = nullptr;
    ASSERT_EQ(VUnitBaseUnitForType(3, &list), 3);
    EXPECT_STREQ(list[0], "kelvin");
    EXPECT_STREQ(list[2], "fahrenheit");
    VBuFree(list, "UnitsTest", __LINE__);
    EXPECT_EQ(VUnitBaseUnitForType(5, &list), 0);
    EXPECT_EQ(list, nullptr);
}

TEST_IN_CHILD(UnitBases, AreFoundByConversionFactorWithinATolerance)
{
    std::string text =
        "<U><BASE_TYPE TYPE='MASS'><BASE_UNIT ID='9' CONV_VAL='123'/></BASE_TYPE><BASE_TYPE TYPE='TIME'>";
    for (const char* const factor : {"1e-9", "2e-3", "0.05", "0.5", "0.9995", "2", "40", "500", "1000", "5e4", "500"})
        text += std::string("<BASE_UNIT CONV_VAL='") + factor + "'/>";
    LoadCatalogue(text + "</BASE_TYPE></U>");
    struct Row
    {
        double factor, unit;  // 0 for none
    };
    const Row rows[] = {
        {1000, 1000},        {1009, 1000},      {1011, 0},     // exponent 3: 1 %
        {500.4, 500},        {500.6, 0},                       // exponent 2: 0.1 %
        {40.003, 40},        {40.005, 0},                      // exponent 1: 0.01 %
        {2.0019, 2},         {2.0021, 0},                      // exponent 0
        {0.50009, 0.5},      {0.50011, 0},                     // exponent -1: below 1 the tolerance itself decides
        {0.0509, 0.05},      {0.0511, 0},       {1.19e-2, 0},  // exponent -2
        {9.9e-3, 2e-3},      {-2e-3, 1e-9},                    // exponent -3
        {5.004e4, 5e4},      {5.006e4, 0},                     // exponent 4
        {9e-4, 1e-9},                                          // exponent -4
        {0.99999999, .9995}, {0.9989, 0},                      // exponents 0, as printed, and -1
        {HUGE_VAL, 0},       {std::nan(""), 0},
    };
    for (const auto& [factor, expected] : rows) {
        const _UnitBaseTypeStr* const unit = VUnitUtlGetBaseTypeFromConversionFactor(2, factor, 0);
        EXPECT_EQ(unit != nullptr ? unit->conversionValue : 0.0, expected) << factor;
    }
    EXPECT_EQ(VUnitUtlGetBaseTypeFromConversionFactor(0, 1.0, 0), nullptr);
}

// ---- Unit systems --------------------------------------------------------------------------------------------------

TEST_IN_CHILD(UnitSystems, AreFoundByTheirUnitsOrAppended)
{
    LoadCatalogue();
    const struct
    {
        const char *length, *mass, *time, *heat;
        int expected;
    } rows[] = {
        {"M", "KG", "SEC", "KELVIN", 1},  {"mm", "ton", "sec", "centigrade", 2},     {"?", "", "no", nullptr, 0},
        {"mm", "kg", "sec", "kelvin", 6}, {"mm", "?", "sec", "kelvin", 7},  // appended
        {"MM", "Kg", "sec", "kelvin", 6}, {"in", "kg", "millisec", "fahrenheit", 3},
    };
    EXPECT_EQ(VUnitUtlGetCurrentSystem(), 0);
    for (const auto& [length, mass, time, heat, expected] : rows) {
        EXPECT_EQ(VUnitUtlGetUnitSystemId(length, mass, time, heat), expected);
        EXPECT_EQ(VUnitUtlSetCurrentSystem(length, mass, time, heat), expected);
        EXPECT_EQ(VUnitUtlGetCurrentSystem(), expected);
    }
    EXPECT_EQ(VUnitUtlGetBaseUnitSystemId(), 1);
    EXPECT_EQ(VUnitUtlGetUnitSystemIdGivenSolverUnits("MM", "TON", "S", "celsius"), 2);
    EXPECT_EQ(VUnitUtlGetUnitSystemIdGivenSolverUnits("inch", "KG", "ms", "FAHR"), 3);
    EXPECT_EQ(VUnitUtlGetUnitSystemIdGivenSolverUnits(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(VUnitUtlSetCurrentSystem("in", "ton", "sec", "kelvin"), 8);

    _UnitSystemStr* systems = nullptr;
    ASSERT_EQ(VUnitUtlGetUnitSystems(&systems), 9);
    EXPECT_STREQ(systems[6].name, "NewSystem7");
    EXPECT_STREQ(systems[6].displayName, "NewSystem7");
    EXPECT_EQ(systems[6].lengthUnit, 2);
    EXPECT_EQ(systems[7].massUnit, -1);
}

TEST_IN_CHILD(UnitSystems, AreDescribedByNamesAndAbbreviations)
{
    LoadCatalogue();
    char name[256] = "before";
    EXPECT_EQ(VUnitUtlGetUnitSystemDisplayName("in", "ton", "sec", "kelvin", name), 0);
    EXPECT_STREQ(name, "before");
    EXPECT_EQ(VUnitUtlGetUnitSystemDisplayName("m", "kg", "sec", "kelvin", name), 1);
    EXPECT_STREQ(name, "m kg sec");

    VUnitUtlGetUnitSystemId("mm", "kg", "sec", "kelvin");
    EXPECT_EQ(TakeList(VUnitUtlGetDisplayedSystemTypeList),
              (Strings{"m kg sec", "mm ton sec", "again", "part", "NewSystem7"}));

    char units[4][256] = {"", "", "", "before"};
    const auto expect = [&](int result, int expected, const Strings& texts) {
        EXPECT_EQ(result, expected);
        EXPECT_EQ(Strings({units[0], units[1], units[2], units[3]}), texts);
    };
    auto& [length, mass, time, heat] = units;
    expect(VUnitUtlGetUnitSystemStrFromSystemId(3, length, mass, time), 0, {"in", "kg", "millisec", "before"});
    expect(VUnitUtlGetUnitSystemStringsFromSystemId(5, length, mass, time, heat), 0, {"m", "", "sec", ""});
    expect(VUnitUtlGetUnitSystemStringsFromSystemDisplayName("MM ton sec", length, mass, time, heat), 0,
           {"MM", "ton", "sec", "centigrade"});
    expect(VUnitUtlGetUnitSystemStringsFromSystemId(77, length, mass, time, heat), -1, {"", "", "", ""});
    EXPECT_EQ(VUnitUtlGetUnitSystemStringsFromSystemDisplayName("SI", length, mass, time, heat), -1);
}

// ---- Data types ----------------------------------------------------------------------------------------------------

TEST_IN_CHILD(UnitDataTypes, AreFoundByNameIdAndExponents)
{
    LoadCatalogue();
    EXPECT_EQ(VUnitUtlGetDataTypeId("squared HEAT"), 7);
    EXPECT_EQ(VUnitUtlGetDataTypeIdNoCaseCompare("FORCE"), 4);
    EXPECT_EQ(VUnitUtlGetDataTypeId("Forces"), -1);
    EXPECT_EQ(VUnitUtlGetDataTypeMuliplier(1), 100.0);
    EXPECT_EQ(VUnitUtlGetDataTypeMuliplier(999), 1.0);
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromId(2), "Length");
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromId(-1), "");

    int L = 9, M = 9, T = 9, H = 9;
    EXPECT_EQ(VUnitUtlGetNumLMTHForDataType(999, &L, &M, &T, &H), -1);
    EXPECT_EQ(L, 9);
    EXPECT_EQ(VUnitUtlGetNumLMTHForDataType(10, &L, &M, &T, &H), 10);
    EXPECT_EQ(std::vector({L, M, T, H}), (std::vector{1, 1, -3, -1}));

    const Strings names = TakeList(VUnitUtlGetDataTypeList);
    EXPECT_TRUE(names.size() == 11 && names[0] == "Percent" && names[10] == "LENGTH");
}

TEST_IN_CHILD(UnitDataTypes, AreAppendedForUnknownExponentsAndNamesOfTheViewer)
{
    LoadCatalogue();
    EXPECT_STREQ(VUnitUtlGetDataTypeName(1, 0, 0, 0, 0), "Length") << "a type with a multiplier is passed over";
    EXPECT_EQ(VUnitUtlGetDataTypeName(1, 2, 3, 4, 0), nullptr);
    EXPECT_STREQ(VUnitUtlGetDataTypeName(1, 2, 3, 4, 1), "UnKnown12");
    EXPECT_STREQ(VUnitUtlGetDataTypeName(1, 2, 3, 4, 1), "UnKnown12");
    EXPECT_EQ(VUnitUtlGetDataTypeId("unknown12"), 12);
    EXPECT_EQ(UnitString(12, 1), "m kg^2 sec^3 kelvin^4");

    // An unknown name is appended at every call, and all of them are known to the viewer as "UN".
    for (const char* const name : {"Foo", "Foo", "Bar"})
        EXPECT_STREQ(VUnitUtlGetDataTypeNameFromZamViewDataTypeName(name), name);
    EXPECT_EQ(VUnitUtlGetDataTypeId("Foo"), 13);
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromId(14), "Foo");
    EXPECT_EQ(VUnitUtlGetDataTypeId("Bar"), 15);
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromZamViewDataTypeName("un"), "Foo");
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromZamViewDataTypeName("dist"), "Length");
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromZamViewDataTypeName(""), "Area") << "the first without one";
    EXPECT_STREQ(VUnitUtlGetDataTypeNameFromId(16), "");
}

// ---- Null pointers -------------------------------------------------------------------------------------------------

TEST_IN_CHILD(UnitQueries, SurviveNullEverywhere)
{
    LoadCatalogue();
    VUnitUtlMain(nullptr);
    EXPECT_EQ(VUnitBaseUnitForType(0, nullptr), 0);
    EXPECT_EQ(VUnitUtlGetBaseIdFromName(nullptr), -1);
    EXPECT_EQ(VUnitUtlGetDisplayedSystemTypeList(nullptr), 0);
    EXPECT_EQ(VUnitUtlGetUnitSystemDisplayName("m", "kg", "sec", "kelvin", nullptr), 1);
    EXPECT_EQ(VUnitUtlGetUnitSystemFromUnit(2, nullptr), -1);
    EXPECT_EQ(VUnitUtlGetUnitSystemStringsFromSystemId(1, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(VUnitUtlGetUnitSystemStringsFromSystemDisplayName(nullptr, nullptr, nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(VUnitUtlGetSolverUnitsOrDisplayUnits("m", "kg", "sec", "kelvin", 1, nullptr, nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(VUnitUtlGetDataTypeId(nullptr), -1);
    EXPECT_EQ(VUnitUtlGetDataTypeList(nullptr), 0);
    EXPECT_EQ(VUnitUtlGetDataTypeNameFromZamViewDataTypeName(nullptr), nullptr);
    EXPECT_EQ(VUnitUtlGetNumLMTHForDataType(2, nullptr, nullptr, nullptr, nullptr), 2);
    EXPECT_EQ(VUnitUtlGetMapNameConvFactorAndBaseUnitSystem(nullptr, nullptr, nullptr), 1.0);
    VUnitUtlGetUnitString(nullptr, nullptr);
    char text[256] = "before";
    VUnitUtlGetUnitString(nullptr, text);
    EXPECT_STREQ(text, "");
    BuString wide(L"before");
    EXPECT_EQ(VUnitUtlGetUnitRepresentation(nullptr, nullptr, nullptr, nullptr, nullptr, wide), 0);
    EXPECT_TRUE(wide.IsEmpty());
    VUnitUtlConvertFromOneToAnother(2, 2, 1, 2, 1.0, nullptr);
    VUnitGetFactorsToConvert(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    double factor = -7.0;
    EXPECT_EQ(VUnitUtlGetUnitConversionFactor(nullptr, "M", factor), -8);
    EXPECT_EQ(VUnitUtlGetUnitConversionFactor("M", nullptr, factor), -8);
    EXPECT_EQ(VUnitUtlGetUnitIdFromStr(nullptr, nullptr), -1);
    EXPECT_EQ(VUnitUtlGetUnitIdFromStr("MM", nullptr), 0);
    EXPECT_EQ(VUnitUtlGetUnitStrFromId(1, nullptr), 0);
    EXPECT_EQ(SystemCount(), 6);
}

}  // namespace
