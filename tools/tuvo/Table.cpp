#include "tools/tuvo/Table.h"

#include "tools/tuvo/Console.h"

#include <algorithm>
#include <cassert>

namespace tool {
namespace {

// The number of characters of a UTF-8 text: its bytes but for those that continue a character.
std::size_t CharacterCount(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& cell, std::size_t width, Table::Alignment alignment)
{
    const std::string blanks(width - CharacterCount(cell), ' ');
    return alignment == Table::Right ? blanks + cell : cell + blanks;
}

std::string WithoutTrailingBlanks(const std::string& line)
{
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

void Table::AddRow(std::vector<std::string> cells)
{
    assert(cells.size() <= m_columns.size());
    cells.resize(m_columns.size());
    m_rows.push_back(std::move(cells));
}

std::vector<std::size_t> Table::Widths() const
{
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        std::size_t width = CharacterCount(m_columns[i].title);
        for (const auto& row : m_rows)
            width = std::max(width, CharacterCount(row[i]));
        widths.push_back(width);
    }
    return widths;
}

std::string Table::Text() const
{
    const std::vector<std::size_t> widths = Widths();
    const auto line = [&](auto cell) {
        std::string text;
        for (std::size_t i = 0; i < widths.size(); ++i)
            text += (i > 0 ? "  " : "") + Padded(Printable(cell(i)), widths[i], m_columns[i].alignment);
        return WithoutTrailingBlanks(text);
    };
    std::string text;
    if (std::any_of(m_columns.begin(), m_columns.end(), [](const Column& column) { return !column.title.empty(); }))
        text = Emphasised(line([&](std::size_t i) { return m_columns[i].title; })) + '\n';
    for (const auto& row : m_rows)
        text += line([&](std::size_t i) { return row[i]; }) + '\n';
    return text;
}

}  // namespace tool
