// What stands in a directory, and in all below it.
#pragma once

#include "VUtlMisc/FileStatus.h"
#include "basutl/PathText.h"
#include "platform/Platform.h"

#include <basutl/BuString.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace misc {

enum class EntryKind : std::uint8_t
{
    File,
    Directory,
    LinkToDirectory
};

struct Entry
{
    BuString name;
    EntryKind kind;
};

// Fills `entries`, sorted by the code units of their names; what leads nowhere is left out. False, with the last native
// error, when the directory cannot be read or what stands in it may not be asked for. Throws std::bad_alloc.
bool ReadEntries(const std::wstring& directory, std::vector<Entry>& entries);

struct UnreadDirectory
{
    std::wstring path;
    int error;  // native
};

// Calls visit(path, entries) for a directory and all below it, each before its subdirectories, which come in the order of
// their names. `path` leads there from `top` and ends with a separator; it is empty for `top` itself. Links are not
// entered, so that a walk always ends. Gives the first directory that could not be read. Throws std::bad_alloc.
template <typename Visit>
std::optional<UnreadDirectory> WalkTree(const std::wstring& top, Visit visit)
{
    std::optional<UnreadDirectory> unread;
    std::vector<std::wstring> pending = {L""};  // the next one last
    std::vector<Entry> entries;
    while (!pending.empty()) {
        const std::wstring path = std::move(pending.back());
        pending.pop_back();
        const std::wstring directory = path.empty() ? top : JoinPath(top, path, platform::Separator());
        if (!ReadEntries(directory, entries)) {
            UnreadDirectory failed = {directory, platform::LastNativeError()};
            const bool isGone = !path.empty() && !IsDirectory(directory);
            if (!isGone && !unread)
                unread = std::move(failed);
            continue;
        }
        visit(path, entries);
        for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
            if (entry->kind == EntryKind::Directory)
                pending.push_back(path + entry->name.GetText() + platform::Separator());
    }
    return unread;
}

}  // namespace misc
