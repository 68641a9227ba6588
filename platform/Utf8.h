// UTF-8 without loss: what is not valid in it is carried through wide text and comes out again.
#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

// A stray byte, one that is not part of a valid character, is carried as this unit plus the byte.
constexpr char32_t StrayUnit = 0xDC00;

constexpr bool IsStrayUnit(char32_t unit) noexcept
{
    return unit - (StrayUnit + 0x80) < 0x80;
}

struct Utf8Character
{
    char32_t code;       // a character, a lone surrogate, or a stray byte's unit
    std::size_t length;  // bytes
};

// The character at the start of a text that is not empty. The three-byte form of a lone surrogate reads as that, except
// for the unit of a stray byte: its form is three stray bytes, since the unit turns back into one.
constexpr Utf8Character DecodeUtf8(std::string_view text) noexcept
{
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80)
        return {lead, 1};
    const Utf8Character stray = {StrayUnit + lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC0 || lead >= 0xF8 || length > text.size())
        return stray;
    char32_t code = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80)
            return stray;
        code = code << 6 | (byte & 0x3Fu);
    }
    if (code < smallest[length] || code > 0x10FFFF || IsStrayUnit(code))
        return stray;
    return {code, length};
}

}  // namespace platform
