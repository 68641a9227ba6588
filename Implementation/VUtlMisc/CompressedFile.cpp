#include <TuvoUtil/CompressedFile.h>

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/TrackedPtr.h"
#include "VUtlMisc/CompressedName.h"
#include "VUtlMisc/FileStatus.h"
#include "VUtlMisc/MiscText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/StringBreak.h>
#include <TuvoUtil/TrackedFile.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

using misc::NewCopy;

bool Exists(const std::string& path)
{
    return misc::Exists(platform::Widen(path));
}

std::string CommonDirectory()
{
    return platform::Narrow(platform::CommonTemporaryDirectory());
}

bool IsPosix()
{
    return platform::Separator() == L'/';
}

// ---- The temporary directory ---------------------------------------------------------------------------------------

[[noreturn]] void EndProcess(const std::string& message)
{
    std::fputs(message.c_str(), stderr);
    std::exit(1);
}

// The first item of a list; nothing when memory is exhausted.
std::optional<std::string> FirstItem(std::string list)
{
    char** items = nullptr;
    if (UtlBreakStringIntoStringsDbg(list.data(), &items, ";", modules::VUtlMisc, __LINE__) <= 0)
        return std::nullopt;
    const TrackedPtr<char*> owner(modules::VUtlMisc, items);
    return items[0];
}

char* CommonDirectoryOrEnd()
{
    const std::string directory = CommonDirectory();
    if (!Exists(directory))
        EndProcess(" Directory " + directory + " not found.\n Please create " + directory +
                   " directory or set TEMP or TMP environment variable\n");
    return NewCopy(directory);
}

char* FirstDirectoryOrEnd(const std::wstring& list)
{
    const std::optional<std::string> directory = FirstItem(platform::Narrow(list));
    if (!directory)
        return nullptr;
    if (!Exists(*directory))
        EndProcess(
            " Directory " + *directory +
            " specified in TEMP / TMP varaible not found.\n Please set proper TEMP or TMP environment variable\n");
    return NewCopy(*directory);
}

// ---- Unpacking -----------------------------------------------------------------------------------------------------

struct Job
{
    const compressed::Unpacker* unpacker;
    std::string path;
    std::string copy;    // the file in the common directory, which the program replaces by
    std::string result;  // this one
};

std::string PathInCommonDirectory(std::string_view name)
{
    std::string path = CommonDirectory();
    path += IsPosix() ? '/' : '\\';
    return path += name;
}

bool AreSameFile(const std::string& left, const std::string& right)
{
    platform::FileStatus leftStatus;
    platform::FileStatus rightStatus;
    return misc::AskStatus(platform::Widen(left), leftStatus) && misc::AskStatus(platform::Widen(right), rightStatus) &&
           misc::AreSame(leftStatus, rightStatus);
}

// Removes an older file, or a link, from the common directory, unless that is the very file to be unpacked.
void RemoveStale(const Job& job, const std::string& stale)
{
    if (!AreSameFile(job.path, stale))
        platform::RemoveOneFile(platform::Widen(stale).c_str());
}

// Makes a copy under a name that nobody has, which is ours from then on.
bool CopyToNewFile(const std::wstring& source, const std::wstring& target)
{
    std::FILE* const claim = platform::OpenFile(target.c_str(), L"wbx");
    if (claim == nullptr)
        return false;
    if (std::fclose(claim) == 0 && platform::CopyOneFile(source.c_str(), target.c_str()))
        return true;
    platform::RemoveOneFile(target.c_str());
    return false;
}

void UnpackDirectly(const Job& job, bool isInPlace)
{
    const std::wstring copy = platform::Widen(job.copy);
    if (!isInPlace && !CopyToNewFile(platform::Widen(job.path), copy))
        return;
    platform::RunProgram({job.unpacker->program, isInPlace ? L"-dkf" : L"-df", copy});
    if (!isInPlace && job.copy != job.result)
        platform::RemoveOneFile(copy.c_str());  // what the program could not unpack
}

void UnpackThroughShell(const Job& job, bool isInPlace)
{
    if (!isInPlace)
        TuvoSystem(compressed::CopyCommand(job.path, job.copy).c_str(), modules::VUtlMisc, __LINE__);
    TuvoSystem(compressed::UnpackCommand(*job.unpacker, isInPlace ? "-dkf" : "-df", job.copy).c_str(),
               modules::VUtlMisc, __LINE__);
}

void MakeCommonDirectory()
{
    const std::string directory = CommonDirectory();
    if (Exists(directory))
        return;
    if (IsPosix())
        platform::CreateOneDirectory(platform::CommonTemporaryDirectory());
    else
        TuvoSystem(("mkdir " + directory).c_str(), modules::VUtlMisc, __LINE__);
}

void Unpack(const Job& job)
{
    const bool isInPlace = AreSameFile(job.path, job.copy);
    MakeCommonDirectory();
    RemoveStale(job, job.copy);
    RemoveStale(job, job.result);
    if (IsPosix())
        UnpackDirectly(job, isInPlace);
    else
        UnpackThroughShell(job, isInPlace);
}

}  // namespace

int UtlGetTmpDir(char** directory)
{
    if (directory == nullptr)
        return 0;
    *directory = platform::Guarded<char*>(nullptr, [] {
        std::optional<std::wstring> list = platform::EnvironmentValue(L"TEMP");
        if (!list)
            list = platform::EnvironmentValue(L"TMP");
        return list ? FirstDirectoryOrEnd(*list) : CommonDirectoryOrEnd();
    });
    return *directory != nullptr ? 1 : 0;
}

char* UtlCheckFileIsCompressed(const char* path)
{
    if (path == nullptr)
        return nullptr;
    return platform::Guarded<char*>(nullptr, [=]() -> char* {
        const std::string given = path;
        if (Exists(given))
            return compressed::IsCompressedName(given) ? NewCopy(given) : nullptr;
        // Kept: the last two are appended without a point.
        for (const char* const suffix : {".gz", ".bz2", "Z", "zip"})
            if (Exists(given + suffix))
                return NewCopy(given + suffix);
        return nullptr;
    });
}

char* UtlGetUnzippedFileName(const char* path)
{
    const compressed::Unpacker* const unpacker = path == nullptr ? nullptr : compressed::FindUnpacker(path);
    if (unpacker == nullptr || (!IsPosix() && !compressed::IsHarmlessInCommand(path)))
        return nullptr;
    const std::string_view name = compressed::BaseName(path, IsPosix() ? '/' : '\\');
    if (!compressed::IsFileName(name))
        return nullptr;
    return platform::Guarded<char*>(nullptr, [=] {
        const Job job = {unpacker, path, PathInCommonDirectory(name),
                         PathInCommonDirectory(compressed::UnpackedName(name))};
        TrackedPtr<char> result(modules::VUtlMisc, NewCopy(job.result));
        if (result)
            Unpack(job);
        return result.Release();
    });
}
