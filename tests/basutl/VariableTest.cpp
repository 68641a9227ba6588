#include <basutl/BuVariable.h>

#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

constexpr wchar_t WideName[] = L"BASUTL_TEST_VARIABLE";
constexpr char Name[] = "BASUTL_TEST_VARIABLE";

class Variable : public testing::Test
{
protected:
    ~Variable() override { Set(std::nullopt); }
    static void Set(const std::optional<std::wstring>& value)
    {
        ASSERT_TRUE(platform::SetEnvironmentValue(WideName, value));
    }
};

TEST_F(Variable, MeansTrueForFourWordsAndNonzeroNumbers)
{
    for (const wchar_t* const text :
         {L"1", L"true", L"TRUE", L"yes", L"On", L"2", L"-1", L"0.5", L"1e-300", L"inf", L" 1 ", L"on\t"}) {
        Set(text);
        EXPECT_TRUE(BuVariableGetBoolean(Name, false)) << text;
    }
    for (const wchar_t* const text :
         {L"0", L"false", L"no", L"off", L"0.0", L"-0", L"nan", L"y", L"1x", L"truely", L" "}) {
        Set(text);
        EXPECT_FALSE(BuVariableGetBoolean(Name, true)) << text;
    }
}

TEST_F(Variable, HasADefaultWhenItIsNotSet)
{
    for (const bool defaultValue : {false, true}) {
        EXPECT_EQ(BuVariableGetBoolean(Name, defaultValue), defaultValue);
        EXPECT_EQ(BuVariableGetBoolean(nullptr, defaultValue), defaultValue);
        EXPECT_EQ(BuVariableGetBoolean("", defaultValue), defaultValue);
    }
    EXPECT_EQ(BuVariableGetValue(Name), nullptr);
    EXPECT_EQ(BuVariableGetValue(nullptr), nullptr);
}

// Where the system keeps an empty variable at all, it is set.
TEST_F(Variable, IsFalseWhenSetToNothing)
{
    Set(L"");
    if (!platform::EnvironmentValue(WideName))
        GTEST_SKIP() << "this system has no empty variables";
    EXPECT_FALSE(BuVariableGetBoolean(Name, true));
    EXPECT_STREQ(BuVariableGetValue(Name, 1), L"");
}

TEST_F(Variable, IsReadAtEachCallIntoTextOfTheThread)
{
    Set(L"C:\\Temp; \u00e9\u20ac and enough text to leave the string's own storage");
    const wchar_t* const mine = BuVariableGetValue(Name, 1);
    EXPECT_STREQ(mine, L"C:\\Temp; \u00e9\u20ac and enough text to leave the string's own storage");
    Set(L"changed");
    std::thread([] { EXPECT_STREQ(BuVariableGetValue(Name, 1), L"changed"); }).join();
    EXPECT_STREQ(mine, L"C:\\Temp; \u00e9\u20ac and enough text to leave the string's own storage");
    EXPECT_STREQ(BuVariableGetValue(Name, 1), L"changed");
    EXPECT_EQ(BuVariableGetValue(Name, 2), nullptr);  // there is no other source
}

}  // namespace
