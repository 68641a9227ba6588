// The lenient grammar of ids, and what builds on it.
#include <TuvoUtil/IdList.h>

#include "TuvoMemory/ScratchBuffer.h"
#include "VUtlStr/IdListArray.h"
#include "VUtlStr/IdListFields.h"

#include <basutl/BuNumber.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

struct Separators
{
    char set;
    char range;
};

// The bounds of a range, in 64 bits so that one more than the largest id can be counted.
struct Bounds
{
    std::int64_t lower;
    std::int64_t upper;

    std::int64_t Count() const { return upper - lower + 1; }
};

int IdOf(std::string_view text)
{
    const char* end;
    return static_cast<int>(BuReadInteger(text.data(), text.data() + text.size(), &end));
}

// One part is the id that the whole field begins with; of more, the first and the last are bounds.
Bounds ReadField(std::string_view field, char rangeSeparator)
{
    idlist::Fields parts(field, rangeSeparator);
    std::string_view first;
    std::string_view last;
    parts.Next(first);
    if (!parts.Next(last)) {
        const int id = IdOf(field);
        return {id, id};
    }
    while (parts.Next(last)) {
    }
    Bounds bounds = {IdOf(first), IdOf(last)};
    if (bounds.lower > bounds.upper)
        std::swap(bounds.lower, bounds.upper);
    return bounds;
}

std::int64_t CountIds(std::string_view text, const Separators& separators)
{
    idlist::Fields fields(text, separators.set);
    std::int64_t count = 0;
    for (std::string_view field; fields.Next(field);)
        count += ReadField(field, separators.range).Count();
    return count;
}

// Writes `count` ids: the first of the text and every step-th after it.
void WriteIds(std::string_view text, const Separators& separators, int step, int* to, std::int64_t count)
{
    idlist::Fields fields(text, separators.set);
    const int* const end = to + count;
    std::int64_t passedOver = 0;  // ids of the next field before the one that is taken
    for (std::string_view field; to != end && fields.Next(field);) {
        const Bounds bounds = ReadField(field, separators.range);
        std::int64_t id = bounds.lower + passedOver;
        for (; id <= bounds.upper && to != end; id += step)
            *to++ = static_cast<int>(id);
        passedOver = id - bounds.upper - 1;
    }
}

// Every step-th id of a text, whole steps only.
int ReadIds(std::string_view text, const Separators& separators, int step, int** ids)
{
    const std::int64_t count = CountIds(text, separators) / step;
    int* const list = idlist::NewArray<int>(count);
    if (list == nullptr)
        return 0;
    WriteIds(text, separators, step, list, count);
    *ids = list;
    return static_cast<int>(count);
}

}  // namespace

int UtlGetIdListFromGivenSet(const char* text, int** ids, const char* setSeparator, const char* rangeSeparator)
{
    if (ids == nullptr)
        return 0;
    *ids = nullptr;
    if (text == nullptr)
        return 0;
    const Separators separators = {idlist::SeparatorOf(setSeparator, ','), idlist::SeparatorOf(rangeSeparator, ':')};
    return ReadIds(text, separators, 1, ids);
}

int UtlGetIdListFromWildCard(char* pattern, int** ids, char wildcard)
{
    if (ids == nullptr)
        return 0;
    *ids = nullptr;
    const char standIn = wildcard != '\0' ? wildcard : '?';
    if (pattern == nullptr || std::strchr(pattern, standIn) == nullptr)
        return 0;
    // The text "low:high", made of two copies of the pattern.
    const std::size_t length = std::strlen(pattern);
    ScratchBuffer<char, 256> text(modules::VUtlStr);
    if (!text.Append(pattern, length) || !text.Append(':') || !text.Append(pattern, length))
        return 0;
    char* const high = text.begin() + length + 1;
    std::replace(text.begin(), text.begin() + length, standIn, '0');
    std::replace(high, text.end(), standIn, '9');
    return ReadIds({text.Data(), text.Size()}, {',', ':'}, 1, ids);
}

int UtlGetIncrementalIdList(char* text, int** ids, char rangeSeparator, char stepSeparator)
{
    if (ids == nullptr)
        return 0;
    *ids = nullptr;
    if (text == nullptr)
        return 0;
    const Separators separators = {stepSeparator != '\0' ? stepSeparator : ',',
                                   rangeSeparator != '\0' ? rangeSeparator : ':'};
    const char* const divide = std::strrchr(text, separators.set);
    const int step = divide != nullptr ? BuReadInt(divide + 1) : 0;
    if (step < 1)
        return 0;
    return ReadIds({text, static_cast<std::size_t>(divide - text)}, separators, step, ids);
}
