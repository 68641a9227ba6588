// The lines of a deck with the files that it includes, and what is wrong in them by file and line.
#pragma once

#include "tools/tuvo/model/Model.h"
#include "tools/tuvo/model/deck/LineReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// A file of a deck, opened.
struct DeckFile
{
    std::string name;      // as it is shown
    std::string identity;  // the same for the same file, whatever path led to it
    ByteSource source;
    std::uint64_t size = 0;  // bytes; 0 when nobody knows
};

class DeckFiles
{
public:
    virtual ~DeckFiles() = default;

    // Opens a file that another one includes by a name. Throws Failure with the reason.
    virtual DeckFile Open(const std::string& name, const DeckFile& includedBy) = 0;
};

// A line of a file of the deck.
struct Place
{
    std::uint32_t file = 0;  // position in the names of the deck's files
    std::uint64_t line = 0;
};

class DeckText
{
public:
    // Begins with a file that is open; those that it includes come from `files`.
    DeckText(DeckFile deck, DeckFiles& files, Problems& problems);

    // The next line that is not blank, without blanks at its end; false at the end of the deck. It ends with a NUL and
    // holds until the next call.
    bool Next(std::string_view& line);

    // Goes on in another file until it ends. One that cannot be opened, or is being read already, or is one of very many,
    // is an error here.
    void Include(const std::string& name);

    void Stop() { m_open.clear(); }  // nothing more is read

    Place Where() const { return m_where; }
    // Texts may hold anything that the deck does; "?" stands for its control characters.
    void Error(std::string_view text) { Add(Severity::Error, m_where, text); }
    void Warn(std::string_view text) { Add(Severity::Warning, m_where, text); }
    void Add(Severity severity, const Place& place, std::string_view text);

private:
    struct OpenFile
    {
        DeckFile file;
        LineReader lines;
        std::uint32_t number;
    };

    void Push(DeckFile file);

    DeckFiles& m_files;
    Problems& m_problems;
    std::vector<std::string> m_names;
    std::vector<OpenFile> m_open;  // each includes the one behind it
    Place m_where;
    std::size_t m_includes = 0;
};

}  // namespace tool
