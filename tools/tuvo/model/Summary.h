// What tuvo model prints.
#pragma once

#include "tools/tuvo/Table.h"
#include "tools/tuvo/model/Measure.h"
#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/ModelUnits.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace tool {

// One of the tables: what it is of, and what does not fit into its rows.
struct SummaryTable
{
    std::string title;
    Table table;
    std::vector<std::string> notes;
};

// Counts by type, sets, extent, materials, volume and mass. `sets` are the positions of those that are shown. Names are
// as the deck has them.
std::vector<SummaryTable> Summarise(const Model& model, const SolidMeasures& solids,
                                    const std::vector<std::size_t>& sets, const ModelUnits& units);

// The title of the model and its tables.
void WriteSummary(std::ostream& out, const Model& model, const std::vector<SummaryTable>& tables);

// Those of the guesses that are worth showing, at least the first, as a table for files and as lines for the terminal.
SummaryTable ListGuesses(const std::vector<UnitGuess>& guesses, const CatalogueFile& catalogue);
void WriteGuesses(std::ostream& out, const std::vector<UnitGuess>& guesses, const CatalogueFile& catalogue);

// The positions of the sets whose names match a pattern with '*' and '?', in any case; all for an empty one. Throws
// Failure when none does.
std::vector<std::size_t> SelectSets(const Model& model, const std::string& pattern);

}  // namespace tool
