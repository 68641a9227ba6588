// The files that are open, in the order in which they were opened, found by path or stream in logarithmic time.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

struct OpenFile
{
    std::string path;        // as the caller gave it
    std::string sourceFile;  // of the caller
    int line;
};

class OpenFileList
{
public:
    OpenFileList() = default;

    // A list of one file whose stream is not known yet. It takes all the memory that its entry needs, so that a file
    // can be opened afterwards and its entry added without failing. Throws std::bad_alloc.
    OpenFileList(std::uint64_t number, OpenFile file);

    // Adds the one file of such a list, which is then empty. Numbers are unique and give the order.
    void Add(OpenFileList& one, std::FILE* stream) noexcept;

    // The first file with that path, null when there is none; it is valid until the next change.
    const OpenFile* FindPath(std::string_view path) const noexcept;

    // Removes the first file with that stream; false when there is none.
    bool RemoveStream(std::FILE* stream) noexcept;
    void RemoveAll() noexcept;

    int Count() const noexcept { return static_cast<int>(m_files.size()); }

    // The first file whose number is at least `number`, which becomes the file's own; null when there is none.
    const OpenFile* Next(std::uint64_t& number) const noexcept;

private:
    std::map<std::uint64_t, OpenFile> m_files;  // by number; the sets below hold the same numbers
    std::set<std::pair<std::string_view, std::uint64_t>> m_paths;
    std::set<std::pair<std::FILE*, std::uint64_t>> m_streams;
};
