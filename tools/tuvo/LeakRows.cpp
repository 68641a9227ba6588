#include "tools/tuvo/LeakRows.h"

#include "platform/Platform.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/Table.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace tool {
namespace {

struct Column
{
    const char* title;  // of the table
    const char* name;   // of a field
    bool isText;
    bool isBefore;  // stands only where there is a before
    std::string (*text)(const LeakRow& row);
};

constexpr Column AllColumns[] = {
    {"bytes", "bytes", false, false, [](const LeakRow& row) { return std::to_string(row.now.bytes); }},
    {"blocks", "blocks", false, false, [](const LeakRow& row) { return std::to_string(row.now.blocks); }},
    {"bytes before", "bytesBefore", false, true, [](const LeakRow& row) { return std::to_string(row.bytesBefore); }},
    {"blocks before", "blocksBefore", false, true, [](const LeakRow& row) { return std::to_string(row.blocksBefore); }},
    {"file", "file", true, false, [](const LeakRow& row) { return row.now.file; }},
    {"line", "line", false, false, [](const LeakRow& row) { return std::to_string(row.now.line); }},
};

std::vector<Column> ColumnsOf(const LeakRows& rows)
{
    std::vector<Column> columns(std::begin(AllColumns), std::end(AllColumns));
    if (!rows.compares)
        std::erase_if(columns, [](const Column& column) { return column.isBefore; });
    return columns;
}

std::uint64_t Growth(const LeakRow& row)
{
    return row.now.bytes - std::min(row.now.bytes, row.bytesBefore);
}

// ---- Texts ---------------------------------------------------------------------------------------------------------

std::string Amount(const LeakReports& reports)
{
    return Plural(reports.bytes, "byte") + " in " + Plural(reports.blocks, "block");
}

std::string Origin(const LeakReports& reports)
{
    if (reports.count == 0)
        return "No report";
    return Plural(static_cast<std::uint64_t>(reports.count), "report") +
           (reports.count > 1 ? ", the last one of " : " of ") + Printable(reports.time);
}

std::string Summary(const LeakRows& rows)
{
    if (rows.compares)
        return (rows.rows.empty() ? "Nothing new" : Plural(rows.rows.size(), "place") + " with more than before") +
               ". In all " + Amount(rows.now) + ", before " + Amount(rows.before);
    return rows.rows.empty() ? "No leaks" : Amount(rows.now) + " from " + Plural(rows.rows.size(), "place");
}

std::string CsvField(const std::string& text)
{
    if (text.find_first_of("\",\r\n") == text.npos)
        return text;
    std::string field = "\"";
    for (const char c : text)
        field.append(c == '"' ? 2 : 1, c);
    return field + '"';
}

void AppendEscape(std::string& out, std::uint32_t unit)
{
    constexpr char digits[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += digits[unit >> shift & 0xF];
}

// In ASCII, by UTF-16 code units. A byte b that is not valid in the system's narrow text is the unit 0xDC00 + b.
std::string JsonText(const std::string& text)
{
    std::string out = "\"";
    for (const wchar_t c : platform::Widen(text)) {
        const auto code = static_cast<std::uint32_t>(c);
        if (code >= 0x10000) {
            AppendEscape(out, 0xD7C0 + (code >> 10));
            AppendEscape(out, 0xDC00 + (code & 0x3FF));
        } else if (code < ' ' || code >= 0x7F || code == '"' || code == '\\') {
            AppendEscape(out, code);
        } else {
            out += static_cast<char>(code);
        }
    }
    return out + '"';
}

std::string JsonObject(const std::vector<Column>& columns, const LeakRow& row)
{
    std::string object;
    for (const Column& column : columns)
        object += (object.empty() ? "{\"" : ", \"") + std::string(column.name) +
                  "\": " + (column.isText ? JsonText(column.text(row)) : column.text(row));
    return object + '}';
}

std::string TableText(const std::vector<Column>& columns, const std::vector<LeakRow>& rows)
{
    std::vector<Table::Column> titles(columns.size());
    std::transform(columns.begin(), columns.end(), titles.begin(), [](const Column& column) {
        return Table::Column{column.title, column.isText ? Table::Left : Table::Right};
    });
    Table table(std::move(titles));
    for (const LeakRow& row : rows) {
        std::vector<std::string> cells(columns.size());
        std::transform(columns.begin(), columns.end(), cells.begin(),
                       [&](const Column& column) { return Printable(column.text(row)); });
        table.AddRow(std::move(cells));
    }
    return table.Text();
}

}  // namespace

LeakRows ShowAll(LeakReports reports)
{
    LeakRows rows;
    for (const LeakPlace& place : reports.places)
        rows.rows.push_back({place});
    rows.now = std::move(reports);
    return rows;
}

LeakRows ShowNew(LeakReports now, LeakReports before)
{
    std::map<std::pair<std::string_view, int>, const LeakPlace*> places;
    for (const LeakPlace& place : before.places)
        places[{place.file, place.line}] = &place;
    LeakRows rows = ShowAll(std::move(now));
    for (LeakRow& row : rows.rows)
        if (const auto found = places.find({row.now.file, row.now.line}); found != places.end()) {
            row.bytesBefore = found->second->bytes;
            row.blocksBefore = found->second->blocks;
        }
    std::erase_if(rows.rows, [](const LeakRow& row) {
        return row.now.bytes <= row.bytesBefore && row.now.blocks <= row.blocksBefore;
    });
    std::stable_sort(rows.rows.begin(), rows.rows.end(),
                     [](const LeakRow& left, const LeakRow& right) { return Growth(left) > Growth(right); });
    rows.before = std::move(before);
    rows.compares = true;
    return rows;
}

void WriteTable(std::ostream& out, const LeakRows& rows)
{
    const std::vector<Column> columns = ColumnsOf(rows);
    out << Origin(rows.now) << '\n';
    if (!rows.rows.empty())
        out << '\n' << TableText(columns, rows.rows) << '\n';
    out << Summary(rows) << '\n';
}

void WriteCsv(std::ostream& out, const LeakRows& rows)
{
    const std::vector<Column> columns = ColumnsOf(rows);
    const auto write = [&](auto field) {
        for (std::size_t i = 0; i < columns.size(); ++i)
            out << (i > 0 ? "," : "") << field(columns[i]);
        out << '\n';
    };
    write([](const Column& column) { return column.name; });
    for (const LeakRow& row : rows.rows)
        write([&](const Column& column) { return CsvField(column.text(row)); });
}

void WriteJson(std::ostream& out, const LeakRows& rows)
{
    const std::vector<Column> columns = ColumnsOf(rows);
    out << "{\n  \"reports\": " << rows.now.count << ",\n  \"bytes\": " << rows.now.bytes
        << ",\n  \"blocks\": " << rows.now.blocks;
    if (rows.compares)
        out << ",\n  \"bytesBefore\": " << rows.before.bytes << ",\n  \"blocksBefore\": " << rows.before.blocks;
    out << ",\n  \"places\": [";
    for (std::size_t i = 0; i < rows.rows.size(); ++i)
        out << (i > 0 ? ",\n    " : "\n    ") << JsonObject(columns, rows.rows[i]);
    out << (rows.rows.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

}  // namespace tool
