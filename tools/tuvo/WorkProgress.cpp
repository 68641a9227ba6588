#include "tools/tuvo/WorkProgress.h"

#include <algorithm>
#include <iostream>

namespace tool {
namespace {

constexpr std::int64_t HalfSecond = 500'000'000;

// So that reports cost nothing beside the work, and percents come one by one.
constexpr double UnitsBetweenReports = 4096.0;
constexpr double ReportsInAll = 1000.0;

bool IsWanted(WorkProgress::Display display)
{
    if (display == WorkProgress::OnFreeTerminal && platform::IsTerminal(1))
        return false;
    return display == WorkProgress::Always || platform::IsTerminal(2);
}

}  // namespace

WorkProgress::WorkProgress(const char* unit, double total, Display display)
    : m_unit(unit),
      m_total(total),
      m_interval(total > 0.0 ? std::min(total / ReportsInAll, UnitsBetweenReports) : UnitsBetweenReports),
      m_nextReport(m_interval)
{
    if (!IsWanted(display))
        return;
    m_console.emplace(std::cerr, platform::IsTerminal(2) ? ConsoleProgress::Form::Bar : ConsoleProgress::Form::Lines,
                      display == Always ? 0 : HalfSecond);
    ProgressManager::AddListener(&*m_console);
}

WorkProgress::~WorkProgress()
{
    if (m_console)
        ProgressManager::RemoveListener(&*m_console);
}

void WorkProgress::Report()
{
    m_nextReport = m_done + m_interval;
    if (m_done < m_total)
        m_nextReport = std::min(m_nextReport, m_total);  // the end is told in any case
    const double percent = m_total > 0.0 ? 100.0 * m_done / m_total : -1.0;
    double done = m_done;
    int flag = 0;
    ProgressManager::InvokeListeners(percent, m_unit, done, flag);
}

}  // namespace tool
