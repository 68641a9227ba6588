#include "tools/tuvo/model/ReportFile.h"

#include "tools/tuvo/Console.h"

#include <TuvoUtil/BulletinTable.h>

#include <new>
#include <string>

namespace tool {
namespace {

constexpr int TextColumn = 4;
constexpr int MemoryExhausted = -1;

class ReportTable
{
public:
    explicit ReportTable(const SummaryTable& summary)
    {
        Check(UtlCreateBulletinTable(nullptr, &m_handle));
        try {
            Fill(summary);
        } catch (...) {
            Delete();
            throw;
        }
    }
    ~ReportTable() { Delete(); }
    ReportTable(const ReportTable&) = delete;
    ReportTable& operator=(const ReportTable&) = delete;

    // Behind what the file holds.
    void Write(const OutputFile& file) const
    {
        std::string path = file.PartPath();
        const SilenceScope silence;  // the library would tell of each table, by the name of a part
        if (UtlBulletinTableWriteRowToFile(m_handle, nullptr, path.data(), -1, -1, -1, 0, 1, nullptr) != 0)
            file.Fail();
    }

private:
    static void Check(int result)
    {
        if (result == MemoryExhausted)
            throw std::bad_alloc();
    }
    void Delete() { UtlDeleteBulletinTable(m_handle, nullptr); }
    void Fill(const SummaryTable& summary)
    {
        for (const Table::Column& column : summary.table.Columns())
            m_names.push_back(column.title);
        for (std::string& name : m_names)
            Check(UtlBulletinTableAddColumn(m_handle, nullptr, name.data(), TextColumn));
        int number = 0;
        for (const auto& row : summary.table.Rows()) {
            Check(UtlBulletinTableAddRow(m_handle, nullptr));
            // Tabs and line ends would begin another cell, or row.
            for (std::size_t i = 0; i < row.size(); ++i)
                Check(UtlBulletinTableSetInfo(m_handle, nullptr, m_names[i].data(), number, Printable(row[i]).c_str()));
            ++number;
        }
    }

    void* m_handle = nullptr;
    std::vector<std::string> m_names;  // which the report table keeps as pointers
};

}  // namespace

void WriteReport(const std::vector<SummaryTable>& tables, OutputFile& file)
{
    std::string divide;
    for (const SummaryTable& summary : tables) {
        file.Append(divide + summary.title + '\n');
        ReportTable(summary).Write(file);
        for (const std::string& note : summary.notes)
            file.Append('\n' + note);
        divide = "\n\n";
    }
    file.Append("\n");
}

}  // namespace tool
