#include "platform/posix/NativePath.h"

#include "platform/Platform.h"

#include <sys/stat.h>

#include <algorithm>

std::string platform::NativePath(const wchar_t* path)
{
    std::string native = Narrow(path == nullptr ? L"" : path);
    struct stat status
    {};
    if (native.find('\\') != std::string::npos && lstat(native.c_str(), &status) != 0)
        std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}
