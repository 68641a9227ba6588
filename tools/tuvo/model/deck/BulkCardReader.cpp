#include "tools/tuvo/model/deck/BulkCardReader.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <TuvoUtil/StringBreak.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <array>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t FieldWidth = 8;

// A line without its comment, tabs turned into blanks.
void TakeLine(std::string_view line, std::string& taken)
{
    taken.clear();
    for (const char c : line.substr(0, line.find('$'))) {
        if (c == '\t')
            taken.append(FieldWidth - taken.size() % FieldWidth, ' ');
        else
            taken += c;
    }
    taken.erase(taken.find_last_not_of(' ') + 1);
}

}  // namespace

// Makes m_line the next line that says something.
bool BulkCardReader::ReadLine()
{
    std::string_view line;
    while (m_deck.Next(line)) {
        if (FollowInclude(line))
            continue;
        TakeLine(line, m_line);
        if (m_line.empty())
            continue;
        m_place = m_deck.Where();
        if (m_isInFront && TakeControl())
            continue;
        return m_hasLine = true;
    }
    return m_hasLine = false;
}

// Whether m_line is a command in front of the bulk data. These begin behind BEGIN BULK, or with a grid point.
bool BulkCardReader::TakeControl()
{
    const std::string_view text = Trimmed(m_line);
    const std::string word = UpperCase(text.substr(0, text.find_first_of(" ,*")));
    m_isInFront = word != "BEGIN" && word != "GRID";
    return m_isInFront && m_control.Take(m_line, m_place);
}

// Whether a line is INCLUDE. A name in quotes may go on in the next lines, and hold any character.
bool BulkCardReader::FollowInclude(std::string_view line)
{
    constexpr std::string_view Keyword = "INCLUDE";
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (line.empty() || BuToUpper(line.front()) != Keyword.front() ||
        UpperCase(line.substr(0, Keyword.size())) != Keyword)
        return false;
    line.remove_prefix(Keyword.size());
    const std::string_view behind = Trimmed(line);
    const bool isQuoted = !behind.empty() && (behind.front() == '\'' || behind.front() == '"');
    if (!isQuoted && !line.empty() && behind.size() == line.size())
        return false;  // another word that begins like this one
    const Place place = m_deck.Where();
    const std::string name = isQuoted ? ReadQuoted(behind) : std::string(Trimmed(behind.substr(0, behind.find('$'))));
    if (name.empty())
        m_deck.Add(Severity::Error, place, "INCLUDE names no file, or without a quote at its end");
    else
        m_deck.Include(name);
    return true;
}

// A name behind its first quote, from as many lines as it takes; empty when no quote ends it.
std::string BulkCardReader::ReadQuoted(std::string_view text)
{
    constexpr std::size_t LongestName = 4096;
    const char quote = text.front();
    std::string name(text.substr(1));
    while (name.find(quote) == name.npos)
        if (name.size() > LongestName || !m_deck.Next(text))
            return {};
        else
            name += Trimmed(text);
    return name.substr(0, name.find(quote));
}

std::string_view BulkCardReader::FirstField() const
{
    const std::size_t comma = m_line.find(',');
    return Trimmed(
        std::string_view(m_line).substr(0, comma != m_line.npos ? comma : std::min(FieldWidth, m_line.size())));
}

bool BulkCardReader::IsContinuation() const
{
    if (BuIsLetter(m_line.front()))
        return false;
    const std::string_view first = FirstField();
    return first.empty() || first.front() == '+' || first.front() == '*';
}

BulkCardReader::Form BulkCardReader::FormOf() const
{
    const std::string_view first = FirstField();
    return {m_line.find(',') != m_line.npos, !first.empty() && (first.front() == '*' || first.back() == '*')};
}

bool BulkCardReader::Next()
{
    for (;;) {
        if (!m_replication.HasMore()) {
            if (!ReadCard())
                return false;
            if (!m_hasReferences && !Replication::IsReferenceName(m_card.name)) {
                m_replication.Forget();
                return true;
            }
            if (const std::string problem = m_replication.Begin(m_card, m_previous); !problem.empty()) {
                m_deck.Add(Severity::Error, m_card.place, problem);
                m_card.Clear();
                continue;
            }
        }
        const std::string problem = m_replication.Next(m_card);
        if (problem.empty())
            return true;
        m_deck.Add(Severity::Error, m_card.place, problem);
    }
}

// Makes m_card the next card with all of its lines, and m_previous what it was.
bool BulkCardReader::ReadCard()
{
    while (BeginCard()) {
        do
            Append();
        while (ReadLine() && GoesOn());
        AppendLooseLines();
        if (m_marker.empty() || !m_loose.Wait(m_marker, m_card)) {
            m_card.DropEmptyEnd();
            return true;
        }
    }
    if (m_loose.TakeAny(m_card))
        return true;
    for (const auto& [marker, line] : m_loose.Lines())
        m_deck.Add(Severity::Error, line.place,
                   "the line continues a card that ends with " + Quoted('+' + marker) + ", and there is none");
    return false;
}

