// Lists of names that a caller is given and frees name by name, the array last, with VBuFree.
#pragma once

#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>

#include <cstddef>

namespace units {

inline void FreeNames(char** names, int count)
{
    for (int i = 0; i < count; ++i)
        VBU_FREE(names[i], modules::VUnitUtil, __LINE__);
    VBU_FREE(names, modules::VUnitUtil, __LINE__);
}

// Stores a new array of copies of nameAt(0) to nameAt(count - 1), of which null ones are left out, and gives their
// number. The array is null, and the number 0, when there are none or memory is exhausted.
template <typename NameAt>
int CopyNames(int count, char*** names, NameAt nameAt)
{
    if (names == nullptr)
        return 0;
    *names = nullptr;
    std::size_t wanted = 0;
    for (int i = 0; i < count; ++i)
        wanted += nameAt(i) != nullptr;
    if (wanted == 0)
        return 0;
    auto* const copies = static_cast<char**>(VBuMalloc(wanted * sizeof(char*), modules::VUnitUtil, __LINE__, 0));
    if (copies == nullptr)
        return 0;

    int copied = 0;
    for (int i = 0; i < count; ++i) {
        const char* const name = nameAt(i);
        if (name == nullptr)
            continue;
        copies[copied] = VBuStrDup(name, modules::VUnitUtil, __LINE__);
        if (copies[copied] == nullptr) {
            FreeNames(copies, copied);
            return 0;
        }
        ++copied;
    }
    *names = copies;
    return copied;
}

}  // namespace units
