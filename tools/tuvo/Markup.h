// Text from outside within HTML.
#pragma once

#include <string>
#include <string_view>

namespace tool {

// The text as HTML shows it, in elements and in quoted attributes. Taken for UTF-8; control characters, stray bytes and
// what else no page may hold become U+FFFD.
std::string Escaped(std::string_view text);

}  // namespace tool
