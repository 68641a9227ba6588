// The binary model file: a model with its checksum at the end, as docs/formats.md describes it.
#pragma once

#include "tools/tuvo/OutputFile.h"
#include "tools/tuvo/model/Model.h"

#include <TuvoUtil/WriteStream.h>

#include <string>

namespace tool {

// Hands a model to a stream, all of the file but its checksum. `unitSystem` is the name of one in the unit catalogue, or
// empty. Throws Failure when the program is interrupted.
void SaveModel(const Model& model, const std::string& unitSystem, IWriteStream& stream);

// Writes the file, with the checksum that a save without writing gave before. Throws Failure when that fails, or the
// file on disk has another one.
void WriteBinaryModel(const Model& model, const std::string& unitSystem, OutputFile& file);

}  // namespace tool
