#include <TuvoUtil/FileSystem.h>

#include "VUtlMisc/DirectoryTree.h"
#include "VUtlMisc/FileStatus.h"
#include "platform/Guard.h"

#include <basutl/BuFileUtl.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuPath.h>

namespace {

// ---- Errors --------------------------------------------------------------------------------------------------------

const BuErrObj* LastNativeError(const wchar_t* path)
{
    return BuSetNativeError(path, platform::LastNativeError());
}

const BuErrObj* Refuse(const wchar_t* format, const wchar_t* path)
{
    BuString message;
    message.Format(BuLocalizeStringExW(format, 0), path);
    return BuSetError(message);
}

// Runs work that may throw std::bad_alloc, which becomes an error for a path.
template <typename Work>
const BuErrObj* RunFor(const wchar_t* path, Work work) noexcept
{
    const BuErrObj* error = nullptr;
    const bool isDone = platform::Guarded(false, [&] {
        error = work();
        return true;
    });
    return isDone ? error : LastNativeError(path);
}

// ---- Removal -------------------------------------------------------------------------------------------------------

// Whether a path is nothing but a root, or a drive.
bool IsRootText(const BuString& path)
{
    BuString parent = path;
    return !BuPathRemoveFileSpecW(parent);
}

// A root is its own parent.
bool IsRoot(const std::wstring& directory, const platform::FileStatus& status)
{
    platform::FileStatus parent;
    return misc::AskStatus(JoinPath(directory, L"..", platform::Separator()), parent) && misc::AreSame(status, parent);
}

const BuErrObj* RemoveTree(const std::wstring& directory)
{
    std::wstring kept;
    return platform::RemoveTree(directory.c_str(), kept) ? nullptr : LastNativeError(kept.c_str());
}

// Removes what a path without a separator at its end names, after a look at it.
const BuErrObj* Remove(const std::wstring& path)
{
    platform::FileStatus status;
    const bool isThere = misc::AskStatus(path, status);
    if (isThere && status.kind != platform::FileKind::Directory)
        return Refuse(L"%s: this is not a directory", path.c_str());
    if (misc::IsLink(path))
        return platform::RemoveOneFile(path.c_str()) ? nullptr : LastNativeError(path.c_str());
    if (!isThere)
        return RemoveTree(path);  // nothing stands there, or there is an error to be told
    if (IsRoot(path, status))
        return Refuse(L"%s: a root directory is not removed", path.c_str());
    return RemoveTree(path);
}

// ---- Structure -----------------------------------------------------------------------------------------------------

const BuErrObj* CreateDirectories(const BuString& destination, const std::vector<std::wstring>& paths)
{
    // The second attempt tells the reason.
    if (!BuFileUtl(destination).CreateDir() && !platform::CreateOneDirectory(destination))
        return LastNativeError(destination);
    for (const std::wstring& path : paths) {
        const std::wstring directory = JoinPath(destination.GetText(), path, platform::Separator());
        if (!platform::CreateOneDirectory(directory.c_str()))
            return LastNativeError(directory.c_str());
    }
    return nullptr;
}

}  // namespace

const BuErrObj* BuRemoveDirectory(const BuString& directory)
{
    return RunFor(directory, [&]() -> const BuErrObj* {
        if (directory.IsEmpty() || IsRootText(directory))
            return Refuse(L"%s: a root directory is not removed", directory);
        std::wstring path = directory.GetText();
        while (IsSeparator(path.back()))
            path.pop_back();
        const std::wstring_view name = std::wstring_view(path).substr(FindLastName(path));
        if (name == L"." || name == L"..")
            return Refuse(L"%s: a directory is removed by its own name, not by \".\" or \"..\"", directory);
        return Remove(path);
    });
}

const BuErrObj* BuStringFileNameCopyDirectoryStructureIn(const BuString& source, const BuString& destination)
{
    return RunFor(source, [&]() -> const BuErrObj* {
        std::vector<std::wstring> paths;
        bool isRead = false;
        const auto unread = misc::WalkTree(source.GetText(), [&](const std::wstring& path, const auto& entries) {
            isRead = true;
            for (const misc::Entry& entry : entries)
                if (entry.kind == misc::EntryKind::Directory)
                    paths.push_back(path + entry.name.GetText());
        });
        const BuErrObj* const error = isRead ? CreateDirectories(destination, paths) : nullptr;
        if (error != nullptr || !unread)
            return error;
        return BuSetNativeError(unread->path.c_str(), unread->error);
    });
}
