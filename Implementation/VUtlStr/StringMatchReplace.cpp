#include <TuvoUtil/StringMatch.h>

#include "Kernels/DelimiterScan.h"
#include "VUtlStr/FieldCut.h"
#include "VUtlStr/NewText.h"
#include "VUtlStr/StringMatchSearch.h"
#include "VUtlStr/StringMatchText.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

using kernels::DelimiterSet;
using strings::NewCopy;

// ---- Occurrences of a text -----------------------------------------------------------------------------------------

// Which occurrences of a pattern are replaced, given what stands before and behind them.
using Choice = bool (*)(std::string_view before, std::string_view after);

bool Always(std::string_view /*before*/, std::string_view /*after*/)
{
    return true;
}

// A text to replace in, and the same as it is searched: itself, or in upper case.
struct SearchedText
{
    std::string_view text;
    std::string_view searched;
};

// Gives a new text. What stands before an occurrence is as it is after the replacements so far.
char* ReplaceChosen(SearchedText source, std::string_view pattern, std::string_view replacement, Choice isReplaced)
{
    ScratchBuffer<char, 512> result(modules::VUtlStr);
    if (!result.Reserve(source.text.size() + 1))
        return nullptr;
    const auto append = [&result](std::string_view part) { return result.Append(part.data(), part.size()); };

    std::size_t copied = 0;
    OccurrenceSearch search(source.searched, pattern);
    for (std::size_t found; (found = search.Next()) != OccurrenceSearch::None;) {
        if (!append(source.text.substr(copied, found - copied)))
            return nullptr;
        copied = found + pattern.size();
        const bool replaces = isReplaced({result.Data(), result.Size()}, source.text.substr(copied));
        if (!append(replaces ? replacement : source.text.substr(found, pattern.size())))
            return nullptr;
    }
    return append(source.text.substr(copied)) && result.Append('\0') ? result.Release() : nullptr;
}

// ---- Runs of delimiters --------------------------------------------------------------------------------------------

// The first place at or after `start` that holds a delimiter, or anything else; the length when there is none.
std::size_t FindDelimiter(std::string_view text, const DelimiterSet& set, std::size_t start)
{
    while (start < text.size() && !set.Contains(text[start]))
        ++start;
    return start;
}

std::size_t FindOther(std::string_view text, const DelimiterSet& set, std::size_t start)
{
    while (start < text.size() && set.Contains(text[start]))
        ++start;
    return start;
}

// Gives the fields between runs of delimiters to `take`, one after the other; there is at least one.
template <typename Take>
void ForEachField(std::string_view text, const DelimiterSet& set, Take take)
{
    std::size_t begin = 0;
    if (!text.empty() && set.Contains(text.front())) {
        take(fieldcut::Blank);
        begin = 1;
    }
    // Kept: further delimiters at the start belong to the first real field, as splitting leaves them there.
    std::size_t end = FindDelimiter(text, set, FindOther(text, set, begin));
    do {
        take(text.substr(begin, end - begin));
        begin = FindOther(text, set, end);
        end = FindDelimiter(text, set, begin);
    } while (begin < text.size());
}

// The size of the block for a result, SIZE_MAX when it does not fit: for every field one replacement, one more, and the
// rest with some bytes to spare.
std::size_t ResultSize(std::size_t text, std::size_t replacement, std::size_t fields)
{
    std::size_t size = 0;
    if (__builtin_mul_overflow(replacement, fields + 1, &size) || __builtin_add_overflow(size, text + 10, &size))
        return SIZE_MAX;
    return size;
}

char* ReplaceDelimiters(std::string_view text, const char* delimiters, std::string_view replacement)
{
    const DelimiterSet set(delimiters);
    std::size_t fields = 0;
    ForEachField(text, set, [&fields](std::string_view) { ++fields; });
    char* const result = static_cast<char*>(
        VBuMalloc(ResultSize(text.size(), replacement.size(), fields), modules::VUtlStr, __LINE__, 0));
    if (result == nullptr)
        return nullptr;

    char* end = result;
    const auto append = [&end](std::string_view part) { end = std::copy(part.begin(), part.end(), end); };
    // Kept: only the whole set, as it stands, makes a replacement in front.
    if (text.starts_with(match::View(delimiters)))
        append(replacement);
    bool isFirst = true;
    ForEachField(text, set, [&](std::string_view field) {
        if (!isFirst)
            append(replacement);
        isFirst = false;
        append(field);
    });
    *end = '\0';
    return result;
}

}  // namespace

char* UtlReplaceString(const char* text, const char* delimiters, const char* replacement)
{
    return text != nullptr ? ReplaceDelimiters(text, delimiters, match::View(replacement)) : nullptr;
}

char* UtlReplaceStringWithNothing(const char* text, const char* pattern, int caseSensitive)
{
    // Kept: an empty pattern gives an empty text.
    if (match::IsNullOrEmpty(text) || match::IsNullOrEmpty(pattern))
        return NewCopy({});
    if (caseSensitive != 0)
        return ReplaceChosen({text, text}, pattern, "", Always);
    // Kept: the pattern stays as it is, so one with a lower-case letter is not found.
    match::WorkingCopy upper;
    return upper.AssignUpper(text) ? ReplaceChosen({text, upper.View()}, pattern, "", Always) : nullptr;
}

char* UtlSearchAndReplaceByMatchWholeWord(char* text, char* word, char* replacement)
{
    return UtlReplaceStringWithString(text, word, replacement, 1, 1);
}

char* UtlReplaceStringWithString(const char* text, const char* pattern, const char* replacement, int caseSensitive,
                                 int wholeWord)
{
    if (text == nullptr)
        return nullptr;
    if (match::IsNullOrEmpty(pattern))
        return NewCopy(text);
    const Choice isReplaced = wholeWord != 0 ? match::IsWholeWordBetween : Always;
    if (caseSensitive != 0)
        return ReplaceChosen({text, text}, pattern, match::View(replacement), isReplaced);
    match::WorkingCopy upperText, upperPattern;
    if (!upperText.AssignUpper(text) || !upperPattern.AssignUpper(pattern))
        return nullptr;
    return ReplaceChosen({text, upperText.View()}, upperPattern.View(), match::View(replacement), isReplaced);
}

int UtlFindSubstringLocationsInString(const char* text, const char* pattern, BuArrayTempl<int>& positions)
{
    positions.RemoveAll();
    if (match::IsNullOrEmpty(text) || match::IsNullOrEmpty(pattern))
        return 0;
    OccurrenceSearch search(text, pattern);
    for (std::size_t found; (found = search.NextOverlapping()) != OccurrenceSearch::None;) {
        if (found > INT_MAX || positions.Add(static_cast<int>(found)) < 0) {
            positions.RemoveAll();
            return -1;
        }
    }
    return positions.GetCount();
}
