// What the records hold after a file was read, and conversion against a plain implementation of its steps.

#include <TuvoUtil/Units.h>

#include "VUnit/Catalogue.h"
#include "VUnit/FieldWalker.h"

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

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

// ---- Fields --------------------------------------------------------------------------------------------------------

TEST(FieldWalker, FollowsTheRulesOfTheSplitter)
{
    const struct
    {
        const char* text;
        Strings fields;
    } rows[] = {
        {"a;b", {"a", "b"}}, {"a;;b;", {"a", "b"}}, {";a;b", {" ", "a", "b"}}, {";;a;b", {" ", ";a", "b"}},
        {"", {""}},          {";", {" ", ""}},      {";;", {" ", ";"}},        {";;;a;;", {" ", ";;a"}},
    };
    for (const auto& [text, expected] : rows) {
        Strings fields;
        FieldWalker walker(text, ';');
        for (std::string_view field; walker.Next(field);)
            fields.emplace_back(field);
        EXPECT_EQ(fields, expected) << text;
    }
}

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
        {";1:m", {{0, ""}, {1, "m"}}},
        {";;1:m", {{0, ""}, {0, "m"}}},  // the second divider is part of the entry: ";1" is no number
        {"", {{0, ""}}},
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

struct PlainUnit
{
    int id;
    double factor, offset;
};
struct PlainSystem
{
    int id;
    int units[4];
};
struct PlainType
{
    int id;
    int exponents[4];
    bool hasMultiplier;
    double multiplier;
};

// The documented steps of a conversion, one after the other, on records in their order.
struct PlainCatalogue
{
    std::vector<PlainUnit> units;
    std::vector<PlainSystem> systems;
    std::vector<PlainType> types;

    PlainUnit Unit(int id) const
    {
        for (const PlainUnit& unit : units)
            if (unit.id == id)
                return unit;
        return {id, 1.0, 0.0};
    }

    const PlainSystem* System(int id) const
    {
        for (const PlainSystem& system : systems)
            if (system.id == id)
                return &system;
        return nullptr;
    }

    PlainType Type(int id) const
    {
        for (PlainType type : types)
            if (type.id == id) {
                for (int& exponent : type.exponents)
                    exponent = type.hasMultiplier ? 0 : exponent;
                return type;
            }
        return {id, {0, 0, 0, 0}, false, 1.0};
    }

    static double Power(double value, int exponent)
    {
        double product = 1.0;
        for (int i = 0; i < exponent; ++i)
            product *= value;
        for (int i = 0; i > exponent; --i)
            product /= value;
        return product;
    }

    double Factor(const PlainSystem& system, const PlainType& type) const
    {
        double factor = Power(Unit(system.units[0]).factor, type.exponents[0]);
        for (int i = 1; i < 4; ++i)
            factor *= Power(Unit(system.units[i]).factor, type.exponents[i]);
        return factor;
    }

    double Offset(const PlainSystem& system, const PlainType& type) const
    {
        double offset = 0.0;
        for (int i = 0; i < 3; ++i)
            if (type.exponents[i] != 0)
                offset += Unit(system.units[i]).offset;
        return offset;
    }

    static bool IsTemperature(const PlainType& type)
    {
        const int* const e = type.exponents;
        return e[0] == 0 && e[1] == 0 && e[2] == 0 && e[3] >= 1;
    }

    double Convert(int fromType, int toType, int fromSystem, int toSystem, double value, double out) const
    {
        if (fromSystem == -1 && toSystem == -1) {  // a sub-model, with its scales as they are at start
            out = value;
            for (const PlainType& type : types)
                if (type.id == toType)
                    out = value * type.multiplier;
            return out;
        }
        const PlainType a = Type(fromType), b = Type(toType);
        if (const PlainSystem* const s = System(fromSystem)) {
            double v = value;
            if (IsTemperature(a))
                v = (value / a.multiplier - Unit(s->units[3]).offset) * a.multiplier;
            v = v / (a.id == 49 ? std::sqrt(Factor(*s, a)) : Factor(*s, a));
            v = v / a.multiplier;
            out = v - Offset(*s, a);
        }
        if (const PlainSystem* const d = System(toSystem)) {
            const double g = b.id == 49 ? std::sqrt(Factor(*d, b)) : Factor(*d, b);
            const double y = g * (out + Offset(*d, b));
            out = IsTemperature(b) ? (y + Unit(d->units[3]).offset) * b.multiplier : y * b.multiplier;
        }
        return out;
    }
};

// Small ids, so that some repeat and some are missing.
PlainCatalogue RandomCatalogue(std::mt19937& random)
{
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned int>(limit)); };
    const double factors[] = {1.0, 1000.0, 39.37007874015748, 0.001, 1.8, -3.0, 0.0, 1e200, 0.1};
    const double offsets[] = {0.0, -273.15, -459.67, 5.5};
    const double multipliers[] = {1.0, 100.0, 0.3, -7.0, 0.0};
    const int ids[] = {0, 1, 2, 49, 300, -1, 8192, 2'000'000'000};
    PlainCatalogue all;
    for (int i = 0; i < 12; ++i)
        all.units.push_back({below(14), factors[below(9)], offsets[below(4)]});
    for (int i = 0; i < 6; ++i)
        all.systems.push_back({ids[below(8)], {below(14), below(14), below(14), below(14)}});
    for (int i = 0; i < 8; ++i) {
        PlainType type = {ids[below(8)], {0, 0, 0, below(4) - 1}, below(3) == 0, 1.0};
        if (below(3) != 0)
            for (int& exponent : type.exponents)
                exponent = below(9) - 4;
        type.multiplier = type.hasMultiplier ? multipliers[below(5)] : 1.0;
        all.types.push_back(type);
    }
    return all;
}

