#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>
#include <basutl/BuCharacter.h>

#include "support/GuardedBuffer.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Ids = std::vector<int>;
using Strings = std::vector<std::string>;

const Ids Rejected = {INT_MIN};  // stands for the result -1

// A new array of the library as a vector; the array is freed.
template <typename T>
std::vector<T> Take(T* array, int count)
{
    std::vector<T> values(array, array + std::max(count, 0));
    VBuFree(array, "test", __LINE__);
    return values;
}

std::string TakeText(char* text)
{
    const std::string copy = text != nullptr ? text : "(null)";
    VBuFree(text, "test", __LINE__);
    return copy;
}

Ids Strict(const std::string& text, bool keepDuplicates = false)
{
    int untouched = 0;
    int* ids = &untouched;
    const int count = UtlGenerateIdListFromString(text.c_str(), &ids, keepDuplicates);
    if (count == -1) {
        EXPECT_EQ(ids, &untouched) << text;
        return Rejected;
    }
    EXPECT_NE(ids, nullptr) << text;
    return Take(ids, count);
}

Ids Lenient(const std::string& text, const char* setSeparator = nullptr, const char* rangeSeparator = nullptr)
{
    int* ids = nullptr;
    const int count = UtlGetIdListFromGivenSet(text.c_str(), &ids, setSeparator, rangeSeparator);
    EXPECT_EQ(ids == nullptr, count == 0) << text;
    return Take(ids, count);
}

Ids FromWildcard(std::string pattern, char wildcard = '\0')
{
    int* ids = nullptr;
    const int count = UtlGetIdListFromWildCard(pattern.data(), &ids, wildcard);
    EXPECT_EQ(ids == nullptr, count == 0) << pattern;
    return Take(ids, count);
}

Ids Incremental(std::string text, char rangeSeparator = '\0', char stepSeparator = '\0')
{
    int* ids = nullptr;
    const int count = UtlGetIncrementalIdList(text.data(), &ids, rangeSeparator, stepSeparator);
    EXPECT_EQ(ids == nullptr, count == 0) << text;
    return Take(ids, count);
}

std::string Joined(Ids ids, const char* separator = nullptr)
{
    std::string copy = separator != nullptr ? separator : "";
    return TakeText(UtlGenerateStringFromIdList(ids.data(), static_cast<int>(ids.size()),
                                                separator != nullptr ? copy.data() : nullptr));
}

std::string Compact(Ids ids, const char* rangeSeparator = nullptr)
{
    return TakeText(UtlStrGenerateIdStringSafe(ids.data(), static_cast<int>(ids.size()), rangeSeparator));
}

// ---- The definitions, slow and obvious -----------------------------------------------------------------------------

void AppendRange(Ids& ids, int from, int to)
{
    for (int id = std::min(from, to); id <= std::max(from, to); ++id)
        ids.push_back(id);
}

// Cut at ',' as strtok does, but for what a leading comma does: an empty item, and a first token that keeps the commas
// in front of it.
Strings StrictItems(const std::string& text)
{
    std::size_t start = text[0] == ',';
    Strings items(start, " ");
    std::size_t end = std::min(text.find(',', text.find_first_not_of(',', start)), text.size());
    items.push_back(text.substr(start, end - start));
    while ((start = text.find_first_not_of(',', end)) < text.size()) {
        end = std::min(text.find(',', start), text.size());
        items.push_back(text.substr(start, end - start));
    }
    return items;
}

Ids StrictByDefinition(const std::string& text, bool keepDuplicates)
{
    std::string cleaned;
    for (const char c : text)
        if (c != ' ' || (!cleaned.empty() && cleaned.back() != ' '))
            cleaned += c;
    if (!cleaned.empty() && cleaned.back() == ' ')
        cleaned.pop_back();
    std::replace(cleaned.begin(), cleaned.end(), ' ', ',');
    Ids ids;
    for (const std::string& item : StrictItems(cleaned)) {
        const std::size_t dash = item.find('-');
        std::string lower = item.substr(0, dash);
        std::string upper = dash < item.size() ? item.substr(dash + 1) : "-1";
        if (const std::size_t colon = lower.find(':'); colon < lower.size()) {
            upper = lower.substr(colon + 1);
            lower.resize(colon);
        }
        if (lower.empty())
            return Rejected;
        const int from = std::atoi(lower.c_str());
        const int to = std::atoi(upper.c_str());
        AppendRange(ids, from, to == -1 ? from : to);
    }
    Ids kept;
    std::set<int> seen;
    for (const int id : ids)
        if (id > 0 && (seen.insert(id).second || keepDuplicates))
            kept.push_back(id);
    return kept;
}

