#include <TuvoUtil/FileSystem.h>

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/TrackedPtr.h"
#include "VUtlMisc/FileStatus.h"
#include "VUtlMisc/MiscText.h"
#include "platform/Guard.h"

#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuFileUtl.h>

namespace {

enum CopyResult : int
{
    NoSource = -1,
    Copied = 0,
    NotCopied = 1
};

CopyResult Copy(const std::wstring& source, const std::wstring& target)
{
    if (platform::CopyOneFile(source.c_str(), target.c_str()))
        return Copied;
    return misc::IsFile(source) ? NotCopied : NoSource;
}

// Gives the backup its content and its name to the caller.
CopyResult Fill(const BuString& backup, const std::wstring& path, char** backupName)
{
    TrackedPtr<char> name(modules::VUtlMisc, misc::NewNarrowText(backup.GetText()));
    const CopyResult result = name ? Copy(path, backup.GetText()) : NotCopied;
    if (result == Copied && backupName != nullptr)
        *backupName = name.Release();
    return result;
}

CopyResult Backup(const std::wstring& path, char** backupName)
{
    if (!misc::IsFile(path))
        return NoSource;
    const BuString backup = BuFileUtl::GetFreeFileName(path.c_str(), true);  // an empty file now
    if (backup.IsEmpty())
        return misc::IsFile(path) ? NotCopied : NoSource;
    const bool hasVanished = backup == path.c_str();  // so that its own name was free
    const CopyResult result =
        hasVanished ? NoSource : platform::Guarded(NotCopied, [&] { return Fill(backup, path, backupName); });
    if (result != Copied)
        platform::RemoveOneFile(backup);
    return result;
}

}  // namespace

int UtlCopyFile(const char* source, const char* target)
{
    return platform::Guarded(NotCopied, [=] { return Copy(misc::WideText(source), misc::WideText(target)); });
}

int UtlBackupFile(const char* path, char** backupName)
{
    if (backupName != nullptr)
        *backupName = nullptr;
    return platform::Guarded(NotCopied, [=] { return Backup(misc::WideText(path), backupName); });
}

int UtlExecuteCommand(const char* command)
{
    if (command == nullptr || *command == '\0')
        return -1;
    return TuvoSystem(command, modules::VUtlMisc, __LINE__);
}
