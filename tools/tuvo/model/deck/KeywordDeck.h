// Reads decks of CalculiX: keyword lines, each with the data lines that follow it.
//
// Keywords that say nothing of the model (steps, loads, boundary conditions, output) are passed over with their data.
#pragma once

#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/deck/DeckText.h"

namespace tool {

// Adds what the deck says to an empty model. What cannot be read becomes a problem, and all else is read.
void ReadKeywordDeck(DeckText& deck, Model& model);

}  // namespace tool
