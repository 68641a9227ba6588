// "Did you mean": the known names nearest to one that is not known.
#pragma once

#include <string>
#include <vector>

namespace tool {

// The fewest letters to insert, remove, replace or swap with their neighbour that turn one text into the other, ASCII
// letters without case.
int EditDistance(const std::string& left, const std::string& right);

// Up to three known names that `text` may stand for, nearest first: those a few letters away, those that contain it.
std::vector<std::string> NearestNames(const std::string& text, const std::vector<std::string>& known);

// The same as the end of a message: `; did you mean "A", "B" or "C"?`, or nothing.
std::string DidYouMean(const std::string& text, const std::vector<std::string>& known);

}  // namespace tool
