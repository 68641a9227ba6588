// The reports of the leak checker, read back: how much was not freed, by the file and line that allocated it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// What was allocated at one place and not freed.
struct LeakPlace
{
    std::string file;  // as the report has it, at most 15 bytes
    int line = 0;      // -1 when it is not known
    std::uint64_t bytes = 0;
    std::uint64_t blocks = 0;
};

struct LeakReports
{
    int count = 0;                  // of the reports that were read
    std::string time;               // of the last one: "14:05 on 21-11-2026"
    std::vector<LeakPlace> places;  // each file and line once, the one with most bytes first
    std::uint64_t bytes = 0;        // of all places
    std::uint64_t blocks = 0;
};

enum class ReportChoice
{
    All,
    Last
};

// Why a text is not what it should be.
struct ReportProblem
{
    std::size_t line;  // from 1
    std::string reason;
};

// Reads the reports that a report file or an append file holds, with or without call stacks, lines ended by LF or CR LF.
// A text without any is right; with the last one alone, those before may have been cut short. Cost: linear.
std::optional<ReportProblem> ReadLeakReports(std::string_view text, ReportChoice choice, LeakReports& reports);

}  // namespace tool
