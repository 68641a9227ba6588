// A place in a line, shown to the user.
#pragma once

#include <string>
#include <string_view>

namespace tool {

// The end of a message: the line, or what of it is near the place, below a line end, and a caret under the place, which
// may be the end of the line. Control characters are shown as "?".
//
//   \n  5,-3\n    ^
std::string PointerTo(std::string_view line, std::size_t place);

// The number of the character at a place of a line, 1 for the first.
std::size_t CharacterNumber(std::string_view line, std::size_t place);

}  // namespace tool
