// Rows of text in aligned columns.
//
//   Table table({{"id", Table::Right}, {"name"}});
//   table.AddRow({"12", "Pressure"});
//   std::cout << table.Text();
#pragma once

#include <string>
#include <vector>

namespace tool {

class Table
{
public:
    enum Alignment
    {
        Left,
        Right
    };
    struct Column
    {
        std::string title;
        Alignment alignment = Left;
    };

    explicit Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    void AddRow(std::vector<std::string> cells);  // missing cells are empty; surplus ones are an error of the caller

    const std::vector<Column>& Columns() const { return m_columns; }
    const std::vector<std::vector<std::string>>& Rows() const { return m_rows; }  // each has a cell for every column

    // All rows below their titles, two blanks between columns and none at the end of a line; without titles when all of
    // them are empty. "?" stands for each control character.
    std::string Text() const;

private:
    std::vector<std::size_t> Widths() const;

    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace tool
