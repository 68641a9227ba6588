// Walks the entries of a directory whose names match a pattern with '*' and '?'.
//
//   BuFileFind find;
//   BuString name;
//   for (bool more = find.FindFirstFileName(L"model\\*", name); more; more = find.FindNextFileName(name)) ...
//   find.FindCloseName();
//
// '*' stands for any run of characters, the empty one included, '?' for exactly one; a point is a character like
// others. Files and directories come alike, sorted by UTF-16 code units, "." and ".." left out; names are without the
// directory. The case of ASCII letters counts on Linux only. A walk shows the directory as it was at its start.
#pragma once

#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>
#include <basutl/Export.h>

class BASUTL_API BuFileFind
{
public:
    // Starts a walk: a directory, a separator and a pattern for the last name; without a directory in the working one.
    // False, with `name` unchanged, when nothing matches, the directory cannot be read or memory is exhausted.
    bool FindFirstFileName(const wchar_t* pattern, BuString& name) noexcept;
    bool FindNextFileName(BuString& name) noexcept;  // false, with `name` unchanged, past the last entry
    void FindCloseName() noexcept;                   // forgets the walk; also done by the next one

private:
    BuObjectArrayTempl<BuString> m_names;
    int m_next = 0;
};
