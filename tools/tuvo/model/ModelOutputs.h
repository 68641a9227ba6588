// The files that tuvo model writes about a model.
#pragma once

#include "tools/tuvo/OutputFile.h"
#include "tools/tuvo/model/Page.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace tool {

struct OutputOptions
{
    std::string report;
    std::string binary;
    std::string page;
    std::string leaks;  // not written by ModelOutputs
    bool coloursSets = false;
};

void AddOutputOptions(CLI::App& command, OutputOptions& options);

class ModelOutputs
{
public:
    // Opens what is asked for, so that it is known before a long read whether it can be written. Throws Failure when it
    // cannot, or two of the files, or one and the deck, are the same.
    ModelOutputs(const OutputOptions& options, const std::string& deck);

    // Writes all files, and keeps them when all are complete. `sets` are the positions of those that are shown.
    void Write(const Model& model, const std::vector<std::size_t>& sets, const std::vector<SummaryTable>& tables,
               const ModelUnits& units);

private:
    using Output = std::unique_ptr<OutputFile>;  // null: not asked for

    std::string m_deck;
    bool m_coloursSets;
    Output m_report;
    Output m_binary;
    Output m_page;
};

}  // namespace tool
