// Walks the entries of a directory whose names match a pattern with '*' and '?'.
//
//   BuFileFind find;
//   BuString name;
//   for (bool more = find.FindFirstFileName(L"model\\*", name); more; more = find.FindNextFileName(name)) ...
//   find.FindCloseName();
//
// Entries come sorted by code units, "." and ".." left out. Case counts on Linux only. Names are without the directory.
#pragma once

#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>
#include <basutl/Export.h>

class BASUTL_API BuFileFind
{
public:
    // Starts a walk: a directory, a separator and a pattern for the last name. False when nothing matches or the
    // directory cannot be read.
    bool FindFirstFileName(const wchar_t* pattern, BuString& name) noexcept;
    bool FindNextFileName(BuString& name) noexcept;  // false past the last entry
    void FindCloseName() noexcept;                   // forgets the walk; also done by the next one

private:
    BuObjectArrayTempl<BuString> m_names;
    int m_next = 0;
};
