// What the records hold after a file was read, and conversion against a plain implementation of its steps.

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>

#include "VUnit/Catalogue.h"

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

class UnitRecords : public testing::Test
{
protected:
    ~UnitRecords() override { catalogue::ResetForTests(); }

    // Puts a text in place of the catalogue and gives what VUnitUtlFillObject gives.
    int Load(const std::string& text)
    {
        catalogue::ResetForTests();
        m_folder.Write("unit.xml", text);
        return VUnitUtlFillObject(m_folder.NarrowPath("unit.xml").c_str(), nullptr);
    }

    TemporaryFolder m_folder;
};

// ---- Records -------------------------------------------------------------------------------------------------------

TEST_F(UnitRecords, InheritsUnknownBaseTypes)
{
    ASSERT_EQ(Load("<U><BASE_TYPE TYPE='Length'><BASE_UNIT ID='1'/></BASE_TYPE>"
                   "<BASE_TYPE TYPE='HEAT'><BASE_UNIT ID='2'/><OTHER ID='9'/></BASE_TYPE>"
                   "<BASE_TYPE><BASE_UNIT ID='3' ADD_VAL='-1.5e1x'/></BASE_TYPE>"
                   "<BASE_TYPE TYPE='heat'><BASE_UNIT ID='4'/></BASE_TYPE>"
                   "<BASE_TYPE TYPE='CONSTANT'><BASE_UNIT ID='5'/></BASE_TYPE><BASE_UNIT ID='6'/></U>"),
              1);
    const VUnit& all = catalogue::Get();
    ASSERT_EQ(all.m_baseUnitCount, 5);
    const int types[] = {0, 3, 3, 3, 4};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(all.m_baseUnits[i].id, i + 1);
        EXPECT_EQ(all.m_baseUnits[i].baseType, types[i]) << i;
        EXPECT_STREQ(all.m_baseUnits[i].name, "");
        EXPECT_EQ(all.m_baseUnits[i].additiveValue, i == 2 ? -15.0 : 0.0);
    }
}

TEST_F(UnitRecords, EndsItsSystemsAtAnIncompleteOne)
{
    const std::string rest = " LENGTH_UNIT='1' MASS_UNIT='-2' TIME_UNIT='x' HEAT_UNIT='99999999999'/>";
    const std::string complete = "<UNIT_SYSTEM NAME='s' ID='7'" + rest;
    ASSERT_EQ(Load("<U>" + complete + "<DATA_TYPE/><UNIT_SYSTEM NAME='s'" + rest + complete + "<DATA_TYPE/></U>"), 1);
    const VUnit& all = catalogue::Get();
    ASSERT_EQ(all.m_systemCount, 1);
    EXPECT_EQ(all.m_dataTypeCount, 2);
    EXPECT_EQ(catalogue::UnitsOf(all.m_systems[0]), (catalogue::SystemUnits{1, -2, 0, 1215752191}));
    EXPECT_STREQ(all.m_systems[0].displayName, "");
}

TEST_F(UnitRecords, ReadsDataTypesWithDefaults)
{
    const std::string longText(300, 'x');
    ASSERT_EQ(Load("<U><DATA_TYPE/><DATA_TYPE NAME='b' ID='-3' NUM_L='1' NUM_M='-2' NUM_T='3' NUM_H='4' CONST_ID='5'"
                   " SEQUENCE='" +
                   longText + "' MULTIPLIER='1' ZAMVIEW_NAME='" + longText + "' DISPLAY_UNIT_ID_NAME='4:" + longText +
                   "'/></U>"),
              1);
    const VUnit& all = catalogue::Get();
    ASSERT_EQ(all.m_dataTypeCount, 2);
    const _UnitDataTypeStr& plain = all.m_dataTypes[0];
    EXPECT_STREQ(plain.name, "");
    EXPECT_EQ(plain.multiplier, 1.0);
    EXPECT_EQ(plain.hasMultiplier, 0);
    EXPECT_EQ(plain.displayUnitCount, 0);
    const _UnitDataTypeStr& full = all.m_dataTypes[1];
    EXPECT_EQ(full.id, -3);
    EXPECT_EQ(catalogue::ExponentsOf(full), (catalogue::Exponents{1, -2, 3, 4}));
    EXPECT_EQ(full.constantId, 5);
    EXPECT_EQ(full.multiplier, 1.0);
    EXPECT_EQ(full.hasMultiplier, 1) << "the flag tells, not the value";
    EXPECT_STREQ(full.sequence, longText.substr(0, 7).c_str());
    EXPECT_STREQ(full.viewerName, longText.substr(0, 31).c_str());
    ASSERT_EQ(full.displayUnitCount, 1);
    EXPECT_STREQ(full.displayUnits[0].unitName, longText.substr(0, 255).c_str());
}

