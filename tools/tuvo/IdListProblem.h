// Why a list of ids is rejected.
#pragma once

#include <string>

namespace tool {

// What is wrong with a list that the strict grammar rejects: which item, at which place, and a line that points to it:
//
//   item 2 at character 3: there is no id in front of "-"
//     5,-3
//       ^
//
// Line ends count as blanks; the place is then that in its line, which is named. Empty when nothing is wrong.
std::string IdListProblem(const std::string& text);

}  // namespace tool
