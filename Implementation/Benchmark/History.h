// The history of a tree of chronometers, as it is written to the log.
#pragma once

#include "Benchmark/Chrono.h"
#include "Benchmark/Summary.h"

namespace tuvo::benchmark {

// Writes the history of an item, adds it to the summary, and frees what the item holds. What memory cannot be had for is
// left out. Cost: linear in what is written and freed, whatever the depth; nothing recurses.
void DumpHistory(ChronoItem& item, const wchar_t* prefix, Summary& summary) noexcept;

// Frees the chronometer of an item and all items below it.
void ReleaseItem(ChronoItem& item) noexcept;

}  // namespace tuvo::benchmark
