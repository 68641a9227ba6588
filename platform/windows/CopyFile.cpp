#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

namespace {

// Removes a copy, which may have taken over the attributes of its source. The last error stays.
void Discard(const std::wstring& copy)
{
    const DWORD error = GetLastError();
    SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(copy.c_str());
    SetLastError(error);
}

// Copies to a new file of a name that nobody has, in the directory of a path. Gives its path; empty on failure, with
// nothing left behind.
std::wstring CopyBeside(const std::wstring& source, const std::wstring& path)
{
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/:") + 1);
    const std::wstring stem = folder + L"~copy" + std::to_wstring(GetCurrentProcessId()) + L'-';
    for (unsigned int number = 0; number < 1000; ++number) {
        std::wstring name = platform::NativePath((stem + std::to_wstring(number)).c_str());
        if (CopyFileW(source.c_str(), name.c_str(), TRUE))
            return name;
        if (GetLastError() != ERROR_FILE_EXISTS && GetLastError() != ERROR_ALREADY_EXISTS) {
            Discard(name);  // not every system takes back what it could not finish
            break;
        }
    }
    return {};
}

bool CopyAndReplace(const std::wstring& source, const std::wstring& target)
{
    const std::wstring copy = CopyBeside(source, target);
    if (copy.empty())
        return false;
    if (MoveFileExW(copy.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING))
        return true;
    Discard(copy);
    return false;
}

}  // namespace

bool platform::CopyOneFile(const wchar_t* source, const wchar_t* destination) noexcept
{
    return Guarded(false, [&] {
        FileStatus from;
        if (!Status(source, from))
            return false;
        FileStatus existing;
        const bool isReplaced = Status(destination, existing);
        if (isReplaced && existing.device == from.device && existing.file == from.file)
            return true;
        if (from.kind != FileKind::Regular || (isReplaced && existing.kind != FileKind::Regular)) {
            SetLastError(ERROR_NOT_SUPPORTED);
            return false;
        }
        return CopyAndReplace(NativePath(source), NativePath(destination));
    });
}
