#include <TuvoUtil/BulletinTable.h>

#include "platform/Platform.h"
#include "support/RecordingUpdater.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <list>
#include <random>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

// A table that is deleted at the end, and the names of its columns.
class Table
{
public:
    explicit Table(const char* name = nullptr, const char* outputFile = nullptr)
    {
        EXPECT_EQ(UtlCreateBulletinTableWithOpFileName(name, &m_handle, outputFile), 0);
    }
    // With columns "0", "1", ... of these types and a number of rows.
    Table(const std::vector<int>& types, int rows) : Table()
    {
        for (std::size_t i = 0; i < types.size(); ++i)
            EXPECT_EQ(AddColumn(std::to_string(i), types[i]), 0);
        for (int i = 0; i < rows; ++i)
            EXPECT_EQ(UtlBulletinTableAddRow(m_handle, nullptr), 0);
    }
    ~Table() { UtlDeleteBulletinTable(m_handle, nullptr); }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    void* Handle() const { return m_handle; }
    char* Keep(const std::string& name) { return m_names.emplace_back(name).data(); }

    int AddColumn(const std::string& name, int type)
    {
        return UtlBulletinTableAddColumn(m_handle, nullptr, Keep(name), type);
    }
    int AddRow() { return UtlBulletinTableAddRow(m_handle, nullptr); }
    int ClearRow(int row) { return UtlBulletinTableClearRow(m_handle, nullptr, row); }

    int Set(const std::string& column, int row, const void* value, int increment = 0, int type = -1)
    {
        return UtlBulletinTableSetCellValue(m_handle, nullptr, Keep(column), type, row, value, increment);
    }
    int SetInteger(const std::string& column, int row, int value) { return Set(column, row, &value); }

    struct Options
    {
        int row = -1, start = -1, end = -1, header = 2, append = 0;
        const char* separator = ";";
    };
    int Write(const std::string& file, const Options& options)
    {
        char* separator = options.separator != nullptr ? Keep(options.separator) : nullptr;
        return UtlBulletinTableWriteRowToFile(m_handle, nullptr, Keep(file), options.row, options.start, options.end,
                                              options.header, options.append, separator);
    }

    // What a file that did not exist holds then.
    std::string Text(const Options& options)
    {
        const TemporaryFolder folder;
        EXPECT_EQ(Write(folder.NarrowPath("table"), options), 0);
        return ReadTextFile(folder.Path("table"));
    }
    std::string Text() { return Text({}); }

private:
    void* m_handle = nullptr;
    std::list<std::string> m_names;
};

// ---- Which table ---------------------------------------------------------------------------------------------------

TEST(BulletinTable, IsTheHandleElseTheCurrentOneElseTheName)
{
    char first[] = "first", second[] = "second", other[] = "First";
    int stranger = 0;
    EXPECT_EQ(UtlBulletinTableAddRow(&stranger, first), 1);
    EXPECT_EQ(UtlDeleteBulletinTable(nullptr, nullptr), 1);
    void *a = nullptr, *b = nullptr, *again = nullptr;
    EXPECT_EQ(UtlCreateBulletinTable(first, &a), 0);
    EXPECT_EQ(UtlCreateBulletinTable(second, &b), 0);
    EXPECT_EQ(UtlCreateBulletinTable(first, &again), 1);
    EXPECT_EQ(again, a);
    EXPECT_EQ(UtlCreateBulletinTable(first, nullptr), 1);

    EXPECT_EQ(UtlBulletinTableAddRow(&stranger, first), 2);
    EXPECT_EQ(UtlBulletinTableAddRow(nullptr, first), 0);  // the current one: second
    EXPECT_EQ(UtlBulletinTableClearRow(a, nullptr, 0), 3);
    EXPECT_EQ(UtlBulletinTableClearRow(b, nullptr, 0), 0);

    EXPECT_EQ(UtlDeleteBulletinTable(nullptr, nullptr), 0);
    EXPECT_EQ(UtlBulletinTableAddRow(b, nullptr), 2);
    EXPECT_EQ(UtlBulletinTableAddRow(nullptr, nullptr), 3);
    EXPECT_EQ(UtlBulletinTableAddRow(nullptr, second), 2);
    EXPECT_EQ(UtlBulletinTableAddRow(nullptr, other), 2);
    EXPECT_EQ(UtlBulletinTableAddRow(nullptr, first), 0);
    EXPECT_EQ(UtlBulletinTableClearRow(a, nullptr, 0), 0);
    EXPECT_EQ(UtlDeleteBulletinTable(nullptr, first), 0);
    EXPECT_EQ(UtlDeleteBulletinTable(a, nullptr), 1);
}

