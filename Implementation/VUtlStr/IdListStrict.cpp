// The strict grammar of ids, in two passes over the text: the first checks it and finds what memory it takes, the second
// writes the ids.
#include <TuvoUtil/IdList.h>

#include "VUtlStr/IdListArray.h"
#include "VUtlStr/IdListSeen.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

using idlist::Range;

constexpr std::ptrdiff_t LongestBound = 9;  // characters

// The number that a bound of at most nine characters begins with; whatever stands behind it is passed over.
int BoundValue(const char* first, const char* last)
{
    const char* end;
    return static_cast<int>(BuReadInteger(first, last, &end));
}

// Reads an upper bound up to the end of the item, or before `end`. False when it is too long.
bool ReadUpper(const char*& next, char end, int& upper)
{
    const char* const first = next;
    while (BuIsDigit(*next) || ((*next == '-' || *next == ':') && *next != end))
        ++next;
    upper = BoundValue(first, next);
    return next - first <= LongestBound;
}

// Reads what follows the lower bound, from a range sign on.
bool ReadUpperBounds(const char*& next, int& upper)
{
    const bool isColon = *next++ == ':';
    if (!ReadUpper(next, isColon ? '-' : '\0', upper))
        return false;
    if (*next != '-')
        return true;
    // Kept: a '-' behind a ':' begins a bound that must not be too long either, and does not count.
    int unused;
    return ReadUpper(++next, '\0', unused);
}

// The number of digits that eight characters begin with; their value, unless there are none.
int ReadDigits(const char* next, std::uint32_t& value)
{
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t digits;
    std::memcpy(&digits, next, sizeof digits);
    digits ^= 0x3030'3030'3030'3030;
    const std::uint64_t others = ((digits + 0x7676'7676'7676'7676) | digits) & 0x8080'8080'8080'8080;
    const int count = std::countr_zero(others) / 8;
    // With the last digit in the highest byte and zeros in front, neighbours become pairs, and pairs the value.
    digits <<= (64 - 8 * count) % 64;
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t everyOther = 0x0000'00FF'0000'00FF;
    constexpr std::uint64_t first = 100 + (std::uint64_t{1'000'000} << 32);
    constexpr std::uint64_t second = 1 + (std::uint64_t{10'000} << 32);
    value = static_cast<std::uint32_t>(((digits & everyOther) * first + (digits >> 16 & everyOther) * second) >> 32);
    return count;
}

// Reads one item of a text that ends at `last` with a NUL, up to the first character that cannot belong to it, as the range
// of its ids above 0. `strays` tells how many separators count as the beginning of the lower bound. False when the item is
// rejected.
[[gnu::always_inline]] inline bool ReadItem(const char*& next, const char* last, std::ptrdiff_t strays, Range& range)
{
    const char* const first = next;
    std::uint32_t lower = 0;
    if (last - next >= 8)
        next += ReadDigits(next, lower);
    for (; BuIsDigit(*next); ++next)
        lower = lower * 10 + static_cast<std::uint32_t>(*next - '0');
    const std::ptrdiff_t length = next - first + strays;
    if (length == 0 || length > LongestBound)
        return false;
    const int one = strays > 0 ? 0 : static_cast<int>(lower);
    int other = one;
    if (*next == '-' || *next == ':') {
        const char* behind = next;  // lest `next` itself has to lie in memory
        if (!ReadUpperBounds(behind, other))
            return false;
        next = behind;
    }
    if (other == -1)  // Kept: it stands for none.
        other = one;
    range = {std::max(std::min(one, other), 1), std::max(one, other)};
    return true;
}

const char* SkipBlanks(const char* next)
{
    while (*next == ' ')
        ++next;
    return next;
}

// Moves on to the next item, and counts the separators; a run of blanks is one, blanks at the end of the text are none.
std::ptrdiff_t SkipSeparators(const char*& next)
{
    std::ptrdiff_t count = 0;
    for (;; ++count) {
        if (*next == ',') {
            ++next;
            continue;
        }
        const char* const behind = SkipBlanks(next);
        if (behind == next || *behind == '\0') {
            next = behind;
            return count;
        }
        next = behind;
    }
}

// Reads all items of a text and gives the range of each to `visit`. False when the text is rejected.
template <typename Visit>
bool ReadItems(std::string_view text, Visit visit)
{
    const char* const last = text.data() + text.size();
    const char* next = SkipBlanks(text.data());
    std::ptrdiff_t strays = 0;
    if (*next == ',') {
        // Kept: the empty item in front of a comma has no effect, and all further separators belong to the first number,
        // which reads as 0.
        ++next;
        strays = SkipSeparators(next);
    }
    do {
        Range range;
        if (!ReadItem(next, last, strays, range))
            return false;
        visit(range);
        strays = 0;
        if (SkipSeparators(next) == 0 && *next != '\0')
            return false;
    } while (*next != '\0');
    return true;
}

// What a text holds.
struct Extent
{
    std::int64_t count = 0;  // of ids, duplicates included
    int largest = 0;
    bool isAscending = true;  // each id is larger than all before it, so that there are no duplicates

    void Add(const Range& range)
    {
        if (range.upper < range.lower)
            return;
        count += std::int64_t{range.upper} - range.lower + 1;
        isAscending = isAscending && range.lower > largest;
        largest = std::max(largest, range.upper);
    }

    bool IsDense() const { return largest / 64 <= count; }
};

// The place behind the last id written.
template <typename Seen>
int* WriteIds(std::string_view text, Seen& seen, int* to)
{
    ReadItems(text, [&](const Range& range) { to = seen.AppendNew(range, to); });
    return seen.Finish(to);
}

// The same with memory for what has been seen: null when it is exhausted.
template <typename Seen, typename Size>
int* WriteNewIds(std::string_view text, Size size, int* to)
{
    Seen seen;
    return seen.Reserve(size) ? WriteIds(text, seen, to) : nullptr;
}

int* WriteIds(std::string_view text, const Extent& extent, bool keepDuplicates, int* to)
{
    if (keepDuplicates || extent.isAscending) {
        idlist::NothingSeen nothing;
        return WriteIds(text, nothing, to);
    }
    return extent.IsDense() ? WriteNewIds<idlist::SeenBits>(text, extent.largest, to)
                            : WriteNewIds<idlist::SeenTable>(text, extent.count, to);
}

}  // namespace

int UtlGenerateIdListFromString(const char* text, int** ids, int keepDuplicates)
{
    if (text == nullptr || ids == nullptr)
        return -1;
    const std::string_view whole = text;
    Extent extent;
    if (!ReadItems(whole, [&](const Range& range) { extent.Add(range); }))
        return -1;
    const bool keep = keepDuplicates != 0;
    const std::int64_t most = keep ? extent.count : std::min<std::int64_t>(extent.count, extent.largest);
    int* list = idlist::NewArray<int>(most + 1);  // one more for an id that turns out to be known
    if (list == nullptr)
        return -1;
    const int* const end = WriteIds(whole, extent, keep, list);
    if (end == nullptr) {
        VBU_FREE(list, modules::VUtlStr, __LINE__);
        return -1;
    }
    *ids = list;
    return static_cast<int>(end - list);
}
