// How many lines are done, on standard error, while a long input goes from file to file before a user's eyes.
#pragma once

#include <cstdint>

namespace tool {

class LineProgress
{
public:
    LineProgress();
    ~LineProgress();  // removes what is shown
    LineProgress(const LineProgress&) = delete;
    LineProgress& operator=(const LineProgress&) = delete;

    void Count()
    {
        if (m_enabled && (++m_lines & 0xFFFF) == 0)
            Show();
    }

private:
    void Show();

    bool m_enabled;
    bool m_shown = false;
    std::int64_t m_lines = 0;
    std::int64_t m_nextTime;  // nanoseconds of the steady clock
};

}  // namespace tool
