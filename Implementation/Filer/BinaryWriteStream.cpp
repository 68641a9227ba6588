#include "Filer/BinaryWriteStream.h"

#include "platform/Platform.h"

#include <TuvoUtil/TrackedFile.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t DefaultBufferSize = std::size_t{64} << 10;
constexpr std::size_t LargestBuffer = std::size_t{16} << 20;

// The C library of Windows counts the bytes of a write in an int.
constexpr std::size_t LargestWrite = std::size_t{64} << 20;

constexpr const char* OpenModes[] = {"rb", "wb", "ab"};
constexpr unsigned int AppendMode = 2;

constinit int g_lastError = 0;

}  // namespace

int VxGetLastBinaryFileError()
{
    return g_lastError;
}

void VxInitBinaryFileError()
{
    g_lastError = 0;
}

IWriteStream* CreateBinaryFileWriter(const char* fileName, unsigned int mode, void (*diskFull)(),
                                     unsigned long long bufferSize)
{
    return new BinaryWriteStream(fileName, mode, diskFull, bufferSize);
}

// ---- Opening and closing -------------------------------------------------------------------------------------------

decltype(&std::fwrite) BinaryWriteStream::s_write = std::fwrite;

BinaryWriteStream::BinaryWriteStream(const char* fileName, unsigned int mode, void (*diskFull)(),
                                     unsigned long long bufferSize)
    : m_diskFull(diskFull), m_appends(mode == AppendMode)
{
    if (fileName == nullptr || mode >= std::size(OpenModes))
        return;
    const bool isWritten = mode != 0;
    const std::size_t capacity = isWritten ? MakeBuffer(bufferSize) : 0;
    std::string_view(fileName).copy(m_fileName, sizeof m_fileName - 1);  // Kept: a longer name is cut
    m_file = TuvoFOpen(m_fileName, OpenModes[mode], modules::Filer, __LINE__);
    if (m_file == nullptr || !isWritten)
        return;
    // Bytes are gathered here alone: the file's own buffer would hide whether they reach the disk.
    std::setvbuf(m_file, nullptr, _IONBF, 0);
    m_capacity = capacity;
    if (m_appends)
        platform::SeekFile(m_file, 0, SEEK_END);
}

std::size_t BinaryWriteStream::MakeBuffer(unsigned long long size)
{
    const std::size_t capacity = size == 0 ? DefaultBufferSize : std::min<unsigned long long>(size, LargestBuffer);
    m_buffer.Reset(static_cast<char*>(VBuMalloc(capacity, modules::Filer, __LINE__, 0)));
    return m_buffer ? capacity : 0;
}

BinaryWriteStream::~BinaryWriteStream()
{
    if (m_file == nullptr)
        return;
    Flush();
    if (TuvoFClose(m_file, modules::Filer, __LINE__) != 0)
        NoteFailure();
}

// ---- Texts ---------------------------------------------------------------------------------------------------------

int BinaryWriteStream::WriteText(const BuString& text)
{
    return WriteString(text.ToNarrow().c_str());
}

int BinaryWriteStream::WriteString(const char* text)
{
    if (text == nullptr)
        return WriteInt(0);
    const std::size_t size = std::strlen(text) + 1;
    WriteUnsignedInt(static_cast<unsigned int>(size));
    return WriteAt(text, size);
}

int BinaryWriteStream::WriteCountedString(const char* text)
{
    if (text == nullptr)
        return WriteInt(0);
    const std::size_t length = std::strlen(text);
    WriteUnsignedInt(static_cast<unsigned int>(length));
    return WriteAt(text, length);
}

// ---- The buffer and the file ---------------------------------------------------------------------------------------

int BinaryWriteStream::WriteThrough(const void* data, std::size_t size)
{
    Flush();
    if (size <= m_capacity - m_pending)
        return WriteAt(data, size);
    WriteToFile(static_cast<const char*>(data), size);
    return 0;
}

void BinaryWriteStream::Flush()
{
    WriteToFile(m_buffer.Get(), std::exchange(m_pending, 0));
}

// Writes all of it or gives up: part of a write is followed by another one, which finds out what is wrong.
void BinaryWriteStream::WriteToFile(const char* bytes, std::size_t size)
{
    while (m_file != nullptr && size != 0) {
        errno = 0;
        const std::size_t written = s_write(bytes, 1, std::min(size, LargestWrite), m_file);
        if (written == 0 && errno != EINTR)
            return NoteFailure();
        bytes += written;
        size -= written;
    }
}

void BinaryWriteStream::NoteFailure() const
{
    if (errno != ENOSPC || g_lastError != 0)
        return;
    g_lastError = ENOSPC;
    if (m_diskFull != nullptr)
        m_diskFull();
}

int BinaryWriteStream::Seek(long long offset, int origin)
{
    if (m_file == nullptr)
        return -1;
    Flush();
    return platform::SeekFile(m_file, offset, origin);
}

long long BinaryWriteStream::Tell()
{
    if (m_file == nullptr)
        return -1;
    if (m_appends)
        Flush();  // only then is it known where the end of the file is by now
    const long long written = platform::FilePosition(m_file);
    return written < 0 ? -1 : written + static_cast<long long>(m_pending);
}
