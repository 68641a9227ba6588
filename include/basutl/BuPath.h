// Edits of a path text. No file is asked, so that a link before ".." is not followed.
#pragma once

#include <basutl/BuString.h>
#include <basutl/Export.h>

// Removes the last name and the separator before it ('\' or '/'). A root stays as it is: the separators at the start, or
// a drive ("C:") and those after it. True when anything was removed; false, with the path unchanged, also when memory was
// exhausted.
//   "/usr/lib" gives "/usr", then "/"; "C:\a" gives "C:\"; "a/" gives "a", then ""
BASUTL_API bool BuPathRemoveFileSpecW(BuString& path) noexcept;

// Ends the path with the system's separator unless it ends with '\' or '/' or is empty.
BASUTL_API void BuPathAddSeparatorW(BuString& path) noexcept;

// Whether the path begins at a root or, on Windows, names a drive, so that it cannot be put behind a directory. False for
// null.
BASUTL_API bool BuPathHasRootW(const wchar_t* path) noexcept;

// The absolute form of a path that starts from `baseDirectory`, which itself starts from the working directory and stands
// for that when it is null or empty: without "." and "..", with the separators of the system, and without one at the end
// except that of a root. ".." does not leave the root. Empty when the path is empty or null, when the working directory is
// needed and gone, and when memory is exhausted.
//   "../b/./c" from "/home/a" gives "/home/b/c"
BASUTL_API BuString BuPathMakeAbsoluteW(const wchar_t* path, const wchar_t* baseDirectory) noexcept;

// The path that leads from `baseDirectory` to a path, both made absolute from the working directory: "." when they are the
// same, the absolute path when they have no root in common (another drive). Made absolute from `baseDirectory` it is the
// absolute path again. Empty as above.
//   "/home/b/c" from "/home/a" gives "../b/c"
BASUTL_API BuString BuPathMakeRelativeW(const wchar_t* path, const wchar_t* baseDirectory) noexcept;
