// The record behind the handle of a report table, and the registry of all tables.
#pragma once

#include "TuvoMemory/FirstMatchIndex.h"
#include "TuvoMemory/ModuleNames.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>

namespace bulletin {

// What the public functions return. Callers know the numbers: several reasons share one.
enum Result : int
{
    OutOfMemory = -1,
    Success = 0,
    NoTables = 1,
    NameExists = 1,
    IncrementRefused = 1,
    TableNotFound = 2,
    TableNotGiven = 3,
    RowNotFound = 3,
    ColumnNotFound = 4,
    FileNotWritten = 4,
    RowNotWritten = 5
};

// The types of columns; any other number is kept, and the cells of such a column stay empty.
enum ColumnType : std::int32_t
{
    Integer = 0,
    Float = 1,
    Double = 2,
    Char = 3,
    String = 4,
    Point3 = 5
};

struct ByColumnName
{
    using Record = char*;
    using Key = const char*;
    static bool IsListed(const char* name) { return name != nullptr; }
    static Key KeyOf(const char* name) { return name; }
    static std::uint32_t HashOf(Key name)
    {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(std::string_view(name)));
    }
    static bool AreEqual(Key left, Key right) { return std::strcmp(left, right) == 0; }
};

// A row: a block for each cell, null while the cell is empty. Null in a table that had no column yet.
using Row = void**;

// The arrays have the capacities of GrownCapacity for their counts, rows that for the count of columns.
struct Table
{
    Table() = default;
    ~Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    // Each gives false, with the table as it was, when memory is exhausted.
    bool AppendColumn(char* columnName, std::int32_t type);
    bool AppendRow();

    void RemoveRow(std::int32_t row);
    bool HasRow(std::int32_t row) const { return row >= 0 && row < rowCount; }

    // The first column of a name; -1 when there is none, and for null.
    std::int32_t FindColumn(const char* columnName);

    char* name = nullptr;
    std::int32_t columnCount = 0;
    char** columnNames = nullptr;  // the caller's texts
    std::int32_t* columnTypes = nullptr;
    std::int32_t rowCount = 0;
    Row* rows = nullptr;
    char* outputFile = nullptr;
    FirstMatchIndex<ByColumnName> columnIndex{modules::VUtlGen};
};

// Registers a new table and makes it the current one; null when memory is exhausted.
Table* Create(const char* name, const char* outputFile);
void Delete(Table* table);

// The table of a name; null when there is none, and for null.
Table* FindByName(const char* name);

// Whether an address is that of a table; it is not read.
bool IsTable(const void* address);

// The table that a caller means.
Result Find(void* handle, const char* name, Table*& table);

}  // namespace bulletin