TEST_F(UnitRecords, ReadsDisplayUnitsAsListed)
{
    const struct
    {
        const char* text;
        std::vector<std::pair<int, std::string>> units;
    } rows[] = {
        {"1:m;2:mm", {{1, "m"}, {2, "mm"}}},
        {"1:m;rest;3:in", {{1, "m"}, {0, ""}, {3, "in"}}},
        {"7:;7:m:x;:m;-8::k;9:s:", {{0, ""}, {0, ""}, {0, "m"}, {-8, "k"}, {9, "s"}}},
        {"  1:m;\n\t 2 :mm; x", {{1, "m"}, {2, "mm"}, {0, ""}}},
        {"1:m;;2:mm;;", {{1, "m"}, {2, "mm"}}},
        {";1:m", {{0, ""}, {1, "m"}}},
        {";;1:m", {{0, ""}, {0, "m"}}},  // the second divider is part of the entry: ";1" is no number
        {"", {{0, ""}}},
        {";", {{0, ""}, {0, ""}}},
        {":", {{0, ""}}},
    };
    for (const auto& [text, expected] : rows) {
        ASSERT_EQ(Load(std::string("<U><DATA_TYPE DISPLAY_UNIT_ID_NAME='") + text + "'/></U>"), 1);
        const _UnitDataTypeStr& type = catalogue::Get().m_dataTypes[0];
        std::vector<std::pair<int, std::string>> units;
        for (int i = 0; i < type.displayUnitCount; ++i)
            units.emplace_back(type.displayUnits[i].systemId, type.displayUnits[i].unitName);
        EXPECT_EQ(units, expected) << text;
    }
}

TEST_F(UnitRecords, TurnsTextIntoThatOfTheSystem)
{
    ASSERT_EQ(Load("<U><DATA_TYPE NAME='Gr&#xF6;&#xDF;e' ZAMVIEW_NAME='a&amp;\xC3\xA9'/></U>"), 1);
    const _UnitDataTypeStr& type = catalogue::Get().m_dataTypes[0];
    EXPECT_EQ(type.name, platform::Narrow(L"Gr\u00F6\u00DFe"));
    EXPECT_EQ(type.viewerName, platform::Narrow(L"a&\u00E9"));
}

// ---- Bad files -----------------------------------------------------------------------------------------------------

TEST_F(UnitRecords, RefusesEveryFileThatWasCutShort)
{
    const std::string text =
        "<?xml version='1.0'?><!-- x --><U><BASE_TYPE TYPE='LENGTH'><BASE_UNIT NAME='m' ABBR='m' ID='1'/></BASE_TYPE>"
        "<UNIT_SYSTEM NAME='s' ID='7' LENGTH_UNIT='1' MASS_UNIT='1' TIME_UNIT='1' HEAT_UNIT='1'/>"
        "<DATA_TYPE NAME='b' DISPLAY_UNIT_ID_NAME='1:m;2:&#109;m'/></U>";
    ASSERT_EQ(Load(text), 1);
    for (std::size_t length = 0; length < text.size(); ++length) {
        ASSERT_EQ(Load(text.substr(0, length)), -1) << text.substr(0, length);
        const catalogue::Lengths lengths = catalogue::CurrentLengths();
        ASSERT_EQ(lengths.units + lengths.systems + lengths.dataTypes, 0) << text.substr(0, length);
    }
}

