#include "tools/tuvo/Pointer.h"

#include "platform/Platform.h"

#include <algorithm>

namespace tool {

std::string PointerTo(std::string_view line, std::size_t place)
{
    constexpr std::size_t before = 40;
    constexpr std::size_t shown = 70;
    const std::wstring characters = platform::Widen(line);
    const std::size_t column = CharacterNumber(line, place) - 1;
    const std::size_t first = column > before ? column - before : 0;
    std::wstring excerpt = characters.substr(first, shown);
    std::replace_if(
        excerpt.begin(), excerpt.end(), [](wchar_t c) { return c < L' ' || c == L'\x7f'; }, L'?');
    const std::string lead = first > 0 ? "  ..." : "  ";
    const char* const rest = first + shown < characters.size() ? "..." : "";
    return '\n' + lead + platform::Narrow(excerpt) + rest + '\n' + std::string(lead.size() + column - first, ' ') + '^';
}

std::size_t CharacterNumber(std::string_view line, std::size_t place)
{
    return platform::Widen(line.substr(0, place)).size() + 1;
}

}  // namespace tool