TEST(BulletinTable, WithoutNameIsReachedByItsHandleAlone)
{
    Table one, two;
    EXPECT_NE(one.Handle(), two.Handle());
    EXPECT_EQ(two.AddRow(), 0);
    EXPECT_EQ(UtlDeleteBulletinTable(two.Handle(), nullptr), 0);
    char name[] = "";
    EXPECT_EQ(UtlBulletinTableAddRow(nullptr, name), 2);
    EXPECT_EQ(one.AddRow(), 0);
}

TEST(BulletinTable, ManyAreKeptApart)
{
    std::list<Table> tables;
    for (int i = 0; i < 100; ++i) {
        tables.emplace_back(std::to_string(i).c_str()).AddColumn("c", 0);
        tables.back().AddRow();
        EXPECT_EQ(tables.back().SetInteger("c", 0, i), 0);
    }
    for (int i = 0; !tables.empty(); ++i, tables.pop_front())
        EXPECT_EQ(tables.front().Text(), "\n" + std::to_string(i) + " ;");
}

// ---- Cells ---------------------------------------------------------------------------------------------------------

TEST(BulletinTable, RejectsCellsThatAreNotThere)
{
    Table table({0}, 1);
    const int value = 1;
    for (const int row : {1, 2, INT_MAX, -1, INT_MIN}) {
        EXPECT_EQ(table.Set("0", row, &value), 3) << row;
        EXPECT_EQ(table.Set("new", row, &value, 0, 0), 3) << row;
        EXPECT_EQ(table.ClearRow(row), 3) << row;
    }
    EXPECT_EQ(table.Set("new", 0, &value), 4);
    EXPECT_EQ(table.Text({.header = 0}), "0 \n\n0 ;");
}

TEST(BulletinTable, AppendsTheColumnOfATypeThatIsGiven)
{
    Table table;
    EXPECT_EQ(table.AddRow(), 0);
    EXPECT_EQ(table.AddRow(), 0);
    EXPECT_EQ(table.Text({.header = 0}), "");  // no column, no line
    EXPECT_EQ(table.Set("c", 1, "x", 0, 3), 0);
    EXPECT_EQ(table.Set("c", 0, "y", 0, 0), 0);  // the type of the column holds
    EXPECT_EQ(table.Set("i", 0, nullptr, 0, 0), 0);
    EXPECT_EQ(table.Text({.header = 0}), "c ;i \n\ny ;0 ;\nx ;0 ;");
}

TEST(BulletinTable, AddsToNumbersAndWraps)
{
    Table table({0, 1, 2}, 1);
    const int integers[] = {5, INT_MAX, INT_MAX};
    const float floats[] = {0.5F, 16777216.0F, 1.0F};
    const double doubles[] = {0.1, 0.2, 1e15};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(table.Set("0", 0, &integers[i], 1), 0);
        EXPECT_EQ(table.Set("1", 0, &floats[i], -1), 0);
        EXPECT_EQ(table.Set("2", 0, &doubles[i], 2), 0);
        EXPECT_EQ(table.Text().substr(0, 4), i == 0 ? "\n5 ;" : i == 1 ? "\n-21" : "\n3 ;");
        EXPECT_EQ(table.Set("0", 0, nullptr, i), 0);  // no value, no change
    }
    EXPECT_EQ(table.Text(), "\n3 ;16777216.000000 ;1000000000000000.250000 ;");
}

