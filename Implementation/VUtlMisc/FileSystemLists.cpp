#include <TuvoUtil/FileSystem.h>

#include "TuvoMemory/ModuleNames.h"
#include "VUtlMisc/DirectoryTree.h"
#include "VUtlMisc/MiscText.h"
#include "basutl/DirectoryNames.h"
#include "basutl/NamePattern.h"
#include "platform/Guard.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>
#include <basutl/BuPath.h>

#include <climits>
#include <new>

namespace {

using misc::Entry;
using misc::EntryKind;
using Names = std::vector<std::wstring>;

// Gives new strings; their number, or -1 and a null list when memory is exhausted.
int NewList(const Names& names, char*** list)
{
    *list = nullptr;
    if (names.empty())
        return 0;
    if (names.size() > INT_MAX)
        return -1;
    int count = static_cast<int>(names.size());
    char** strings = static_cast<char**>(VBuCalloc(names.size(), sizeof(char*), modules::VUtlMisc, __LINE__));
    if (strings == nullptr)
        return -1;
    for (std::size_t i = 0; i < names.size(); ++i) {
        strings[i] = platform::Guarded<char*>(nullptr, [&] { return misc::NewNarrowText(names[i]); });
        if (strings[i] == nullptr) {
            UtlFreeStringList(count, strings);
            return -1;
        }
    }
    *list = strings;
    return count;
}

// Gives the names that `collect` stores as a list; -1 and a null list when it gives false or memory is exhausted.
template <typename Collect>
int ListOf(char*** list, Collect collect)
{
    if (list == nullptr)
        return -1;
    *list = nullptr;
    return platform::Guarded(-1, [&] {
        Names names;
        return collect(names) ? NewList(names, list) : -1;
    });
}

// Calls add(name) for the files whose names match; an empty pattern takes all.
template <typename Add>
void ForEachFile(const std::vector<Entry>& entries, const wchar_t* pattern, Add add)
{
    const wchar_t* const wanted = *pattern == L'\0' ? L"*" : pattern;
    for (const Entry& entry : entries)
        if (entry.kind == EntryKind::File && MatchesNamePattern(wanted, entry.name))
            add(entry.name.GetText());
}

char* NewPathOfFile(const std::wstring& path)
{
    return misc::IsFile(path) ? misc::NewNarrowText(path) : nullptr;
}

}  // namespace

int UtlGetFileNames(const char* directory, const char* pattern, char*** names)
{
    return ListOf(names, [&](Names& found) {
        const std::wstring wanted = misc::WideText(pattern);
        std::vector<Entry> entries;
        const bool isRead = misc::ReadEntries(misc::WideText(directory), entries);
        ForEachFile(entries, wanted.c_str(), [&](const wchar_t* name) { found.emplace_back(name); });
        return isRead;
    });
}

int UtlGetFileNamesRecursively(const char* directory, const char* pattern, char*** names)
{
    return ListOf(names, [&](Names& found) {
        const std::wstring wanted = misc::WideText(pattern);
        bool isRead = false;  // once the directory itself is
        misc::WalkTree(misc::WideText(directory), [&](const std::wstring& path, const std::vector<Entry>& entries) {
            isRead = true;
            ForEachFile(entries, wanted.c_str(), [&](const wchar_t* name) { found.push_back(path + name); });
        });
        return isRead;
    });
}

int UtlGetDirectoriesInDir(const char* directory, char*** names)
{
    return ListOf(names, [&](Names& found) {
        std::vector<Entry> entries;
        const bool isRead = misc::ReadEntries(misc::WideText(directory), entries);
        for (const Entry& entry : entries)
            if (entry.kind != EntryKind::File)
                found.emplace_back(entry.name.GetText());
        return isRead;
    });
}

char* UtlFindFile(const char* fileName, int directoryCount, char** directories)
{
    return platform::Guarded<char*>(nullptr, [=]() -> char* {
        const std::wstring name = misc::WideText(fileName);
        if (name.empty())
            return nullptr;
        if (BuPathHasRootW(name.c_str()))
            return NewPathOfFile(name);
        for (int i = 0; directories != nullptr && i < directoryCount; ++i) {
            const std::wstring directory = misc::WideText(directories[i]);
            const std::wstring path = JoinPath(directory, name, platform::Separator());
            if (!directory.empty() && misc::IsFile(path))
                return misc::NewNarrowText(path);
        }
        return nullptr;
    });
}

const BuErrObj* BuFindFiles(const BuString& directory, const BuString& pattern, bool withSubfolders,
                            BuObjectArrayTempl<BuString>& files)
{
    BuObjectArrayTempl<BuString> found;
    std::optional<misc::UnreadDirectory> unread;
    const bool isDone = platform::Guarded(false, [&] {
        const std::wstring top = directory.GetText();
        const auto addFiles = [&](const std::wstring& path, const std::vector<Entry>& entries) {
            ForEachFile(entries, pattern, [&](const wchar_t* name) {
                if (!AddName(found, JoinPath(top, path + name, platform::Separator())))
                    throw std::bad_alloc();
            });
        };
        std::vector<Entry> entries;
        if (withSubfolders)
            unread = misc::WalkTree(top, addFiles);
        else if (misc::ReadEntries(top, entries))
            addFiles(L"", entries);
        else
            unread = misc::UnreadDirectory{top, platform::LastNativeError()};
        return true;
    });
    if (!isDone) {
        // The directory may be one of the files that are removed.
        const BuErrObj* const error = BuSetNativeError(directory, platform::LastNativeError());
        files.RemoveAll();
        return error;
    }
    files.Swap(found);
    return unread ? BuSetNativeError(unread->path.c_str(), unread->error) : nullptr;
}
