#include "TuvoMemory/LeakFiles.h"

#include "TuvoMemory/ModuleNames.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>
#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuConversionAllocator.h>

#include <utility>

namespace {

std::string ReadAll(std::FILE* stream)
{
    std::string text;
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stream))
        text.append(buffer, count);
    return text;
}

}  // namespace

BuString leaks::UserFile(const wchar_t* name)
{
    BuString path(VEnvGetUserDirectory());
    path += name;
    return path;
}

std::optional<std::string> leaks::ReadUserFile(const wchar_t* name)
{
    BuConversionAllocator convert;
    const BuString path = UserFile(name);
    std::FILE* const stream = TuvoFOpen(convert.UnicodeToAnsi(path), "r", modules::TuvoMemory, __LINE__);
    if (stream == nullptr)
        return std::nullopt;
    auto text = platform::Guarded(std::optional<std::string>(), [&] { return std::optional(ReadAll(stream)); });
    TuvoFClose(stream, modules::TuvoMemory, __LINE__);
    return text;
}

void leaks::RemoveUnfinished(const char* path)
{
    BuConversionAllocator convert;
    const wchar_t* const file = convert.AnsiToUnicode(path);
    platform::FileStatus status;
    if (platform::Status(file, status) && status.kind == platform::FileKind::Regular)
        platform::RemoveOneFile(file);
}

leaks::OutputFile::OutputFile(const char* path, const char* mode)
    : m_stream(TuvoFOpen(path, mode, modules::TuvoMemory, __LINE__))
{}

void leaks::OutputFile::Write(const char* text)
{
    if (m_stream != nullptr && std::fputs(text, m_stream) == EOF)
        m_isComplete = false;
}

bool leaks::OutputFile::Close()
{
    if (std::FILE* const stream = std::exchange(m_stream, nullptr)) {
        // The result of closing a tracked file tells nothing.
        m_isComplete = std::fflush(stream) == 0 && m_isComplete;
        TuvoFClose(stream, modules::TuvoMemory, __LINE__);
    }
    return m_isComplete;
}
