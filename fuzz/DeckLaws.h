// What holds for every deck, whatever its bytes: for the fuzz targets of both readers.
#pragma once

#include "tools/tuvo/Failure.h"
#include "tools/tuvo/model/deck/DeckText.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace deck {

using Reader = void (*)(tool::DeckText&, tool::Model&);

inline void Check(bool holds)
{
    if (!holds)
        std::abort();
}

// Gives a text in pieces of so many bytes.
inline tool::ByteSource InPieces(const std::string& text, std::size_t size)
{
    return [&text, size, given = std::size_t{0}](char* to, std::size_t room) mutable {
        const std::size_t count = text.copy(to, std::min(room, size), given);
        given += count;
        return count;
    };
}

// Whatever is included, it is the deck itself, by another name a few times.
class SameAgain : public tool::DeckFiles
{
public:
    SameAgain(const std::string& text, std::size_t pieceSize) : m_text(text), m_pieceSize(pieceSize) {}

    tool::DeckFile Open(const std::string& name, const tool::DeckFile&) override
    {
        if (++m_count > 4)
            throw tool::Failure("enough");
        return {name, name, InPieces(m_text, m_pieceSize)};
    }

private:
    const std::string& m_text;
    std::size_t m_pieceSize;
    int m_count = 0;
};

inline tool::Model Read(Reader read, const std::string& text, std::size_t pieceSize)
{
    tool::Model model;
    SameAgain files(text, pieceSize);
    tool::DeckText deck({"deck", "deck", InPieces(text, pieceSize)}, files, model.problems);
    read(deck, model);
    return model;
}

// Laws: the model is valid; every problem has a place and a reason; the pieces in which the file arrives do not matter.
inline void CheckLaws(Reader read, const std::string& text)
{
    const tool::Model model = Read(read, text, text.size() + 1);
    Check(tool::IsValid(model));
    for (const tool::Problem& problem : model.problems.kept)
        Check(!problem.file.empty() && !problem.text.empty());
    const tool::Model inPieces = Read(read, text, 7);
    Check(inPieces.nodes.ids == model.nodes.ids && inPieces.blocks.size() == model.blocks.size());
    for (std::size_t i = 0; i < model.blocks.size(); ++i)
        Check(inPieces.blocks[i].ids == model.blocks[i].ids && inPieces.blocks[i].nodes == model.blocks[i].nodes);
    Check(inPieces.problems.errors == model.problems.errors && inPieces.problems.warnings == model.problems.warnings);
}

}  // namespace deck