// Makes m_card one that begins, or goes on, with m_line. False at the end of the bulk data.
bool BulkCardReader::BeginCard()
{
    std::swap(m_card, m_previous);
    m_card.Clear();
    m_hasReferences = false;
    while (m_hasLine || ReadLine()) {
        if (!IsContinuation())
            return TakeName();
        if (m_loose.TakeCard(LineMarker(), m_card))
            return true;
        KeepLine();
        m_hasLine = false;
    }
    return false;
}

// False when it is that of the last card.
bool BulkCardReader::TakeName()
{
    m_card.place = m_place;
    std::string_view name = Trimmed(m_line);
    name = name.substr(0, name.find_first_of(", *"));
    const bool isReference = Replication::IsReferenceName(name);
    m_card.name = UpperCase(isReference ? name : name.substr(0, FieldWidth));
    if (isReference && name.size() > FieldWidth)
        m_line.erase(m_line.find('=') + 1, name.size() - 1);  // nothing of it is a field
    if (m_card.name != "ENDDATA")
        return true;
    m_deck.Stop();
    return m_hasLine = false;
}

// ---- Continuation lines --------------------------------------------------------------------------------------------

std::string BulkCardReader::LineMarker() const
{
    return LooseLines::Marker(FirstField());
}

// Whether m_line goes on with m_card. It does without a marker of its own or, where the card has none, with one that no
// other card waits for.
bool BulkCardReader::GoesOn() const
{
    if (!IsContinuation() || m_card.name == "BEGIN")
        return false;
    const std::string marker = LineMarker();
    return marker.empty() || marker == m_marker || (m_marker.empty() && !m_loose.IsAwaited(marker));
}

// Keeps m_line, which goes on with a card that is still to come.
void BulkCardReader::KeepLine()
{
    const std::string marker = LineMarker();
    if (!marker.empty() && !m_loose.Keep(marker, {m_line, m_place}))
        m_deck.Error("the line continues a card that ends with " + Quoted('+' + marker) +
                     ", and there is none in front of it");
    else if (marker.empty() && !m_isInFront)
        m_deck.Error("the line continues a card, and there is none in front of it");
}

// Adds the lines that m_card goes on with and that stand in front of it.
void BulkCardReader::AppendLooseLines()
{
    for (LooseLine loose; !m_marker.empty() && m_loose.TakeLine(m_marker, loose);) {
        m_line.swap(loose.text);
        Append();
        m_line.swap(loose.text);
    }
}

// Adds the data fields of m_line, filled up to a whole line of them.
void BulkCardReader::Append()
{
    const Form form = FormOf();
    const std::size_t most = form.isLarge ? 4 : 8;
    const std::size_t whole = m_card.FieldCount() + most;
    const std::string_view last = form.isFree ? AppendFree(most) : AppendFixed(form.isLarge);
    m_card.FillUp(whole);
    m_marker.clear();
    if (!last.empty() && !m_hasReferences && !Replication::IsReferenceName(m_card.name))
        m_marker = LooseLines::Marker(last);
}

void BulkCardReader::AppendField(std::string_view field)
{
    m_hasReferences = m_hasReferences || Replication::IsReference(field);
    m_card.AddField(field);
}

// Gives the field behind those of data.
std::string_view BulkCardReader::AppendFree(std::size_t most)
{
    const std::string_view line = m_line;
    std::size_t start = line.find(',') + 1;
    const auto takeField = [&] {
        const std::size_t end = std::min(line.find(',', start), line.size());
        const std::string_view field = Trimmed(line.substr(start, end - start));
        start = end + 1;
        return field;
    };
    for (std::size_t i = 0; i < most && start <= line.size(); ++i)
        AppendField(takeField());
    return start <= line.size() ? takeField() : std::string_view();
}

// Gives the field behind those of data.
std::string_view BulkCardReader::AppendFixed(bool isLarge)
{
    constexpr std::size_t LastField = 72;
    static constexpr std::array<int, 9> Small = {8, 8, 8, 8, 8, 8, 8, 8, 8};
    static constexpr std::array<int, 5> Large = {8, 16, 16, 16, 16};
    std::array<int, 9> widths = Small;
    if (isLarge)
        std::copy(Large.begin(), Large.end(), widths.begin());
    std::array<char*, 9> fields;
    std::array<char, std::size_t{9} * (16 + 2)> buffer;
    std::string line = m_line;
    const int count = isLarge ? 5 : 9;
    UtlBreakString(count, fields.data(), line.data(), widths.data(), buffer.data());
    for (int i = 1; i < count; ++i)
        AppendField(Trimmed(fields[static_cast<std::size_t>(i)]));
    return std::string_view(m_line).substr(std::min(LastField, m_line.size()), FieldWidth);
}

}  // namespace tool
