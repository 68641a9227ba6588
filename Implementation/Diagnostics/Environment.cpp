#include <TuvoUtil/Environment.h>

#include "basutl/DirectoryNames.h"
#include "basutl/PathText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>
#include <basutl/BuFileUtl.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuPath.h>
#include <basutl/BuVariable.h>

#include <cerrno>
#include <cstdint>
#include <cwchar>
#include <new>

namespace {

// The path of a name inside a directory; empty when memory is exhausted.
BuString PathInside(const wchar_t* directory, const wchar_t* name)
{
    const std::size_t length = std::wcslen(directory);
    const bool isComplete = length == 0 || IsSeparator(directory[length - 1]);
    const wchar_t separator[] = {isComplete ? L'\0' : platform::Separator(), L'\0'};
    BuString path;
    path.Format(L"%s%s%s", directory, separator, name);
    return path;
}

bool IsFile(const wchar_t* path)
{
    platform::FileStatus status;
    return platform::Status(path, status) && status.kind != platform::FileKind::Directory;
}

bool IsFolder(const wchar_t* path)
{
    platform::FileStatus status;
    return platform::Status(path, status) && status.kind == platform::FileKind::Directory;
}

bool IsMadeWritable(const BuFileUtl& folder)
{
    return folder.CreateDir() && folder.DirectoryHasWritePermission();
}

bool Refuse(const wchar_t* message)
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"%s", BuLocalizeStringExW(message, 0));
    return false;
}

// ---- Single files --------------------------------------------------------------------------------------------------

// Removes a file that was copied. Two names of one file are both kept, as rename does: nothing was copied then, and
// removing could be the end of the only one.
bool RemoveOriginal(const wchar_t* source, const wchar_t* copy)
{
    platform::FileStatus original;
    platform::FileStatus copied;
    if (!platform::Status(source, original) || !platform::Status(copy, copied))
        return false;
    const bool isOneFile = original.device == copied.device && original.file == copied.file;
    return isOneFile || BuFileUtl::RemoveAFile(source);
}

bool CopyOneFile(const wchar_t* source, const wchar_t* destination, _TuvoMoveOrCopyMode mode)
{
    return platform::CopyOneFile(source, destination) &&
           (mode != TUVO_MOVE_FILES || RemoveOriginal(source, destination));
}

bool CopyToNewPlace(const wchar_t* source, const wchar_t* destination, _TuvoMoveOrCopyMode mode)
{
    const BuString folder = BuFileUtl(destination).GetPath();
    return IsMadeWritable(BuFileUtl(folder.IsEmpty() ? L"." : folder.GetText())) &&
           CopyOneFile(source, destination, mode);
}

// ---- Folders -------------------------------------------------------------------------------------------------------

// Kept: files that cannot be copied are left out without a word. They are not removed either.
bool CopyFilesOfFolder(const wchar_t* source, const wchar_t* destination, _TuvoMoveOrCopyMode mode)
{
    BuObjectArrayTempl<BuString> names;
    if (!ReadDirectoryNames(source, names, [](const std::wstring&) { return true; }))
        return false;
    for (const BuString& name : names) {
        const BuString file = PathInside(source, name);
        if (IsFile(file))
            CopyOneFile(file, PathInside(destination, name), mode);
    }
    if (mode == TUVO_MOVE_FILES)
        BuFileUtl::RemoveADirectory(source);  // which it is not while anything is left in it
    return true;
}

// Whether a folder that need not exist lies inside another one; true as well when that cannot be found out.
bool LiesInside(const wchar_t* folder, const wchar_t* outerFolder)
{
    return platform::Guarded(true, [=] {
        BuString existing(folder);
        if (existing.IsEmpty())
            return true;
        while (!IsFolder(existing) && BuPathRemoveFileSpecW(existing)) {
        }
        const std::wstring inner = platform::CanonicalPath(existing.IsEmpty() ? L"." : existing.GetText());
        const std::wstring outer = platform::CanonicalPath(outerFolder);
        if (inner.empty() || outer.empty())
            return true;
        return inner.starts_with(outer) &&
               (inner.size() == outer.size() || IsSeparator(outer.back()) || IsSeparator(inner[outer.size()]));
    });
}

