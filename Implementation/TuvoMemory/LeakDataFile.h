// The file that hands the leaks of a first pass on to the second one: their number and the counter at the start of
// checking in one line, then the sequence indices in another.
//
//   2 17
//   23 40
#pragma once

#include "TuvoMemory/HeapArray.h"

#include <cstdint>

namespace leaks {

struct DataFileContent
{
    HeapArray<std::int32_t> indices;  // in the order of the file
    std::uint32_t startCounter = 0;
};

// Reads the text of a data file: as many indices as it lists, or as many as there are when it ends before or something
// else stands there. Exhausted memory ends the list too.
DataFileContent ParseDataFile(const char* text) noexcept;

// Loads the data file of the user directory into the checker and removes it; false when there is none.
bool LoadDataFile();

enum class DataFileResult : std::uint8_t
{
    Written = 0,
    NoLeaks = 1,
    Failed = 2
};

// Writes the leaks of a first pass, which starts with them as known: the slots are dropped. When the file cannot be
// written, a message box says so and everything stays.
DataFileResult WriteDataFile(const char* path);

}  // namespace leaks
