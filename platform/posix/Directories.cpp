#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

namespace {

struct DirectoryCloser
{
    void operator()(DIR* directory) const { closedir(directory); }
};

bool IsDirectory(const std::string& path)
{
    struct stat status
    {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Appends the names; false when reading stops before the end.
bool ReadNames(const std::string& path, std::vector<std::wstring>& names)
{
    const std::unique_ptr<DIR, DirectoryCloser> directory(opendir(path.c_str()));
    if (directory == nullptr)
        return false;
    for (;;) {
        errno = 0;
        const dirent* const entry = readdir(directory.get());
        if (entry == nullptr)
            return errno == 0;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back(platform::Widen(name));
    }
}

}  // namespace

bool platform::ListDirectory(const wchar_t* directory, std::vector<std::wstring>& names) noexcept
{
    names.clear();
    const bool isListed = Guarded(false, [&] { return ReadNames(NativePath(directory), names); });
    if (!isListed)
        names.clear();
    return isListed;
}

bool platform::CreateOneDirectory(const wchar_t* directory) noexcept
{
    return Guarded(false, [&] {
        const std::string native = NativePath(directory);
        return mkdir(native.c_str(), 0777) == 0 || (errno == EEXIST && IsDirectory(native));
    });
}

std::wstring platform::CanonicalPath(const wchar_t* path)
{
    char resolved[PATH_MAX];
    return realpath(NativePath(path).c_str(), resolved) == nullptr ? std::wstring() : Widen(resolved);
}

std::wstring platform::WorkingDirectory()
{
    char directory[PATH_MAX];
    return getcwd(directory, sizeof directory) == nullptr ? std::wstring() : Widen(directory);
}

std::wstring platform::TemporaryDirectory()
{
    std::string directory = "/tmp";
    for (const char* const name : {"TMPDIR", "TMP", "TEMP"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            directory = value;
            break;
        }
    }
    if (directory.back() != '/')
        directory += '/';
    return Widen(directory);
}

const wchar_t* platform::CommonTemporaryDirectory() noexcept
{
    return L"/tmp";
}

wchar_t platform::Separator() noexcept
{
    return L'/';
}
