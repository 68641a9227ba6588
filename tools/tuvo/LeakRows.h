// What tuvo leaks shows: one row for each place, in three forms.
#pragma once

#include "tools/tuvo/LeakReports.h"

#include <cstdint>
#include <iosfwd>
#include <vector>

namespace tool {

// A place now and before.
struct LeakRow
{
    LeakPlace now;
    std::uint64_t bytesBefore = 0;
    std::uint64_t blocksBefore = 0;
};

struct LeakRows
{
    LeakReports now;
    LeakReports before;
    bool compares = false;  // whether there is a before
    std::vector<LeakRow> rows;
};

// All places, the one with most bytes first.
LeakRows ShowAll(LeakReports reports);

// The places that have more bytes or blocks than before, the one that has grown most first.
LeakRows ShowNew(LeakReports now, LeakReports before);

// As a table with the totals below; as records with a line of names before them; as one object.
void WriteTable(std::ostream& out, const LeakRows& rows);
void WriteCsv(std::ostream& out, const LeakRows& rows);
void WriteJson(std::ostream& out, const LeakRows& rows);

}  // namespace tool