TEST(BulletinTable, RefusesToAddToWhatIsNoNumber)
{
    ReportScope reports;
    Table table({3, 4, 5}, 2);
    const double point[] = {1, 2, 3};
    const auto set = [&](int row, int increment, int expected) {
        EXPECT_EQ(table.Set("0", row, "c", increment), expected);
        EXPECT_EQ(table.Set("1", row, "text", increment), expected);
        EXPECT_EQ(table.Set("2", row, point, increment), expected);
    };
    set(0, 0, 0);
    EXPECT_EQ(reports.TakeErrors(), "");
    set(0, 1, 1);
    EXPECT_EQ(reports.TakeErrors(),
              "Error:UtlBulletinBoard: cannot increment char!\n"
              "Error:UtlBulletinBoard: cannot increment string!\n"
              "Error:UtlBulletinBoard: cannot increment point3!\n");
    set(1, 1, 1);  // empty cells become zero
    const std::string nul(1, '\0');
    EXPECT_EQ(table.Text(), "\nc ;NIL ;1.000000 2.000000 3.000000 ;\n" + nul + " ;NIL ;0.000000 0.000000 0.000000 ;");
}

TEST(BulletinTable, CopiesTextsAndEmptiesThem)
{
    Table table({4}, 1);
    std::string value = "100% %n\n";
    EXPECT_EQ(table.Set("0", 0, value.c_str()), 0);
    value = "changed";
    EXPECT_EQ(table.Text(), "\n100% %n\n ;");
    EXPECT_EQ(table.Set("0", 0, ""), 0);
    EXPECT_EQ(table.Text(), "\n ;");
    EXPECT_EQ(table.Set("0", 0, nullptr), 0);
    EXPECT_EQ(table.Text(), "\nNIL ;");
    const std::string longer(100'000, 'x');
    EXPECT_EQ(table.Set("0", 0, longer.c_str()), 0);
    EXPECT_EQ(table.Text(), "\n" + longer + " ;");
}

TEST(BulletinTable, TypesThatAreUnknownTakeNoValue)
{
    Table table({6, 0, -1, INT_MIN}, 1);
    for (const char* const column : {"0", "2", "3"})
        EXPECT_EQ(table.Set(column, 0, "text", 1), 0);
    EXPECT_EQ(table.Text({.header = 0}), "0 ;1 ;2 ;3 \n\n0 ;");
}

// ---- Columns and rows ----------------------------------------------------------------------------------------------

TEST(BulletinTable, FindsTheFirstOfManyColumns)
{
    Table table(std::vector<int>(1000, 0), 3);
    EXPECT_EQ(table.AddColumn("500", 4), 0);
    EXPECT_EQ(UtlBulletinTableAddColumn(table.Handle(), nullptr, nullptr, 0), 0);
    const int value = 1;
    EXPECT_EQ(UtlBulletinTableSetInfo(table.Handle(), nullptr, nullptr, 0, &value), 4);
    std::string expected = "\n";
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(table.SetInteger(std::to_string(i), 2, i), 0);
        expected += std::to_string(i) + " ;";
    }
    EXPECT_EQ(table.Text({.row = 2}), expected + "NIL ;0 ;");
}

TEST(BulletinTable, NamesOfColumnsAreTheCallers)
{
    Table table({0, 0}, 1);
    char name[] = "force";
    EXPECT_EQ(UtlBulletinTableAddColumn(table.Handle(), nullptr, name, 0), 0);
    EXPECT_EQ(table.SetInteger("force", 0, 1), 0);
    name[0] = 'F';
    EXPECT_EQ(table.SetInteger("force", 0, 2), 4);
    EXPECT_EQ(table.SetInteger("Force", 0, 3), 0);
    EXPECT_EQ(table.SetInteger("Force", 0, 4), 0);
    EXPECT_EQ(table.Text({.header = 0}), "0 ;1 ;Force \n\n0 ;0 ;4 ;");
}

