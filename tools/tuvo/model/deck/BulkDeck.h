// Reads bulk decks of NASTRAN: grid points in any coordinate system, elements, properties, materials.
//
// The elements of a property make the element set "PID n", a material is named "MID n". Executive and case control, and
// cards that say nothing of the model, are passed over.
#pragma once

#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/deck/DeckText.h"

namespace tool {

// Adds what the deck says to an empty model. What cannot be read becomes a problem, and all else is read.
void ReadBulkDeck(DeckText& deck, Model& model);

}  // namespace tool
