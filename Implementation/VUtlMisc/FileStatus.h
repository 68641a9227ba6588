// Questions about files whose answer is never "no" because memory is exhausted: these throw std::bad_alloc then.
#pragma once

#include "platform/Platform.h"

#include <cerrno>
#include <new>
#include <string>

namespace misc {

inline bool Exists(const std::wstring& path)
{
    errno = 0;
    const bool exists = platform::Access(path.c_str(), 0) == 0;
    if (!exists && errno == ENOMEM)
        throw std::bad_alloc();
    return exists;
}

// False when nothing stands there or it cannot be asked.
inline bool AskStatus(const std::wstring& path, platform::FileStatus& status)
{
    errno = 0;
    const bool isAnswered = platform::Status(path.c_str(), status);
    if (!isAnswered && errno == ENOMEM)
        throw std::bad_alloc();
    return isAnswered;
}

inline bool IsLink(const std::wstring& path)
{
    errno = 0;
    const bool isLink = platform::IsLink(path.c_str());
    if (!isLink && errno == ENOMEM)
        throw std::bad_alloc();
    return isLink;
}

inline bool IsFile(const std::wstring& path)
{
    platform::FileStatus status;
    return AskStatus(path, status) && status.kind != platform::FileKind::Directory;
}

inline bool IsDirectory(const std::wstring& path)
{
    platform::FileStatus status;
    return AskStatus(path, status) && status.kind == platform::FileKind::Directory;
}

inline bool AreSame(const platform::FileStatus& left, const platform::FileStatus& right)
{
    return left.device == right.device && left.file == right.file;
}

}  // namespace misc
