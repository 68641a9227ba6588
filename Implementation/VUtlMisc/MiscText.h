// New narrow texts of this module, which a caller frees with VBuFree.
#pragma once

#include "TuvoMemory/ModuleNames.h"
#include "platform/Platform.h"

#include <TuvoUtil/Memory.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace misc {

// A copy of a part of a text; null when memory is exhausted.
inline char* NewCopy(std::string_view text, int line = __builtin_LINE())
{
    char* const copy = static_cast<char*>(VBuMalloc(text.size() + 1, modules::VUtlMisc, line, 0));
    if (copy != nullptr)
        *std::copy(text.begin(), text.end(), copy) = '\0';
    return copy;
}

// Null when memory is exhausted; may throw std::bad_alloc as well.
inline char* NewNarrowText(std::wstring_view text, int line = __builtin_LINE())
{
    return NewCopy(platform::Narrow(text), line);
}

// A narrow text as wide text, null as the empty one. Throws std::bad_alloc.
inline std::wstring WideText(const char* text)
{
    return platform::Widen(text == nullptr ? "" : text);
}

}  // namespace misc
