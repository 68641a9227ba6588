#include "basutl/PathText.h"

#include <basutl/BuCharacter.h>

#include <algorithm>

namespace {

constexpr std::wstring_view Separators = L"/\\";

bool HasDrive(std::wstring_view path)
{
    return path.size() >= 2 && BuIsLetter(path[0]) && path[1] == L':';
}

// The length of "\\server\share" with the separator behind it, if any.
std::size_t NetworkRootLength(std::wstring_view path)
{
    const std::size_t share = path.find_first_of(Separators, 2);
    if (share == path.npos)
        return path.size();
    const std::size_t end = path.find_first_of(Separators, share + 1);
    return end == path.npos ? path.size() : end + 1;
}

// The length of the root of a path, which ".." does not leave: "/"; "C:\", "C:", "\\server\share\", "\".
std::size_t RootLength(std::wstring_view path, bool hasDrives)
{
    const bool isRooted = !path.empty() && IsSeparator(path[0]);
    if (hasDrives && HasDrive(path))
        return path.size() > 2 && IsSeparator(path[2]) ? 3 : 2;
    if (hasDrives && isRooted && path.size() > 1 && IsSeparator(path[1]))
        return NetworkRootLength(path);
    return isRooted ? 1 : 0;
}

// The directory that a path which lacks its root, or the drive of it, starts from.
std::wstring_view StartOf(std::wstring_view path, std::wstring_view workingDirectory)
{
    if (HasDrive(path) && BuToLower(path[0]) != BuToLower(workingDirectory[0]))
        return path.substr(0, 2);
    const bool isRooted = IsSeparator(path[0]);
    return isRooted ? workingDirectory.substr(0, RootLength(workingDirectory, true)) : workingDirectory;
}

// The path with its root, "." and ".." still in it. Empty when the path is, or when it lacks a working directory.
std::wstring Complete(std::wstring_view path, std::wstring_view workingDirectory, wchar_t separator)
{
    const bool hasDrives = separator == L'\\';
    const std::size_t root = RootLength(path, hasDrives);
    const bool isComplete = hasDrives ? root > 2 : root > 0;
    if (isComplete)
        return std::wstring(path);
    if (path.empty() || workingDirectory.empty())
        return {};
    const std::wstring_view start = hasDrives ? StartOf(path, workingDirectory) : workingDirectory;
    std::wstring complete(start);
    complete += separator;
    return complete += path.substr(root);
}

// Goes on from a directory along one name, not beyond its root.
void Enter(std::wstring& directory, std::size_t root, std::wstring_view name, wchar_t separator)
{
    if (name.empty() || name == L".")
        return;
    if (name == L"..") {
        const std::size_t parentEnd = directory.find_last_of(separator);
        directory.resize(parentEnd == directory.npos || parentEnd < root ? root : parentEnd);
        return;
    }
    if (directory.size() > root)
        directory += separator;
    directory += name;
}

// The length of the whole names that two paths, each with a separator at its end, begin with alike.
std::size_t CommonLength(std::wstring_view left, std::wstring_view right, wchar_t separator)
{
    const bool hasCase = separator != L'\\';
    std::size_t common = 0;
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
        if (hasCase ? left[i] != right[i] : BuToLower(left[i]) != BuToLower(right[i]))
            break;
        if (left[i] == separator)
            common = i + 1;
    }
    return common;
}

}  // namespace

bool HasRoot(std::wstring_view path, wchar_t separator) noexcept
{
    return RootLength(path, separator == L'\\') > 0;
}

std::wstring MakeRelative(std::wstring_view path, std::wstring_view base, wchar_t separator)
{
    const std::wstring to = JoinPath(path, L"", separator);
    const std::wstring from = JoinPath(base, L"", separator);
    const std::size_t common = CommonLength(to, from, separator);
    if (common < RootLength(to, separator == L'\\'))
        return std::wstring(path);
    std::wstring relative;
    for (auto up = std::count(from.begin() + static_cast<std::ptrdiff_t>(common), from.end(), separator); up > 0; --up)
        (relative += L"..") += separator;
    relative += to.substr(common);
    if (relative.empty())
        return L".";
    relative.pop_back();
    return relative;
}

std::wstring MakeAbsolute(std::wstring_view path, std::wstring_view workingDirectory, wchar_t separator)
{
    const std::wstring complete = Complete(path, workingDirectory, separator);
    std::wstring absolute = complete.substr(0, RootLength(complete, separator == L'\\'));
    std::replace_if(absolute.begin(), absolute.end(), IsSeparator, separator);
    std::size_t at = absolute.size();
    if (at > 1 && absolute.back() != separator)
        absolute += separator;
    const std::size_t root = absolute.size();
    while (at < complete.size()) {
        const std::size_t end = std::min(complete.find_first_of(Separators, at), complete.size());
        Enter(absolute, root, std::wstring_view(complete).substr(at, end - at), separator);
        at = end + 1;
    }
    return absolute;
}
