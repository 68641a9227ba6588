// The cards of a NASTRAN bulk deck, whatever the form of their fields, with their continuation lines.
//
//   GRID    1               0.      -16.    21.1246          ten fields of 8 characters
//   GRID*   1                               0.               four fields of 16 between two of 8
//   GRID,1,,0.,-16.,21.1246                                  fields between commas
//
// A line whose first field is empty, or begins with '+' or '*', goes on with the card in front of it, or with one that its
// marker tells (LooseLines.h). Behind '$' stands a comment. Tabs are as in a text with a stop at every eighth column.
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
    std::string_view Field(std::size_t position) const
    {
        if (position >= m_fields.size())
            return {};
        return std::string_view(m_text).substr(m_fields[position].start, m_fields[position].size);
    }
    std::size_t FieldCount() const { return m_fields.size(); }

    void Clear();
    void AddField(std::string_view field);
    void FillUp(std::size_t count) { m_fields.resize(count, {0, 0}); }  // by empty fields
    void DropEmptyEnd();                                                // the empty fields behind all others

private:
    struct Piece
    {
        std::size_t start;
        std::size_t size;
    };
    std::string m_text;
    std::vector<Piece> m_fields;
};

}  // namespace tool
