#include "VUtlGen/BulletinTableWrite.h"

#include "VUtlGen/BulletinTableText.h"

#include <TuvoUtil/Messages.h>
#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuString.h>

#include <algorithm>
#include <cstdio>

namespace bulletin {

namespace {

class TrackedStream
{
public:
    TrackedStream(const char* path, const char* mode) : m_file(TuvoFOpen(path, mode, modules::VUtlGen, __LINE__)) {}
    ~TrackedStream()
    {
        if (m_file != nullptr)
            TuvoFClose(m_file, modules::VUtlGen, __LINE__);
    }
    TrackedStream(const TrackedStream&) = delete;
    TrackedStream& operator=(const TrackedStream&) = delete;

    std::FILE* Get() const { return m_file; }

private:
    std::FILE* m_file;
};

bool CanBeRead(const char* path)
{
    const TrackedStream stream(path, "r");
    return stream.Get() != nullptr;
}

void TellHost(const char* tableName, const char* file)
{
    if (tableName != nullptr)
        TuvoWriteConsoleLinkMessage(TUVO_MESSAGE_INFORMATION,
                                    BuLocalizeStringExW(L"Report table \"%s\" is written to <a>%s</a>", 0),
                                    BuString(tableName).GetText(), BuString(file).GetText());
    else
        TuvoWriteConsoleLinkMessage(TUVO_MESSAGE_INFORMATION,
                                    BuLocalizeStringExW(L"Report table is written to <a>%s</a>", 0),
                                    BuString(file).GetText());
}

void WriteRows(TextWriter& writer, const Table& table, const Selection& selection)
{
    const std::int32_t first = std::max(selection.startColumn, 0);
    const bool toLast = selection.endColumn < 0 || selection.endColumn >= table.columnCount;
    const std::int32_t last = toLast ? table.columnCount : selection.endColumn + 1;
    if (selection.row >= 0)
        return writer.WriteRow(table, selection.row, first, last);
    for (std::int32_t row = 0; row < table.rowCount; ++row)
        writer.WriteRow(table, row, first, last);
}

}  // namespace

Result Write(const Table& table, const char* file, const Selection& selection)
{
    if (file == nullptr)
        return FileNotWritten;
    const bool existed = CanBeRead(file);
    const TrackedStream stream(file, selection.appendMode == 1 ? "a" : "w");
    if (stream.Get() == nullptr)
        return FileNotWritten;
    TellHost(table.name, file);
    if (!IsTable(&table))
        return TableNotFound;  // the host has deleted it while it showed the message

    TextWriter writer(stream.Get(), selection.separator);
    if (selection.headerMode == 0 || (selection.headerMode == 1 && !existed))
        writer.WriteHeader(table);
    // Kept: found out here, when the file was emptied and has its header.
    const bool isRowMissing = selection.row >= table.rowCount;
    if (!isRowMissing)
        WriteRows(writer, table, selection);
    if (!writer.Finish())
        return FileNotWritten;
    return isRowMissing ? RowNotWritten : Success;
}

}  // namespace bulletin
