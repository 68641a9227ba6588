#include "VUtlMisc/DirectoryTree.h"

#include "basutl/DirectoryNames.h"

namespace {

using misc::EntryKind;

EntryKind KindOf(const std::wstring& path, const platform::FileStatus& status)
{
    if (status.kind != platform::FileKind::Directory)
        return EntryKind::File;
    return misc::IsLink(path) ? EntryKind::LinkToDirectory : EntryKind::Directory;
}

}  // namespace

bool misc::ReadEntries(const std::wstring& directory, std::vector<Entry>& entries)
{
    entries.clear();
    BuObjectArrayTempl<BuString> names;
    errno = 0;
    if (!ReadDirectoryNames(directory.c_str(), names, [](const std::wstring&) { return true; })) {
        if (errno == ENOMEM)
            throw std::bad_alloc();
        return false;
    }
    for (BuString& name : names) {
        const std::wstring path = JoinPath(directory, name.GetText(), platform::Separator());
        platform::FileStatus status;
        if (AskStatus(path, status))
            entries.push_back({std::move(name), KindOf(path, status)});
        else if (!IsLink(path) && errno == EACCES)
            return false;  // the directory gives names, but lets nobody ask for what they name
    }
    return true;
}
