// Readable names of C++ functions.
#pragma once

#include <string>

namespace platform {

// The name as it is written in a source; `symbol` itself when it is not the mangled form of one. Throws std::bad_alloc.
std::string Demangle(const char* symbol);

}  // namespace platform