TEST(BulletinTable, ClearingARowDeletesIt)
{
    Table table({0, 4}, 37);
    for (int i = 0; i < 37; ++i) {
        EXPECT_EQ(table.SetInteger("0", i, i), 0);
        EXPECT_EQ(table.Set("1", i, "text"), 0);
    }
    for (const int row : {36, 0, 0, 10})
        EXPECT_EQ(table.ClearRow(row), 0);
    std::string expected;
    for (int i = 2; i < 36; ++i)
        if (i != 12)
            expected += "\n" + std::to_string(i) + " ;text ;";
    EXPECT_EQ(table.Text(), expected);
    for (int i = 0; i < 33; ++i)
        EXPECT_EQ(table.ClearRow(0), 0);
    EXPECT_EQ(table.ClearRow(0), 3);
    EXPECT_EQ(table.AddRow(), 0);
    EXPECT_EQ(table.Text(), "\n0 ;NIL ;");
}

// ---- Writing -------------------------------------------------------------------------------------------------------

TEST(BulletinTable, WritesTheRangesThatAreAskedFor)
{
    Table table({0, 0, 0}, 2);
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(table.SetInteger(std::to_string(i), row, 10 * row + i), 0);
    const struct
    {
        Table::Options options;
        std::string text;
    } rows[] = {
        {{.header = 0, .separator = nullptr}, "0 \t1 \t2 \n\n0 \t1 \t2 \t\n10 \t11 \t12 \t"},
        {{.separator = ",;"}, "\n0 ,1 ,2 ,\n10 ,11 ,12 ,"},
        {{.row = 1, .end = 0, .separator = ""}, std::string("\n10 \0", 5)},
        {{.row = INT_MIN, .start = 1, .end = 1}, "1 ;11 ;"},
        {{.row = 0, .start = 1, .end = 3, .header = 1}, "0 ;1 ;2 \n1 ;2 ;"},
        {{.start = INT_MIN, .end = INT_MAX}, "\n0 ;1 ;2 ;\n10 ;11 ;12 ;"},
        {{.start = 2, .end = 1, .header = 0}, "0 ;1 ;2 \n"},
        {{.start = INT_MAX, .end = INT_MIN, .header = -1}, ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(table.Text(row.options), row.text) << &row - rows;
}

TEST(BulletinTable, ModesSayWhatBecomesOfAFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.NarrowPath("table");
    Table table({0}, 1);
    const struct
    {
        int header, append, row, result;
        std::string text;
    } rows[] = {
        {1, 1, 0, 0, "0 \n\n0 ;"}, {1, 1, 0, 0, "0 \n\n0 ;\n0 ;"}, {0, 1, 1, 5, "0 \n\n0 ;\n0 ;0 \n"},
        {1, 0, 0, 0, "\n0 ;"},     {2, 2, 0, 0, "\n0 ;"},          {0, 0, INT_MAX, 5, "0 \n"},
        {-1, 0, 1, 5, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(table.Write(path, {.row = row.row, .header = row.header, .append = row.append}), row.result);
        EXPECT_EQ(ReadTextFile(folder.Path("table")), row.text) << &row - rows;
    }
}

TEST(BulletinTable, TellsWhenAFileCannotBeWritten)
{
    RecordingUpdater updater;
    const TemporaryFolder folder;
    Table table({0}, 1);
    for (const std::string& path : {folder.NarrowPath(), folder.NarrowPath("missing/table"), std::string()})
        EXPECT_EQ(table.Write(path, {}), 4) << path;
    EXPECT_EQ(UtlBulletinTableWriteRowToFile(table.Handle(), nullptr, nullptr, -1, 0, 0, 0, 0, nullptr), 4);
    EXPECT_EQ(updater.TakeLines(), Lines());
    if (platform::Separator() == L'/') {
        EXPECT_EQ(table.Write("/dev/full", {}), 4);
    }
}

TEST(BulletinTable, SettingACellCanAppendItsRow)
{
    ReportScope reports;
    const TemporaryFolder folder;
    Table table("%s", folder.NarrowPath("%d").c_str());
    table.AddColumn("%n", 4);
    table.AddRow();
    table.AddRow();
    const auto set = [&](const char* value, int increment) {
        return UtlBulletinTableSetNWriteCellValue(table.Handle(), nullptr, table.Keep("%n"), 3, 1, value, increment, 1);
    };
    RecordingUpdater updater;
    EXPECT_EQ(set("%", 0), 0);
    EXPECT_EQ(set("%", 1), 1);  // refused, and not written
    EXPECT_EQ(set(nullptr, 0), 0);
    const std::string line = "console 2: Report table \"%s\" is written to <a>" + folder.NarrowPath("%d") + "</a>";
    EXPECT_EQ(updater.TakeLines(), Lines(2, line));
    EXPECT_EQ(ReadTextFile(folder.Path("%d")), "%n \n\n% \t%n \n\nNIL \t");

    Table unnamed({0}, 1);
    const int value = 7;
    EXPECT_EQ(UtlBulletinTableSetNWriteCellValue(nullptr, nullptr, table.Keep("0"), -1, 0, &value, 0, 1), 0);
    EXPECT_EQ(unnamed.Write(folder.NarrowPath("u"), {}), 0);
    EXPECT_EQ(updater.TakeLines(),
              Lines{"console 2: Report table is written to <a>" + folder.NarrowPath("u") + "</a>"});
}

TEST(BulletinTable, MayBeDeletedWhileTheHostIsTold)
{
    struct Deleting : TuvoEnvUpdater
    {
        void WriteConsoleMessage(_TuvoMessageType, const wchar_t*, bool) override
        {
            UtlDeleteBulletinTable(nullptr, nullptr);
        }
    } updater;
    const TemporaryFolder folder;
    Table table({0}, 1);
    TuvoEnvUpdater::SetUpdater(&updater);
    EXPECT_EQ(table.Write(folder.NarrowPath("table"), {.header = 0}), 2);
    TuvoEnvUpdater::SetUpdater(nullptr);
    EXPECT_EQ(ReadTextFile(folder.Path("table")), "");
}

// ---- Against printf ------------------------------------------------------------------------------------------------

template <typename... Arguments>
std::string Printed(const char* format, Arguments... arguments)
{
    char text[1024];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, arguments...))};
}

