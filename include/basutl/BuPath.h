// Two edits of a path text; no file is asked.
#pragma once

#include <basutl/BuString.h>
#include <basutl/Export.h>

// Removes the last name and the separator before it ('\' or '/'); a root keeps its separator. True when anything was
// removed.
BASUTL_API bool BuPathRemoveFileSpecW(BuString& path) noexcept;

// Ends the path with the system's separator unless it ends with '\' or '/' or is empty.
BASUTL_API void BuPathAddSeparatorW(BuString& path) noexcept;
