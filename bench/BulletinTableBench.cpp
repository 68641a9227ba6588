// Writing report tables against the same rows with compiled fmt and with fprintf a cell, and how filling and writing them
// grows.
#include <TuvoUtil/BulletinTable.h>
#include <TuvoUtil/Types.h>

#include <benchmark/benchmark.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <malloc.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <random>
#include <string>
#include <vector>

namespace {

struct Cells
{
    int integer;
    float single;
    double real;
    char character;
    std::string text;
    _TvPoint3Str point;
};
using Rows = std::vector<Cells>;

// Values as solvers report them: a step, loads and coordinates of some digits, a state.
Rows MakeRows(int count)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> load(-1e5, 1e5), place(-1e3, 1e3);
    Rows rows;
    for (int i = 0; i < count; ++i)
        rows.push_back({i,
                        static_cast<float>(load(random)),
                        load(random),
                        static_cast<char>('A' + random() % 26),
                        "element " + std::to_string(random() % 1000),
                        {place(random), place(random), place(random)}});
    return rows;
}

class Table
{
public:
    explicit Table(const Rows& rows)
    {
        UtlCreateBulletinTable(nullptr, &m_handle);
        for (int type = 0; type < 6; ++type)
            UtlBulletinTableAddColumn(m_handle, nullptr, Names[type], type);
        for (int i = 0; i < static_cast<int>(rows.size()); ++i)
            Add(i, rows[static_cast<std::size_t>(i)]);
    }
    ~Table() { UtlDeleteBulletinTable(m_handle, nullptr); }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    int Write(std::string path) const
    {
        return UtlBulletinTableWriteRowToFile(m_handle, nullptr, path.data(), -1, -1, -1, 2, 0, nullptr);
    }

private:
    void Add(int row, const Cells& cells)
    {
        const void* const values[] = {&cells.integer,   &cells.single,      &cells.real,
                                      &cells.character, cells.text.c_str(), &cells.point};
        UtlBulletinTableAddRow(m_handle, nullptr);
        for (int type = 0; type < 6; ++type)
            UtlBulletinTableSetInfo(m_handle, nullptr, Names[type], row, values[type]);
    }

    static inline char Names[6][8] = {"step", "force", "moment", "state", "element", "place"};
    void* m_handle = nullptr;
};

// ---- The peers -----------------------------------------------------------------------------------------------------

void WriteWithFmt(const Rows& rows, const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "w");
    fmt::memory_buffer text;
    for (const Cells& row : rows) {
        fmt::format_to(std::back_inserter(text),
                       FMT_COMPILE("\n{} \t{:.6f} \t{:.6f} \t{} \t{} \t{:.6f} {:.6f} {:.6f} \t"), row.integer,
                       row.single, row.real, row.character, row.text, row.point.x, row.point.y, row.point.z);
        if (text.size() > 60'000) {
            std::fwrite(text.data(), 1, text.size(), file);
            text.clear();
        }
    }
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

void WriteWithPrintf(const Rows& rows, const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "w");
    for (const Cells& row : rows) {
        std::fprintf(file, "\n");
        std::fprintf(file, "%d %c", row.integer, '\t');
        std::fprintf(file, "%f %c", static_cast<double>(row.single), '\t');
        std::fprintf(file, "%lf %c", row.real, '\t');
        std::fprintf(file, "%c %c", row.character, '\t');
        std::fprintf(file, "%s %c", row.text.c_str(), '\t');
        std::fprintf(file, "%lf %lf %lf %c", row.point.x, row.point.y, row.point.z, '\t');
    }
    std::fclose(file);
}

// ---- Writing -------------------------------------------------------------------------------------------------------

// A file that vanishes at the end of its scope.
class Output
{
public:
    ~Output() { std::remove(Path().c_str()); }
    const std::string& Path() const { return m_path; }
    std::string Text() const
    {
        std::ifstream file(m_path);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    std::string m_path =
        (std::filesystem::temp_directory_path() / ("tuvo-bench-" + std::to_string(std::random_device{}()))).string();
};

constexpr int RowCount = 100'000;

// Outputs are compared as files; timed is what it takes to make them, not the disk.
const std::string Nowhere = "/dev/null";

void WriteOurs(benchmark::State& state, void (*writeOther)(const Rows& rows, const std::string& path))
{
    const Rows rows = MakeRows(RowCount);
    const Table table(rows);
    const Output ours, other;
    if (table.Write(ours.Path()) != 0)
        state.SkipWithError("not written");
    writeOther(rows, other.Path());
    if (ours.Text() != other.Text())
        state.SkipWithError("not what the peer writes");
    for (auto _ : state)
        benchmark::DoNotOptimize(table.Write(Nowhere));
}

void WriteOther(benchmark::State& state, void (*writeOther)(const Rows& rows, const std::string& path))
{
    const Rows rows = MakeRows(RowCount);
    for (auto _ : state)
        writeOther(rows, Nowhere);
}

// ---- Growth --------------------------------------------------------------------------------------------------------

void GrowWriting(benchmark::State& state, int times)
{
    const Table table(MakeRows(10'000 * times));
    for (auto _ : state)
        benchmark::DoNotOptimize(table.Write(Nowhere));
}

void GrowFilling(benchmark::State& state, int times)
{
    const Rows rows = MakeRows(10'000 * times);
    for (auto _ : state)
        benchmark::DoNotOptimize(Table(rows));
}

// Every column of a table with three rows is appended, then set in each row.
void GrowColumns(benchmark::State& state, int times)
{
    std::list<std::string> names;
    for (int i = 0; i < 10 * times; ++i)
        names.push_back("column " + std::to_string(i));
    for (auto _ : state) {
        void* table = nullptr;
        UtlCreateBulletinTable(nullptr, &table);
        for (int row = 0; row < 3; ++row)
            UtlBulletinTableAddRow(table, nullptr);
        for (std::string& name : names)
            UtlBulletinTableAddColumn(table, nullptr, name.data(), 0);
        int result = 0;
        for (int row = 0; row < 3; ++row)
            for (std::string& name : names)
                result += UtlBulletinTableSetInfo(table, nullptr, name.data(), row, &row);
        if (result != 0)
            state.SkipWithError("a cell was not set");
        UtlDeleteBulletinTable(table, nullptr);
    }
}

void AddGrowth(const std::string& work, void (*growth)(benchmark::State& state, int times))
{
    for (const int times : {1, 10, 100})
        benchmark::RegisterBenchmark(("BulletinTable/" + work + '/' + std::to_string(times) + 'x').c_str(), growth,
                                     times);
}

[[maybe_unused]] const bool g_registered = [] {
    // How the process heap gives memory back to the system is not measured here.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    benchmark::RegisterBenchmark("BulletinTable/rows/ours", WriteOurs, WriteWithFmt);
    benchmark::RegisterBenchmark("BulletinTable/rows/fmt", WriteOther, WriteWithFmt);
    benchmark::RegisterBenchmark("BulletinTable/a cell a call/ours", WriteOurs, WriteWithPrintf);
    benchmark::RegisterBenchmark("BulletinTable/a cell a call/fprintf", WriteOther, WriteWithPrintf);
    AddGrowth("writing", GrowWriting);
    AddGrowth("filling", GrowFilling);
    AddGrowth("columns", GrowColumns);
    return true;
}();

}  // namespace
