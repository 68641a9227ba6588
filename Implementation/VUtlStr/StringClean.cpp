#include "Kernels/BlankCollapse.h"
#include "VUtlStr/NewText.h"
#include "VUtlStr/StringMatchSearch.h"
#include "VUtlStr/Trim.h"

#include <TuvoUtil/StringClean.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

using strings::NewCopy;
using strings::NewText;

// The text that a function with a source and a target reads. Such functions read and write forwards; a source that the
// target would overtake is moved into the target first.
const char* Readable(const char* source, char* target)
{
    const auto from = reinterpret_cast<std::uintptr_t>(source);
    const auto to = reinterpret_cast<std::uintptr_t>(target);
    if (to <= from)
        return source;
    const std::size_t length = std::strlen(source);
    if (to - from > length)
        return source;
    std::memmove(target, source, length + 1);
    return target;
}

// Copies the characters that `keeps` accepts, in order.
template <typename Keeps>
void Filter(const char* source, char* target, Keeps keeps)
{
    if (target == nullptr)
        return;
    if (source != nullptr)
        for (const char* next = Readable(source, target); *next != '\0'; ++next) {
            const char c = *next;
            *target = c;
            target += keeps(c);
        }
    *target = '\0';
}

void MoveText(const char* source, char* target)
{
    std::memmove(target, source, std::strlen(source) + 1);
}

// A new copy in which the bytes at the places of an enclosing mark are blanks, cleaned; a plain copy of a text that is
// not enclosed.
char* NewUnquoted(const char* text, std::string_view opening)
{
    if (text == nullptr)
        return nullptr;
    const std::string_view whole(text);
    char* const copy = NewCopy(whole);
    if (copy == nullptr || whole.substr(0, opening.size()) != opening || whole.back() != '"')
        return copy;
    std::fill_n(copy, opening.size(), ' ');
    copy[whole.size() - 1] = ' ';
    UtlClearString(copy);
    return copy;
}

}  // namespace

// ---- Blanks --------------------------------------------------------------------------------------------------------

void UtlRemoveAllBlanks(const char* source, char* target)
{
    Filter(source, target, [](char c) { return !BuIsSpace(c); });
}

void UtlRemoveAllEmbeddedBlanks(const char* source, char* target)
{
    const char* const lastSlash = source != nullptr ? std::strrchr(source, '/') : nullptr;
    std::size_t before = lastSlash != nullptr ? static_cast<std::size_t>(lastSlash - source) : 0;
    Filter(source, target, [&](char c) {
        if (before == 0)
            return true;
        --before;
        return !BuIsSpace(c);
    });
}

void UtlRemoveEmbeddedExcessBlanks(const char* source, char* target)
{
    // Long enough to be measured at no cost, short enough to be still at hand when it is copied.
    constexpr std::size_t PieceSize = 8192;
    if (target == nullptr)
        return;
    bool afterBlank = false;
    for (const char* next = source != nullptr ? Readable(source, target) : ""; *next != '\0';) {
        const std::size_t length = ::strnlen(next, PieceSize);
        target += kernels::CollapseBlanks(next, length, target, afterBlank);
        next += length;
    }
    *target = '\0';
}

void UtlRemoveEmbeddedExcessTabs(const char* source, char* target)
{
    bool afterTab = false;
    Filter(source, target, [&](char c) {
        const bool keeps = c != '\t' || !afterTab;
        afterTab = c == '\t';
        return keeps;
    });
}

void UtlRemoveLeadingBlanks(const char* source, char* const target)
{
    if (target != nullptr)
        MoveText(source != nullptr ? strings::SkipSpace(source) : "", target);
}

// Kept: callers pass a target that holds something else than the source.
void UtlRemoveTrailingBlanks(const char* source, char* const target)
{
    if (target != nullptr)
        target[source != nullptr ? strings::WithoutSpaceAtEnd(source).size() : 0] = '\0';
}

void UtlRemoveBlanksAtEnds(char* text, char*& start)
{
    start = text;
    if (text == nullptr)
        return;
    const std::string_view whole(text);
    const std::size_t length = strings::WithoutSpaceAtEnd(whole).size();
    start = text + (strings::SkipSpace(text) - text);
    std::memset(text + length, '\0', whole.size() - length);
}

