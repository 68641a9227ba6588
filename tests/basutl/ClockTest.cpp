#include <basutl/BuChrono.h>
#include <basutl/BuDate.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace {

const BuChrono g_earlyChrono;  // started by a static constructor

long long g_tick;
std::int64_t g_time;

TEST(Chrono, CountsOnUntilItIsStopped)
{
    BuSetTickSource([] { return g_tick; });
    g_tick = 1'000;
    BuChrono chrono(0, 0);
    g_tick = 3'500;
    EXPECT_EQ(chrono.GetIntermediate(), 2'500);
    EXPECT_EQ(chrono.GetElapsed(1), 2'500);
    g_tick = 9'000;
    EXPECT_EQ(chrono.GetElapsed(1), 2'500);
    EXPECT_EQ(chrono.GetIntermediate(), 8'000);
    BuSetTickSource(nullptr);
    EXPECT_EQ(BuChrono::FromTickCountToMillisec(1'500'000'000, 1000.0), 1.5F);
}

TEST(Chrono, RunsOnTheSteadyClock)
{
    using std::chrono::steady_clock;
    const auto before = steady_clock::now();
    const BuChrono chrono;
    const auto begin = steady_clock::now();
    while (steady_clock::now() - begin < std::chrono::milliseconds(5)) {
    }
    const auto end = steady_clock::now();
    const std::chrono::nanoseconds ticks(chrono.GetIntermediate());
    EXPECT_GE(ticks, end - begin);
    EXPECT_LE(ticks, steady_clock::now() - before);
    EXPECT_GE(g_earlyChrono.GetIntermediate(), ticks.count());
}

TEST(Date, TakesTheTimeFromTheInstalledClock)
{
    BuSetTimeSource([] { return g_time; });
    g_time = 86'400;
    const BuDate earlier = BuDate::getCurrentDate();
    g_time = 86'410;
    EXPECT_EQ(BuDate::Difference(BuDate::getCurrentDate(), earlier), 10.0);
    EXPECT_EQ(BuDate::Difference(earlier, BuDate::getCurrentDate()), -10.0);
    BuSetTimeSource(nullptr);
    EXPECT_LE(std::abs(BuDate::getCurrentDate().GetSeconds() - std::time(nullptr)), 1);
    EXPECT_EQ(BuDate().GetSeconds(), 0);
}

TEST(Date, GivesLocalFieldsThatLeadBack)
{
    for (const std::int64_t seconds : {86'400LL * 3, 951'827'696LL, 1'700'000'000LL, 4'102'444'800LL}) {
        const BuDate::Fields fields = BuDate(seconds).GetLocalFields();
        std::tm local{};
        local.tm_year = fields.year - 1900;
        local.tm_mon = fields.month - 1;
        local.tm_mday = fields.day;
        local.tm_hour = fields.hour;
        local.tm_min = fields.minute;
        local.tm_sec = fields.second;
        local.tm_isdst = -1;
        EXPECT_EQ(std::mktime(&local), seconds);
    }
    const BuDate::Fields none = BuDate(std::numeric_limits<std::int64_t>::max()).GetLocalFields();
    EXPECT_TRUE(none.year == 0 && none.month == 0);
}

}  // namespace
