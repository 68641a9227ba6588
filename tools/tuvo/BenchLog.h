// The histories of chronometers that a log holds.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

constexpr std::size_t NoSection = static_cast<std::size_t>(-1);

// A section, or a step within one, as its line tells it.
struct BenchEntry
{
    bool isStep = false;
    std::string name;
    double seconds = 0.0;            // of a step: since its section began
    std::optional<double> internal;  // seconds; none when it is all of them
    std::size_t parent = NoSection;  // index of the section around it
};

// All sections and steps in the order of time: each section before what it holds, each step behind the sections that ran
// before it. Lines that belong to no history are skipped; what stands in front of each line, as log files have it, may be
// any text that is as long as that in front of the dashed line above. Cost: linear.
std::vector<BenchEntry> ReadBenchLog(std::string_view text);

}  // namespace tool
