// How long the parts of a run took, and what it did not free.
#pragma once

#include "tools/tuvo/Failure.h"
#include "tools/tuvo/OutputFile.h"

namespace tool {

// Has the sections of this run timed (TuvoUtil/Benchmark.h) and their report shown, even of short ones. The variables of
// the environment that say otherwise are left as the user has set them. Comes before all sections.
void MeasureTimes();

// The leak check of everything between its start and its report.
class LeakCheck
{
public:
    LeakCheck();
    ~LeakCheck();
    LeakCheck(const LeakCheck&) = delete;
    LeakCheck& operator=(const LeakCheck&) = delete;

    // Writes the report, an empty file when there is nothing to report, and keeps it. WorkFailed, after a message, when
    // there is. Throws Failure when it cannot be written.
    ExitCode Report(OutputFile& file);
};

}  // namespace tool
