// The leak report: what is done with the records, and how they are written.
#pragma once

#include "TuvoMemory/LeakRecords.h"

#include <cstdint>
#include <optional>

namespace leaks {

class OutputFile;

// Takes the records of the present mode out of the checker, in mode 4 made from the slots, which are dropped. Nothing,
// and nothing dropped, when memory is exhausted.
std::optional<RecordTable> TakeRecords();

// Sorts records by file, line, size and sequence, resolves their call stacks, suppresses what the suppression file
// names and merges what has the same origin, telling of its progress. Exhausted memory leaves out suppressing, merging,
// or both.
void ProcessRecords(RecordTable& records);

// The two files of a report; `append` may be null.
struct ReportFiles
{
    OutputFile& report;
    OutputFile* append;
};

void WriteReportHead(const ReportFiles& files);

// Writes all records but those that reports leave out, and the total; gives the total in bytes.
std::int64_t WriteRecords(const ReportFiles& files, RecordTable& records);

}  // namespace leaks
