// Reads the cards of a NASTRAN deck, those that its other cards stand for included.
#pragma once

#include "tools/tuvo/model/deck/BulkCard.h"
#include "tools/tuvo/model/deck/CaseControl.h"
#include "tools/tuvo/model/deck/LooseLines.h"
#include "tools/tuvo/model/deck/Replication.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

class BulkCardReader
{
public:
    // What stands in front of the bulk data goes to `control`.
    BulkCardReader(DeckText& deck, CaseControl& control) : m_deck(deck), m_control(control) {}

    // Goes to the next card; false at ENDDATA and at the end of the deck. INCLUDE is followed.
    bool Next();

    const BulkCard& Card() const { return m_card; }

    void DropImages() { m_replication.DropImages(); }  // that would follow the card and be as wrong as it is

private:
    struct Form
    {
        bool isFree;
        bool isLarge;
    };

    bool ReadLine();
    bool TakeControl();
    bool FollowInclude(std::string_view line);
    std::string ReadQuoted(std::string_view text);
    std::string_view FirstField() const;
    bool IsContinuation() const;
    Form FormOf() const;
    bool ReadCard();
    bool BeginCard();
    bool TakeName();
    std::string LineMarker() const;
    bool GoesOn() const;
    void KeepLine();
    void AppendLooseLines();
    void Append();
    std::string_view AppendFree(std::size_t most);
    std::string_view AppendFixed(bool isLarge);
    void AppendField(std::string_view field);

    DeckText& m_deck;
    CaseControl& m_control;
    bool m_isInFront = true;  // of the bulk data
    bool m_hasLine = false;
    std::string m_line;  // the next line, without comment and tabs
    Place m_place;
    BulkCard m_card;
    BulkCard m_previous;
    std::string m_marker;  // with which the last line of m_card asks for a further one
    LooseLines m_loose;
    bool m_hasReferences = false;  // m_card has, to m_previous
    Replication m_replication;
};

}  // namespace tool
