// The cards of a NASTRAN bulk deck, whatever the form of their fields, with their continuation lines.
//
//   GRID    1               0.      -16.    21.1246          ten fields of 8 characters
//   GRID*   1                               0.               four fields of 16 between two of 8
//   GRID,1,,0.,-16.,21.1246                                  fields between commas
//
// A line whose first field is empty, or begins with '+' or '*', goes on with the card in front of it. Behind '$' stands a
// comment. Tabs are as in a text with a stop at every eighth column.
#pragma once

#include "tools/tuvo/model/deck/DeckText.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct BulkCard
{
    Place place;
    std::string name;  // in capitals

    // The data fields behind the name, eight for each line (four in the large form, which counts as half a line), without
    // blanks around them; "" behind the last one.
    std::string_view Field(std::size_t position) const;
    std::size_t FieldCount() const { return m_fields.size(); }  // without empty ones at the end

private:
    friend class BulkCardReader;
    struct Piece
    {
        std::size_t start;
        std::size_t size;
    };
    std::string m_text;
    std::vector<Piece> m_fields;
};

class BulkCardReader
{
public:
    explicit BulkCardReader(DeckText& deck) : m_deck(deck) {}

    // The next card; false at ENDDATA and at the end of the deck. INCLUDE is followed.
    bool Next(BulkCard& card);

private:
    struct Form
    {
        bool isFree;
        bool isLarge;
    };

    bool ReadLine();
    bool FollowInclude(std::string_view line);
    bool IsContinuation() const;
    Form FormOf() const;
    void Append(BulkCard& card) const;
    void AppendFree(BulkCard& card, std::size_t most) const;
    void AppendFixed(BulkCard& card, bool isLarge) const;

    DeckText& m_deck;
    bool m_hasLine = false;
    std::string m_line;  // the next line, without comment and tabs
    Place m_place;
};

}  // namespace tool
