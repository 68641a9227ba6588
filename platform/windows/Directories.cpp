#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

namespace {

using platform::NativePath;

class Search
{
public:
    explicit Search(const std::wstring& pattern)
        : m_handle(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &m_entry, FindExSearchNameMatch, nullptr, 0))
    {}
    ~Search()
    {
        if (IsOpen())
            FindClose(m_handle);
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    std::wstring_view Name() const { return m_entry.cFileName; }
    bool Next() { return FindNextFileW(m_handle, &m_entry) != 0; }

private:
    WIN32_FIND_DATAW m_entry{};
    HANDLE m_handle;
};

// Appends the names; false when reading stops before the end.
bool ReadNames(const std::wstring& folder, std::vector<std::wstring>& names)
{
    Search search(folder + L'*');
    if (!search.IsOpen())
        return GetLastError() == ERROR_FILE_NOT_FOUND;  // an empty root directory: it has not even "."
    do {
        if (search.Name() != L"." && search.Name() != L"..")
            names.emplace_back(search.Name());
    } while (search.Next());
    return GetLastError() == ERROR_NO_MORE_FILES;
}

bool IsDirectory(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Takes away the prefix "\\?\" that the system puts before a final path.
std::wstring WithoutPrefix(std::wstring path)
{
    if (path.starts_with(L"\\\\?\\UNC\\"))
        return path.replace(0, 7, L"\\");
    if (path.starts_with(L"\\\\?\\"))
        path.erase(0, 4);
    return path;
}

}  // namespace

bool platform::ListDirectory(const wchar_t* directory, std::vector<std::wstring>& names) noexcept
{
    names.clear();
    const bool isListed = Guarded(false, [&] {
        std::wstring folder = NativePath(directory);
        SetLastError(ERROR_DIRECTORY);  // unless the question itself fails
        if (!IsDirectory(folder))
            return false;
        if (folder.back() != L'\\' && folder.back() != L'/')
            folder += L'\\';
        return ReadNames(folder, names);
    });
    if (!isListed)
        names.clear();
    return isListed;
}

bool platform::CreateOneDirectory(const wchar_t* directory) noexcept
{
    return Guarded(false, [&] {
        const std::wstring native = NativePath(directory);
        return CreateDirectoryW(native.c_str(), nullptr) != 0 ||
               (GetLastError() == ERROR_ALREADY_EXISTS && IsDirectory(native));
    });
}

std::wstring platform::CanonicalPath(const wchar_t* path)
{
    const std::wstring native = NativePath(path);
    const Handle file(CreateFileW(native.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file.IsOpen())
        return {};
    std::wstring whole = WholeText([&](wchar_t* buffer, DWORD capacity) {
        return GetFinalPathNameByHandleW(file.Get(), buffer, capacity, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
    });
    if (whole.empty())  // some file systems do not know the final path of a file; Wine does not know long ones
        whole = WholeText([&](wchar_t* buffer, DWORD capacity) {
            return GetFullPathNameW(native.c_str(), capacity, buffer, nullptr);
        });
    return WithoutPrefix(std::move(whole));
}

std::wstring platform::WorkingDirectory()
{
    return WholeText([](wchar_t* buffer, DWORD capacity) { return GetCurrentDirectoryW(capacity, buffer); });
}

std::wstring platform::TemporaryDirectory()
{
    return WholeText([](wchar_t* buffer, DWORD capacity) { return GetTempPathW(capacity, buffer); });
}

const wchar_t* platform::CommonTemporaryDirectory() noexcept
{
    return L"C:\\Temp";
}

wchar_t platform::Separator() noexcept
{
    return L'\\';
}
