#include "tools/tuvo/ProgressLine.h"

#include "platform/Platform.h"

#include <iostream>
#include <utility>

namespace tool {
namespace {

constexpr std::int64_t HalfSecond = 500'000'000;

}  // namespace

ProgressLine::ProgressLine() : m_nextTime(platform::SteadyNanoseconds() + HalfSecond) {}

ProgressLine::~ProgressLine()
{
    if (m_width != 0)
        std::cerr << '\r' + std::string(m_width, ' ') + '\r';
}

bool ProgressLine::IsDue()
{
    if (platform::SteadyNanoseconds() < m_nextTime)
        return false;
    m_nextTime += HalfSecond;
    return true;
}

void ProgressLine::Show(const std::string& text)
{
    const std::size_t before = std::exchange(m_width, text.size());
    std::cerr << '\r' + text + std::string(before > m_width ? before - m_width : 0, ' ');
}

}  // namespace tool
