// Paths as texts: separators, and the absolute form. No file is asked.
#pragma once

#include <string>
#include <string_view>

constexpr bool IsSeparator(wchar_t c) noexcept
{
    return c == L'/' || c == L'\\';
}

// The position behind the last separator; 0 when there is none.
constexpr std::size_t FindLastName(std::wstring_view path) noexcept
{
    return path.find_last_of(L"/\\") + 1;
}

// The path of a name in a directory. An empty directory adds nothing.
inline std::wstring JoinPath(std::wstring_view directory, std::wstring_view name, wchar_t separator)
{
    std::wstring path(directory);
    if (!path.empty() && !IsSeparator(path.back()))
        path += separator;
    return path += name;
}

// Whether a path begins at a root or names a drive, so that it cannot be put behind a directory.
bool HasRoot(std::wstring_view path, wchar_t separator) noexcept;

// The absolute form of a path with every separator as `separator`, without "." and "..", which does not leave the root,
// and without a trailing separator except that of a root. The rules are those of the system that writes `separator`:
// with '\' a path may begin with a drive or with the server and share of a network, and "\a" and "C:a" take what they
// lack from the working directory. Empty for an empty path, and for one that starts from a working directory which is not
// known (empty).
std::wstring MakeAbsolute(std::wstring_view path, std::wstring_view workingDirectory, wchar_t separator);

// The path that leads from one absolute path to another: "." when they are the same, the path itself when the two have no
// root in common. Both are as MakeAbsolute gives them; MakeAbsolute of the result from `base` gives `path` again. With
// '\' the case of ASCII letters is one.
std::wstring MakeRelative(std::wstring_view path, std::wstring_view base, wchar_t separator);
