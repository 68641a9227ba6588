#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace {

struct DirectoryCloser
{
    void operator()(DIR* directory) const { closedir(directory); }
};

// An open directory on the way down, and what is still to be removed from it.
struct Level
{
    std::unique_ptr<DIR, DirectoryCloser> directory;
    std::vector<std::string> names;
    bool isEmptied = false;  // the last name is a directory from which everything was removed

    int Number() const { return directory == nullptr ? AT_FDCWD : dirfd(directory.get()); }
};

// Reads the names of an open directory; false when reading stops before the end.
bool ReadNames(Level& level)
{
    for (;;) {
        errno = 0;
        const dirent* const entry = readdir(level.directory.get());
        if (entry == nullptr)
            return errno == 0;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            level.names.emplace_back(name);
    }
}

// Opens a directory for what stands in it, and only if it is one itself.
bool Enter(int parent, const std::string& name, Level& level)
{
    const int number = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (number < 0)
        return false;
    level.directory.reset(fdopendir(number));
    if (level.directory != nullptr)
        return ReadNames(level);
    close(number);
    return false;
}

// Removes a file or an empty directory. The system itself tells the two apart, and refuses a directory where another file
// system is mounted.
bool RemoveOne(int parent, const char* name)
{
    if (unlinkat(parent, name, 0) == 0 || errno == ENOENT)
        return true;
    return errno == EISDIR && (unlinkat(parent, name, AT_REMOVEDIR) == 0 || errno == ENOENT);
}

// Removes the last name of the innermost level, or enters it. False when neither can be done.
bool RemoveOrEnter(std::vector<Level>& levels)
{
    Level& level = levels.back();
    if (RemoveOne(level.Number(), level.names.back().c_str())) {
        level.names.pop_back();
        level.isEmptied = false;
        return true;
    }
    // A directory that fills again, as some network file systems let it, must not be emptied for ever.
    if ((errno != ENOTEMPTY && errno != EEXIST) || level.isEmptied)
        return false;
    level.isEmptied = true;
    Level inner;
    if (!Enter(level.Number(), level.names.back(), inner))
        return false;
    levels.push_back(std::move(inner));
    return true;
}

// The path of what is removed next, from the top as it was given.
std::wstring PathOf(const std::vector<Level>& levels, const wchar_t* top)
{
    std::wstring path = top;
    for (auto level = levels.begin() + 1; level != levels.end(); ++level)
        path += L'/' + platform::Widen(level->names.back());
    return path;
}

}  // namespace

bool platform::RemoveTree(const wchar_t* directory, std::wstring& kept) noexcept
{
    return Guarded(false, [&] {
        kept = directory == nullptr ? L"" : directory;
        if (kept.empty()) {
            errno = ENOENT;
            return false;
        }
        std::vector<Level> levels(1);
        levels[0].names.push_back(NativePath(directory));
        while (!levels.empty()) {
            if (levels.back().names.empty()) {
                levels.pop_back();  // the directory is empty now, and is the last name of the level above
                continue;
            }
            if (!RemoveOrEnter(levels)) {
                if (levels.size() == 1 && HasFoundNothing(levels[0].names[0]))
                    break;
                const int error = errno;
                kept = PathOf(levels, directory);
                errno = error;
                return false;
            }
        }
        kept.clear();
        return true;
    });
}
