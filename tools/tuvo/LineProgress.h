// How many lines are done, on standard error, while a long input goes from file to file before a user's eyes.
#pragma once

#include "tools/tuvo/ProgressLine.h"

namespace tool {

class LineProgress
{
public:
    LineProgress();

    void Count()
    {
        if (m_enabled && (++m_lines & 0xFFFF) == 0)
            Show();
    }

private:
    void Show();

    bool m_enabled;
    std::int64_t m_lines = 0;
    ProgressLine m_line;
};

}  // namespace tool
