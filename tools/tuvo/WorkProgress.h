// How far a command is with its work, told to the library's listeners of progress.
//
//   WorkProgress progress("lines", 1000, WorkProgress::OnTerminal);
//   while (...)
//       progress.Advance();
#pragma once

#include "tools/tuvo/ConsoleProgress.h"

#include <optional>

namespace tool {

class WorkProgress
{
public:
    // Where the progress is shown while the object lives, on standard error.
    enum Display : std::uint8_t
    {
        OnTerminal,      // in front of a user who has waited for half a second
        OnFreeTerminal,  // the same, when the results go elsewhere
        Always           // at once, and in a file too
    };

    // Counts what `unit` names up to `total`, which is 0 when nobody knows it.
    WorkProgress(const char* unit, double total, Display display);
    ~WorkProgress();
    WorkProgress(const WorkProgress&) = delete;
    WorkProgress& operator=(const WorkProgress&) = delete;

    void Advance(double amount = 1.0)
    {
        m_done += amount;
        if (m_done >= m_nextReport)
            Report();
    }

private:
    void Report();

    BuString m_unit;
    double m_total;
    double m_interval;  // between reports
    double m_nextReport;
    double m_done = 0.0;
    std::optional<ConsoleProgress> m_console;
};

}  // namespace tool
