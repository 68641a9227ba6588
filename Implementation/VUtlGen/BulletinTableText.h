// The text of report tables: a buffer in front of the file, and cells, rows and headers as they are written.
#pragma once

#include "VUtlGen/BulletinTableRecord.h"

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace bulletin {

class TextWriter
{
public:
    // Writes to `file`, which is not owned; a write that fails is the last.
    TextWriter(std::FILE* file, char separator) noexcept : m_file(file), m_separator(separator) {}
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    void WriteHeader(const Table& table);

    // The columns from `first` on, before `last`.
    void WriteRow(const Table& table, std::int32_t row, std::int32_t first, std::int32_t last);

    // Sends what is in the buffer to the file and on to the system. True when everything has arrived.
    bool Finish();

private:
    void WriteCell(std::int32_t type, const void* cell);
    void WriteEmptyCell(std::int32_t type);
    void Add(std::string_view text);
    void AddSeparator();
    char* Room(std::size_t size);
    void SetEnd(const char* end) { m_used = static_cast<std::size_t>(end - m_buffer); }
    void WriteOut(std::string_view text);

    static constexpr std::size_t Capacity = 16'384;

    std::FILE* m_file;
    std::size_t m_used = 0;
    char m_separator;
    bool m_failed = false;
    char m_buffer[Capacity];
};

}  // namespace bulletin
