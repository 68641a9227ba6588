#include "basutl/XmlSource.h"

#include <cstring>

namespace {

std::size_t Utf8Length(char32_t unit) noexcept
{
    const bool isHalf = unit >= 0xD800 && unit < 0xE000;  // of a character of four bytes
    return unit < 0x80 ? 1 : unit < 0x800 || isHalf ? 2 : unit < 0x10000 ? 3 : 4;
}

}  // namespace

bool XmlSource::Read(std::FILE* file, std::uint64_t expectedSize) noexcept
{
    // One byte more than expected, so that the end shows without another read.
    for (std::size_t capacity = expectedSize + 1; Reserve(capacity); capacity = m_size * 2) {
        m_size += std::fread(m_bytes.get() + m_size, 1, capacity - m_size, file);
        if (m_size < capacity)
            return std::ferror(file) == 0;
    }
    return false;
}

bool XmlSource::Reserve(std::size_t capacity) noexcept
{
    char* const grown = static_cast<char*>(std::realloc(m_bytes.get(), capacity));
    if (grown == nullptr)
        return false;
    static_cast<void>(m_bytes.release());
    m_bytes.reset(grown);
    return true;
}

std::size_t XmlSource::FindZero(XmlLayout layout) const noexcept
{
    if (layout.width == 1) {
        const void* const zero = std::memchr(m_bytes.get(), 0, m_size);
        return zero == nullptr ? m_size : static_cast<std::size_t>(static_cast<const char*>(zero) - m_bytes.get());
    }
    std::size_t place = 0;
    while (HasUnit(place, layout) && GetUnit(place, layout) != 0)
        place += layout.width;
    return HasUnit(place, layout) ? place : m_size;
}

std::size_t XmlSource::FindUtf8Offset(std::size_t offset, XmlLayout layout) const noexcept
{
    std::size_t place = 0;
    for (std::size_t utf8 = 0; utf8 < offset && HasUnit(place, layout); place += layout.width)
        utf8 += Utf8Length(GetUnit(place, layout));
    return place;
}

char32_t XmlSource::GetUnit(std::size_t place, XmlLayout layout) const noexcept
{
    char32_t unit = 0;
    for (std::size_t i = 0; i < layout.width; ++i) {
        const std::size_t byte = layout.isBigEndian ? place + i : place + layout.width - 1 - i;
        unit = unit << 8 | static_cast<unsigned char>(m_bytes.get()[byte]);
    }
    return unit;
}
