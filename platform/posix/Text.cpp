#include "platform/Platform.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t LastCode = 0x10FFFF;

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
    if (unit < 0x80 || platform::IsStrayUnit(unit))
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
        const Utf8Character character = DecodeUtf8(narrow);
        *out++ = static_cast<wchar_t>(character.code);
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