std::string Format(const char* format, auto... arguments)
{
    char text[400];
    std::snprintf(text, sizeof text, format, arguments...);
    return text;
}

std::string FileText(const PlainCatalogue& all)
{
    std::string text = "<U><BASE_TYPE TYPE='LENGTH'>";
    for (const PlainUnit& u : all.units)
        text += Format("<BASE_UNIT ID='%d' CONV_VAL='%.17g' ADD_VAL='%.17g'/>", u.id, u.factor, u.offset);
    text += "</BASE_TYPE>";
    for (const PlainSystem& s : all.systems)
        text += Format("<UNIT_SYSTEM NAME='' ID='%d' LENGTH_UNIT='%d' MASS_UNIT='%d' TIME_UNIT='%d' HEAT_UNIT='%d'/>",
                       s.id, s.units[0], s.units[1], s.units[2], s.units[3]);
    for (const PlainType& t : all.types)
        text += Format("<DATA_TYPE ID='%d' NUM_L='%d' NUM_M='%d' NUM_T='%d' NUM_H='%d' %s", t.id, t.exponents[0],
                       t.exponents[1], t.exponents[2], t.exponents[3],
                       t.hasMultiplier ? Format("MULTIPLIER='%.17g'/>", t.multiplier).c_str() : "/>");
    return text + "</U>";
}

bool AreSame(double left, double right)
{
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right) ||
           (std::isnan(left) && std::isnan(right));
}

TEST_F(UnitRecords, ConvertsBitByBitAsThePlainSteps)
{
    const int ids[] = {0, 1, 2, 49, 300, -1, 8192, 2'000'000'000, 17, -2};
    for (unsigned int seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        const PlainCatalogue plain = RandomCatalogue(random);
        ASSERT_EQ(Load(FileText(plain)), 1);
        for (int n = 0; n < 3000; ++n) {
            const int fromType = ids[random() % 10], toType = random() % 2 == 0 ? fromType : ids[random() % 10];
            const int fromSystem = ids[random() % 10], toSystem = ids[random() % 10];
            const double value = static_cast<double>(random()) / 1e6 - 1000.0;
            double converted = 12.5;
            VUnitUtlConvertFromOneToAnother(fromType, toType, fromSystem, toSystem, value, &converted);
            const double expected = plain.Convert(fromType, toType, fromSystem, toSystem, value, 12.5);
            ASSERT_TRUE(AreSame(converted, expected))
                << "seed " << seed << ": " << value << " of " << fromType << " in " << fromSystem << " to " << toType
                << " in " << toSystem << " gives " << converted << ", not " << expected << "\n"
                << FileText(plain);
        }
    }
}

TEST_F(UnitRecords, TakesNoTimeForHugeExponents)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct
    {
        const char* factor;
        int exponent;
        double expected;
    } rows[] = {
        {"1", 2'000'000'000, 1.0},
        {"1000", 2'000'000'000, infinity},
        {"0.001", -2'000'000'000, infinity},
        {"1000", -2147483647 - 1, 0.0},
        {"0", 2'000'000'000, 0.0},
        {"-1", 2'000'000'001, -1.0},
        {"-1", -2'000'000'000, 1.0},
        {"-1000", 1'999'999'999, -infinity},
        {"-0.001", 2'000'000'001, -0.0},
        {"1.000000001", 2'000'000'000, std::exp(2'000'000'000 * std::log1p(1e-9))},
        {"1.000000001", -1'999'999'999, std::exp(-1'999'999'999 * std::log1p(1e-9))},
    };
    for (const auto& [factor, exponent, expected] : rows) {
        ASSERT_EQ(Load(std::string("<U><BASE_TYPE TYPE='LENGTH'><BASE_UNIT ID='1' CONV_VAL='") + factor +
                       "'/></BASE_TYPE><UNIT_SYSTEM NAME='' ID='1' LENGTH_UNIT='1' MASS_UNIT='0' TIME_UNIT='0' "
                       "HEAT_UNIT='0'/><DATA_TYPE ID='1' NUM_L='" +
                       std::to_string(exponent) + "'/></U>"),
                  1);
        double converted = 0.0;
        VUnitUtlConvertFromOneToAnother(9, 1, 1, 1, 1.0, &converted);
        if (std::isfinite(expected) && expected != 0.0)
            EXPECT_NEAR(converted, expected, 1e-6 * std::abs(expected)) << factor << " to the power " << exponent;
        else
            EXPECT_TRUE(AreSame(converted, expected)) << factor << " to the power " << exponent << ": " << converted;
    }
}

}  // namespace
