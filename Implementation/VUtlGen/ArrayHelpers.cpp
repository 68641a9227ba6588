#include <TuvoUtil/ArrayHelpers.h>

#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr int PointerSize = sizeof(void*);

// The bytes of `count` elements; more than any block has when one of them is negative.
std::size_t ByteCount(std::int64_t count, int elementSize)
{
    return count < 0 || elementSize < 0 ? SIZE_MAX : static_cast<std::size_t>(count * elementSize);
}

unsigned char* ElementAt(void* array, int index, int elementSize)
{
    return static_cast<unsigned char*>(array) + std::ptrdiff_t{index} * elementSize;
}

// A block for `count` elements with those of `array`, of which the last one is zero; all are when `array` is null. Null
// when it cannot be had: the old block is then as it was, or freed when no byte was asked for.
void* Reallocated(void* array, int count, int elementSize)
{
    const std::size_t size = ByteCount(count, elementSize);
    if (array == nullptr)
        return VBuCalloc(1, size, modules::VUtlGen, __LINE__);
    void* const block = VBuRealloc(array, size, modules::VUtlGen, __LINE__);
    if (block != nullptr)
        std::memset(ElementAt(block, count - 1, elementSize), 0, static_cast<std::size_t>(elementSize));
    return block;
}

// Gives an array of pointers the size for `count` of them; false, with the array as it was, when memory is exhausted.
bool Resize(void*** array, std::int64_t count, int elementSize)
{
    const std::size_t size = ByteCount(count, std::max(elementSize, PointerSize));
    void* const block = VBuRealloc(*array, size, modules::VUtlGen, __LINE__);
    if (block != nullptr)
        *array = static_cast<void**>(block);
    return block != nullptr;
}

}  // namespace

void UtlExpandArrayByOne(void** array, int* count, int elementSize)
{
    if (array == nullptr || count == nullptr)
        return;
    *count = static_cast<int>(static_cast<unsigned int>(*count) + 1);
    *array = Reallocated(*count == 1 ? nullptr : *array, *count, elementSize);
    if (*array == nullptr)
        std::fputs("SEVERE ERROR : memory not available  !!\n", stderr);
}

void UtlInsertArrayMember(void** array, int* count, int elementSize, int index)
{
    UtlExpandArrayByOne(array, count, elementSize);
    if (array == nullptr || *array == nullptr || count == nullptr || index < 0 || index >= *count)
        return;
    unsigned char* const place = ElementAt(*array, index, elementSize);
    std::memmove(place + elementSize, place, ByteCount(*count - 1 - index, elementSize));
    std::memset(place, 0, static_cast<std::size_t>(elementSize));
}

void UtlRemoveArrayMember(void** array, int* count, int elementSize, int index)
{
    if (array == nullptr || *array == nullptr || count == nullptr || *count < 1)
        return;
    --*count;
    if (*count == 0) {
        UtlFreeAndInit(array);
    } else if (index >= 0 && index < *count && elementSize > 0) {
        unsigned char* const place = ElementAt(*array, index, elementSize);
        std::memmove(place, place + elementSize, ByteCount(*count - index, elementSize));
    }
}

int UtlReplaceMemberWithArray(void*** array, int* count, int elementSize, int index, int newCount, void** newMembers)
{
    if (array == nullptr || *array == nullptr || count == nullptr || index < 0 || index >= *count)
        return 0;
    const std::int64_t total = std::int64_t{*count} - 1 + newCount;
    if (newCount < 0 || total > INT_MAX || (newMembers == nullptr && newCount > 0))
        return 0;
    if (newCount > 1 && !Resize(array, total, elementSize))
        return 0;
    void** const place = *array + index;
    std::memmove(place + newCount, place + 1, ByteCount(*count - 1 - index, PointerSize));
    std::copy_n(newMembers, newCount, place);
    *count = static_cast<int>(total);
    if (total == 0)
        VBU_FREE(*array, modules::VUtlGen, __LINE__);
    else if (newCount == 0)
        Resize(array, total, elementSize);  // a block that stays larger holds them as well
    return 0;
}

void UtlSwapArrayMembers(void** array, int first, int second, int elementSize)
{
    if (array == nullptr || *array == nullptr || first < 0 || second < 0 || first == second || elementSize < 1)
        return;
    unsigned char* const place = ElementAt(*array, first, elementSize);
    std::swap_ranges(place, place + elementSize, ElementAt(*array, second, elementSize));
}

void* UtlCallocAndLink(void** array, short count, short elementSize)
{
    if (array == nullptr)
        return nullptr;
    return *array = Reallocated(nullptr, count, elementSize);
}

void UtlReCalloc(void** array, short count, short elementSize)
{
    if (array != nullptr)
        *array = Reallocated(*array, count, elementSize);
}

void UtlFree2DArray(int count, void** rows)
{
    // Kept: an array without rows stays the caller's, who may have put it aside for later.
    if (count == 0)
        return;
    for (int i = 0; rows != nullptr && i < count; ++i)
        UtlFreeAndInit(&rows[i]);
    VBU_FREE(rows, modules::VUtlGen, __LINE__);
}

void UtlFreeAndInit(void** pointer)
{
    if (pointer != nullptr)
        VBU_FREE(*pointer, modules::VUtlGen, __LINE__);
}
