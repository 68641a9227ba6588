// Runs tuvo model on decks in a folder of their own.
#pragma once

#include "support/TestFiles.h"
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <string>

class DeckTest : public testing::Test
{
protected:
    // Runs tuvo on a deck of this name, and shows no folder in what it gives.
    ChildResult Run(const std::string& deck, const std::string& options = {}, const char* name = "deck.inp")
    {
        m_folder.Write(name, deck);
        return RunOn(name, options);
    }

    ChildResult RunOn(const char* name, const std::string& options = {})
    {
        ChildResult run = Tuvo("model '" + m_folder.NarrowPath(name) + "' " + options);
        for (std::string* text : {&run.output, &run.errors})
            for (std::size_t at; (at = text->find(m_folder.NarrowPath())) != text->npos;)
                text->erase(at, m_folder.NarrowPath().size());
        return run;
    }

    TemporaryFolder m_folder;
};
