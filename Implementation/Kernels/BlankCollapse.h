// Shrinking runs of white space (blank \t \n \v \f \r) to their first character.
#pragma once

#include <cstddef>

namespace kernels {

// Copies `length` characters to `target` without the white space that follows other white space, and gives the number
// of those kept. `afterBlank` tells whether white space goes before the first character, and then whether it was the
// last one, so that a text can be given in pieces. The target has room for `length` characters, all of which may be
// written; it may be the source, or begin before it, but not inside it.
//
// By the fastest variant that the processor has; all give the same.
std::size_t CollapseBlanks(const char* source, std::size_t length, char* target, bool& afterBlank) noexcept;

// The variants. The second one needs a processor with SSSE3 and POPCNT.
std::size_t CollapseBlanksScalar(const char* source, std::size_t length, char* target, bool& afterBlank) noexcept;
std::size_t CollapseBlanksSsse3(const char* source, std::size_t length, char* target, bool& afterBlank) noexcept;
bool HasSsse3() noexcept;

}  // namespace kernels
