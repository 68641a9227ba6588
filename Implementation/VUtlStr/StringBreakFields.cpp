// Fields between delimiters.
#include <TuvoUtil/StringBreak.h>

#include "VUtlStr/StringList.h"
#include "VUtlStr/StringMatchSearch.h"

#include <bit>
#include <cstring>
#include <string_view>

using fieldcut::CountDelimiters;
using kernels::DelimiterSet;

namespace {

char FirstOf(const char* delimiter)
{
    return delimiter != nullptr ? *delimiter : '\0';
}

// The array is made ten by ten, and its room belongs to the caller.
std::size_t RoomFor(std::size_t count)
{
    return count / 10 * 10 + 10;
}

// Calls visit(segment) for each segment between `open` and `close`.
template <typename Visit>
void ForEachSegment(const char* text, char open, char close, Visit visit)
{
    if (open == '\0' || close == '\0')
        return;
    while ((text = std::strchr(text, open)) != nullptr) {
        const char* const start = text + 1;
        const char* const end = std::strchr(start, close);
        if (end == nullptr)
            return;
        visit({start, static_cast<std::size_t>(end - start)});
        text = end + 1;
    }
}

}  // namespace

int UtlStringTok(char* text, char*** fields, const char* delimiter)
{
    if (fields == nullptr)
        return 0;
    *fields = nullptr;
    if (text == nullptr)
        return 0;
    const std::size_t length = std::strlen(text);
    const DelimiterSet set(FirstOf(delimiter));
    const std::size_t count = CountDelimiters(text, length, set) + 1;
    char** const array = fieldcut::NewArray(count, modules::VUtlStr, __LINE__);
    if (array == nullptr)
        return 0;
    const bool endsAtDelimiter = length != 0 && set.Contains(text[length - 1]);
    fieldcut::CutAtEach(text, length, set, array, count);
    *fields = array;
    return static_cast<int>(count) - endsAtDelimiter;
}

int UtlBreakStringIntoChars(const char* text, char*** fields, const char* delimiter)
{
    if (fields == nullptr)
        return 0;
    *fields = nullptr;
    if (text == nullptr || *text == '\0')
        return 0;
    const std::size_t length = std::strlen(text);
    const DelimiterSet set(FirstOf(delimiter));
    const bool endsAtDelimiter = set.Contains(text[length - 1]);
    StringList list(RoomFor(CountDelimiters(text, length, set) + !endsAtDelimiter));
    const char* start = text;
    kernels::ForEachChunk(text, length, set, [&](const kernels::Chunk& chunk) {
        for (std::size_t i = 0; i < chunk.blocks; ++i)
            for (std::uint64_t mask = chunk.masks[i]; mask != 0; mask &= mask - 1) {
                const char* const end = text + chunk.start + i * kernels::BlockSize + std::countr_zero(mask);
                list.Append(end != start ? std::string_view(start, static_cast<std::size_t>(end - start))
                                         : fieldcut::Blank);
                start = end + 1;
            }
    });
    if (!endsAtDelimiter)
        list.Append({start, static_cast<std::size_t>(text + length - start)});
    return list.Release(fields);
}

int UtlBreakStringIntoStringsDbg(char* text, char*** fields, const char* delimiters, const char* file, int line)
{
    if (fields == nullptr)
        return 0;
    *fields = nullptr;
    if (text == nullptr)
        return 0;
    const DelimiterSet set(delimiters);
    const std::size_t leading = set.Contains(*text) ? 1 : 0;
    text += leading;
    const std::size_t length = std::strlen(text);
    const std::size_t count = fieldcut::CountTokens(text, length, set);
    char** const array = fieldcut::NewArray(leading + count, file, line);
    if (array == nullptr)
        return 0;
    if (leading != 0)
        array[0] = const_cast<char*>(fieldcut::Blank);
    fieldcut::CutTokens(text, length, set, array + leading, count);
    *fields = array;
    return static_cast<int>(leading + count);
}

int VbUtlBreakStringIntoStringsDbg(char* text, int* count, char*** fields, const char* delimiters, const char* file,
                                   int line)
{
    if (count != nullptr)
        *count = 0;
    if (fields == nullptr)
        return 0;
    *fields = nullptr;
    char** inText = nullptr;
    const int inTextCount = UtlBreakStringIntoStringsDbg(text, &inText, delimiters, file, line);
    if (inTextCount == 0)
        return 0;
    StringList list(static_cast<std::size_t>(inTextCount));
    for (int i = 0; i < inTextCount; ++i)
        list.Append(inText[i]);
    const int copied = list.Release(fields);
    // Kept: the array of the inner call stays allocated; leak reports of hosts count on it.
    if (copied == 0)
        VBU_FREE(inText, file, line);
    if (count != nullptr)
        *count = copied;
    return copied;
}

int UtlGetStringsIncludedInDelimiters(const char* text, char open, char close, char*** segments)
{
    if (segments == nullptr)
        return 0;
    *segments = nullptr;
    if (text == nullptr)
        return 0;
    std::size_t count = 0;
    ForEachSegment(text, open, close, [&](std::string_view) { ++count; });
    if (count == 0)
        return 0;
    StringList list(count);
    ForEachSegment(text, open, close, [&](std::string_view segment) { list.Append(segment); });
    return list.Release(segments);
}

void UtlFreeStringList(int& count, char** list)
{
    if (count == 0)
        return;
    for (int i = 0; list != nullptr && i < count; ++i)
        VBU_FREE(list[i], modules::VUtlStr, __LINE__);
    VBU_FREE(list, modules::VUtlStr, __LINE__);
    count = 0;
}

void UtlTrimStrings(int count, char** strings, char* marker)
{
    if (strings == nullptr || marker == nullptr || *marker == '\0')
        return;
    for (int i = 0; i < count; ++i) {
        if (strings[i] == nullptr)
            continue;
        const std::size_t found = OccurrenceSearch(strings[i], marker).Next();
        if (found != OccurrenceSearch::None)
            strings[i][found] = '\0';
    }
}
