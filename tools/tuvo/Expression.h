// Expressions with named values, and what is wrong with them in a user's words.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace tool {

using Variables = std::map<std::string, double, std::less<>>;

// Evaluates an expression. Gives what is wrong with it, nothing when it is right:
//
//   invalid character at character 3
//     1 $
//       ^
std::string EvaluateExpression(const std::string& expression, const Variables& variables, double& value);

}  // namespace tool
