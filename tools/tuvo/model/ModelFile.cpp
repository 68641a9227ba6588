#include "tools/tuvo/model/ModelFile.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/Failure.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/DiskFiles.h"
#include "tools/tuvo/model/deck/BulkDeck.h"
#include "tools/tuvo/model/deck/KeywordDeck.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cassert>
#include <iterator>
#include <optional>
#include <utility>

namespace tool {
namespace {

// Words that begin a line of a NASTRAN deck in front of its bulk data, or often the data.
constexpr std::string_view BulkWords[] = {"SOL",  "CEND",  "BEGIN", "ID",      "NASTRAN", "INIT", "ASSIGN", "TIME",
                                          "DIAG", "PARAM", "GRID",  "INCLUDE", "CORD2R",  "MAT1", "PSOLID", "ENDDATA"};
constexpr std::string_view BulkExtensions[] = {".NAS", ".BDF", ".DAT", ".BLK", ".NASTRAN"};

bool IsIn(std::string_view text, const auto& list)
{
    return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

// The format that a line tells; nothing when it may stand in either.
std::optional<DeckFormat> FormatOf(std::string_view line)
{
    if (line.starts_with("**") || (line.size() > 1 && line.front() == '*' && BuIsLetter(line[1])))
        return DeckFormat::Keyword;
    const std::string word = UpperCase(line.substr(0, line.find_first_of(" ,*\t")));
    if (line.starts_with('$') || IsIn(word, BulkWords) || FindBulkType(word, 1) != nullptr)
        return DeckFormat::Bulk;
    return std::nullopt;
}

DeckFormat FormatOfName(std::string_view name)
{
    const std::string extension = UpperCase(name.substr(std::min(name.rfind('.'), name.size())));
    return IsIn(extension, BulkExtensions) ? DeckFormat::Bulk : DeckFormat::Keyword;
}

// Reads what a file begins with, and puts it back in front of the rest.
std::string Peek(DeckFile& file)
{
    constexpr std::size_t Size = 65536;
    std::string beginning(Size, '\0');
    beginning.resize(file.source(beginning.data(), Size));
    file.source = [beginning, rest = std::move(file.source), given = std::size_t{0}](char* to,
                                                                                     std::size_t room) mutable {
        if (given == beginning.size())
            return rest(to, room);
        const std::size_t count = beginning.copy(to, room, given);
        given += count;
        return count;
    };
    return beginning;
}

}  // namespace

std::optional<DeckFormat> FindFormat(std::string_view beginning)
{
    while (!beginning.empty()) {
        const std::size_t end = std::min(beginning.find('\n'), beginning.size());
        if (const auto format = FormatOf(Trimmed(beginning.substr(0, end))))
            return format;
        beginning.remove_prefix(std::min(end + 1, beginning.size()));
    }
    return std::nullopt;
}

Model ReadModel(const std::string& path)
{
    DiskFiles files(path);
    DeckFile deck = files.OpenDeck();
    const std::optional<DeckFormat> format = FindFormat(Peek(deck));
    const auto read = format.value_or(FormatOfName(path)) == DeckFormat::Bulk ? ReadBulkDeck : ReadKeywordDeck;
    Model model;
    DeckText text(std::move(deck), files, model.problems);
    read(text, model);
    assert(IsValid(model));
    const bool isEmpty = model.nodes.Count() == 0 && model.ElementCount() == 0 && model.materials.empty();
    if (isEmpty && model.problems.errors == 0) {
        if (!format)
            throw Failure(Printable(path) + " is no deck: no line of it is one of CalculiX or NASTRAN");
        model.problems.Add({Severity::Warning, path, 0, "there are no nodes, elements or materials in this deck"});
    }
    return model;
}

}  // namespace tool