Strings Fields(const std::string& text, char separator)
{
    Strings fields;
    std::string field;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != separator)
            field += text[i];
        if (text[i] == separator || i + 1 == text.size()) {
            fields.push_back(field.empty() ? " " : field);
            field.clear();
        }
    }
    return fields;
}

Ids LenientByDefinition(const std::string& text, char setSeparator, char rangeSeparator)
{
    Ids ids;
    for (const std::string& item : Fields(text, setSeparator)) {
        const Strings parts = Fields(item, rangeSeparator);
        if (parts.size() < 2)
            ids.push_back(std::atoi(item.c_str()));
        else
            AppendRange(ids, std::atoi(parts.front().c_str()), std::atoi(parts.back().c_str()));
    }
    return ids;
}

// ---- Ids from text -------------------------------------------------------------------------------------------------

TEST(StrictIds, AreThoseOfTheDefinitionForAllShortTexts)
{
    ForEachText("13 ,-:", 5, [](const std::string& text) {
        ASSERT_EQ(Strict(text), StrictByDefinition(text, false)) << '"' << text << '"';
        ASSERT_EQ(Strict(text, true), StrictByDefinition(text, true)) << '"' << text << '"';
    });
}

TEST(StrictIds, AreReadAsDocumented)
{
    const struct
    {
        const char* text;
        Ids ids;
    } rows[] = {
        {"5 3-1,3:4", {5, 1, 2, 3, 4}},
        {"0,3", {3}},
        {"0", {}},
        {"5-", {1, 2, 3, 4, 5}},
        {"5--1", {5}},
        {"5--3", {1, 2, 3, 4, 5}},
        {"1:3-9", {1, 2, 3}},
        {"1-3:2", {1, 2, 3}},
        {",,1-3", {1, 2, 3}},
        {"999999999 999999999-999999999", {999'999'999}},
        {"000000001-000000002", {1, 2}},
        {",,,,,,,,,1-2", {1, 2}},  // the eight commas and the digit before the sign are nine characters
        {",,,,,,,,,,1-2", Rejected},
        {",  ,  ,1-2,  ", {1, 2}},
        {" 4 : 2", Rejected},
        {"3:-:-1,4:,2", {1, 2, 3, 4}},
        {"1000000000", Rejected},
        {"1-0000000002", Rejected},
        {"1:0000000002", Rejected},
        {"1:2-0000000003", Rejected},
        {"-5", Rejected},
        {"", Rejected},
        {"  ", Rejected},
        {",", Rejected},
        {"1\t2", Rejected},
        {"1\n", Rejected},
        {"1,2\xE9", Rejected},
        {"1+2", Rejected},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Strict(row.text), row.ids) << row.text;
    EXPECT_EQ(Strict("5 3-1,3:4", true), (Ids{5, 1, 2, 3, 3, 4}));
    int* ids = nullptr;
    EXPECT_EQ(UtlGenerateIdListFromString(nullptr, &ids, 0), -1);
    EXPECT_EQ(UtlGenerateIdListFromString("1", nullptr, 0), -1);
}

// Long lists: many ids with few values, ranges that overlap, values far apart.
TEST(StrictIds, KeepTheFirstPlaceInLongLists)
{
    std::mt19937 random(11);
    for (const int largest : {40, 3000, 900'000'000}) {
        std::string text;
        for (int i = 0; i < 400; ++i) {
            const int id = static_cast<int>(random() % static_cast<unsigned>(largest));
            text += (i > 0 ? "," : "") + std::to_string(id);
            if (random() % 4 == 0)
                text += (random() % 2 == 0 ? '-' : ':') + std::to_string(id + static_cast<int>(random() % 200));
            if (random() % 8 == 0)
                text += ' ' + std::to_string(id);
        }
        EXPECT_EQ(Strict(text), StrictByDefinition(text, false)) << text;
        EXPECT_EQ(Strict(text, true), StrictByDefinition(text, true)) << text;
    }
}