TEST_F(UnitRecords, StaysFastWithManyRecordsOfOneKey)
{
    constexpr int count = 100'000;
    std::string text = "<U><BASE_TYPE TYPE='LENGTH'>";
    for (int i = 0; i < count; ++i)
        text += "<BASE_UNIT/>";
    text += "</BASE_TYPE>";
    for (int i = 0; i < count; ++i)
        text += "<DATA_TYPE/>";
    ASSERT_EQ(Load(text + "<DATA_TYPE ID='1' NUM_H='1' NAME='last' ZAMVIEW_NAME='v'/></U>"), 1);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(VUnitUtlGetDataTypeId("LAST"), 1);
        ASSERT_STREQ(VUnitUtlGetDataTypeNameFromId(1), "last");
        ASSERT_STREQ(VUnitUtlGetDataTypeName(0, 0, 0, 1, 0), "last");
        ASSERT_STREQ(VUnitUtlGetDataTypeNameFromZamViewDataTypeName("V"), "last");
        ASSERT_EQ(VUnitUtlGetBaseIdFromName("last"), -1);
        ASSERT_EQ(VUnitUtlGetUnitSystemId("?", "?", "?", "?"), 0);
    }
}

// ---- Conversion ----------------------------------------------------------------------------------------------------

// The documented steps of a conversion, one after the other, without anything kept from the one before.

struct PlainType
{
    explicit PlainType(int typeId) : id(typeId)
    {
        const _UnitDataTypeStr* const type = catalogue::FindDataType(id);
        multiplier = type != nullptr ? type->multiplier : 1.0;
        if (type != nullptr && type->hasMultiplier == 0)
            exponents = {type->lengthExponent, type->massExponent, type->timeExponent, type->heatExponent};
        isTemperature = exponents[0] == 0 && exponents[1] == 0 && exponents[2] == 0 && exponents[3] >= 1;
    }

    int id;
    std::array<int, 4> exponents{};
    double multiplier;
    bool isTemperature;
};

struct PlainSystem
{
    explicit PlainSystem(const _UnitSystemStr& system)
    {
        const int ids[] = {system.lengthUnit, system.massUnit, system.timeUnit, system.heatUnit};
        for (std::size_t i = 0; i < 4; ++i)
            if (const _UnitBaseTypeStr* const unit = catalogue::FindUnit(ids[i])) {
                factors[i] = unit->conversionValue;
                offsets[i] = unit->additiveValue;
            }
    }

    std::array<double, 4> factors = {1.0, 1.0, 1.0, 1.0}, offsets{};
};

double PlainPower(double value, int exponent)
{
    double product = 1.0;
    for (int i = 0; i < std::abs(exponent); ++i)
        product = exponent > 0 ? product * value : product / value;
    return product;
}

double PlainFactor(const PlainSystem& system, const PlainType& type)
{
    double factor = 1.0;
    for (std::size_t i = 0; i < 4; ++i)
        factor *= PlainPower(system.factors[i], type.exponents[i]);
    return type.id == 49 ? std::sqrt(factor) : factor;
}

double PlainOffset(const PlainSystem& system, const PlainType& type)
{
    double offset = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        offset += type.exponents[i] != 0 ? system.offsets[i] : 0.0;
    return offset;
}

double PlainConvert(int fromType, int toType, int fromSystem, int toSystem, double value, double out)
{
    if (fromSystem == -1 && toSystem == -1) {  // a sub-model, with its scales as they are at start
        const _UnitDataTypeStr* const type = catalogue::FindLastDataType(toType);
        return value * (type != nullptr ? type->multiplier : 1.0);
    }
    const PlainType a(fromType), b(toType);
    if (const _UnitSystemStr* const found = catalogue::FindSystem(fromSystem)) {
        const PlainSystem s(*found);
        double v = value;
        if (a.isTemperature)
            v = (value / a.multiplier - s.offsets[3]) * a.multiplier;
        v = v / PlainFactor(s, a);
        v = v / a.multiplier;
        out = v - PlainOffset(s, a);
    }
    if (const _UnitSystemStr* const found = catalogue::FindSystem(toSystem)) {
        const PlainSystem d(*found);
        const double y = PlainFactor(d, b) * (out + PlainOffset(d, b));
        out = b.isTemperature ? (y + d.offsets[3]) * b.multiplier : y * b.multiplier;
    }
    return out;
}

