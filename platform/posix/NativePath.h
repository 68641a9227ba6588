// The one place where a path of the library becomes a path of the system.
#pragma once

#include <string>

namespace platform {

// The path as given when something stands there (a dangling link counts), else the path with every '\' turned into '/'.
// Null gives the empty path, which no system call accepts. Throws std::bad_alloc.
std::string NativePath(const wchar_t* path);

// Whether the call that has just failed for a native path found nothing there: errno tells of a name that is missing, or
// of one that would stand below a file. errno stays for an answer of no.
bool HasFoundNothing(const std::string& path) noexcept;

}  // namespace platform
