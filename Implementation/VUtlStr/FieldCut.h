// Counting the fields of a text and cutting them out of it in place.
//
// An array for the fields is allocated between the two, of exactly the right size, so that a text is touched only when
// nothing can fail any more.
#pragma once

#include "Kernels/DelimiterScan.h"

#include <cstddef>

namespace fieldcut {

// Stands for nothing before a leading delimiter. Callers get it among fields of theirs, which are not constant.
inline constexpr char Blank[] = " ";

std::size_t CountDelimiters(const char* text, std::size_t length, const kernels::DelimiterSet& set) noexcept;

// Cuts at every delimiter, over which a NUL is written; nothing is left out. Stores `count` fields, one more than
// there are delimiters.
void CutAtEach(char* text, std::size_t length, const kernels::DelimiterSet& set, char** fields,
               std::size_t count) noexcept;

// The fields by the rules of strtok: runs of delimiters count once. The first field begins at the start of the text,
// leading delimiters included; a text of nothing else is one field. At least 1.
std::size_t CountTokens(const char* text, std::size_t length, const kernels::DelimiterSet& set) noexcept;

// Cuts them, a NUL over the one delimiter that follows each, and stores the fields, which are `count`.
void CutTokens(char* text, std::size_t length, const kernels::DelimiterSet& set, char** fields,
               std::size_t count) noexcept;

// A new array of `count` fields, at least 1, with `tail` more bytes behind it; null when memory is exhausted or an int
// cannot count the fields.
char** NewArray(std::size_t count, const char* file, int line, std::size_t tail = 0);

}  // namespace fieldcut
