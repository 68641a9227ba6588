// What a NASTRAN deck says in front of its bulk data: its title, and the sets of which results are asked for.
//
//   TITLE = Wing
//   SET 5 = 1, 2, 10 THRU 50 EXCEPT 20, 21, 60
//   SUBCASE 2
//     SET 6 = ALL
//     DISPLACEMENT = 5          its ids are those of grid points
#pragma once

#include "tools/tuvo/model/deck/DeckText.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tool {

class CaseControl
{
public:
    // Takes a line without comment that is a command of this part of a deck; false when it is none.
    bool Take(std::string_view line, const Place& place);

    const std::string& Title() const { return m_title; }

    // Adds the sets of ids to a model, as "SET 5", those of a subcase as "SUBCASE 2 SET 5": sets of nodes, of elements or
    // of both, as results are asked for; both when none are.
    void AddSets(ModelBuilder& builder, DeckText& deck) const;

private:
    struct ListedSet
    {
        std::string name;
        std::string items;
        Place place;
        bool isOfNodes = false;
        bool isOfElements = false;
    };

    bool TakeCommand(std::string_view text, const Place& place);
    bool TakeSet(std::string_view text, const Place& place);
    void TakeRequest(std::string_view command, std::string_view set);
    std::string NameInSubcase(std::string_view number) const;

    std::string m_title;
    std::string m_subcase;  // "SUBCASE 2 "; empty in front of the first one
    std::vector<ListedSet> m_sets;
    std::unordered_map<std::string, std::size_t> m_positions;  // by name
    std::size_t m_current = 0;                                 // set that is read
    bool m_isOfPlots = false;  // behind OUTPUT(PLOT) and its like: what follows are sets of their own
    bool m_goesOn = false;     // it does, in the next line
    std::string m_command;     // that goes on in the next line, so far
};

}  // namespace tool
