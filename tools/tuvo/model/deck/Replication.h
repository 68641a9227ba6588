// Cards of a NASTRAN deck that are written as images of the card in front of them.
//
//   GRID,101,17,1.0,10.5
//   =,*(1),=,*(0.2),==       GRID,102,17,1.2,10.5
//   =(3)                     and three more: 103 at 1.4, 104 at 1.6, 105 at 1.8
//
// "=" repeats a field and "==" it and all that follow; "*(0.2)", or "*.2", adds to it. "=(3)", or "=3", as a name makes so
// many images. A line with a name and nothing else goes on as the images in front of it began.
#pragma once

#include "tools/tuvo/model/deck/BulkCard.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

class Replication
{
public:
    static constexpr std::int32_t MostLines = 10'000'000;  // of a deck's images: more are a slip of the pen

    static bool IsReference(std::string_view field)  // "=", "==", "*(1)", "*1"
    {
        return !field.empty() && (field.front() == '=' || field.front() == '*') && HasReferenceForm(field);
    }
    static bool IsReferenceName(std::string_view name) { return name.starts_with('='); }

    // Makes images ready that a card with such fields, or such a name, asks for. Gives what is wrong with it, and makes
    // none then.
    std::string Begin(const BulkCard& card, const BulkCard& previous);

    bool HasMore() const { return m_left > 0; }

    // Makes the next image. Gives what is wrong with it; there are no more then.
    std::string Next(BulkCard& image);

    void DropImages() { m_left = 0; }
    void Forget() { m_isImage = false; }  // a card comes that is no image

private:
    static bool HasReferenceForm(std::string_view field);
    std::int64_t LinesOfImage() const;
    void TakePattern(const BulkCard& card);

    BulkCard m_base;
    std::vector<std::string> m_pattern;  // "=", "*(1)" or a text, for each field of an image
    std::int64_t m_made = 0;             // of this base and pattern
    std::int32_t m_left = 0;             // of the last card
    std::int64_t m_linesLeft = MostLines;
    bool m_isImage = false;
};

}  // namespace tool
