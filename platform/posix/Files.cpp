#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

// The result of a call that removes something: what is gone already counts as removed.
bool IsGone(int result, const std::string& path)
{
    return result == 0 || platform::HasFoundNothing(path);
}

bool IsDirectory(std::FILE* file)
{
    struct stat status
    {};
    return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::FILE* platform::OpenFile(const wchar_t* path, const wchar_t* mode) noexcept
{
    return Guarded<std::FILE*>(nullptr, [&]() -> std::FILE* {
        std::string flags = Narrow(mode == nullptr ? L"" : mode);
        flags.insert(flags.empty() ? 0 : 1, 1, 'e');  // programs started by the host do not inherit it
        std::FILE* const file = std::fopen(NativePath(path).c_str(), flags.c_str());
        if (file == nullptr || !IsDirectory(file))
            return file;
        std::fclose(file);
        errno = EISDIR;
        return nullptr;
    });
}

int platform::SeekFile(std::FILE* file, std::int64_t offset, int origin) noexcept
{
    if (origin != SEEK_SET && origin != SEEK_CUR && origin != SEEK_END) {
        errno = EINVAL;
        return -1;
    }
    return fseeko(file, offset, origin);
}

std::int64_t platform::FilePosition(std::FILE* file) noexcept
{
    return ftello(file);
}

void platform::SetBinary(std::FILE*) noexcept {}

int platform::Access(const wchar_t* path, int mode) noexcept
{
    return Guarded(-1, [&] {
        if (mode != F_OK && mode != W_OK && mode != R_OK && mode != (R_OK | W_OK)) {
            errno = EINVAL;
            return -1;
        }
        return access(NativePath(path).c_str(), mode);
    });
}

bool platform::Status(const wchar_t* path, FileStatus& status) noexcept
{
    return Guarded(false, [&] {
        struct stat native
        {};
        if (stat(NativePath(path).c_str(), &native) != 0)
            return false;
        status.kind = S_ISREG(native.st_mode)   ? FileKind::Regular
                      : S_ISDIR(native.st_mode) ? FileKind::Directory
                                                : FileKind::Other;
        status.size = static_cast<std::uint64_t>(native.st_size);
        status.device = native.st_dev;
        status.file = native.st_ino;
        return true;
    });
}

bool platform::IsLink(const wchar_t* path) noexcept
{
    return Guarded(false, [&] {
        struct stat native
        {};
        return lstat(NativePath(path).c_str(), &native) == 0 && S_ISLNK(native.st_mode);
    });
}

bool platform::MoveOneFile(const wchar_t* source, const wchar_t* destination) noexcept
{
    return Guarded(false, [&] {
        const std::string from = NativePath(source);
        const std::string to = NativePath(destination);
        struct stat moved = {}, replaced = {};
        if (lstat(from.c_str(), &moved) != 0)
            return false;
        const bool isThere = lstat(to.c_str(), &replaced) == 0;
        if (S_ISDIR(moved.st_mode) || (isThere && !S_ISREG(replaced.st_mode) && !S_ISLNK(replaced.st_mode))) {
            errno = EEXIST;
            return false;
        }
        return std::rename(from.c_str(), to.c_str()) == 0;
    });
}

bool platform::RemoveOneFile(const wchar_t* path) noexcept
{
    return Guarded(false, [&] {
        const std::string native = NativePath(path);
        return IsGone(unlink(native.c_str()), native);
    });
}

bool platform::RemoveEmptyDirectory(const wchar_t* directory) noexcept
{
    return Guarded(false, [&] {
        const std::string native = NativePath(directory);
        return IsGone(rmdir(native.c_str()), native);
    });
}
