#include <TuvoUtil/BulletinTable.h>

#include "VUtlGen/BulletinTableCells.h"
#include "VUtlGen/BulletinTableRecord.h"
#include "VUtlGen/BulletinTableWrite.h"

using namespace bulletin;

namespace {

constexpr int NoDataType = -1;

// The column to set, appended when a type for it is given; its number in `column`.
Result ColumnToSet(Table& table, char* columnName, int dataType, std::int32_t& column)
{
    column = table.FindColumn(columnName);
    if (column != -1)
        return Success;
    if (dataType == NoDataType)
        return ColumnNotFound;
    if (!table.AppendColumn(columnName, dataType))
        return OutOfMemory;
    column = table.columnCount - 1;
    return Success;
}

}  // namespace

int UtlCreateBulletinTableWithOpFileName(const char* name, void** handle, const char* opFileName)
{
    Table* table = FindByName(name);
    const bool exists = table != nullptr;
    if (!exists)
        table = Create(name, opFileName);
    if (handle != nullptr)
        *handle = table;
    if (table == nullptr)
        return OutOfMemory;
    return exists ? NameExists : Success;
}

int UtlCreateBulletinTable(char* name, void** handle)
{
    return UtlCreateBulletinTableWithOpFileName(name, handle, nullptr);
}

int UtlDeleteBulletinTable(void* handle, char* tableName)
{
    Table* table = nullptr;
    const Result found = Find(handle, tableName, table);
    if (found == Success)
        Delete(table);
    return found;
}

int UtlBulletinTableAddColumn(void* handle, char* tableName, char* columnName, int dataType)
{
    Table* table = nullptr;
    if (const Result found = Find(handle, tableName, table))
        return found;
    return table->AppendColumn(columnName, dataType) ? Success : OutOfMemory;
}

int UtlBulletinTableAddRow(void* handle, char* tableName)
{
    Table* table = nullptr;
    if (const Result found = Find(handle, tableName, table))
        return found;
    return table->AppendRow() ? Success : OutOfMemory;
}

int UtlBulletinTableClearRow(void* handle, char* tableName, int row)
{
    Table* table = nullptr;
    if (const Result found = Find(handle, tableName, table))
        return found;
    if (!table->HasRow(row))
        return RowNotFound;
    table->RemoveRow(row);
    return Success;
}

int UtlBulletinTableSetNWriteCellValue(void* handle, char* tableName, char* columnName, int dataType, int row,
                                       const void* value, int increment, int write)
{
    Table* table = nullptr;
    if (const Result found = Find(handle, tableName, table))
        return found;
    if (!table->HasRow(row))
        return RowNotFound;
    std::int32_t column = -1;
    if (const Result found = ColumnToSet(*table, columnName, dataType, column))
        return found;
    if (const Result set = SetCell(table->rows[row][column], table->columnTypes[column], value, increment != 0))
        return set;
    // Kept: whether the row could be written is not told.
    if (write != 0)
        Write(*table, table->outputFile, {.row = row});
    return Success;
}

int UtlBulletinTableSetCellValue(void* handle, char* tableName, char* columnName, int dataType, int row,
                                 const void* value, int increment)
{
    return UtlBulletinTableSetNWriteCellValue(handle, tableName, columnName, dataType, row, value, increment, 0);
}

int UtlBulletinTableAddCellValue(void* handle, char* tableName, char* columnName, int row, const void* value,
                                 int increment)
{
    return UtlBulletinTableSetCellValue(handle, tableName, columnName, NoDataType, row, value, increment);
}

int UtlBulletinTableSetInfo(void* handle, char* tableName, char* columnName, int row, const void* value)
{
    return UtlBulletinTableAddCellValue(handle, tableName, columnName, row, value, 0);
}

int UtlBulletinTableWriteRowToFile(void* handle, char* tableName, char* fileName, int row, int startColumn,
                                   int endColumn, int headerMode, int appendMode, char* separator)
{
    Table* table = nullptr;
    if (const Result found = Find(handle, tableName, table))
        return found;
    return Write(*table, fileName != nullptr ? fileName : table->outputFile,
                 {.row = row,
                  .startColumn = startColumn,
                  .endColumn = endColumn,
                  .headerMode = headerMode,
                  .appendMode = appendMode,
                  .separator = separator != nullptr ? *separator : '\t'});
}
