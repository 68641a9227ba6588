// Finding one text in another in linear time, whatever they hold, and without memory: the two-way algorithm of Crochemore
// and Perrin. The C library of one of the two systems has only a quadratic strstr, and std::search has no other promise.
#pragma once

#include <cstddef>
#include <string_view>

// The occurrences of `pattern`, which is not empty, in `text`, one after the other. Both are kept by reference.
class OccurrenceSearch
{
public:
    static constexpr std::size_t None = std::string_view::npos;

    OccurrenceSearch(std::string_view text, std::string_view pattern) noexcept;

    // The next occurrence behind the end of the one given last, or that may overlap it; None when there is none.
    std::size_t Next() noexcept;
    std::size_t NextOverlapping() noexcept;

private:
    bool GoToCandidate() noexcept;
    std::size_t MatchRightPart() const noexcept;
    bool MatchesLeftPart() const noexcept;
    bool Find() noexcept;
    void ShiftByPeriod() noexcept;

    std::string_view m_text;
    std::string_view m_pattern;
    std::size_t m_rarest;        // the place in the pattern of a character that is looked for first
    std::size_t m_middle;        // the pattern is compared from here to its right end first, then from here to the left
    std::size_t m_shift;         // the period of the pattern, or less where it is long
    std::size_t m_overlap;       // after that shift so much of the pattern's start is known to match
    std::size_t m_position = 0;  // no occurrence that was not given yet begins before
    std::size_t m_known = 0;     // so much of the pattern's start matches at m_position
};
