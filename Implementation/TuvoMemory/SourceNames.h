// The names of source files as leak records keep them, each kept once. A caller's own text may vanish with its plug-in.
#pragma once

#include "TuvoMemory/HeapArray.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace leaks {

struct SourceName
{
    char text[16];
};

// What follows the last backslash, cut to 15 characters.
// Kept: a slash does not separate, on no system.
SourceName NameOfSource(const char* file) noexcept;

class SourceNames
{
public:
    constexpr SourceNames() noexcept = default;
    ~SourceNames() { Clear(); }
    SourceNames(const SourceNames&) = delete;
    SourceNames& operator=(const SourceNames&) = delete;

    // NameOfSource, kept until Clear; null when memory is exhausted.
    const char* Find(const char* file) noexcept
    {
        const Recent& recent = m_recent[CacheSlot(file)];
        // The same address may hold another text by now.
        return recent.file == file && std::strcmp(recent.text, file) == 0 ? recent.name : FindAnew(file);
    }

    void Clear() noexcept;

private:
    struct Recent
    {
        const char* file;
        const char* name;
        char text[48];
    };
    static constexpr std::size_t CacheSize = 256;

    static std::size_t CacheSlot(const char* file) noexcept
    {
        const auto address = reinterpret_cast<std::uintptr_t>(file);
        return (address ^ (address >> 8)) % CacheSize;
    }
    const char* FindAnew(const char* file) noexcept;
    const char* Intern(const SourceName& name) noexcept;
    SourceName** Place(const SourceName& name) noexcept;
    bool Grow() noexcept;

    Recent m_recent[CacheSize] = {};
    HeapArray<SourceName*> m_names;  // open addressing, at least half of it null
    std::size_t m_count = 0;
};

}  // namespace leaks
