// The suppression file: groups of call-stack frames whose leaks are known and not to be reported.
//
//   BEGIN
//   Load at 120 in Model.cpp
//   main at 14 in Main.cpp
//
// A line that begins with BEGIN opens a group, every other line is a frame of it: the function, a word, the line, a
// word, the file. That is how reports print a frame.
#pragma once

#include "TuvoMemory/LeakFrames.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace leaks {

class Suppressions
{
public:
    Suppressions() = default;

    // Lines end after 200 characters at the latest, fields are cut to 32. Throws std::bad_alloc.
    explicit Suppressions(std::string_view text);

    // Uses up a group that agrees with a resolved stack frame by frame; false when none does, or none is left. Of a
    // function and a file counts what a field can hold. Throws std::bad_alloc.
    bool Take(const CallStack& stack);

    std::size_t GroupCount() const noexcept;  // that are not used up

private:
    void TakeLine(std::string_view line);
    void EndGroup();

    std::string m_group;  // the frames of the group that is being read
    bool m_isInGroup = false;
    std::unordered_map<std::string, std::size_t> m_groups;  // how many have these frames
};

}  // namespace leaks
