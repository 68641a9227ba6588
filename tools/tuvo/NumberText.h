// Numbers as the user writes and reads them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

// A text without the white space around it.
std::string_view Trimmed(std::string_view text);

// Reads a text that is one finite number as a whole, blanks around it allowed. Gives what is wrong with it, nothing
// when it is right: `"12a" is not a number: "a" follows it`.
std::string ReadNumber(std::string_view text, double& value);

// Appends a number with at most `digits` significant digits (1 to 17) and no more of them than needed: 0.1, 1e+20.
void AppendNumber(std::string& out, double value, int digits);

constexpr int DefaultDigits = 15;  // what survives the way from decimal to binary and back

std::string NumberText(double value, int digits = DefaultDigits);

// "1 block", "2 blocks".
std::string Plural(std::uint64_t count, const std::string& noun);

}  // namespace tool
