// Configuration files: their lines, and writing modules back to them.
//
// Functions that are not noexcept throw std::bad_alloc, with nothing changed.
#pragma once

#include "QDDebugUtl/Registry.h"

#include <basutl/BuString.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace debugconfig {

// The bytes of a configuration file, read as text.
enum class ReadResult
{
    Done,
    NotOpened,
    NotReadToItsEnd
};
ReadResult ReadText(const BuString& path, std::string& text);

// A longer line is read in pieces, each like a line of its own.
inline constexpr std::size_t LongestLine = 1023;

// Calls `take` with each line of a text without its line end, empty ones left out.
template <typename Take>
void ForEachLine(std::string_view text, Take take)
{
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (end != text.npos && line.ends_with('\r'))
            line.remove_suffix(1);
        for (; !line.empty(); line.remove_prefix(std::min(line.size(), LongestLine)))
            take(line.substr(0, LongestLine));
    }
}

// What is to be written to a file.
struct FileChange
{
    BuString path;
    bool isEmptied = false;  // what the file held goes
    bool isWritten = false;  // `text` goes to its end; a file that is emptied and not written is deleted
    std::string text;
};

// The changes that write modules back, one for each file; see UtlParamInfo::WriteInfoToFile.
std::vector<FileChange> PlanChanges(const Registry& registry, const BuString& module, const BuString* fileName);

// Makes a change. A file that is emptied is replaced as a whole or stays as it was. False when anything failed.
bool Apply(const FileChange& change) noexcept;

}  // namespace debugconfig
