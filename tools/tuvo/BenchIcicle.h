// Histories of chronometers as a picture.
#pragma once

#include "tools/tuvo/BenchLog.h"

#include <string>
#include <vector>

namespace tool {

// An icicle: time runs downwards, what a section holds stands to its right, each with name and time. A section is as high
// as it took long, and at least one line of text, so that all of it can be read. SVG in UTF-8; texts are escaped, and what
// is no character becomes U+FFFD. Cost: linear.
std::string DrawBenchIcicle(const std::vector<BenchEntry>& entries, const std::string& title);

}  // namespace tool
