#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

namespace {

struct Pending
{
    std::wstring path;
    bool isListed = false;
};

bool Remove(const std::wstring& path, DWORD attributes)
{
    const bool isDirectory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return (isDirectory ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str())) != 0;
}

// The system keeps what is read-only, so that has to go first; it comes back, with the error, where that does not help.
bool RemoveReadOnly(const std::wstring& path, DWORD attributes)
{
    if (!SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}))
        return false;
    if (Remove(path, attributes))
        return true;
    const DWORD error = GetLastError();
    SetFileAttributesW(path.c_str(), attributes);
    SetLastError(error);
    return false;
}

// Removes a file, an empty directory or a link, of which the system removes nothing but the link.
bool RemoveOne(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        const bool isReadOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
        if (isReadOnly ? RemoveReadOnly(path, attributes) : Remove(path, attributes))
            return true;
    }
    return GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND;
}

// Puts what stands in the last directory behind it. False when it is no directory, or was listed before and is still not
// empty.
bool List(std::vector<Pending>& pending)
{
    if (pending.back().isListed)
        return false;
    pending.back().isListed = true;
    const std::wstring directory = pending.back().path;
    std::vector<std::wstring> names;
    if (!platform::ListDirectory(directory.c_str(), names))
        return false;
    const bool isEnded = directory.back() == L'\\' || directory.back() == L'/';
    for (const std::wstring& name : names)
        pending.push_back({directory + (isEnded ? L"" : L"\\") + name, false});
    return true;
}

}  // namespace

bool platform::RemoveTree(const wchar_t* directory, std::wstring& kept) noexcept
{
    return Guarded(false, [&] {
        kept = directory == nullptr ? L"" : directory;
        if (kept.empty()) {
            SetLastError(ERROR_PATH_NOT_FOUND);
            return false;
        }
        std::vector<Pending> pending = {{kept, false}};
        while (!pending.empty()) {
            if (RemoveOne(NativePath(pending.back().path.c_str()))) {
                pending.pop_back();
                continue;
            }
            const DWORD error = GetLastError();
            if (error != ERROR_DIR_NOT_EMPTY || !List(pending)) {
                kept = pending.back().path;
                SetLastError(error);
                return false;
            }
        }
        kept.clear();
        return true;
    });
}
