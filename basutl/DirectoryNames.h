// The names in a directory, chosen and sorted.
#pragma once

#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

#include <algorithm>
#include <new>
#include <utility>

// Adds a name at the end; false when memory is exhausted.
inline bool AddName(BuObjectArrayTempl<BuString>& names, const std::wstring& name) noexcept
{
    BuString text(name.c_str());
    return !text.IsEmpty() && names.Add(std::move(text)) >= 0;
}

// Fills `names` with those that `isWanted` takes, sorted by code units. False, with `names` empty, when the directory
// cannot be read, or memory is exhausted, which is then the last error and which `isWanted` tells by std::bad_alloc.
template <typename Predicate>
bool ReadDirectoryNames(const wchar_t* directory, BuObjectArrayTempl<BuString>& names, Predicate isWanted) noexcept
{
    names.RemoveAll();
    return platform::Guarded(false, [&] {
        std::vector<std::wstring> entries;
        if (!platform::ListDirectory(directory, entries))
            return false;
        BuObjectArrayTempl<BuString> wanted;
        for (const std::wstring& entry : entries)
            if (isWanted(entry) && !AddName(wanted, entry))
                throw std::bad_alloc();
        std::sort(wanted.begin(), wanted.end());
        names.Swap(wanted);
        return true;
    });
}
