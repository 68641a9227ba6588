// Reads the model of a deck from its files.
#pragma once

#include "tools/tuvo/model/Model.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

enum class DeckFormat : std::uint8_t
{
    Keyword,  // CalculiX
    Bulk      // NASTRAN
};

// The format that the beginning of a deck is in; nothing when it tells none.
std::optional<DeckFormat> FindFormat(std::string_view beginning);

// Reads a deck: a file, one that gzip or bzip2 packed, or the name without ".gz" or ".bz2" of such a one. Throws Failure
// when it cannot be read, or is no deck; all else is in the model's problems.
Model ReadModel(const std::string& path);

}  // namespace tool
