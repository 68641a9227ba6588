// Copies, letter case and names.

#include "VUtlStr/NewText.h"

#include <TuvoUtil/StringClean.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>

namespace {

using strings::NewCopy;
using strings::NewText;

// A new text of what `change` makes of each character; null for a null text.
template <typename Change>
char* NewChanged(const char* text, Change change, int line = __builtin_LINE())
{
    if (text == nullptr)
        return nullptr;
    const std::string_view whole(text);
    char* const copy = NewText(whole.size(), line);
    if (copy != nullptr)
        std::transform(whole.begin(), whole.end(), copy, change);
    return copy;
}

// The same with the length of the text stored, which has to fit.
template <typename Change>
char* NewMeasured(const char* text, int* length, Change change, int line = __builtin_LINE())
{
    const std::size_t size = text != nullptr ? std::strlen(text) : 0;
    char* const copy = size <= INT_MAX ? NewChanged(text, change, line) : nullptr;
    if (copy != nullptr && length != nullptr)
        *length = static_cast<int>(size);
    return copy;
}

// ---- File names ----------------------------------------------------------------------------------------------------

constexpr std::string_view Dots = "...";

bool IsInsideCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The beginning of a path and its end, of at most so many bytes, without a part of a UTF-8 character. Bytes that look
// like parts without being any cost no more than a character has.
std::string_view Beginning(std::string_view path, std::size_t length)
{
    for (int i = 0; i < 3 && length > 0 && IsInsideCharacter(path[length]); ++i)
        --length;
    return path.substr(0, length);
}

std::string_view End(std::string_view path, std::size_t length)
{
    for (int i = 0; i < 3 && length > 0 && IsInsideCharacter(path[path.size() - length]); ++i)
        --length;
    return path.substr(path.size() - length);
}

char* NewJoined(std::string_view beginning, std::string_view dots, std::string_view end)
{
    char* const text = NewText(beginning.size() + dots.size() + end.size());
    if (text != nullptr)
        std::copy(end.begin(), end.end(),
                  std::copy(dots.begin(), dots.end(), std::copy(beginning.begin(), beginning.end(), text)));
    return text;
}

// The path in at most `room` bytes, which do not hold all of it.
char* NewShortened(std::string_view path, std::size_t room)
{
    if (room <= Dots.size())
        return NewCopy(End(path, room));
    room -= Dots.size();
    const std::size_t separator = path.find_last_of("/\\");
    const std::size_t nameSize = separator != std::string_view::npos ? path.size() - separator : path.size();
    if (nameSize > room)
        return NewJoined({}, Dots, End(path, room));
    return NewJoined(Beginning(path, room - nameSize), Dots, path.substr(path.size() - nameSize));
}

// Whether a file's name may not hold a character, on one of the systems; a NUL neither.
bool IsInvalidInFileName(char c)
{
    return static_cast<unsigned char>(c) < 32 || std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos;
}

}  // namespace

// ---- Copies --------------------------------------------------------------------------------------------------------

int UtlStrncpy(char* target, const char* source, int size)
{
    if (target == nullptr || size < 1)
        return 0;
    if (source == nullptr) {
        *target = '\0';
        return 0;
    }
    const auto limit = static_cast<std::size_t>(size);
    const std::size_t copied = std::min(::strnlen(source, limit) + 1, limit);
    std::memmove(target, source, copied);
    // Kept: a copied NUL is counted, and one more follows where there is room.
    if (copied < limit)
        target[copied] = '\0';
    return static_cast<int>(copied);
}

int Utilstrcpy(char* target, const char* source)
{
    if (target != nullptr)
        std::memmove(target, source != nullptr ? source : "", source != nullptr ? std::strlen(source) + 1 : 1);
    return 0;
}

int Utilstrncpy(char* target, char* source, int size)
{
    if (target == nullptr || size < 1)
        return 0;
    const auto limit = static_cast<std::size_t>(size);
    const char* const text = source != nullptr ? source : "";
    const std::size_t copied = ::strnlen(text, limit);
    std::memmove(target, text, copied);
    std::memset(target + copied, '\0', limit - copied);
    return 0;
}

char* UtlStrDup(const char* text, int* length)
{
    return NewMeasured(text, length, [](char c) { return c; });
}

char* UtlToUpperStrDup(const char* text, int* length)
{
    return NewMeasured(text, length, BuToUpper<char>);
}

char* UtlStrToLower(const char* text)
{
    return NewChanged(text, BuToLower<char>);
}

char* UtlStrToUpper(const char* text)
{
    return NewChanged(text, BuToUpper<char>);
}

void UtlStrFillChar(char* text, char c, int count)
{
    if (text != nullptr && count > 0)
        std::memset(text, static_cast<unsigned char>(c), static_cast<std::size_t>(count));
}

// ---- File names ----------------------------------------------------------------------------------------------------

const char* UtlStrBaseName(const char* path)
{
    if (path == nullptr)
        return nullptr;
    // Kept: a '/' goes before a later '\'.
    const char* separator = std::strrchr(path, '/');
    if (separator == nullptr)
        separator = std::strrchr(path, '\\');
    return separator != nullptr ? separator + 1 : path;
}

char* UtlCutShortFileName(const char* path, int maximumLength)
{
    if (path == nullptr || maximumLength < 0)
        return nullptr;
    const std::string_view whole(path);
    const auto room = static_cast<std::size_t>(maximumLength);
    return whole.size() <= room ? NewCopy(whole) : NewShortened(whole, room);
}

char* UtlReplaceInvalidCharsInFileName(const char* name, char replacement)
{
    if (name == nullptr)
        return nullptr;
    const std::string_view whole(name);
    const auto invalid = static_cast<std::size_t>(std::count_if(whole.begin(), whole.end(), IsInvalidInFileName));
    const bool leavesOut = IsInvalidInFileName(replacement);
    char* const copy = NewText(whole.size() - (leavesOut ? invalid : 0));
    if (copy == nullptr)
        return nullptr;
    if (leavesOut)
        std::remove_copy_if(whole.begin(), whole.end(), copy, IsInvalidInFileName);
    else
        std::replace_copy_if(whole.begin(), whole.end(), copy, IsInvalidInFileName, replacement);
    return copy;
}

char* UtlUrlStrReplaceFilePathSep(const char* path)
{
    return NewChanged(path, [](char c) { return c == '\\' ? '/' : c; });
}
