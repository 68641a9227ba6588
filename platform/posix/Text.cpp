#include "platform/Platform.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char32_t StrayBase = 0xDC00;
constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t LastCode = 0x10FFFF;

// The units that stand for one stray byte each: 0xDC00 plus a byte above 127.
bool IsStray(char32_t unit)
{
    return unit - (StrayBase + 0x80) < 0x80;
}

struct Character
{
    char32_t unit;
    std::size_t length;  // bytes
};

// The character at the start of a text that starts with a byte above 127. The three-byte form of a unit that stands for
// a stray byte is itself three stray bytes: it would turn back into one.
Character Decode(std::string_view text)
{
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text[0]);
    const Character stray = {StrayBase + lead, 1};
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
    if (code < smallest[length] || code > LastCode || IsStray(code))
        return stray;
    return {code, length};
}

// The number of leading bytes below 128.
std::size_t AsciiRun(std::string_view text)
{
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & 0x8080'8080'8080'8080u) != 0)
            break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80)
        ++length;
    return length;
}

std::size_t EncodedLength(char32_t unit)
{
    if (unit < 0x80 || IsStray(unit))
        return 1;
    return unit < 0x800 ? 2 : unit < 0x10000 || unit > LastCode ? 3 : 4;
}

// Writes one unit and gives the place behind it. What is no unit of any text becomes the replacement character.
char* Encode(char32_t unit, char* out)
{
    static constexpr unsigned int leads[] = {0, 0, 0xC0, 0xE0, 0xF0};
    const std::size_t length = EncodedLength(unit);
    if (length == 1) {
        *out = static_cast<char>(unit & 0xFF);
        return out + 1;
    }
    char32_t rest = unit > LastCode ? Replacement : unit;
    for (std::size_t i = length - 1; i > 0; --i, rest >>= 6)
        out[i] = static_cast<char>(0x80 | (rest & 0x3F));
    *out = static_cast<char>(leads[length] | rest);
    return out + length;
}

}  // namespace

std::wstring platform::Widen(std::string_view narrow)
{
    std::wstring wide(narrow.size(), L'\0');
    wchar_t* out = wide.data();
    while (!narrow.empty()) {
        const std::size_t run = AsciiRun(narrow);
        out = std::copy_n(narrow.data(), run, out);
        narrow.remove_prefix(run);
        if (narrow.empty())
            break;
        const Character character = Decode(narrow);
        *out++ = static_cast<wchar_t>(character.unit);
        narrow.remove_prefix(character.length);
    }
    wide.resize(static_cast<std::size_t>(out - wide.data()));
    return wide;
}

std::string platform::Narrow(std::wstring_view wide)
{
    std::size_t length = 0;
    for (const wchar_t unit : wide)
        length += EncodedLength(static_cast<char32_t>(unit));
    std::string narrow(length, '\0');
    char* out = narrow.data();
    for (const wchar_t unit : wide)
        out = Encode(static_cast<char32_t>(unit), out);
    return narrow;
}
