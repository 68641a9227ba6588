#include <basutl/BuLocalize.h>
#include <basutl/BuLogger.h>
#include <basutl/BuMessage.h>

#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

std::wstring g_received;

// Collects what is logged and leaves no handler behind.
class HostMessages : public testing::Test
{
protected:
    HostMessages()
    {
        BuLogger::GetInstance().SetSink(&Receive, this);
        g_received.clear();
    }
    ~HostMessages() override
    {
        BuSetOutputHandler(nullptr);
        BuSetAssertHandler(nullptr);
        BuLogger::GetInstance().SetSink(nullptr, nullptr);
    }

    std::wstring m_log;

private:
    static void Receive(int level, const wchar_t* text, void* context)
    {
        static_cast<HostMessages*>(context)->m_log += L'[' + std::to_wstring(level) + L' ' + text + L']';
    }
};

TEST_F(HostMessages, OfTheLogGoToTheSink)
{
    BuLogger& logger = BuLogger::GetInstance();
    logger.Log(6, L"%s%d\n", L"calls: ", 12);
    logger.Log(2, nullptr);
    logger.LogWithoutArguments(1, L"100%% of %s%d");
    logger.LogText(0, L"100%% of %s");
    logger.LogText(3, nullptr);
    EXPECT_EQ(m_log, L"[6 calls: 12\n][2 ][1 100% of ][0 100%% of %s][3 ]");
}

TEST_F(HostMessages, OfTheLogGoToStandardErrorFromTheLevelAskedFor)
{
    const struct
    {
        std::optional<std::wstring> level;
        const char* written;
    } rows[] = {{std::nullopt, ""}, {L"0", "0\n1\n2\n"},  {L"1", "1\n2\n"},      {L"2", "2\n"},
                {L"3", ""},         {L"-1", "0\n1\n2\n"}, {L"all", "0\n1\n2\n"}, {L" 2 errors", "2\n"}};
    BuLogger& logger = BuLogger::GetInstance();
    logger.SetSink(nullptr, nullptr);
    for (const auto& row : rows) {
        platform::SetEnvironmentValue(L"BU_LOG_LEVEL", row.level);
        testing::internal::CaptureStderr();
        logger.Log(0, L"%d\n", 0);
        logger.LogText(1, L"1\n");
        logger.LogWithoutArguments(2, L"2%d\n");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.written) << testing::PrintToString(row.level);
    }
    platform::SetEnvironmentValue(L"BU_LOG_LEVEL", std::nullopt);
}

TEST_F(HostMessages, GoToTheInstalledHandlerElseToTheLog)
{
    BuSetOutputHandler([](int severity, const wchar_t* text) { g_received += std::to_wstring(severity) + text; });
    BuOutputMessage(2, L" 100% full");
    BuOutputMessage(1, nullptr);
    EXPECT_EQ(g_received + m_log, L"2 100% full1");
    BuSetOutputHandler(nullptr);
    BuOutputMessage(1, L"100% full");
    EXPECT_EQ(m_log, L"[1 100% full]");
}

TEST_F(HostMessages, OfAssertionsGoToTheirHandlerElseToTheLog)
{
    BuSetAssertHandler([](int code, const char* file, int line) {
        g_received += std::to_wstring(code) + platform::Widen(file) + std::to_wstring(line);
    });
    BuAssert(5, " Solver.cpp:", 12);
    BuAssert(0, nullptr, 1);
    EXPECT_EQ(g_received + m_log, L"5 Solver.cpp:1201");
    BuSetAssertHandler(nullptr);
    BuAssert(5, "Solver.cpp", 12);
    EXPECT_EQ(m_log, L"[2 Assertion failed at Solver.cpp:12 (code 5)\n]");
}

TEST(Localize, AsksTheTranslatorAndFallsBackOnTheText)
{
    BuSetTranslator([](const wchar_t* text, int context) -> const wchar_t* {
        return context == 0 && std::wcscmp(text, L"Error") == 0 ? L"Fehler" : nullptr;
    });
    EXPECT_STREQ(BuLocalizeStringExW(L"Error", 0), L"Fehler");
    EXPECT_STREQ(BuLocalizeStringExW(L"Error", 1), L"Error");
    EXPECT_EQ(BuLocalizeStringExW(nullptr, 0), nullptr);
    BuSetTranslator(nullptr);
    EXPECT_STREQ(BuLocalizeStringExW(L"Error", 0), L"Error");
}

}  // namespace