// Any value but nan, whose sign systems print differently: all magnitudes, and halves of the last decimal.
double AnyDouble(std::mt19937_64& random)
{
    const auto bits = random();
    if (bits % 4 == 0)
        return static_cast<double>(static_cast<std::int64_t>(bits) >> (bits / 4 % 63)) / 128;
    if (bits % 4 == 1)
        return (static_cast<double>(bits >> 44) + 0.5) * 1e-6;
    const double value = std::bit_cast<double>(bits);
    return std::isnan(value) ? std::numeric_limits<double>::infinity() : value;
}

TEST(BulletinTable, WritesWhatPrintfPrints)
{
    std::mt19937_64 random(1);
    constexpr int rows = 3000;
    Table table({0, 1, 2, 3, 4, 5}, rows);
    std::string expected = "0 |1 |2 |3 |4 |5 \n";
    for (int row = 0; row < rows; ++row) {
        expected += '\n';
        const auto integer = static_cast<int>(random() >> 32) >> (random() % 32);
        const auto single = static_cast<float>(AnyDouble(random));
        const double real = AnyDouble(random);
        const char character = Printed("%d", integer).back();
        const std::string text(random() % 8, '%');
        const double point[] = {AnyDouble(random), AnyDouble(random), AnyDouble(random)};
        const struct
        {
            const void* value;
            std::string set, empty;
        } cells[] = {{&integer, Printed("%d |", integer), "0 |"},
                     {&single, Printed("%f |", static_cast<double>(single)), "0.0 |"},
                     {&real, Printed("%f |", real), "0.0 |"},
                     {&character, Printed("%c |", character), "NIL |"},
                     {text.c_str(), Printed("%s |", text.c_str()), "NIL |"},
                     {point, Printed("%f %f %f |", point[0], point[1], point[2]), "   "}};
        for (int i = 0; i < 6; ++i) {
            const bool isSet = random() % 4 != 0;
            if (isSet) {
                EXPECT_EQ(table.Set(std::to_string(i), row, cells[i].value), 0);
            }
            expected += isSet ? cells[i].set : cells[i].empty;
        }
    }
    EXPECT_EQ(table.Text({.header = 0, .separator = "|"}), expected);
}

}  // namespace
