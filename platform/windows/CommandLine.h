// The one line of text in which a Windows program gets all its arguments.
#pragma once

#include <string>
#include <vector>

namespace platform {

// The line that CommandLineToArgvW and the C runtime take apart into exactly these arguments. Throws std::bad_alloc.
std::wstring CommandLine(const std::vector<std::wstring>& arguments);

}  // namespace platform
