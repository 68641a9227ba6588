// Report tables: named tables of typed cells, filled one by one and written as text that spreadsheets and viewers read.
//
//   char forces[] = "forces", node[] = "node", fx[] = "fx";   // column names are kept, not copied
//   void* table = nullptr;
//   UtlCreateBulletinTableWithOpFileName(forces, &table, "forces.txt");
//   UtlBulletinTableAddColumn(table, nullptr, node, 0);
//   UtlBulletinTableAddColumn(table, nullptr, fx, 2);
//   UtlBulletinTableAddRow(table, nullptr);
//   const int id = 7;
//   UtlBulletinTableSetInfo(table, nullptr, node, 0, &id);
//   UtlBulletinTableWriteRowToFile(table, nullptr, nullptr, -1, -1, -1, 0, 0, nullptr);
//   // forces.txt: "node \tfx \n\n7 \t0.0 \t", \t being a tab
//
// How a cell of each type is set, added to and written, with c for the separator:
//
//  type | value at `value` | increment | written         | written while empty
//  -----|------------------|-----------|-----------------|-------------------------------
//  0    | int              | adds      | "%d c"          | "0 c"
//  1    | float            | adds      | "%f c"          | "0.0 c"
//  2    | double           | adds      | "%f c"          | "0.0 c"
//  3    | char             | refused   | "%c c"          | "NIL c"
//  4    | the text itself  | refused   | "%s c"          | "NIL c"
//  5    | double[3]        | refused   | "%f %f %f c"    | "   ", without a separator
//  else | not read         | ignored   | nothing         | nothing: such cells stay empty
//
// What every function returns:
//
//   0   done
//   1   there is no table at all; a table of this name exists already; the increment was refused
//   2   the table is not there (any more)
//   3   no table was named; there is no such row
//   4   there is no such column; the file could not be opened or not be written to its end
//   5   there is no such row to be written
//  -1   memory is exhausted; the table is as it was, but for a column that was appended to set a cell
//
// Rules for all of it:
//  - `handle` names the table. When it is null the current table, the one created last, is meant, whatever `tableName`
//    says; only when that was deleted, `tableName` counts. A deleted handle gives 2 and is never followed, but a new
//    table may come to stand at the same address.
//  - Rows and columns are counted from 0. Names are compared byte by byte. A null name is never found, and printed as
//    nothing.
//  - Numbers are written as in the C locale. Names and texts are written as they are, '%' and line ends included.
//  - Cost: finding a column does not depend on their number; adding a cell, row or column is linear in what is added.
//  - Not locked: all tables belong to one thread at a time.
#pragma once

#include <TuvoUtil/Export.h>

// ---- Tables --------------------------------------------------------------------------------------------------------

// Creates an empty table, makes it the current one and stores its handle. Name and output file are copied; without an
// output file (null) every writing must name one. When a table of this name exists, stores its handle and returns 1; the
// current table stays. Any number of tables may have a null name. -1 stores null. `handle` may be null.
TUVOUTIL_API int UtlCreateBulletinTableWithOpFileName(const char* name, void** handle, const char* opFileName);

// The same without an output file.
TUVOUTIL_API int UtlCreateBulletinTable(char* name, void** handle);

// Deletes a table with all that it holds, but not the names of its columns. When it was the current table there is none
// until the next is created.
TUVOUTIL_API int UtlDeleteBulletinTable(void* handle, char* tableName);

// ---- Columns and rows ----------------------------------------------------------------------------------------------

// Appends a column; its cells are empty in all rows. The name is kept as a pointer: it must live as long as the table.
// Two columns may have one name: the first is the one that is found.
TUVOUTIL_API int UtlBulletinTableAddColumn(void* handle, char* tableName, char* columnName, int dataType);

// Appends a row of empty cells.
TUVOUTIL_API int UtlBulletinTableAddRow(void* handle, char* tableName);

// Deletes a row, against its name: the rows behind it move up. 3 when there is no such row.
TUVOUTIL_API int UtlBulletinTableClearRow(void* handle, char* tableName, int row);

// ---- Cells ---------------------------------------------------------------------------------------------------------

// Sets a cell, or adds to it when `increment` is not 0; an empty number counts as 0, and integers wrap. The type of the
// column says what `value` points to; `dataType` only serves to append a column that does not exist yet, -1 to return 4
// instead. With a null value a text is emptied and any other cell stays as it is: 0.
//
// A refused increment writes "Error:UtlBulletinBoard: cannot increment string!" (or char, point3) and a line end to
// standard error and returns 1. It leaves a text empty, and an empty char or point3 set to zero.
//
// When `write` is not 0 the header and the row are then appended to the table's output file, whatever comes of it.
TUVOUTIL_API int UtlBulletinTableSetNWriteCellValue(void* handle, char* tableName, char* columnName, int dataType,
                                                    int row, const void* value, int increment, int write);

// The same without writing.
TUVOUTIL_API int UtlBulletinTableSetCellValue(void* handle, char* tableName, char* columnName, int dataType, int row,
                                              const void* value, int increment);

// The same for columns that exist.
TUVOUTIL_API int UtlBulletinTableAddCellValue(void* handle, char* tableName, char* columnName, int row,
                                              const void* value, int increment);

// The same without an increment.
TUVOUTIL_API int UtlBulletinTableSetInfo(void* handle, char* tableName, char* columnName, int row, const void* value);

// ---- Writing -------------------------------------------------------------------------------------------------------

// Writes one row, or all of them when `row` is negative, to a text file (null: the output file of the table; 4 without
// one), and tells the host so with a message that links to the file.
//
//   columns      startColumn (below 0: the first) to endColumn (below 0, or behind the last: the last)
//   headerMode   0 with a header; 1 with a header unless the file existed; else none
//   appendMode   1 behind what the file holds; else in place of it
//   separator    its first character (a NUL for an empty text); null: a tab
//
// The header is one line with the names of all columns, "a cb \n" for two and the separator c, also when only some are
// written. A row begins with a line end when column 0 is among its columns, and is not ended by one, so that an empty
// line follows the header. A row that does not exist gives 5 when the file was opened, and emptied, and has its header.
TUVOUTIL_API int UtlBulletinTableWriteRowToFile(void* handle, char* tableName, char* fileName, int row, int startColumn,
                                                int endColumn, int headerMode, int appendMode, char* separator);
