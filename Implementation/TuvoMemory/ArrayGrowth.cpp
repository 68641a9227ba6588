#include "TuvoMemory/ArrayGrowth.h"

#include "TuvoMemory/MemoryState.h"
#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Messages.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// The value of one in the leading digit: 1 up to 10, 10 up to 100, ...
std::int64_t LeadingUnit(std::int64_t count)
{
    std::int64_t unit = 1;
    while (unit * 10 < count)
        unit *= 10;
    return unit;
}

// The bytes of an array; what does not fit becomes a size that cannot be had.
std::size_t ArrayBytes(std::int64_t count, std::size_t elementSize)
{
    std::size_t bytes = 0;
    return __builtin_mul_overflow(static_cast<std::size_t>(count), elementSize, &bytes) ? SIZE_MAX : bytes;
}

// The elements after an append; what no count can hold becomes a number whose bytes cannot be had.
std::int64_t CountAfter(int count, int added)
{
    const std::int64_t total = std::int64_t{count} + added;
    return total > INT_MAX ? INT64_MAX : total;
}

int AsResult(std::size_t bytes)
{
    return static_cast<int>(std::min<std::size_t>(bytes, INT_MAX));
}

void* Resized(void* array, int count, std::size_t bytes, const char* file, int line)
{
    return count != 0 ? VBuRealloc(array, bytes, file, line) : VBuMalloc(bytes, file, line, 0);
}

void CopyToEnd(void* array, int count, std::size_t elementSize, const void* source, std::size_t bytes)
{
    std::memcpy(static_cast<unsigned char*>(array) + ArrayBytes(count, elementSize), source, bytes);
}

void WarnOfOtherInitialCount(void* array, int initialCount, const char* file, int line)
{
    const memory::BlockHeader* const header = memory::FindCountedHeader(array);
    if (header == nullptr || header->initialCount == memory::NoInitialCount || header->initialCount == initialCount)
        return;
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR,
                            L"VBuBlockAll... is called with different initial counts! Called at line %d in File %s",
                            line, BuString(file).GetText());
}

// The capacity that an append needs; 0 when the present block has room.
std::int64_t AppendCapacity(int count, int addCount, int initialCount)
{
    const std::int64_t total = CountAfter(count, addCount);
    if (total == INT64_MAX)
        return total;
    if (initialCount == 0 || total > initialCount)
        return memory::GrownCapacity(count, addCount);
    return count == 0 ? memory::RoundedCapacity(initialCount) : 0;
}

}  // namespace

std::int64_t memory::RoundedCapacity(std::int64_t count) noexcept
{
    const std::int64_t unit = LeadingUnit(count);
    return (count + unit - 1) / unit * unit;
}

std::int64_t memory::GrownCapacity(std::int64_t count, std::int64_t added) noexcept
{
    if (count > 0) {
        const std::int64_t unit = LeadingUnit(count);
        if (count % unit != 0 && unit - count % unit >= added)
            return 0;
    }
    return count + added == 0 ? 0 : RoundedCapacity(count + added);
}

int VBuAllocAndCopy(int& count, void*& array, std::size_t elementSize, int addCount, const void* source,
                    const char* file, int line)
{
    if (addCount <= 0 || count < 0)
        return -1;
    array = Resized(array, count, ArrayBytes(CountAfter(count, addCount), elementSize), file, line);
    if (array == nullptr)
        return 1;
    if (source == nullptr)
        return 0;
    CopyToEnd(array, count, elementSize, source, ArrayBytes(addCount, elementSize));
    count += addCount;
    return 0;
}

int VBuBlockAllocAndAppend(int* count, void*** array, std::size_t elementSize, int addCount, void** source,
                           int initialCount, const char* file, int line)
{
    if (count == nullptr || array == nullptr || *count < 0 || addCount < 0 || (*count == 0 && addCount == 0))
        return 0;
    if (*count != 0)
        WarnOfOtherInitialCount(*array, initialCount, file, line);

    std::size_t addedBytes = 0;
    if (const std::int64_t capacity = AppendCapacity(*count, addCount, initialCount)) {
        const std::size_t bytes = ArrayBytes(capacity, elementSize);
        *array = static_cast<void**>(Resized(*array, *count, bytes, file, line));
        if (memory::BlockHeader* const header = memory::FindCountedHeader(*array))
            header->initialCount = initialCount;
        addedBytes = bytes - ArrayBytes(*count, elementSize);
    }
    if (source == nullptr || *array == nullptr)
        return AsResult(addedBytes);

    const std::size_t bytes = ArrayBytes(addCount, elementSize);
    CopyToEnd(*array, *count, elementSize, source, bytes);
    *count += addCount;
    return AsResult(bytes);
}

int UtlBlockReallocArray(int* count, void*** array, std::size_t elementSize, int newCount, int initialCount)
{
    if (count == nullptr || array == nullptr || newCount <= 0)
        return -1;
    const bool isInFirstBlock = initialCount != 0 && newCount < initialCount && *count < initialCount;
    const std::int64_t capacity = memory::RoundedCapacity(newCount);
    if (isInFirstBlock || capacity == (*count > 0 ? memory::RoundedCapacity(*count) : 0)) {
        *count = newCount;
        return 0;
    }
    // Kept: the count is the caller's to set, who still needs the old one.
    const std::size_t bytes = ArrayBytes(capacity, elementSize);
    *array = static_cast<void**>(VBuRealloc(*array, bytes, modules::TuvoMemory, __LINE__));
    return AsResult(bytes);
}
