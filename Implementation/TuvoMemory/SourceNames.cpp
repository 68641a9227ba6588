#include "TuvoMemory/SourceNames.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <new>
#include <utility>

leaks::SourceName leaks::NameOfSource(const char* file) noexcept
{
    const char* const separator = std::strrchr(file, '\\');
    const char* const last = separator != nullptr ? separator + 1 : file;
    SourceName name = {};
    std::copy_n(last, std::min(std::strlen(last), sizeof name.text - 1), name.text);
    return name;
}

void leaks::SourceNames::Clear() noexcept
{
    for (SourceName* const name : m_names)
        std::free(name);
    m_names.Clear();
    m_count = 0;
    std::fill(std::begin(m_recent), std::end(m_recent), Recent{});
}

const char* leaks::SourceNames::FindAnew(const char* file) noexcept
{
    const char* const name = Intern(NameOfSource(file));
    const std::size_t length = std::strlen(file);
    Recent& recent = m_recent[CacheSlot(file)];
    if (name != nullptr && length < sizeof recent.text) {
        recent = {.file = file, .name = name, .fullWords = length / sizeof(Word), .lastMask = 0, .text = {}};
        std::memset(&recent.lastMask, 0xFF, length % sizeof(Word) + 1);
        std::memcpy(recent.text, file, length + 1);
    }
    return name;
}

const char* leaks::SourceNames::Intern(const SourceName& name) noexcept
{
    if (2 * m_count >= m_names.Size() && !Grow())
        return nullptr;
    SourceName** const place = Place(name);
    if (*place == nullptr) {
        void* const block = std::malloc(sizeof name);
        if (block == nullptr)
            return nullptr;
        *place = new (block) SourceName(name);
        ++m_count;
    }
    return (*place)->text;
}

// Where the name stands, or belongs.
leaks::SourceName** leaks::SourceNames::Place(const SourceName& name) noexcept
{
    std::uint64_t halves[2];
    std::memcpy(halves, name.text, sizeof halves);
    const std::uint64_t mixed = (halves[0] ^ (halves[1] * 31)) * 0x9E3779B97F4A7C15u;
    const std::size_t mask = m_names.Size() - 1;
    for (std::size_t i = static_cast<std::size_t>(mixed >> 32) & mask;; i = (i + 1) & mask) {
        SourceName*& place = m_names[i];
        if (place == nullptr || std::memcmp(place->text, name.text, sizeof name.text) == 0)
            return &place;
    }
}

bool leaks::SourceNames::Grow() noexcept
{
    HeapArray<SourceName*> old = std::move(m_names);
    const std::size_t size = std::max<std::size_t>(64, 2 * old.Size());
    if (!m_names.Assign(size, nullptr)) {
        m_names = std::move(old);
        return false;
    }
    for (SourceName* const name : old)
        if (name != nullptr)
            *Place(*name) = name;
    return true;
}
