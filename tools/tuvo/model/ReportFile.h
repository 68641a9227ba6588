// The tables of a model as report tables, for spreadsheets and scripts.
#pragma once

#include "tools/tuvo/OutputFile.h"
#include "tools/tuvo/model/Summary.h"

#include <vector>

namespace tool {

// Writes the tables one below the other: the title, the names of the columns, an empty line, the rows, with a tab behind
// each cell, the notes, and an empty line between tables. Throws Failure when that is not possible.
void WriteReport(const std::vector<SummaryTable>& tables, OutputFile& file);

}  // namespace tool
