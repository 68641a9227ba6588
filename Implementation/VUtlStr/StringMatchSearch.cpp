#include "VUtlStr/StringMatchSearch.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <climits>
#include <cstring>
#include <functional>

namespace {

struct Suffix
{
    std::size_t start;
    std::size_t period;
};

// The suffix of a text that is the last one in the order of characters `isBefore`, and its period.
template <typename Before>
Suffix LastSuffix(std::string_view text, Before isBefore)
{
    Suffix last = {0, 1};
    std::size_t candidate = 1;
    for (std::size_t same = 0; candidate + same < text.size();) {
        const char ofCandidate = text[candidate + same];
        const char ofLast = text[last.start + same];
        if (ofCandidate == ofLast) {
            if (++same == last.period) {
                candidate += same;
                same = 0;
            }
        } else if (isBefore(ofCandidate, ofLast)) {
            candidate += same + 1;
            same = 0;
            last.period = candidate - last.start;
        } else {
            last = {candidate, 1};
            ++candidate;
            same = 0;
        }
    }
    return last;
}

// Characters that are frequent in solver decks and English, the most frequent first. Only speed depends on it.
constexpr std::string_view FrequentFirst = " 0,.1-etaoinsrl23456789ETAOINSRLhdcumfpgHDCUMFPG_=\t\n";

// How rare each character is by this list.
constexpr auto Rarity = [] {
    std::array<unsigned char, UCHAR_MAX + 1> rarity = {};
    rarity.fill(static_cast<unsigned char>(FrequentFirst.size()));
    for (std::size_t i = 0; i < FrequentFirst.size(); ++i)
        rarity[static_cast<unsigned char>(FrequentFirst[i])] = static_cast<unsigned char>(i);
    return rarity;
}();

bool IsMoreFrequent(char left, char right)
{
    return Rarity[static_cast<unsigned char>(left)] < Rarity[static_cast<unsigned char>(right)];
}

// The place of a character that a text most likely holds seldom.
std::size_t FindRarest(std::string_view pattern)
{
    const std::string_view start = pattern.substr(0, 32);
    return static_cast<std::size_t>(std::max_element(start.begin(), start.end(), IsMoreFrequent) - start.begin());
}

}  // namespace

// The later of the two last suffixes, in the order of characters and in the reverse one, begins where the pattern is best
// divided: there the period of what surrounds the division is that of the whole pattern. So a mismatch in the right part
// allows to go on behind it, and one in the left part to go on by a whole period.
OccurrenceSearch::OccurrenceSearch(std::string_view text, std::string_view pattern) noexcept
    : m_text(text), m_pattern(pattern), m_rarest(FindRarest(pattern))
{
    assert(!pattern.empty());
    const Suffix rising = LastSuffix(pattern, std::less<>());
    const Suffix falling = LastSuffix(pattern, std::greater<>());
    const Suffix right = rising.start > falling.start ? rising : falling;
    m_middle = right.start;
    if (pattern.substr(right.period, right.start) == pattern.substr(0, right.start)) {
        m_shift = right.period;
        m_overlap = pattern.size() - right.period;
    } else {
        m_shift = std::max(right.start, pattern.size() - right.start) + 1;
        m_overlap = 0;
    }
}

std::size_t OccurrenceSearch::Next() noexcept
{
    if (!Find())
        return None;
    const std::size_t found = m_position;
    m_position += m_pattern.size();
    m_known = 0;
    return found;
}

std::size_t OccurrenceSearch::NextOverlapping() noexcept
{
    if (!Find())
        return None;
    const std::size_t found = m_position;
    ShiftByPeriod();
    return found;
}

// Moves to the next occurrence, which may be where the search stands.
bool OccurrenceSearch::Find() noexcept
{
    while (GoToCandidate()) {
        const std::size_t matched = MatchRightPart();
        if (matched < m_pattern.size()) {
            m_position += matched - m_middle + 1;
            m_known = 0;
        } else if (MatchesLeftPart()) {
            return true;
        } else {
            ShiftByPeriod();
        }
    }
    return false;
}

// Moves to where the rarest character of the pattern stands in its place, in great steps. Where part of the pattern is
// known to match, finding a mismatch is left to the comparison.
bool OccurrenceSearch::GoToCandidate() noexcept
{
    if (m_position > m_text.size() || m_text.size() - m_position < m_pattern.size())
        return false;
    if (m_known > 0)
        return true;
    const char* const start = m_text.data() + m_position + m_rarest;
    const std::size_t places = m_text.size() - m_position - m_pattern.size() + 1;
    const void* const found = std::memchr(start, m_pattern[m_rarest], places);
    if (found == nullptr) {
        m_position = m_text.size();
        return false;
    }
    m_position += static_cast<std::size_t>(static_cast<const char*>(found) - start);
    return true;
}

// Gives the place in the pattern of the first mismatch in its right part, its length when there is none.
std::size_t OccurrenceSearch::MatchRightPart() const noexcept
{
    std::size_t place = std::max(m_middle, m_known);
    while (place < m_pattern.size() && m_pattern[place] == m_text[m_position + place])
        ++place;
    return place;
}

bool OccurrenceSearch::MatchesLeftPart() const noexcept
{
    std::size_t place = m_middle;
    while (place > m_known && m_pattern[place - 1] == m_text[m_position + place - 1])
        --place;
    return place <= m_known;
}

void OccurrenceSearch::ShiftByPeriod() noexcept
{
    m_position += m_shift;
    m_known = m_overlap;
}
