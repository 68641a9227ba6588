#include "tools/tuvo/LineProgress.h"

#include "platform/Platform.h"

#include <string>

namespace tool {
namespace {

// Only where nothing else is written: messages to a terminal, values from and to files.
bool IsWanted()
{
    return platform::IsTerminal(2) && !platform::IsTerminal(1) && !platform::IsTerminal(0);
}

}  // namespace

LineProgress::LineProgress() : m_enabled(IsWanted()) {}

void LineProgress::Show()
{
    if (m_line.IsDue())
        m_line.Show(std::to_string(m_lines) + " lines");
}

}  // namespace tool
