// New arrays that the readers of lists hand out.
#pragma once

#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>

#include <climits>
#include <cstddef>
#include <cstdint>

namespace idlist {

// An array of `count` elements, at least one, for the caller of the library; null when memory is exhausted or an int
// cannot count them.
template <typename T>
T* NewArray(std::int64_t count)
{
    if (count < 1 || count > INT_MAX)
        return nullptr;
    return static_cast<T*>(VBuMalloc(static_cast<std::size_t>(count) * sizeof(T), modules::VUtlStr, __LINE__, 0));
}

}  // namespace idlist
