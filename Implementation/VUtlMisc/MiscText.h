// New narrow texts of this module, which a caller frees with VBuFree.
#pragma once

#include "TuvoMemory/ModuleNames.h"
#include "platform/Platform.h"

#include <TuvoUtil/Memory.h>

#include <string_view>

namespace misc {

// Null when memory is exhausted; may throw std::bad_alloc as well.
inline char* NewNarrowText(std::wstring_view text, int line = __builtin_LINE())
{
    return VBuStrDup(platform::Narrow(text).c_str(), modules::VUtlMisc, line);
}

// A narrow text as wide text, null as the empty one. Throws std::bad_alloc.
inline std::wstring WideText(const char* text)
{
    return platform::Widen(text == nullptr ? "" : text);
}

}  // namespace misc
