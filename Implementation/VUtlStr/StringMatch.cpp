#include <TuvoUtil/StringMatch.h>

#include "VUtlStr/StringMatchText.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuString.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

// ---- Wildcards -----------------------------------------------------------------------------------------------------

struct WithCase
{
    static bool AreEqual(char left, char right) { return left == right; }
    static std::size_t Find(std::string_view text, char c, std::size_t start) { return text.find(c, start); }
};

struct WithoutCase
{
    static bool AreEqual(char left, char right) { return BuToUpper(left) == BuToUpper(right); }
    static std::size_t Find(std::string_view text, char c, std::size_t start)
    {
        while (start < text.size() && !AreEqual(text[start], c))
            ++start;
        return start < text.size() ? start : std::string_view::npos;
    }
};

// Whether a character of a pattern, which is no '*', stands for one of a text.
template <typename Case>
bool StandsFor(char ofPattern, char ofText)
{
    return ofPattern == '?' || Case::AreEqual(ofPattern, ofText);
}

template <typename Case>
bool BeginsWith(std::string_view text, std::string_view part)
{
    return text.size() >= part.size() && std::equal(part.begin(), part.end(), text.begin(), StandsFor<Case>);
}

// Gives the end of the first occurrence of a part of a pattern, which is not empty; npos when there is none.
template <typename Case>
std::size_t FindEndOfPart(std::string_view text, std::string_view part)
{
    if (part.size() > text.size())
        return std::string_view::npos;
    const std::string_view starts = text.substr(0, text.size() - part.size() + 1);
    for (std::size_t start = 0; start < starts.size(); ++start) {
        if (part.front() != '?')
            start = Case::Find(starts, part.front(), start);
        if (start == std::string_view::npos)
            break;
        if (BeginsWith<Case>(text.substr(start), part))
            return start + part.size();
    }
    return std::string_view::npos;
}

// Finds the parts between the '*' of a pattern, which begins and ends with one. For each the first place is as good as
// any other, since it leaves the most text to those behind it.
template <typename Case>
bool HoldsParts(std::string_view text, std::string_view pattern)
{
    for (std::size_t begin = 0; (begin = pattern.find_first_not_of('*', begin)) != std::string_view::npos;) {
        const std::size_t end = pattern.find('*', begin);
        const std::size_t behind = FindEndOfPart<Case>(text, pattern.substr(begin, end - begin));
        if (behind == std::string_view::npos)
            return false;
        text.remove_prefix(behind);
        begin = end;
    }
    return true;
}

// Matches from the first '*' of a pattern. Behind the last one stands what has a fixed place at the end of the text, and
// so rules most texts out. Kept apart: most texts do not get here, and the way until then needs few registers.
template <typename Case>
[[gnu::noinline]] bool MatchesFromStar(const char* pattern, const char* text)
{
    if (pattern[1] == '\0')
        return true;
    const std::string_view rest = text;
    const std::string_view last = std::strrchr(pattern, '*') + 1;
    if (last.size() > rest.size() || !BeginsWith<Case>(rest.substr(rest.size() - last.size()), last))
        return false;
    return HoldsParts<Case>(rest.substr(0, rest.size() - last.size()),
                            {pattern, static_cast<std::size_t>(last.data() - pattern)});
}

template <typename Case>
bool Matches(const char* pattern, const char* text)
{
    for (; *pattern != '*'; ++pattern, ++text) {
        if (*text == '\0')
            return *pattern == '\0';
        if (!StandsFor<Case>(*pattern, *text))
            return false;
    }
    return MatchesFromStar<Case>(pattern, text);
}

// ---- Order and lookup ----------------------------------------------------------------------------------------------

constexpr std::size_t LongestCompared = 255;

bool IsTooLongToCompare(const char* text)
{
    std::size_t length = 0;
    while (length <= LongestCompared && text[length] != '\0')
        ++length;
    return length > LongestCompared;
}

bool IsAscii(std::string_view text)
{
    unsigned char bits = 0;
    for (const char c : text)
        bits |= static_cast<unsigned char>(c);
    return bits < 0x80;
}

}  // namespace

int UtlStrWildCmp(const char* pattern, const char* text)
{
    return pattern != nullptr && text != nullptr && Matches<WithCase>(pattern, text) ? 1 : 0;
}

int UtlStrMatchString(char* pattern, const char* text, int ignoreCase)
{
    if (pattern == nullptr || text == nullptr)
        return 0;
    return (ignoreCase != 0 ? Matches<WithoutCase>(pattern, text) : Matches<WithCase>(pattern, text)) ? 1 : 0;
}

int UtlStrCompi(const char* first, const char* second)
{
    const char* const left = first != nullptr ? first : "";
    const char* const right = second != nullptr ? second : "";
    // Kept: callers count on long texts being equal.
    if (IsTooLongToCompare(left) || IsTooLongToCompare(right))
        return 0;
    return BuCompareNoCase(left, right);
}

int UtlFindStringInList(int count, char** list, char* text)
{
    if (list == nullptr || match::IsNullOrEmpty(text))
        return -1;
    for (int i = 0; i < count; ++i)
        if (list[i] != nullptr && std::strcmp(list[i], text) == 0)
            return i;
    return -1;
}

int UtlStrExtensionMatch(const char* name, const char* extension)
{
    if (name == nullptr || extension == nullptr)
        return 0;
    const char* const dot = std::strrchr(name, '.');
    return dot != nullptr && std::strcmp(dot + 1, extension) == 0 ? 1 : 0;
}

int UtlStringHasOneofCharacter(const char* text, const char* characters)
{
    if (text == nullptr || characters == nullptr)
        return 0;
    if (IsAscii(text) && IsAscii(characters))
        return std::strpbrk(text, characters) != nullptr ? 1 : 0;
    return BuString(text).FindOneOf(BuString(characters).GetText(), 0) != -1 ? 1 : 0;
}
