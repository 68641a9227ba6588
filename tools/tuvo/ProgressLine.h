// One line on standard error that tells a waiting user how far the work is.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

class ProgressLine
{
public:
    ProgressLine();
    ~ProgressLine();  // removes what is shown
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Whether half a second has gone by since the start, or since the last time that this was true.
    bool IsDue();

    // Replaces what is shown.
    void Show(const std::string& text);

private:
    std::size_t m_width = 0;  // of what is shown
    std::int64_t m_nextTime;  // nanoseconds of the steady clock
};

}  // namespace tool
