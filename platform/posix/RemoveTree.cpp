#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace {

struct DirectoryCloser
{
    void operator()(DIR* directory) const { closedir(directory); }
};

// A directory on the way down, and what is still to be removed from it. The outermost level is none: it holds the path.
struct Level
{
    std::unique_ptr<DIR, DirectoryCloser> directory;  // null while it is closed
    struct stat status = {};
    std::vector<std::string> names;
    bool isEmptied = false;  // the last name is a directory from which everything was removed
};

// Of the levels so many stay open, so that a process does not run out of descriptors.
constexpr std::size_t MostOpen = 32;

int NumberOf(const Level& level)
{
    return dirfd(level.directory.get());
}

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

// Opens a directory, but not through a link.
bool Open(int parent, const char* name, Level& level)
{
    const int number = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (number < 0)
        return false;
    level.directory.reset(fdopendir(number));
    if (level.directory != nullptr)
        return true;
    close(number);
    return false;
}

// Opens a directory for what stands in it.
bool Enter(int parent, const std::string& name, Level& level)
{
    return Open(parent, name.c_str(), level) && fstat(NumberOf(level), &level.status) == 0 && ReadNames(level);
}

// Goes back from the innermost level. False when the directory above it was closed and it now stands in another one.
bool Leave(std::vector<Level>& levels)
{
    if (levels.size() > 2 && levels[levels.size() - 2].directory == nullptr) {
        Level& outer = levels[levels.size() - 2];
        struct stat status
        {};
        if (!Open(NumberOf(levels.back()), "..", outer) || fstat(NumberOf(outer), &status) != 0)
            return false;
        if (status.st_dev != outer.status.st_dev || status.st_ino != outer.status.st_ino) {
            errno = EBUSY;
            return false;
        }
    }
    levels.pop_back();
    return true;
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
    const int parent = levels.size() == 1 ? AT_FDCWD : NumberOf(level);
    if (RemoveOne(parent, level.names.back().c_str())) {
        level.names.pop_back();
        level.isEmptied = false;
        return true;
    }
    // A directory that fills again, as some network file systems let it, must not be emptied for ever.
    if ((errno != ENOTEMPTY && errno != EEXIST) || level.isEmptied)
        return false;
    level.isEmptied = true;
    Level inner{};
    if (!Enter(parent, level.names.back(), inner))
        return false;
    levels.push_back(std::move(inner));
    if (levels.size() > MostOpen + 1)
        levels[levels.size() - 1 - MostOpen].directory.reset();
    return true;
}

// The path of what is removed or left next, from the top as it was given.
std::wstring PathOf(const std::vector<Level>& levels, const wchar_t* top)
{
    std::wstring path = top != nullptr ? top : L"";
    for (auto level = levels.begin() + 1; level != levels.end(); ++level)
        if (!level->names.empty())
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
            // A directory without names is the last name of the level above, which can be removed now.
            if (levels.back().names.empty() ? Leave(levels) : RemoveOrEnter(levels))
                continue;
            if (levels.size() == 1 && HasFoundNothing(levels[0].names[0]))
                break;
            const int error = errno;
            kept = PathOf(levels, directory);
            errno = error;
            return false;
        }
        kept.clear();
        return true;
    });
}
