#include "tools/tuvo/ConsoleProgress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <utility>

namespace tool {
namespace {

constexpr std::int64_t UpdateInterval = 100'000'000;
constexpr double Nanosecond = 1e-9;
constexpr int BarWidth = 20;

std::string Fixed(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string RateText(double done, double seconds, const std::string& unit)
{
    const double rate = done / seconds;
    return rate > 0.0 && std::isfinite(rate) ? ", " + Fixed(rate, rate < 10.0 ? 1 : 0) + ' ' + unit + "/s" : "";
}

// Of work that goes on as it went so far. Nothing before it can be foreseen, and when it is more than four days.
std::string RemainingText(double percent, double seconds)
{
    const double remaining = std::ceil(seconds * (100.0 - percent) / percent);
    if (!(remaining > 0.0 && remaining < 100.0 * 3600.0))
        return {};
    const int left = static_cast<int>(remaining);
    char text[64];
    if (left < 3600)
        std::snprintf(text, sizeof text, ", %d:%02d left", left / 60, left % 60);
    else
        std::snprintf(text, sizeof text, ", %d:%02d:%02d left", left / 3600, left / 60 % 60, left % 60);
    return text;
}

std::string BarText(double percent)
{
    const auto full = static_cast<std::size_t>(percent * BarWidth / 100.0);
    const std::string number = Fixed(std::floor(percent), 0);
    return '[' + std::string(full, '#') + std::string(BarWidth - full, '-') + "] " +
           std::string(3 - number.size(), ' ') + number + " %";
}

}  // namespace

ConsoleProgress* ConsoleProgress::m_shown = nullptr;

ConsoleProgress::ConsoleProgress(std::ostream& console, Form form, std::int64_t delay, std::int64_t (*clock)())
    : m_console(console), m_form(form), m_clock(clock), m_start(clock()), m_nextTime(m_start + delay)
{}

int ConsoleProgress::OnProgress(const double& progress, const BuString& message, double& done, int&)
{
    const std::int64_t now = m_clock();
    const bool isKnown = progress >= 0.0;
    const double percent = std::min(progress, 100.0);
    const int tenths = isKnown ? static_cast<int>(percent / 10.0) : 0;
    if (now < m_nextTime || (m_form == Form::Lines && tenths <= m_tenths))
        return 0;
    m_nextTime = now + UpdateInterval;
    m_tenths = tenths;
    const std::string unit = message.ToNarrow();
    const double seconds = static_cast<double>(now - m_start) * Nanosecond;
    const std::string speed = RateText(done, seconds, unit) + (isKnown ? RemainingText(percent, seconds) : "");
    if (m_form == Form::Lines)
        m_console << "tuvo: " + std::to_string(tenths * 10) + " %" + speed + '\n';
    else
        ShowBar((isKnown ? BarText(percent) : Fixed(done, 0) + ' ' + unit) + speed);
    return 0;
}

void ConsoleProgress::ShowBar(const std::string& text)
{
    const std::size_t before = std::exchange(m_width, text.size());
    m_console << '\r' + text + std::string(before > m_width ? before - m_width : 0, ' ');
    m_console.flush();
    m_shown = this;
}

void ConsoleProgress::Hide()
{
    if (m_shown == this)
        m_shown = nullptr;
    if (const std::size_t width = std::exchange(m_width, 0); width != 0)
        m_console << '\r' + std::string(width, ' ') + '\r';
}

void ConsoleProgress::HideAny()
{
    if (m_shown != nullptr)
        m_shown->Hide();
}

}  // namespace tool
