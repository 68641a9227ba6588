// The checker's files: opened and closed like all files of the library, so that the file tracker sees them.
#pragma once

#include <basutl/BuString.h>

#include <cstdio>
#include <optional>
#include <string>

namespace leaks {

inline constexpr wchar_t DataFileName[] = L"QD_LeakInfoTmpData.log";
inline constexpr wchar_t SuppressionFileName[] = L"QDLeak_SuppressionInfo.dat";

// The path of a file in the user directory.
BuString UserFile(const wchar_t* name);

// The bytes of a text file in the user directory, as far as they can be read; nothing when it cannot be opened, and
// when memory is exhausted.
std::optional<std::string> ReadUserFile(const wchar_t* name);

// Removes a file that could not be written completely; what is no regular file stays.
void RemoveUnfinished(const char* path);

// A file that is written. What cannot be written completely is told by Close.
class OutputFile
{
public:
    // A null path opens nothing.
    OutputFile(const char* path, const char* mode);
    ~OutputFile() { Close(); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool IsOpen() const noexcept { return m_stream != nullptr; }
    void Write(const char* text);

    // False when anything was not written.
    bool Close();

private:
    std::FILE* m_stream;
    bool m_isComplete = true;
};

}  // namespace leaks
