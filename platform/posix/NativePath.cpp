#include "platform/posix/NativePath.h"

#include "platform/Platform.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

std::string platform::NativePath(const wchar_t* path)
{
    std::string native = Narrow(path == nullptr ? L"" : path);
    struct stat status
    {};
    if (native.find('\\') != std::string::npos && lstat(native.c_str(), &status) != 0)
        std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

bool platform::HasFoundNothing(const std::string& path) noexcept
{
    if (path.empty())
        return false;
    struct stat status
    {};
    const bool mayBeBelowAFile = errno == ENOTDIR && path.back() != '/';
    return errno == ENOENT || (mayBeBelowAFile && lstat(path.c_str(), &status) != 0);
}
