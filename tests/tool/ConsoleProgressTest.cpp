// The listener that shows progress at a console, on a clock of the test.
#include "tools/tuvo/ConsoleProgress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>

namespace {

using tool::ConsoleProgress;

std::int64_t g_milliseconds = 0;

class ConsoleProgressTest : public testing::Test
{
protected:
    ConsoleProgressTest() { g_milliseconds = 5000; }

    ConsoleProgress Make(ConsoleProgress::Form form, std::int64_t delay = 0)
    {
        return {m_console, form, delay * 1'000'000, [] { return g_milliseconds * 1'000'000; }};
    }

    // What a report at a time, in milliseconds from the start, adds to the console.
    std::string Show(ConsoleProgress& listener, int time, double percent, double done)
    {
        g_milliseconds = 5000 + time;
        int flag = 7;
        EXPECT_EQ(listener.OnProgress(percent, L"lines", done, flag), 0);
        EXPECT_EQ(flag, 7);
        return Taken();
    }
    std::string Taken()
    {
        std::string text = m_console.str();
        m_console.str({});
        return text;
    }

    std::ostringstream m_console;
};

TEST_F(ConsoleProgressTest, DrawsABarWithRateAndRemainingTime)
{
    {
        ConsoleProgress listener = Make(ConsoleProgress::Form::Bar);
        EXPECT_EQ(Show(listener, 0, 0, 0), "\r[--------------------]   0 %");
        EXPECT_EQ(Show(listener, 2000, 25, 5), "\r[#####---------------]  25 %, 2.5 lines/s, 0:06 left");
        EXPECT_EQ(Show(listener, 4'000'000, 49.99, 2e6), "\r[#########-----------]  49 %, 500 lines/s, 1:06:42 left");
        EXPECT_EQ(Show(listener, 8'000'000, 170, 4e6),  // blanks cover what was longer
                  "\r[####################] 100 %, 500 lines/s              ");
        ConsoleProgress::HideAny();
        EXPECT_EQ(Taken(), '\r' + std::string(41, ' ') + '\r');
        ConsoleProgress::HideAny();
        EXPECT_EQ(Taken(), "");
        EXPECT_EQ(Show(listener, 8'000'100, 1e-9, 0), "\r[--------------------]   0 %");  // too far away
    }
    EXPECT_EQ(Taken(), '\r' + std::string(28, ' ') + '\r');
}

TEST_F(ConsoleProgressTest, CountsWhatHasNoEnd)
{
    ConsoleProgress listener = Make(ConsoleProgress::Form::Bar);
    EXPECT_EQ(Show(listener, 2000, -1, 4096), "\r4096 lines, 2048 lines/s");
    EXPECT_EQ(Show(listener, 4000, std::numeric_limits<double>::quiet_NaN(), 4096), "\r4096 lines, 1024 lines/s");
    listener.Hide();
    ConsoleProgress lines = Make(ConsoleProgress::Form::Lines);
    Taken();
    EXPECT_EQ(Show(lines, 9000, -1, 4096), "");
}

TEST_F(ConsoleProgressTest, IsShownTenTimesASecondAtMost)
{
    ConsoleProgress listener = Make(ConsoleProgress::Form::Bar, 500);
    int updates = 0;
    for (int time = 0; time < 2500; ++time)
        updates += Show(listener, time, 1, 1).empty() ? 0 : 1;
    EXPECT_EQ(updates, 20);
}

TEST_F(ConsoleProgressTest, WritesALineForEachTenPercent)
{
    ConsoleProgress listener = Make(ConsoleProgress::Form::Lines);
    std::string text;
    for (int percent = 0; percent <= 100; percent += 4)
        text += Show(listener, percent * 1000, percent, percent * 20);
    EXPECT_TRUE(text.starts_with("tuvo: 10 %, 20 lines/s, 1:28 left\ntuvo: 20 %, 20 lines/s, 1:20 left\n")) << text;
    EXPECT_TRUE(text.ends_with("left\ntuvo: 100 %, 20 lines/s\n")) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 10);
    ConsoleProgress quick = Make(ConsoleProgress::Form::Lines);
    EXPECT_EQ(Show(quick, 100'001, 37, 0), "tuvo: 30 %, 0:01 left\n");
    EXPECT_EQ(Show(quick, 100'050, 100, 0), "");  // too soon
}

}  // namespace
