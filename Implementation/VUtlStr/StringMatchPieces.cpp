#include <TuvoUtil/StringMatch.h>

#include "VUtlStr/StringMatchSearch.h"
#include "VUtlStr/StringMatchText.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::string_view Blank = " ";

// ---- The pattern ---------------------------------------------------------------------------------------------------

// A pattern to work on, whose token is one character.
struct Pattern
{
    char* text;
    std::size_t length;
    char token;

    std::string_view View() const { return {text, length}; }
};

// Puts one character that does not occur in the pattern in place of every occurrence of a longer token. False when each
// character that may be taken occurs.
bool ShortenToken(Pattern& pattern, std::string_view token)
{
    constexpr std::string_view Candidates = "!@#$%^*`";
    const std::size_t unused = Candidates.find_first_not_of(pattern.View());
    if (unused == std::string_view::npos)
        return false;
    pattern.token = Candidates[unused];

    // In place: the search never looks back at what it has passed, and no more than that is overwritten.
    char* target = pattern.text;
    std::size_t copied = 0;
    OccurrenceSearch search(pattern.View(), token);
    for (std::size_t found = search.Next(); found != OccurrenceSearch::None; found = search.Next()) {
        target = std::copy(pattern.text + copied, pattern.text + found, target);
        *target++ = pattern.token;
        copied = found + token.size();
    }
    target = std::copy(pattern.text + copied, pattern.text + pattern.length, target);
    pattern.length = static_cast<std::size_t>(target - pattern.text);
    return true;
}

bool BlankFirst(char c, char* begin, char* end)
{
    char* const found = std::find(begin, end, c);
    if (found == end)
        return false;
    *found = ' ';
    return true;
}

// The first piece without white space at its ends, and with blanks for line ends.
std::string_view CleanFirstPiece(char* begin, char* end)
{
    // Kept: two line feeds, or without any one carriage return. Patterns count on what further ones match.
    if (!BlankFirst('\n', begin, end))
        BlankFirst('\r', begin, end);
    BlankFirst('\n', begin, end);

    while (begin != end && BuIsSpace(*begin))
        ++begin;
    while (begin != end && BuIsSpace(end[-1]))
        --end;
    return {begin, static_cast<std::size_t>(end - begin)};
}

// ---- The text ------------------------------------------------------------------------------------------------------

// A text in which the pieces of a pattern are looked for, in their order.
class PieceSearch
{
public:
    PieceSearch(std::string_view text, bool wholeWords) : m_text(text), m_wholeWords(wholeWords) {}

    bool BeginsWith(std::string_view piece) const { return m_text.starts_with(piece) && MayStand(0, piece); }
    bool EndsWith(std::string_view piece) const
    {
        return m_text.ends_with(piece) && MayStand(m_text.size() - piece.size(), piece);
    }

    // Moves to the next occurrence, which may be where the search stands; false when there is none.
    bool GoTo(std::string_view piece)
    {
        OccurrenceSearch search(m_text.substr(m_position), piece);
        for (std::size_t found; (found = search.NextOverlapping()) != OccurrenceSearch::None;) {
            if (MayStand(m_position + found, piece)) {
                m_position += found;
                return true;
            }
        }
        return false;
    }

private:
    bool MayStand(std::size_t position, std::string_view piece) const
    {
        return !m_wholeWords || piece == Blank ||
               match::IsWholeWordBetween(m_text.substr(0, position), m_text.substr(position + piece.size()));
    }

    std::string_view m_text;
    bool m_wholeWords;
    std::size_t m_position = 0;
};

bool MatchPieces(PieceSearch text, const Pattern& pattern)
{
    const std::string_view pieces = pattern.View();
    const std::size_t lastToken = pieces.rfind(pattern.token);
    if (lastToken != std::string_view::npos && lastToken + 1 < pieces.size() &&
        !text.EndsWith(pieces.substr(lastToken + 1)))
        return false;

    std::size_t end = std::min(pieces.find(pattern.token), pieces.size());
    const std::string_view firstPiece = CleanFirstPiece(pattern.text, pattern.text + end);
    bool isAnyFound = !firstPiece.empty();
    if (isAnyFound && !text.BeginsWith(firstPiece))
        return false;

    for (std::size_t begin = end + 1; begin < pieces.size(); begin = end + 1) {
        end = std::min(pieces.find(pattern.token, begin), pieces.size());
        // Kept: an empty piece is a blank that must occur.
        if (!text.GoTo(begin == end ? Blank : pieces.substr(begin, end - begin)))
            return false;
        isAnyFound = true;
    }
    return isAnyFound;
}

// ---- Both ----------------------------------------------------------------------------------------------------------

bool Compare(std::string_view first, std::string_view second, std::string_view token, bool caseSensitive,
             bool wholeWords)
{
    if (first.empty() || second.empty() || token.empty() || token.size() > second.size())
        return false;

    match::WorkingCopy text, pattern;
    // Kept: the token is not brought to upper case, though the pattern is.
    if (caseSensitive ? !pattern.Assign(second) : !text.AssignUpper(first) || !pattern.AssignUpper(second))
        return false;
    const std::string_view compared = caseSensitive ? first : text.View();
    if (compared == pattern.View())
        return true;

    Pattern pieces = {pattern.Data(), second.size(), token.front()};
    return (token.size() == 1 || ShortenToken(pieces, token)) && MatchPieces({compared, wholeWords}, pieces);
}

}  // namespace

int UtlCompareStrings(const char* first, const char* second, const char* token, int caseSensitive)
{
    return UtlCompareCompleteWord(first, second, token, caseSensitive, 0);
}

int UtlCompareCompleteWord(const char* first, const char* second, const char* token, int caseSensitive, int wholeWord)
{
    const bool matches =
        Compare(match::View(first), match::View(second), match::View(token), caseSensitive != 0, wholeWord != 0);
    return matches ? 1 : 0;
}
