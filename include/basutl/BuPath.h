// Two edits of a path text; no file is asked.
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