void UtlRemoveBlanksBesideDelimiter(const char* source, char* target, char delimiter)
{
    if (target == nullptr)
        return;
    char* const first = target;
    bool skips = false;  // whether only white space came since the last delimiter
    const auto isRemovable = [delimiter](char c) { return BuIsSpace(c) && c != delimiter; };
    for (const char* next = source != nullptr ? Readable(source, target) : ""; *next != '\0'; ++next) {
        const char c = *next;
        if (skips && isRemovable(c))
            continue;
        skips = c == delimiter;
        if (skips)
            while (target != first && isRemovable(target[-1]))
                --target;
        *target++ = c;
    }
    *target = '\0';
}

void UtlClearString(char* const text)
{
    if (text == nullptr)
        return;
    // Kept: no more than two line ends become blanks; those inside that are left stay.
    if (char* const first = std::strchr(text, '\n')) {
        *first = ' ';
        if (char* const second = std::strchr(first, '\n'))
            *second = ' ';
    } else if (char* const only = std::strchr(text, '\r')) {
        *only = ' ';
    }
    UtlRemoveTrailingBlanks(text, text);
    UtlRemoveLeadingBlanks(text, text);
}

char* VStrUtlGetStringWithNoSpacesAtEnds(const char* text)
{
    return text != nullptr ? NewCopy(strings::WithoutSpaceAtEnd(strings::SkipSpace(text))) : nullptr;
}

char* UtlStrGetStringBlank(int count)
{
    if (count < 0)
        return nullptr;
    const auto length = static_cast<std::size_t>(count);
    char* const text = NewText(length);
    return text != nullptr ? static_cast<char*>(std::memset(text, ' ', length)) : nullptr;
}

// ---- Quotes, delimiters and control characters ---------------------------------------------------------------------

void UtlRemoveQuotes(const char* source, char* target)
{
    Filter(source, target, [](char c) { return c != '"' && c != '\''; });
}

char* UtlClearDoubleQuotesFromString(const char* text)
{
    return NewUnquoted(text, "\"");
}

char* UtlClearPythonString(const char* text)
{
    return NewUnquoted(text, "r\"");
}

void UtlRemoveFirstAppearenceOfDelimeter(const char* text, const char* delimiter, char** result)
{
    if (result == nullptr)
        return;
    *result = nullptr;
    if (text == nullptr)
        return;
    const std::string_view whole(text);
    const std::string_view removed(delimiter != nullptr ? delimiter : "");
    const std::size_t place = removed.empty() ? OccurrenceSearch::None : OccurrenceSearch(whole, removed).Next();
    if (place == OccurrenceSearch::None) {
        *result = NewCopy(whole);
        return;
    }
    char* const copy = NewText(whole.size() - removed.size());
    if (copy != nullptr) {
        std::copy_n(text, place, copy);
        std::copy(text + place + removed.size(), text + whole.size(), copy + place);
    }
    *result = copy;
}

void UtlRemoveCtrlCharacters(const char* source, char* const target)
{
    Filter(source, target, [](char c) { return c != '\r'; });
}

void UtlStrRemoveCarriageReturn(const char* text, char** result)
{
    if (result == nullptr)
        return;
    *result = nullptr;
    const std::string_view whole(text != nullptr ? text : "");
    if (whole.empty())
        return;
    const auto removed = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '\r'));
    char* const copy = NewText(whole.size() - removed);
    if (copy != nullptr)
        std::copy_if(whole.begin(), whole.end(), copy, [](char c) { return c != '\r'; });
    *result = copy;
}

void UtlReplaceChar(char* text, const char* characters, const char* replacement)
{
    if (text == nullptr || characters == nullptr || replacement == nullptr)
        return;
    std::array<bool, 256> isReplaced{};
    for (; *characters != '\0'; ++characters)
        isReplaced[static_cast<unsigned char>(*characters)] = true;
    // The length is taken first: a replacement by NUL must not end the walk.
    const std::size_t length = std::strlen(text);
    std::replace_if(
        text, text + length, [&](char c) { return isReplaced[static_cast<unsigned char>(c)]; }, *replacement);
}

int UtlIsAscii(char c)
{
    static constexpr unsigned char accepted[] = {0xA1, 0xB0, 0xB2, 0xBF, 0xC1, 0xC4, 0xC9, 0xCD, 0xD1, 0xD3, 0xD6, 0xDA,
                                                 0xDC, 0xDF, 0xE1, 0xE4, 0xE9, 0xED, 0xF1, 0xF3, 0xF6, 0xFA, 0xFC};
    const auto code = static_cast<unsigned char>(c);
    return code < 128 || std::find(std::begin(accepted), std::end(accepted), code) != std::end(accepted) ? 1 : 0;
}
