#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cwchar>

namespace {

using platform::FileKind;
using platform::Handle;
using platform::NativePath;

// The C library knows no mode 'x'.
std::FILE* OpenNewFile(const std::wstring& path, std::wstring mode)
{
    const bool isText = mode.find(L'b') == std::wstring::npos;
    const int access = mode.find(L'+') == std::wstring::npos ? _O_WRONLY : _O_RDWR;
    const int append = mode[0] == L'a' ? _O_APPEND : 0;
    const int file = _wopen(path.c_str(), _O_CREAT | _O_EXCL | access | append | (isText ? _O_TEXT : _O_BINARY),
                            _S_IREAD | _S_IWRITE);
    if (file < 0)
        return nullptr;
    std::erase(mode, L'x');
    std::FILE* const stream = _wfdopen(file, mode.c_str());
    if (stream == nullptr)
        _close(file);
    return stream;
}

FileKind KindOf(HANDLE file, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return FileKind::Directory;
    return GetFileType(file) == FILE_TYPE_DISK ? FileKind::Regular : FileKind::Other;
}

Handle OpenToAsk(const std::wstring& path, DWORD flags)
{
    return Handle(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

bool HasAttributes(const std::wstring& path, DWORD wanted)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & wanted) == wanted;
}

// Not every reparse point is a link: the files and folders of a cloud drive are some as well. One that cannot be asked
// counts as a link, so that nobody looks for files behind it to remove.
bool IsLinkItself(const std::wstring& path)
{
    if (!HasAttributes(path, FILE_ATTRIBUTE_REPARSE_POINT))
        return false;
    const Handle file = OpenToAsk(path, FILE_FLAG_OPEN_REPARSE_POINT);
    FILE_ATTRIBUTE_TAG_INFO info{};
    if (!file.IsOpen() || !GetFileInformationByHandleEx(file.Get(), FileAttributeTagInfo, &info, sizeof info))
        return true;
    return IsReparseTagNameSurrogate(info.ReparseTag);
}

// The result of a call that removes something: what is gone already counts as removed.
bool IsGone(BOOL isRemoved, const std::wstring& path)
{
    if (isRemoved)
        return true;
    const DWORD error = GetLastError();
    return !path.empty() && (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND);
}

}  // namespace

std::FILE* platform::OpenFile(const wchar_t* path, const wchar_t* mode) noexcept
{
    return Guarded<std::FILE*>(nullptr, [&]() -> std::FILE* {
        const std::wstring flags = mode == nullptr ? L"" : mode;
        if (flags.find_first_of(L"rwa") != 0) {
            errno = EINVAL;
            return nullptr;
        }
        const bool isNew = flags[0] != L'r' && flags.find(L'x') != std::wstring::npos;
        return isNew ? OpenNewFile(NativePath(path), flags) : _wfopen(NativePath(path).c_str(), flags.c_str());
    });
}

int platform::SeekFile(std::FILE* file, std::int64_t offset, int origin) noexcept
{
    if (origin != SEEK_SET && origin != SEEK_CUR && origin != SEEK_END) {
        errno = EINVAL;
        return -1;
    }
    return _fseeki64(file, offset, origin);
}

std::int64_t platform::FilePosition(std::FILE* file) noexcept
{
    return _ftelli64(file);
}

void platform::SetBinary(std::FILE* file) noexcept
{
    _setmode(_fileno(file), _O_BINARY);
}

int platform::Access(const wchar_t* path, int mode) noexcept
{
    return Guarded(-1, [&] {
        if (mode != F_OK && mode != W_OK && mode != R_OK && mode != (R_OK | W_OK)) {
            errno = EINVAL;
            return -1;
        }
        return _waccess(NativePath(path).c_str(), mode);
    });
}

bool platform::Status(const wchar_t* path, FileStatus& status) noexcept
{
    return Guarded(false, [&] {
        const Handle file = OpenToAsk(NativePath(path), 0);
        BY_HANDLE_FILE_INFORMATION native{};
        if (!file.IsOpen() || !GetFileInformationByHandle(file.Get(), &native))
            return false;
        status.kind = KindOf(file.Get(), native.dwFileAttributes);
        status.size = std::uint64_t{native.nFileSizeHigh} << 32 | native.nFileSizeLow;
        status.device = native.dwVolumeSerialNumber;
        status.file = std::uint64_t{native.nFileIndexHigh} << 32 | native.nFileIndexLow;
        return true;
    });
}

bool platform::IsLink(const wchar_t* path) noexcept
{
    return Guarded(false, [&] { return IsLinkItself(NativePath(path)); });
}

bool platform::MoveOneFile(const wchar_t* source, const wchar_t* destination) noexcept
{
    return Guarded(false, [&] {
        const std::wstring from = NativePath(source);
        if (HasAttributes(from, FILE_ATTRIBUTE_DIRECTORY)) {
            SetLastError(ERROR_NOT_SUPPORTED);
            return false;
        }
        return MoveFileExW(from.c_str(), NativePath(destination).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    });
}

bool platform::RemoveOneFile(const wchar_t* path) noexcept
{
    return Guarded(false, [&] {
        const std::wstring native = NativePath(path);
        const bool isDirectoryLink = HasAttributes(native, FILE_ATTRIBUTE_DIRECTORY) && IsLinkItself(native);
        return IsGone(isDirectoryLink ? RemoveDirectoryW(native.c_str()) : DeleteFileW(native.c_str()), native);
    });
}

bool platform::RemoveEmptyDirectory(const wchar_t* directory) noexcept
{
    return Guarded(false, [&] {
        const std::wstring native = NativePath(directory);
        return IsGone(RemoveDirectoryW(native.c_str()), native);
    });
}