TEST(LenientIds, AreThoseOfTheDefinitionForAllShortTexts)
{
    const char* const separators[] = {",:", ":,", ",-", " :", ", ", "1:", ",3", ",,"};
    for (const char* const pair : separators)
        ForEachText("13 ,-:", 5, [&](const std::string& text) {
            ASSERT_EQ(Lenient(text, pair, pair + 1), LenientByDefinition(text, pair[0], pair[1])) << '"' << text << '"';
        });
}

TEST(LenientIds, AreReadAsDocumented)
{
    const struct
    {
        const char* text;
        Ids ids;
    } rows[] = {
        {"", {}},
        {"1,,3", {1, 0, 3}},
        {",", {0}},
        {"7:3", {3, 4, 5, 6, 7}},
        {"2:4:3", {2, 3}},
        {":2", {0, 1, 2}},
        {"5:", {5}},
        {"2::", {0, 1, 2}},
        {"\n 7\r\n,x,8x", {7, 0, 8}},
        {"-2:-1", {-2, -1}},
        {"99999999999", {1'215'752'191}},
        {"2147483646:2147483647", {INT_MAX - 1, INT_MAX}},
        {"0:99999999999999999999", {-1, 0}},  // the largest 64-bit number, whose low bits are those of -1
        {"-2147483648:2147483647", {}},       // more than an int counts
    };
    for (const auto& row : rows)
        EXPECT_EQ(Lenient(row.text), row.ids) << row.text;
    EXPECT_EQ(Lenient("1;2|4", ";x", "|y"), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(Lenient("1,2:4", "", ""), (Ids{1}));
    int anId = 0;
    int* ids = &anId;
    EXPECT_EQ(UtlGetIdListFromGivenSet(nullptr, &ids, ",", ":"), 0);
    EXPECT_EQ(ids, nullptr);
    EXPECT_EQ(UtlGetIdListFromGivenSet("1", nullptr, ",", ":"), 0);
}

TEST(WildcardIds, AreOneRange)
{
    Ids expected;
    AppendRange(expected, 5, 95);
    EXPECT_EQ(FromWildcard("?5"), expected);
    EXPECT_EQ(FromWildcard("1*", '*').size(), 10u);
    EXPECT_EQ(FromWildcard("1?,3?"), Lenient("10,30:19,39"));
    EXPECT_EQ(FromWildcard("12"), Ids());
    EXPECT_EQ(FromWildcard(""), Ids());
    EXPECT_EQ(FromWildcard(std::string(5000, '0') + "4?").size(), 10u);
    int* ids = nullptr;
    EXPECT_EQ(UtlGetIdListFromWildCard(nullptr, &ids, '?'), 0);
    std::string pattern = "1?";
    EXPECT_EQ(UtlGetIdListFromWildCard(pattern.data(), nullptr, '?'), 0);
}

TEST(IncrementalIds, TakeWholeStepsOnly)
{
    const struct
    {
        const char* text;
        Ids ids;
    } rows[] = {
        {"1:9,2", {1, 3, 5, 7}},
        {"1:10,2", {1, 3, 5, 7, 9}},
        {"5,1:3,9:7,3", {5, 3}},
        {"4,4,4,1", {4, 4, 4}},
        {"1:9,0", {}},
        {"1:9,-2", {}},
        {"1:9", {}},
        {",2", {}},
        {"1:2,3", {}},
        {"1:9,", {}},
        {"1,3x", {}},
        {"1:2147483647,1000000000", {1, 1'000'000'001}},
        {"1:6,2,1:6,4", {1, 5, 2}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Incremental(row.text), row.ids) << row.text;
    EXPECT_EQ(Incremental("1-9/2", '-', '/'), (Ids{1, 3, 5, 7}));
    int* ids = nullptr;
    EXPECT_EQ(UtlGetIncrementalIdList(nullptr, &ids, ':', ','), 0);
}

// ---- Text from ids -------------------------------------------------------------------------------------------------

// The steps of the compact form, one by one.
std::string CompactByDefinition(const Ids& ids, const std::string& rangeSeparator)
{
    std::string text = std::to_string(ids[0]);
    std::string pending;
    int previous = ids[0];
    for (std::size_t i = 1; i < ids.size(); ++i) {
        const bool isLast = i == ids.size() - 1;
        if (ids[i] == previous + 1) {
            pending = rangeSeparator;
            if (!isLast) {
                previous = ids[i];
                continue;
            }
        }
        if (pending.empty() || pending == ",") {
            pending = ",";
            text += ',' + std::to_string(ids[i]);
        } else {
            text += pending + std::to_string(previous);
            if (!isLast || previous != ids[i]) {
                pending = ",";
                text += pending + std::to_string(ids[i]);
            }
        }
        previous = ids[i];
    }
    return text;
}

TEST(CompactIds, AreThoseOfTheDefinitionForAllShortLists)
{
    ForEachText("01235", 6, [](const std::string& digits) {
        if (digits.empty())
            return;
        const Ids ids(digits.begin(), digits.end());
        for (const char* const separator : {"-", ":", " to ", ",", ""})
            ASSERT_EQ(Compact(ids, separator), CompactByDefinition(ids, separator)) << digits;
    });
    const struct
    {
        Ids ids;
        const char* text;
    } rows[] = {
        {{1, 3}, "1,3"},
        {{1, 2, 3, 7}, "1-3,7"},
        {{1, 2, 5, 6, 9}, "1-2,5-6,9"},
        {{1, 2, 3}, "1-2,3"},
        {{1, 2}, "1-1,2"},
        {{7}, "7"},
        {{}, "(null)"},
        {{INT_MAX, INT_MIN}, "2147483647,-2147483648"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Compact(row.ids), row.text);
}

TEST(PrintedIds, ReadAsTheSame)
{
    std::mt19937 random(3);
    Ids all(2000);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<int>(i) + 1;
    for (int round = 0; round < 50; ++round) {
        // Distinct ids, in runs of about `round`.
        for (std::size_t i = 0; i < all.size() / static_cast<std::size_t>(round + 1); ++i)
            std::swap(all[random() % all.size()], all[random() % all.size()]);
        const Ids ids(all.begin(), all.begin() + 1 + random() % 1999);
        ASSERT_EQ(Strict(Compact(ids)), ids);
        ASSERT_EQ(Lenient(Compact(ids, ":")), ids);
        ASSERT_EQ(Lenient(Joined(ids, ", ")), ids);
        ASSERT_EQ(Strict(Joined(ids, " ")), ids);
    }
    EXPECT_EQ(Joined({-1, 0, INT_MIN, INT_MAX}), "-1,0,-2147483648,2147483647");
    EXPECT_EQ(Joined({1, 2}, ""), "12");
    EXPECT_EQ(Joined({1, 2, 3}, std::string(3000, 'x').c_str()).size(), 6003u);
}

TEST(PrintedIds, AreNullForNone)
{
    int id = 1;
    float value = 1;
    for (const int count : {0, -1}) {
        EXPECT_EQ(UtlGenerateStringFromIdList(&id, count, nullptr), nullptr);
        EXPECT_EQ(UtlStrGenerateIdStringSafe(&id, count, nullptr), nullptr);
        EXPECT_EQ(UtlGenerateStringFromFloatList(&value, count, nullptr), nullptr);
    }
    EXPECT_EQ(UtlGenerateStringFromIdList(nullptr, 1, nullptr), nullptr);
    EXPECT_EQ(UtlStrGenerateIdStringSafe(nullptr, 1, nullptr), nullptr);
    EXPECT_EQ(UtlGenerateStringFromFloatList(nullptr, 1, nullptr), nullptr);
}

// ---- Values --------------------------------------------------------------------------------------------------------

TEST(FloatLists, ArePrintedAsPrintfDoes)
{
    std::vector<float> values = {1.5F,   -0.0F,      3.4028235e38F, -3.4028235e38F,
                                 1e-45F, 0.0000005F, HUGE_VALF,     16777216.5F};
    std::string expected;
    for (const float value : values) {
        char text[64];
        std::snprintf(text, sizeof text, "%s%f", expected.empty() ? "" : "; ", static_cast<double>(value));
        expected += text;
    }
    char separator[] = "; ";
    const int count = static_cast<int>(values.size());
    EXPECT_EQ(TakeText(UtlGenerateStringFromFloatList(values.data(), count, separator)), expected);
    EXPECT_EQ(TakeText(UtlGenerateStringFromFloatList(values.data(), 1, nullptr)), "1.500000");
}

TEST(FloatLists, AreReadByFields)
{
    const struct
    {
        const char* text;
        const char* separator;
        std::vector<float> values;
    } rows[] = {
        {"1.5,-2e3,\n 3 \n", nullptr, {1.5F, -2000.0F, 3.0F}},
        {",,1", nullptr, {0.0F, 0.0F, 1.0F}},
        {"1,", nullptr, {1.0F}},
        {"1|x|0x10|inf|1e40", "||", {1.0F, 0.0F, 16.0F, HUGE_VALF, HUGE_VALF}},
        {"1e5", "e", {1.0F, 5.0F}},
        {"1,2", "", {1.0F}},
        {"", nullptr, {}},
    };
    for (const auto& row : rows) {
        float* values = nullptr;
        const int count = UtlGetFloatListFromString(row.text, &values, row.separator);
        EXPECT_EQ(Take(values, count), row.values) << row.text;
    }
    float untouched = 0;
    float* values = &untouched;
    EXPECT_EQ(UtlGetFloatListFromString(nullptr, &values, ","), 0);
    EXPECT_EQ(UtlGetFloatListFromString("", &values, ","), 0);
    EXPECT_EQ(values, &untouched);
}

TEST(CheckedValues, AreReadOrNamedWrong)
{
    const struct
    {
        const char* text;
        std::vector<double> values;
        const char* message;
    } rows[] = {
        {"1.5, 2 3", {1.5, 2.0, 3.0}, ""},
        {" \t-1\n,\t.5 \t,, 5.  ", {-1.0, 0.5, 5.0}, ""},
        {"1.. 2.5.", {1.0, 2.5}, ""},
        {",1", {1.0}, ""},
        {"0.0000001", {1e-7}, ""},
        {" ", {}, ""},
        {",, ,", {}, ""},
        {"", {}, "No values found!"},
        {"1.2.3", {}, "A value can have only one decimal point!"},
        {"1...", {}, "A value can have only one decimal point!"},
        {"-1-2", {}, "The '-' sign is specified twice for the same number!"},
        {"--1", {}, "The '-' sign is specified twice for the same number!"},
        {"a.b.c-d-e", {}, "The '-' sign is specified twice for the same number!"},
        {"1e5", {}, "Alpha value is entered!"},
        {"x", {}, "Alpha value is entered!"},
        {"1 2 +5", {}, "Non numeric value is entered!"},
        {"\xE9", {}, "Non numeric value is entered!"},
        {"1-", {}, "Invalid value!"},
        {"-1-", {}, "Invalid value!"},
        {"1\t2", {}, "Invalid value!"},
        {"1,0.0,x", {}, "Enter non zero values!"},
        {"0.00000009", {}, "Enter non zero values!"},
        {"-", {}, "Enter non zero values!"},
        {"..", {}, "Enter non zero values!"},
    };
    for (const auto& row : rows) {
        const GuardedBuffer text(row.text);
        const GuardedBuffer message(std::size_t{53});
        *message.Data() = '\0';
        int count = 99;
        double garbage = 0;
        double* values = &garbage;
        const int result = UtlGetTvCoordValuesFromString(text.Data(), &count, &values, nullptr, message.Data());
        EXPECT_EQ(result, *row.message != '\0') << row.text;
        EXPECT_STREQ(message.Data(), row.message) << row.text;
        EXPECT_EQ(values == nullptr, row.values.empty()) << row.text;
        EXPECT_EQ(Take(values, count), row.values) << row.text;
    }
    std::string text = "\t 1 ,2\n";
    int count = 0;
    double* values = nullptr;
    EXPECT_EQ(UtlGetTvCoordValuesFromString(text.data(), &count, &values, nullptr, nullptr), 0);
    EXPECT_STREQ(text.c_str(), "1 ,2") << "white space at the ends is removed in place";
    EXPECT_EQ(Take(values, count), (std::vector{1.0, 2.0}));
    EXPECT_EQ(UtlGetTvCoordValuesFromString(nullptr, &count, &values, nullptr, nullptr), 1);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(values, nullptr);
    EXPECT_EQ(UtlGetTvCoordValuesFromString(text.data(), nullptr, &values, nullptr, nullptr), 1);
}

}  // namespace
