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
        const char* const name = FindRecent(file);
        return name != nullptr ? name : FindAnew(file);
    }

    // The same when the file was asked for not long ago, else null.
    const char* FindRecent(const char* file) const noexcept
    {
        const Recent& recent = m_recent[CacheSlot(file)];
        return recent.file == file && HasText(recent, file) ? recent.name : nullptr;
    }

    void Clear() noexcept;

private:
    using Word = std::uint64_t;
    struct Recent
    {
        const char* file;
        const char* name;
        std::size_t fullWords;  // of the text; what follows, its end included, are the bytes of lastMask
        Word lastMask;
        char text[96];
    };
    static constexpr std::size_t CacheSize = 256;

    static std::size_t CacheSlot(const char* file) noexcept
    {
        const auto address = reinterpret_cast<std::uintptr_t>(file);
        return (address ^ (address >> 8)) % CacheSize;
    }
    [[gnu::no_sanitize_address]] static Word WordAt(const char* text, std::size_t index) noexcept
    {
        Word word = 0;
        std::memcpy(&word, text + index * sizeof word, sizeof word);
        return word;
    }

    // Whether the text is still the same: the address may hold another one by now. Faster than strcmp: reads on behind a
    // shorter text too, which does no harm on the page where it begins. What begins near the end of a page counts as
    // another text.
    [[gnu::no_sanitize_address]] static bool HasText(const Recent& recent, const char* file) noexcept
    {
        constexpr std::size_t PageBytes = 4096;
        if (reinterpret_cast<std::uintptr_t>(file) % PageBytes > PageBytes - sizeof recent.text) [[unlikely]]
            return false;
        asm("" : "+r"(file));  // compilers that know how long a text is do not like it read on
        Word difference = 0;
        for (std::size_t i = 0; i < recent.fullWords; ++i)
            difference |= WordAt(recent.text, i) ^ WordAt(file, i);
        difference |= (WordAt(recent.text, recent.fullWords) ^ WordAt(file, recent.fullWords)) & recent.lastMask;
        return difference == 0;
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
