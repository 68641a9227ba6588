#include "VUtlGen/BulletinTableRecord.h"

#include "TuvoMemory/ArrayGrowth.h"

#include <TuvoUtil/Memory.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>

namespace bulletin {

namespace {

struct Registry
{
    Table** tables;
    std::int32_t count;
    Table* current;
};

constinit Registry g_registry = {nullptr, 0, nullptr};

// Makes room for one more element; false, with the array as it was, when memory is exhausted.
template <typename T>
bool Grow(T*& array, std::int32_t count, int line = __builtin_LINE())
{
    if (count == std::numeric_limits<std::int32_t>::max())
        return false;
    const std::int64_t capacity = memory::GrownCapacity(count, 1);
    if (capacity == 0)
        return true;
    // Elements that are pointers are meant as such.
    const std::size_t bytes = static_cast<std::size_t>(capacity) * sizeof(T);  // NOLINT(bugprone-sizeof-expression)
    void* const block = VBuRealloc(array, bytes, modules::VUtlGen, line);
    if (block == nullptr)
        return false;
    array = static_cast<T*>(block);
    return true;
}

// Closes the gap of an element and counts it off.
template <typename T>
void Remove(T* array, std::int32_t& count, std::int32_t index)
{
    std::copy(array + index + 1, array + count, array + index);
    --count;
}

// A copy of a text; null stays null. False when memory is exhausted.
bool CopyText(char*& target, const char* text)
{
    target = VBuStrDup(text, modules::VUtlGen, __LINE__);
    return target != nullptr || text == nullptr;
}

template <typename T>
void Free(T*& block)
{
    if (block != nullptr)
        VBU_FREE(block, modules::VUtlGen, __LINE__);
}

void FreeRow(Row row, std::int32_t columnCount)
{
    for (std::int32_t i = 0; row != nullptr && i < columnCount; ++i)
        Free(row[i]);
    Free(row);
}

Table* NewTable()
{
    void* const place = VBuMalloc(sizeof(Table), modules::VUtlGen, __LINE__, 0);
    return place != nullptr ? new (place) Table : nullptr;
}

void FreeTable(Table* table)
{
    table->~Table();
    Free(table);
}

}  // namespace

// ---- The record ----------------------------------------------------------------------------------------------------

Table::~Table()
{
    for (std::int32_t i = 0; i < rowCount; ++i)
        FreeRow(rows[i], columnCount);
    Free(rows);
    Free(columnNames);
    Free(columnTypes);
    Free(name);
    Free(outputFile);
}

bool Table::AppendColumn(char* columnName, std::int32_t type)
{
    if (!Grow(columnNames, columnCount) || !Grow(columnTypes, columnCount))
        return false;
    for (std::int32_t i = 0; i < rowCount; ++i)
        if (!Grow(rows[i], columnCount))
            return false;  // rows with more room than they need do no harm
    for (std::int32_t i = 0; i < rowCount; ++i)
        rows[i][columnCount] = nullptr;
    columnNames[columnCount] = columnName;
    columnTypes[columnCount] = type;
    ++columnCount;
    return true;
}

bool Table::AppendRow()
{
    if (!Grow(rows, rowCount))
        return false;
    Row row = nullptr;
    if (columnCount > 0) {
        const auto cells = static_cast<std::size_t>(memory::RoundedCapacity(columnCount));
        row = static_cast<Row>(VBuCalloc(cells, sizeof(void*), modules::VUtlGen, __LINE__));
        if (row == nullptr)
            return false;
    }
    rows[rowCount++] = row;
    return true;
}

void Table::RemoveRow(std::int32_t row)
{
    FreeRow(rows[row], columnCount);
    Remove(rows, rowCount, row);
}

std::int32_t Table::FindColumn(const char* columnName)
{
    if (columnName == nullptr)
        return -1;
    const std::int32_t indexed = columnIndex.Find(columnNames, columnCount, columnName);
    if (indexed != -1)
        return indexed;
    // The names are the caller's, who may have written another text into one. The index is made anew then.
    for (std::int32_t i = 0; i < columnCount; ++i)
        if (columnNames[i] != nullptr && std::strcmp(columnNames[i], columnName) == 0) {
            columnIndex.Clear();
            return i;
        }
    return -1;
}

// ---- The registry --------------------------------------------------------------------------------------------------

Table* Create(const char* name, const char* outputFile)
{
    if (!Grow(g_registry.tables, g_registry.count))
        return nullptr;
    Table* const table = NewTable();
    if (table != nullptr && CopyText(table->name, name) && CopyText(table->outputFile, outputFile)) {
        g_registry.tables[g_registry.count++] = table;
        return g_registry.current = table;
    }
    if (table != nullptr)
        FreeTable(table);
    if (g_registry.count == 0)
        Free(g_registry.tables);
    return nullptr;
}

void Delete(Table* table)
{
    Table** const last = g_registry.tables + g_registry.count;
    const std::ptrdiff_t index = std::find(g_registry.tables, last, table) - g_registry.tables;
    Remove(g_registry.tables, g_registry.count, static_cast<std::int32_t>(index));
    if (g_registry.current == table)
        g_registry.current = nullptr;
    if (g_registry.count == 0)
        Free(g_registry.tables);
    FreeTable(table);
}

Table* FindByName(const char* name)
{
    Table** const last = g_registry.tables + g_registry.count;
    const auto hasName = [name](const Table* table) {
        return name != nullptr && table->name != nullptr && std::strcmp(table->name, name) == 0;
    };
    Table** const found = std::find_if(g_registry.tables, last, hasName);
    return found != last ? *found : nullptr;
}

bool IsTable(const void* address)
{
    if (address == g_registry.current)
        return address != nullptr;
    Table** const last = g_registry.tables + g_registry.count;
    return std::find(g_registry.tables, last, address) != last;
}

Result Find(void* handle, const char* name, Table*& table)
{
    if (g_registry.count == 0)
        return NoTables;
    // Kept: the current table wins over a name that is given.
    if (handle == nullptr)
        handle = g_registry.current;
    if (handle == nullptr && name == nullptr)
        return TableNotGiven;
    if (handle != nullptr)
        table = IsTable(handle) ? static_cast<Table*>(handle) : nullptr;
    else
        table = FindByName(name);
    return table != nullptr ? Success : TableNotFound;
}

}  // namespace bulletin
