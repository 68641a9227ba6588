// The listener of progress that writes to a console: a bar on a terminal, plain lines elsewhere.
//
//   [##########----------]  50 %, 1250 lines/s, 0:08 left
#pragma once

#include "platform/Platform.h"

#include <TuvoUtil/Progress.h>

#include <cstdint>
#include <iosfwd>
#include <string>

namespace tool {

// Shows one piece of work. In its reports progress is in percent, below 0 when nobody knows; the message names what is
// counted, and the value says how many of them are done. The flag is left alone.
class ConsoleProgress final : public ProgressListener
{
public:
    enum class Form : std::uint8_t
    {
        Bar,   // one line that changes; without percents the number done and the rate alone
        Lines  // a line whenever another 10 % are done; none without percents
    };

    // Nothing is shown in the first `delay` nanoseconds, and never more than 10 times a second.
    ConsoleProgress(std::ostream& console, Form form, std::int64_t delay,
                    std::int64_t (*clock)() = platform::SteadyNanoseconds);
    ~ConsoleProgress() { Hide(); }
    ConsoleProgress(const ConsoleProgress&) = delete;
    ConsoleProgress& operator=(const ConsoleProgress&) = delete;

    int OnProgress(const double& progress, const BuString& message, double& done, int& flag) override;  // always 0

    // Removes the bar until the next report, and that of whatever shows one: a message is about to be written.
    void Hide();
    static void HideAny();

private:
    void ShowBar(const std::string& text);

    static ConsoleProgress* m_shown;

    std::ostream& m_console;
    Form m_form;
    std::int64_t (*m_clock)();
    std::int64_t m_start;
    std::int64_t m_nextTime;
    int m_tenths = 0;         // of the work, shown by the last line
    std::size_t m_width = 0;  // of the bar that is shown
};

}  // namespace tool
