// Settings from the environment, read as they are at each call.
#pragma once

#include <basutl/Export.h>

// True for "1", "true", "yes", "on" (any case) and any number that is not zero, white space around them aside; false
// for anything else, the empty value included. `defaultValue` when the variable is not set, the name is null or memory
// is exhausted.
BASUTL_API bool BuVariableGetBoolean(const char* name, bool defaultValue) noexcept;

// The value of a variable; null when it is not set, the name is null or memory is exhausted. The text is valid until
// the thread's next call. `source` 1 is the process environment, the only one there is; another gives null.
BASUTL_API const wchar_t* BuVariableGetValue(const char* name, int source = 1) noexcept;
