#include "platform/Platform.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr wchar_t Name[] = L"TUVO_TEST_VARIABLE";

// Prints the variable as the C library sees it.
CHILD_SCENARIO(PrintVariable)
{
    const char* const value = std::getenv("TUVO_TEST_VARIABLE");
    std::fputs(value == nullptr ? "(none)" : value, stdout);
    return 0;
}

TEST(Environment, AVariableReachesTheCLibraryAndChildren)
{
    for (const std::wstring value : {L"x", L"a=b; c", L"gr\u00FC\u00DF"}) {
        ASSERT_TRUE(platform::SetEnvironmentValue(Name, value));
        EXPECT_EQ(platform::EnvironmentValue(Name), value);
        EXPECT_EQ(std::getenv("TUVO_TEST_VARIABLE"), platform::Narrow(value));
        EXPECT_EQ(RunChild("PrintVariable").output, platform::Narrow(value));
    }
    ASSERT_TRUE(platform::SetEnvironmentValue(Name, std::nullopt));
    EXPECT_EQ(platform::EnvironmentValue(Name), std::nullopt);
    EXPECT_EQ(RunChild("PrintVariable").output, "(none)");
    EXPECT_TRUE(platform::SetEnvironmentValue(Name, std::nullopt)) << "removed twice";
}

TEST(Environment, ValuesMayBeLongAndEmpty)
{
    const std::wstring longValue(5000, L'v');
    ASSERT_TRUE(platform::SetEnvironmentValue(Name, longValue));
    EXPECT_EQ(platform::EnvironmentValue(Name), longValue);
    ASSERT_TRUE(platform::SetEnvironmentValue(Name, L""));
    const bool isWindows = platform::Separator() == L'\\';
    EXPECT_EQ(platform::EnvironmentValue(Name), isWindows ? std::nullopt : std::optional<std::wstring>(L""));
    platform::SetEnvironmentValue(Name, std::nullopt);
}

TEST(Environment, BadNamesAreRefused)
{
    for (const wchar_t* const name : {static_cast<const wchar_t*>(nullptr), L"", L"a=b"}) {
        EXPECT_FALSE(platform::SetEnvironmentValue(name, L"x"));
        EXPECT_FALSE(platform::SetEnvironmentValue(name, std::nullopt));
        EXPECT_EQ(platform::EnvironmentValue(name), std::nullopt);
    }
}

}  // namespace
