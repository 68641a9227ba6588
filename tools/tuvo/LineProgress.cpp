#include "tools/tuvo/LineProgress.h"

#include "platform/Platform.h"

#include <iostream>
#include <string>

namespace tool {
namespace {

constexpr std::int64_t HalfSecond = 500'000'000;

// Only where nothing else is written: messages to a terminal, values from and to files.
bool IsWanted()
{
    return platform::IsTerminal(2) && !platform::IsTerminal(1) && !platform::IsTerminal(0);
}

}  // namespace

LineProgress::LineProgress() : m_enabled(IsWanted()), m_nextTime(platform::SteadyNanoseconds() + HalfSecond) {}

LineProgress::~LineProgress()
{
    if (m_shown)
        std::cerr << '\r' << std::string(40, ' ') << '\r';
}

void LineProgress::Show()
{
    if (platform::SteadyNanoseconds() < m_nextTime)
        return;
    m_nextTime += HalfSecond;
    m_shown = true;
    std::cerr << "\r" + std::to_string(m_lines) + " lines";
}

}  // namespace tool
