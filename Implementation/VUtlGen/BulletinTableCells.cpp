#include "VUtlGen/BulletinTableCells.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Types.h>

#include <cstdio>
#include <cstring>
#include <type_traits>

namespace bulletin {

namespace {

// Makes an empty cell a zero of its type; null when memory is exhausted.
template <typename T>
T* CellOf(void*& cell)
{
    if (cell == nullptr)
        cell = VBuCalloc(1, sizeof(T), modules::VUtlGen, __LINE__);
    return static_cast<T*>(cell);
}

template <typename T>
T Sum(T left, T right)
{
    if constexpr (std::is_integral_v<T>)
        return static_cast<T>(static_cast<std::make_unsigned_t<T>>(left) + static_cast<std::make_unsigned_t<T>>(right));
    else
        return left + right;
}

template <typename T>
Result SetNumber(void*& cell, const void* value, bool isIncrement)
{
    T* const number = CellOf<T>(cell);
    if (number == nullptr)
        return OutOfMemory;
    T given;
    std::memcpy(&given, value, sizeof given);
    *number = isIncrement ? Sum(*number, given) : given;
    return Success;
}

Result Refuse(const char* message)
{
    std::fputs(message, stderr);
    return IncrementRefused;
}

// Kept: a refused increment leaves an empty cell set.
template <typename T>
Result SetPlain(void*& cell, const void* value, bool isIncrement, const char* refusal)
{
    T* const plain = CellOf<T>(cell);
    if (plain == nullptr)
        return OutOfMemory;
    if (isIncrement)
        return Refuse(refusal);
    std::memcpy(plain, value, sizeof(T));
    return Success;
}

void EmptyCell(void*& cell)
{
    if (cell != nullptr)
        VBU_FREE(cell, modules::VUtlGen, __LINE__);
}

Result SetString(void*& cell, const void* value, bool isIncrement)
{
    // Kept: a refused increment empties the cell.
    if (isIncrement) {
        EmptyCell(cell);
        return Refuse("Error:UtlBulletinBoard: cannot increment string!\n");
    }
    char* const copy = VBuStrDup(static_cast<const char*>(value), modules::VUtlGen, __LINE__);
    if (copy == nullptr)
        return OutOfMemory;
    EmptyCell(cell);
    cell = copy;
    return Success;
}

}  // namespace

Result SetCell(void*& cell, std::int32_t type, const void* value, bool isIncrement)
{
    if (value == nullptr) {
        if (type == String)
            EmptyCell(cell);
        return Success;
    }
    switch (type) {
        case Integer:
            return SetNumber<std::int32_t>(cell, value, isIncrement);
        case Float:
            return SetNumber<float>(cell, value, isIncrement);
        case Double:
            return SetNumber<double>(cell, value, isIncrement);
        case Char:
            return SetPlain<char>(cell, value, isIncrement, "Error:UtlBulletinBoard: cannot increment char!\n");
        case String:
            return SetString(cell, value, isIncrement);
        case Point3:
            return SetPlain<_TvPoint3Str>(cell, value, isIncrement,
                                          "Error:UtlBulletinBoard: cannot increment point3!\n");
        default:
            return Success;
    }
}

}  // namespace bulletin
