#include "platform/windows/Native.h"

std::wstring platform::NativePath(const wchar_t* path)
{
    std::wstring native = path == nullptr ? L"" : path;
    if (native.starts_with(L"\\\\?\\") || native.starts_with(L"\\\\.\\"))
        return native;
    constexpr DWORD longest = MAX_PATH - 12;  // of a directory that is to hold files with short names
    if (GetFullPathNameW(native.c_str(), 0, nullptr, nullptr) <= longest)
        return native;
    const std::wstring whole = WholeText(
        [&](wchar_t* buffer, DWORD capacity) { return GetFullPathNameW(native.c_str(), capacity, buffer, nullptr); });
    return whole.starts_with(L"\\\\") ? L"\\\\?\\UNC" + whole.substr(1) : L"\\\\?\\" + whole;
}
