#include <basutl/BuLocalize.h>
#include <basutl/BuLogger.h>
#include <basutl/BuMessage.h>

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

std::wstring g_received;

void ReceiveLog(int level, const wchar_t* text, void*)
{
    g_received += L"log " + std::to_wstring(level) + L": " + text;
}

class OutputMessages : public testing::Test
{
protected:
    OutputMessages()
    {
        g_received.clear();
        BuLogger::GetInstance().SetSink(&ReceiveLog, nullptr);
    }
    ~OutputMessages() override
    {
        BuSetOutputHandler(nullptr);
        BuSetAssertHandler(nullptr);
        BuLogger::GetInstance().SetSink(nullptr, nullptr);
    }
};

TEST_F(OutputMessages, GoToTheInstalledHandlerElseToTheLog)
{
    BuSetOutputHandler([](int severity, const wchar_t* text) { g_received += std::to_wstring(severity) + text; });
    BuOutputMessage(2, L" 100% full");
    BuOutputMessage(1, nullptr);
    EXPECT_EQ(g_received, L"2 100% full1");

    BuSetOutputHandler(nullptr);
    g_received.clear();
    BuOutputMessage(1, L"100% full");
    EXPECT_EQ(g_received, L"log 1: 100% full");
}

TEST_F(OutputMessages, OfAssertionsGoToTheirHandlerElseToTheLog)
{
    BuSetAssertHandler([](int code, const char* file, int line) {
        g_received = std::to_wstring(code) + L' ' + std::wstring(file, file + std::char_traits<char>::length(file)) +
                     L':' + std::to_wstring(line);
    });
    BuAssert(5, "Solver.cpp", 12);
    EXPECT_EQ(g_received, L"5 Solver.cpp:12");
    BuAssert(0, nullptr, 1);
    EXPECT_EQ(g_received, L"0 :1");

    BuSetAssertHandler(nullptr);
    g_received.clear();
    BuAssert(5, "Solver.cpp", 12);
    EXPECT_EQ(g_received, L"log 2: Assertion failed at Solver.cpp:12 (code 5)\n");
}

TEST(Localize, AsksTheTranslatorAndFallsBackOnTheText)
{
    BuSetTranslator([](const wchar_t* text, int context) -> const wchar_t* {
        return context == 0 && std::wcscmp(text, L"Error") == 0 ? L"Fehler" : nullptr;
    });
    EXPECT_STREQ(BuLocalizeStringExW(L"Error", 0), L"Fehler");
    EXPECT_STREQ(BuLocalizeStringExW(L"Warning", 0), L"Warning");
    EXPECT_EQ(BuLocalizeStringExW(nullptr, 0), nullptr);
    BuSetTranslator(nullptr);
    EXPECT_STREQ(BuLocalizeStringExW(L"Error", 0), L"Error");
}

}  // namespace
