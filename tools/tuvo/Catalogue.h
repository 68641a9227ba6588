// The unit catalogue: which file it is, and what the library holds of it once it is loaded.
#pragma once

#include "tools/tuvo/CatalogueFile.h"

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

// Adds the option that selects another catalogue than the usual one.
void AddCatalogueOption(CLI::App& command, std::string& given);

// The file of the catalogue: the one given (itself, or unit.xml in it when it is a directory), else that of the variable
// TUVO_CATALOGUE, else unit.xml beside the program, else the installed one. Throws Failure when there is none.
std::string FindCatalogue(const std::string& given);

// Finds the catalogue and reads it into the library as well as for this program; to be called once, before anything
// below. Throws Failure with the reason.
CatalogueFile LoadCatalogue(const std::string& given);

// The data type that a text means: its name, in any case, or its id. Throws Failure with the nearest names.
const DataType& FindDataType(const CatalogueFile& catalogue, const std::string& text);

// How values of a data type are labelled in a unit system; empty when they have no unit.
std::string UnitLabel(const CatalogueFile& catalogue, const DataType& type, int unitSystem);

}  // namespace tool
