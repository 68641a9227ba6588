// Writing rows of a report table to a file.
#pragma once

#include "VUtlGen/BulletinTableRecord.h"

namespace bulletin {

// What to write and how; the public header says what the numbers mean.
struct Selection
{
    std::int32_t row = -1;
    std::int32_t startColumn = -1;
    std::int32_t endColumn = -1;
    int headerMode = 0;
    int appendMode = 1;
    char separator = '\t';
};

// Tells the host and writes. A null file gives FileNotWritten.
Result Write(const Table& table, const char* file, const Selection& selection);

}  // namespace bulletin
