#include "tools/tuvo/model/deck/BulkCard.h"

#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <TuvoUtil/StringBreak.h>

#include <array>

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

std::string_view BulkCard::Field(std::size_t position) const
{
    if (position >= m_fields.size())
        return {};
    return std::string_view(m_text).substr(m_fields[position].start, m_fields[position].size);
}

// Makes m_line the next line that says something.
bool BulkCardReader::ReadLine()
{
    std::string_view line;
    while (m_deck.Next(line)) {
        TakeLine(line, m_line);
        if (m_line.empty() || FollowInclude(m_line))
            continue;
        m_place = m_deck.Where();
        return m_hasLine = true;
    }
    return m_hasLine = false;
}

bool BulkCardReader::FollowInclude(std::string_view line)
{
    constexpr std::string_view Keyword = "INCLUDE";
    if (line.size() <= Keyword.size() || UpperCase(line.substr(0, Keyword.size())) != Keyword)
        return false;
    std::string_view name = Trimmed(line.substr(Keyword.size()));
    if (name.size() < 2 || (name.front() != '\'' && name.front() != '"'))
        return false;
    name = name.substr(1, name.find(name.front(), 1) - 1);
    if (name.empty())
        m_deck.Error("INCLUDE names no file");
    else
        m_deck.Include(std::string(name));
    return true;
}

bool BulkCardReader::IsContinuation() const
{
    return m_line.front() == ' ' || m_line.front() == ',' || m_line.front() == '+' || m_line.front() == '*';
}

BulkCardReader::Form BulkCardReader::FormOf() const
{
    const std::size_t comma = m_line.find(',');
    const bool isFree = comma != m_line.npos;
    const std::string_view first =
        Trimmed(std::string_view(m_line).substr(0, isFree ? comma : std::min(FieldWidth, m_line.size())));
    return {isFree, !first.empty() && (first.front() == '*' || first.back() == '*')};
}

bool BulkCardReader::Next(BulkCard& card)
{
    card.m_text.clear();
    card.m_fields.clear();
    do {
        if (!m_hasLine && !ReadLine())
            return false;
        m_hasLine = !IsContinuation();  // one that continues nothing is passed over
    } while (!m_hasLine);
    card.place = m_place;
    const std::size_t nameEnd = m_line.find_first_of(", *");
    card.name = UpperCase(std::string_view(m_line).substr(0, std::min(nameEnd, FieldWidth)));
    if (card.name == "ENDDATA") {
        m_deck.Stop();
        return m_hasLine = false;
    }
    do
        Append(card);
    while (ReadLine() && IsContinuation());
    while (!card.m_fields.empty() && card.m_fields.back().size == 0)
        card.m_fields.pop_back();
    return true;
}

// Adds the data fields of m_line, filled up to a whole line of them.
void BulkCardReader::Append(BulkCard& card) const
{
    const Form form = FormOf();
    const std::size_t most = form.isLarge ? 4 : 8;
    const std::size_t whole = card.m_fields.size() + most;
    if (form.isFree)
        AppendFree(card, most);
    else
        AppendFixed(card, form.isLarge);
    card.m_fields.resize(whole, {0, 0});
}

void BulkCardReader::AppendFree(BulkCard& card, std::size_t most) const
{
    const std::string_view line = m_line;
    std::size_t start = line.find(',') + 1;
    for (std::size_t i = 0; i < most && start <= line.size(); ++i) {
        const std::size_t end = std::min(line.find(',', start), line.size());
        const std::string_view field = Trimmed(line.substr(start, end - start));
        card.m_fields.push_back({card.m_text.size(), field.size()});
        card.m_text += field;
        start = end + 1;
    }
}

void BulkCardReader::AppendFixed(BulkCard& card, bool isLarge) const
{
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
    for (int i = 1; i < count; ++i) {
        const std::string_view field = Trimmed(fields[static_cast<std::size_t>(i)]);
        card.m_fields.push_back({card.m_text.size(), field.size()});
        card.m_text += field;
    }
}

}  // namespace tool
