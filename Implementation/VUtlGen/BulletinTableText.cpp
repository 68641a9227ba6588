#include "VUtlGen/BulletinTableText.h"

#include "VUtlGen/FixedPoint.h"

#include <TuvoUtil/Types.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <cstring>

namespace bulletin {

namespace {

char* WritePoint(char* to, const _TvPoint3Str& point)
{
    to = fixedpoint::Write(to, point.x);
    *to++ = ' ';
    to = fixedpoint::Write(to, point.y);
    *to++ = ' ';
    return fixedpoint::Write(to, point.z);
}

}  // namespace

// ---- The buffer ----------------------------------------------------------------------------------------------------

void TextWriter::WriteOut(std::string_view text)
{
    m_failed = m_failed || std::fwrite(text.data(), 1, text.size(), m_file) != text.size();
}

// The place for `size` more characters, fewer than the buffer has, to be followed by SetEnd.
char* TextWriter::Room(std::size_t size)
{
    if (size > Capacity - m_used) {
        WriteOut({m_buffer, m_used});
        m_used = 0;
    }
    return m_buffer + m_used;
}

void TextWriter::Add(std::string_view text)
{
    if (text.size() > Capacity) {
        WriteOut({m_buffer, m_used});
        m_used = 0;
        return WriteOut(text);
    }
    SetEnd(std::copy(text.begin(), text.end(), Room(text.size())));
}

void TextWriter::AddSeparator()
{
    char* const to = Room(2);
    to[0] = ' ';
    to[1] = m_separator;
    m_used += 2;
}

bool TextWriter::Finish()
{
    WriteOut({m_buffer, m_used});
    m_used = 0;
    return std::fflush(m_file) == 0 && !m_failed;
}

// ---- The table -----------------------------------------------------------------------------------------------------

void TextWriter::WriteHeader(const Table& table)
{
    for (std::int32_t i = 0; i < table.columnCount; ++i) {
        Add(table.columnNames[i] != nullptr ? table.columnNames[i] : "");
        if (i + 1 < table.columnCount)
            AddSeparator();
        else
            Add(" \n");
    }
}

void TextWriter::WriteRow(const Table& table, std::int32_t row, std::int32_t first, std::int32_t last)
{
    // Kept: the end of a line comes with the next row, so that the last one has none and a header two.
    if (first == 0 && last > 0)
        Add("\n");
    for (std::int32_t i = first; i < last; ++i) {
        const void* const cell = table.rows[row][i];
        if (cell != nullptr)
            WriteCell(table.columnTypes[i], cell);
        else
            WriteEmptyCell(table.columnTypes[i]);
    }
}

void TextWriter::WriteCell(std::int32_t type, const void* cell)
{
    constexpr std::size_t longest = 3 * fixedpoint::Room;
    switch (type) {
        case Integer:
            SetEnd(BuWriteInteger(Room(longest), *static_cast<const std::int32_t*>(cell)));
            break;
        case Float:
            SetEnd(fixedpoint::Write(Room(longest), static_cast<double>(*static_cast<const float*>(cell))));
            break;
        case Double:
            SetEnd(fixedpoint::Write(Room(longest), *static_cast<const double*>(cell)));
            break;
        case Point3:
            SetEnd(WritePoint(Room(longest), *static_cast<const _TvPoint3Str*>(cell)));
            break;
        case Char:
            Add({static_cast<const char*>(cell), 1});
            break;
        case String:
            Add(static_cast<const char*>(cell));
            break;
        default:
            return;
    }
    AddSeparator();
}

void TextWriter::WriteEmptyCell(std::int32_t type)
{
    static constexpr std::string_view texts[] = {"0", "0.0", "0.0", "NIL", "NIL", "   "};
    if (type < Integer || type > Point3)
        return;
    Add(texts[type]);
    // Kept: an empty point has no separator.
    if (type != Point3)
        AddSeparator();
}

}  // namespace bulletin