constexpr int RandomIds[] = {0, 1, 2, 49, 300, -1, 8192, 2'000'000'000, 17, -2};  // of which the last two stay unknown

// Small numbers of ids, so that some repeat and some are missing.
void AppendRandomRecords(std::mt19937& random)
{
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned int>(limit)); };
    const auto emptyName = [] { return VBuStrDup("", "UnitsInternalTest", __LINE__); };
    const double factors[] = {1.0, 1000.0, 39.37007874015748, 0.001, 1.8, -3.0, 0.0, 1e200, 0.1};
    const double offsets[] = {0.0, -273.15, -459.67, 5.5};
    const double multipliers[] = {1.0, 100.0, 0.3, -7.0, 0.0};
    for (int i = 0; i < 12; ++i)
        *catalogue::AppendUnit() = {emptyName(), emptyName(), below(14), 0, factors[below(9)], offsets[below(4)]};
    for (int i = 0; i < 6; ++i)
        *catalogue::AppendSystem() = {"", "", RandomIds[below(8)], below(14), below(14), below(14), below(14)};
    for (int i = 0; i < 8; ++i) {
        _UnitDataTypeStr& type = *catalogue::AppendDataType();
        type.name = emptyName();
        type.id = RandomIds[below(8)];
        type.heatExponent = below(4) - 1;
        if (below(3) != 0)
            for (int* const e : {&type.lengthExponent, &type.massExponent, &type.timeExponent, &type.heatExponent})
                *e = below(9) - 4;
        type.hasMultiplier = below(3) == 0;
        type.multiplier = type.hasMultiplier != 0 ? multipliers[below(5)] : 1.0;
    }
}

bool AreSame(double left, double right)
{
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right) ||
           (std::isnan(left) && std::isnan(right));
}

TEST_F(UnitRecords, ConvertsBitByBitAsThePlainSteps)
{
    for (unsigned int seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        catalogue::ResetForTests();
        AppendRandomRecords(random);
        for (int n = 0; n < 3000; ++n) {
            const int fromType = RandomIds[random() % 10],
                      toType = random() % 2 == 0 ? fromType : RandomIds[random() % 10];
            const int fromSystem = RandomIds[random() % 10], toSystem = RandomIds[random() % 10];
            const double value = static_cast<double>(random()) / 1e6 - 1000.0;
            double converted = 12.5;
            VUnitUtlConvertFromOneToAnother(fromType, toType, fromSystem, toSystem, value, &converted);
            const double expected = PlainConvert(fromType, toType, fromSystem, toSystem, value, 12.5);
            ASSERT_TRUE(AreSame(converted, expected))
                << "seed " << seed << ": " << value << " of " << fromType << " in " << fromSystem << " to " << toType
                << " in " << toSystem << " gives " << converted << ", not " << expected;
        }
    }
}

TEST_F(UnitRecords, TakesNoTimeForHugeExponents)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr int billion = 1'000'000'000, lowest = std::numeric_limits<int>::min();
    const double slowly = 2 * billion * std::log1p(1e-9);
    const struct
    {
        double scale;
        int exponent;
        double expected;
    } rows[] = {
        {1, 2 * billion, 1.0},
        {1e3, 2 * billion, infinity},
        {1e-3, -2 * billion, infinity},
        {1e3, lowest, 0.0},
        {0, 2 * billion, 0.0},
        {-1, billion + 1, -1.0},
        {-1, -2 * billion, 1.0},
        {-1e3, billion - 1, -infinity},
        {-1e-3, billion + 1, -0.0},
        {1 + 1e-9, 2 * billion, std::exp(slowly)},
        {1 + 1e-9, -2 * billion, std::exp(-slowly)},  // not at once
    };
    for (const auto& [scale, exponent, expected] : rows) {
        VUnitUtlSetScaleFatorForSubModelUnitConversion(scale, 1, 1, 0);
        const int type = VUnitUtlGetDataTypeId(VUnitUtlGetDataTypeName(exponent, 0, 0, 0, 1));
        double converted = 0.0;
        VUnitUtlConvertFromOneToAnother(0, type, -1, -1, 1.0, &converted);
        if (std::isfinite(expected) && expected != 0.0)
            EXPECT_NEAR(converted, expected, 1e-6 * std::abs(expected)) << scale << " to the power " << exponent;
        else
            EXPECT_TRUE(AreSame(converted, expected)) << scale << " to the power " << exponent << ": " << converted;
    }
    VUnitUtlSetScaleFatorForSubModelUnitConversion(1, 1, 1, 0);
}

}  // namespace
