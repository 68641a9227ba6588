#include <basutl/BuVariable.h>

#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

constexpr char Name[] = "BASUTL_TEST_VARIABLE";

class Variable : public testing::Test
{
protected:
    ~Variable() override { Set(std::nullopt); }
    static void Set(const std::optional<std::wstring>& value)
    {
        ASSERT_TRUE(platform::SetEnvironmentValue(platform::Widen(Name).c_str(), value));
    }
};

TEST_F(Variable, MeansTrueForFourWordsAndNonzeroNumbers)
{
    for (const wchar_t* const text :
         {L"1", L"true", L"TRUE", L"yes", L"On", L"-1", L"1e-300", L"inf", L" 1 ", L"on\t"}) {
        Set(text);
        EXPECT_TRUE(BuVariableGetBoolean(Name, false)) << text;
    }
    for (const wchar_t* const text : {L"0", L"false", L"no", L"off", L"-0.0", L"nan", L"y", L"1x", L"truely", L" "}) {
        Set(text);
        EXPECT_FALSE(BuVariableGetBoolean(Name, true)) << text;
    }
}

TEST_F(Variable, HasADefaultWhenItIsNotSet)
{
    for (const bool defaultValue : {false, true})
        for (const char* const name : {Name, static_cast<const char*>(nullptr), ""})
            EXPECT_EQ(BuVariableGetBoolean(name, defaultValue), defaultValue);
    EXPECT_EQ(BuVariableGetValue(Name), nullptr);
    EXPECT_EQ(BuVariableGetValue(nullptr), nullptr);
    Set(L"");  // where the system keeps an empty variable at all, it is set
    const bool isSet = platform::EnvironmentValue(platform::Widen(Name).c_str()).has_value();
    EXPECT_EQ(BuVariableGetBoolean(Name, true), !isSet);
    EXPECT_STREQ(BuVariableGetValue(Name, 1), isSet ? L"" : nullptr);
}

TEST_F(Variable, IsReadAtEachCallIntoTextOfTheThread)
{
    const std::wstring text = L"C:\\Temp; \u00e9\u20ac and enough text to leave the string's own storage";
    Set(text);
    const wchar_t* const mine = BuVariableGetValue(Name, 1);
    EXPECT_EQ(mine, text);
    Set(L"changed");
    std::thread([] { EXPECT_STREQ(BuVariableGetValue(Name, 1), L"changed"); }).join();
    EXPECT_EQ(mine, text);
    EXPECT_STREQ(BuVariableGetValue(Name, 1), L"changed");
    EXPECT_EQ(BuVariableGetValue(Name, 2), nullptr);  // there is no other source
}

}  // namespace
