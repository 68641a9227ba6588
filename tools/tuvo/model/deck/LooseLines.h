// Continuation lines of a NASTRAN deck that do not follow their cards. Markers tell which card they go on with: what the
// last field of a line holds behind its '+' or '*', and the first field of the line that continues it.
//
//   CHEXA,1,7,1,2,3,4,5,6,+A
//   GRID,9,,1.,2.,3.
//   +A,7,8
#pragma once

#include "tools/tuvo/model/deck/BulkCard.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace tool {

struct LooseLine
{
    std::string text;
    Place place;
};

class LooseLines
{
public:
    static constexpr std::size_t Most = 100'000;  // cards that wait, and lines that are kept

    // "A" for "+A", "+ a" and "*A"; empty for a field that is no marker.
    static std::string Marker(std::string_view field);

    // Keeps a card until the line comes that its marker asks for. False when another card waits for the same, or very
    // many wait: these end with numbers of their own, and no line will come.
    bool Wait(const std::string& marker, const BulkCard& card);
    bool IsAwaited(const std::string& marker) const { return m_cards.contains(marker); }

    // Takes the card that waits for a line; false when none does.
    bool TakeCard(const std::string& marker, BulkCard& card);

    // Takes any of the cards that wait, to be as it is; false when there is none.
    bool TakeAny(BulkCard& card);

    // Keeps a line until its card comes. False when there is one of the same marker, or are very many.
    bool Keep(const std::string& marker, const LooseLine& line);

    // Takes the line that goes on with a card; false when none does.
    bool TakeLine(const std::string& marker, LooseLine& line);

    const std::map<std::string, LooseLine>& Lines() const { return m_lines; }  // that are left

private:
    std::map<std::string, BulkCard> m_cards;
    std::map<std::string, LooseLine> m_lines;
};

}  // namespace tool
