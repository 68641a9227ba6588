// New texts that a caller frees with VBuFree.
#pragma once

#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>

#include <cstddef>
#include <cstring>
#include <string_view>

namespace strings {

// A block for `length` characters with a NUL behind them; null when memory is exhausted. Recorded with the line of this
// call.
inline char* NewText(std::size_t length, int line = __builtin_LINE())
{
    char* const text = static_cast<char*>(VBuMalloc(length + 1, modules::VUtlStr, line, 0));
    if (text != nullptr)
        text[length] = '\0';
    return text;
}

// A copy of a part of a text; null when memory is exhausted.
inline char* NewCopy(std::string_view part, int line = __builtin_LINE())
{
    char* const text = NewText(part.size(), line);
    if (text != nullptr && !part.empty())
        std::memcpy(text, part.data(), part.size());
    return text;
}

}  // namespace strings
