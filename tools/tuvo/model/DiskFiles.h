// The files of a deck on disk, packed ones included.
#pragma once

#include "tools/tuvo/WorkProgress.h"
#include "tools/tuvo/model/deck/DeckText.h"

#include <optional>
#include <string>
#include <utility>

namespace tool {

class DiskFiles : public DeckFiles
{
public:
    explicit DiskFiles(std::string deck) : m_deck(std::move(deck)) {}

    DeckFile OpenDeck();  // shows the progress of its reading

    // Looks beside the including file first, then beside the deck, then in the working directory.
    DeckFile Open(const std::string& name, const DeckFile& includedBy) override;

private:
    std::string m_deck;
    std::optional<WorkProgress> m_progress;  // of the deck itself
};

}  // namespace tool