bool CopyFolder(const wchar_t* source, const wchar_t* destination, bool failIfExists, bool withSubfolders,
                _TuvoMoveOrCopyMode mode)
{
    BuObjectArrayTempl<BuString> subfolders;
    if (withSubfolders && (LiesInside(destination, source) || BuFileUtl(source).GetSubDirectories(subfolders) < 0))
        return false;
    if (!IsMadeWritable(BuFileUtl(destination)))
        return false;
    bool isCopied = true;
    for (const BuString& name : subfolders) {
        const BuString from = PathInside(source, name);
        const BuString to = PathInside(destination, name);
        if (failIfExists && IsFile(to))
            return false;
        isCopied = !from.IsEmpty() && VEnvCopyFileOrFolder(from, to, failIfExists, true, mode) && isCopied;
    }
    return CopyFilesOfFolder(source, destination, mode) && isCopied;
}

// ---- Before anything is copied -------------------------------------------------------------------------------------

enum class Situation
{
    Unknown,
    NoSource,
    Taken,
    SamePath,
    File,
    Folder
};

// An answer that is wrong because memory is exhausted could cost a file: it is thrown out.
bool Certain(bool answer)
{
    if (!answer && errno == ENOMEM)
        throw std::bad_alloc();
    errno = 0;
    return answer;
}

Situation Examine(const wchar_t* source, const wchar_t* destination, bool failIfExists)
{
    return platform::Guarded(Situation::Unknown, [=] {
        errno = 0;
        const bool isFolder = Certain(BuFileUtl::IsDirectoryName(source));
        if (!Certain(isFolder ? IsFolder(source) : IsFile(source)))
            return Situation::NoSource;
        if (failIfExists && Certain(IsFile(destination)))
            return Situation::Taken;
        if (Certain(BuFileUtl::AreSamePath(source, destination)))
            return Situation::SamePath;
        return isFolder ? Situation::Folder : Situation::File;
    });
}

}  // namespace

unsigned int VEnvGetTempFileName(const wchar_t* directory, const wchar_t* prefix, unsigned int unique,
                                 BuString& fileName)
{
    if (directory == nullptr)
        directory = BuVariableGetValue("QD_TEMP_PATH");
    if (directory == nullptr)
        return 0;
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    if (unique == 0)
        unique = static_cast<unsigned int>(platform::SteadyNanoseconds() / nanosecondsPerSecond);
    unique &= 0xFFFF;
    BuString name;
    name.Format(L"%s%x.tmp", prefix, unique);
    fileName = name.IsEmpty() ? BuString() : BuFileUtl::GetFreeFileName(PathInside(directory, name), false);
    return fileName.IsEmpty() ? 0 : unique;  // Kept: callers get the number itself, for 0x10000 a 0 with a name
}

bool VEnvCopyFileOrFolder(const wchar_t* source, const wchar_t* destination, bool failIfExists, bool withSubfolders,
                          _TuvoMoveOrCopyMode mode)
{
    if (source == nullptr || destination == nullptr)
        return false;
    switch (Examine(source, destination, failIfExists)) {
        case Situation::NoSource:
            return Refuse(L"Please Enter a valid source file path.!");
        case Situation::Taken:
            return Refuse(L"File exists with the same name, re-enter the destination file name");
        case Situation::SamePath:
            return true;
        case Situation::File:
            return CopyToNewPlace(source, destination, mode);
        case Situation::Folder:
            return CopyFolder(source, destination, failIfExists, withSubfolders, mode);
        case Situation::Unknown:
            break;
    }
    return false;
}

int VEnvGetCurrentProcessID()
{
    return static_cast<int>(platform::ProcessId());
}
