// The bytes of an XML file, and places in them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

// How the characters of a file are laid out: units of 1 (UTF-8 and other bytes), 2 (UTF-16) or 4 bytes (UTF-32).
struct XmlLayout
{
    std::size_t width;
    bool isBigEndian;
};

class XmlSource
{
public:
    // Reads what is left of a file whose size is known or guessed. False with errno set on failure.
    bool Read(std::FILE* file, std::uint64_t expectedSize) noexcept;

    char* GetData() const noexcept { return m_bytes.get(); }
    std::size_t GetSize() const noexcept { return m_size; }

    // The place of the first unit 0; the size of the file when there is none.
    std::size_t FindZero(XmlLayout layout) const noexcept;

    // The place that corresponds to a place in the file's UTF-8 form; the width is 2 or 4.
    std::size_t FindUtf8Offset(std::size_t offset, XmlLayout layout) const noexcept;

private:
    struct FreeBlock
    {
        void operator()(char* block) const noexcept { std::free(block); }
    };

    bool Reserve(std::size_t capacity) noexcept;
    bool HasUnit(std::size_t place, XmlLayout layout) const noexcept { return place + layout.width <= m_size; }
    char32_t GetUnit(std::size_t place, XmlLayout layout) const noexcept;

    std::unique_ptr<char, FreeBlock> m_bytes;
    std::size_t m_size = 0;
};
