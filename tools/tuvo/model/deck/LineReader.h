// The lines of a text of any length, read block by block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace tool {

// Puts at most `room` bytes at `to` and gives their number, 0 at the end of the text. It may throw.
using ByteSource = std::function<std::size_t(char* to, std::size_t room)>;

class LineReader
{
public:
    static constexpr std::size_t LongestLine = std::size_t{1} << 20;  // bytes

    enum class Result : std::uint8_t
    {
        Line,
        TooLong,  // a line longer than the longest; it is passed over
        Binary,   // a line with a zero byte, which no text has; nothing follows
        End
    };

    explicit LineReader(ByteSource source);

    // The next line without its end (LF or CR LF) and without blanks in front of that. It ends with a NUL and holds
    // until the next call.
    Result Next(std::string_view& line);

    std::uint64_t LineNumber() const { return m_lineNumber; }  // of the line given last, from 1

private:
    bool Fill();
    char* FindEnd();
    Result SkipLong();
    std::string_view Take(char* end, char* next);

    ByteSource m_source;
    std::vector<char> m_buffer;
    char* m_next;  // what is not yet given is from here
    char* m_end;   // to here
    bool m_isComplete = false;
    bool m_isBinary = false;
    std::uint64_t m_lineNumber = 0;
};

}  // namespace tool
