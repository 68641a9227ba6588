// Report tables when memory is exhausted, what the file tracker sees of them, and numbers as they are written.

#include <TuvoUtil/BulletinTable.h>

#include "Diagnostics/FileTracker.h"
#include "VUtlGen/FixedPoint.h"
#include "support/AllocationControl.h"
#include "support/RecordingUpdater.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ios>
#include <iterator>
#include <limits>
#include <random>
#include <string>

namespace {

char g_name[] = "table";
char g_integer[] = "integer";
char g_string[] = "string";

TEST(BulletinTableMemory, CreationGivesATableOrNone)
{
    ReportScope reports;
    const int failures = allocation::ForEachFailure([&] {
        void* handle = &handle;
        const int result = UtlCreateBulletinTableWithOpFileName(g_name, &handle, "file");
        EXPECT_EQ(result, handle != nullptr ? 0 : -1);
        EXPECT_EQ(UtlDeleteBulletinTable(handle, g_name), handle != nullptr ? 0 : 1);
    });
    EXPECT_EQ(failures, 4);  // registry, record, name, file
}

// Gives the table its content; true when every step had its memory.
bool Fill(void* table)
{
    const int value = 1;
    const auto done = [](int result) {
        EXPECT_TRUE(result == 0 || result == -1) << result;
        return result == 0;
    };
    for (int row = 0; row < 3; ++row)
        if (!done(UtlBulletinTableAddRow(table, nullptr)))
            return false;
    for (int row = 0; row < 3; ++row)
        if (!done(UtlBulletinTableSetCellValue(table, nullptr, g_integer, 0, row, &value, 0)) ||
            !done(UtlBulletinTableSetCellValue(table, nullptr, g_string, 4, row, "text", 0)))
            return false;
    return true;
}

// Allocates nothing itself.
bool FileIs(const char* path, const char* text)
{
    std::FILE* const file = std::fopen(path, "r");
    if (file == nullptr)
        return false;
    char content[100] = "";
    const std::size_t size = std::fread(content, 1, sizeof content - 1, file);
    std::fclose(file);
    return size == std::strlen(text) && std::strcmp(content, text) == 0;
}

TEST(BulletinTableMemory, EveryStepIsDoneOrTold)
{
    ReportScope reports;
    const TemporaryFolder folder;
    std::string file = folder.NarrowPath("table");
    char separator[] = ";";
    const int failures = allocation::ForEachFailure([&] {
        void* table = nullptr;
        if (UtlCreateBulletinTable(g_name, &table) != 0)
            return;
        // What failed once has its memory the next time: the table is still whole.
        while (!Fill(table))
            while (UtlBulletinTableClearRow(table, nullptr, 0) == 0) {
            }
        const int written = UtlBulletinTableWriteRowToFile(table, nullptr, file.data(), 2, -1, 1, 2, 0, separator);
        EXPECT_EQ(written, FileIs(file.c_str(), "\n1 ;text ;") ? 0 : 4);
        std::remove(file.c_str());
        EXPECT_EQ(UtlDeleteBulletinTable(table, nullptr), 0);
    });
    EXPECT_GT(failures, 20);
}

TEST(BulletinTableMemory, ATextThatFindsNoMemoryLeavesTheOldOne)
{
    ReportScope reports;
    const TemporaryFolder folder;
    void* table = nullptr;
    std::string file = folder.NarrowPath("table");
    ASSERT_EQ(UtlCreateBulletinTable(nullptr, &table), 0);
    EXPECT_TRUE(Fill(table));
    const std::string longText(500, 'x');
    allocation::FailOnce(1);
    EXPECT_EQ(UtlBulletinTableSetInfo(table, nullptr, g_string, 0, longText.c_str()), -1);
    allocation::FailFrom(0);
    EXPECT_EQ(UtlBulletinTableWriteRowToFile(table, nullptr, file.data(), 0, 1, 1, 2, 0, nullptr), 0);
    EXPECT_EQ(ReadTextFile(folder.Path("table")), "text \t");
    EXPECT_EQ(UtlDeleteBulletinTable(table, nullptr), 0);
}

TEST(BulletinTableTracking, AFileThatExistsIsOpenedTwiceAndClosed)
{
    const TemporaryFolder folder;
    std::string file = folder.NarrowPath("table");
    void* table = nullptr;
    ASSERT_EQ(UtlCreateBulletinTable(nullptr, &table), 0);
    RecordingUpdater updater;
    StartFileTracker();
    const auto opened = [&] {
        updater.TakeLines();
        PostOpenFileStatistics();
        const auto lines = updater.TakeLines();
        EXPECT_NE(lines.at(2).find("No open files found"), std::string::npos) << lines.at(2);
        return std::stoi(lines.at(1).substr(std::size("console 1:")));
    };
    const int before = opened();
    for (const int expected : {1, 3}) {
        EXPECT_EQ(UtlBulletinTableWriteRowToFile(table, nullptr, file.data(), -1, 0, 0, 0, 1, nullptr), 0);
        EXPECT_EQ(opened() - before, expected);
    }
    StopFileTracker();
    EXPECT_EQ(UtlDeleteBulletinTable(table, nullptr), 0);
}

// ---- Numbers -------------------------------------------------------------------------------------------------------

std::string Written(double value)
{
    char text[fixedpoint::Room];
    return {&text[0], fixedpoint::Write(text, value)};
}

TEST(FixedPoint, RoundsTheExactBinaryValueToEven)
{
    const struct
    {
        double value;
        const char* text;
    } rows[] = {
        {0.0, "0.000000"},
        {-0.0, "-0.000000"},
        {-0x1p-1074, "-0.000000"},
        {5e-7, "0.000000"},                   // the nearest double lies below one half
        {0x1.0c6f7a0b5ed8ep-21, "0.000001"},  // and the next one above it
        {0.0000005 + 1e-22, "0.000001"},
        {0x1p-7, "0.007812"},  // 0.0078125, a tie
        {0x3p-7, "0.023438"},  // 0.0234375
        {0.9999995, "1.000000"},
        {0.99999949999, "0.999999"},
        {-9.9999999, "-10.000000"},
        {0x1p53 + 2, "9007199254740994.000000"},
        {0x1.fffffffffffffp62, "9223372036854774784.000000"},
        {0x1p63, "9223372036854775808.000000"},
        {-1e22, "-10000000000000000000000.000000"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Written(row.value), row.text) << &row - rows;
    EXPECT_EQ(Written(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(Written(std::numeric_limits<double>::max()).size(), 309U + 7U);
}

TEST(FixedPoint, AgreesWithTheStandardLibraryOnEveryExponent)
{
    std::mt19937_64 random(1);
    for (int exponent = -90; exponent < 70; ++exponent)
        for (int i = 0; i < 1000; ++i) {
            // Few bits make ties, many make all else.
            const auto mantissa = static_cast<std::int64_t>(random()) >> (random() % 63);
            const double value = std::ldexp(static_cast<double>(mantissa), exponent);
            char text[fixedpoint::Room];
            char* const end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6).ptr;
            ASSERT_EQ(Written(value), std::string(&text[0], end)) << std::hexfloat << value;
        }
}

}  // namespace
