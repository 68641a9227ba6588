#include "tools/tuvo/BenchLog.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tool {
namespace {

constexpr std::string_view Dashes = "----------------------------------";
constexpr std::size_t StepIndentation = 3;

// ---- Lines ---------------------------------------------------------------------------------------------------------

bool TakeFront(std::string_view& text, std::string_view expected)
{
    const bool stands = text.substr(0, expected.size()) == expected;
    if (stands)
        text.remove_prefix(expected.size());
    return stands;
}

// Takes a number of seconds with its "s" off the front.
bool TakeSeconds(std::string_view& text, double& seconds)
{
    if (text.empty() || BuIsSpace(text.front()))
        return false;
    const char* end = nullptr;
    seconds = BuReadDouble(text.data(), text.data() + text.size(), &end);
    const bool isNumber = end != text.data() && std::isfinite(seconds);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return isNumber && TakeFront(text, "s");
}

// The name between the quotes that it begins with; the last one may be missing, when the name holds a line end.
std::string Unquoted(std::string_view text)
{
    text.remove_prefix(1);
    if (!text.empty() && text.back() == '\'')
        text.remove_suffix(1);
    return std::string(text);
}

// "2.5s (internal: 1s): Chrono 'NAME'", "1s: STEP", "2s (internal: 1s): 'STEP'", without the indentation.
std::optional<BenchEntry> ReadEntry(std::string_view line)
{
    BenchEntry entry;
    double internal = 0.0;
    if (!TakeSeconds(line, entry.seconds))
        return std::nullopt;
    if (TakeFront(line, " (internal: ")) {
        if (!TakeSeconds(line, internal) || !TakeFront(line, ")"))
            return std::nullopt;
        entry.internal = internal;
    }
    if (!TakeFront(line, ": "))
        return std::nullopt;
    entry.isStep = line.substr(0, 8) != "Chrono '";
    if (!entry.isStep)
        line.remove_prefix(7);
    const bool isQuoted = !entry.isStep || (entry.internal && !line.empty() && line.front() == '\'');
    entry.name = isQuoted ? Unquoted(line) : std::string(line);
    return entry;
}

// ---- Histories -----------------------------------------------------------------------------------------------------

class Reader
{
public:
    void AddLine(std::string_view line)
    {
        if (line.size() >= Dashes.size() && line.substr(line.size() - Dashes.size()) == Dashes) {
            EndHistory();
            m_front = line.size() - Dashes.size();
            return;
        }
        line.remove_prefix(std::min(m_front, line.size()));
        const std::size_t indentation = std::min(line.find_first_not_of(' '), line.size());
        if (auto entry = ReadEntry(line.substr(indentation)))
            Add(*std::move(entry), indentation);
    }

    void EndHistory() { CloseTo(0); }

    std::vector<BenchEntry> Take() { return std::move(m_entries); }

private:
    struct Section
    {
        std::size_t entry;
        std::size_t indentation;
        std::optional<BenchEntry> step;  // waits for the sections that its line stands above
    };

    void Add(BenchEntry entry, std::size_t indentation)
    {
        CloseTo(indentation);
        if (!entry.isStep) {
            entry.parent = m_open.empty() ? NoSection : m_open.back().entry;
            m_open.push_back({m_entries.size(), indentation, {}});
            m_entries.push_back(std::move(entry));
        } else if (!m_open.empty() && m_open.back().indentation + StepIndentation == indentation) {
            AddStep(m_open.back());
            entry.parent = m_open.back().entry;
            m_open.back().step = std::move(entry);
        }
    }

    // Closes the sections that something with this indentation cannot belong to.
    void CloseTo(std::size_t indentation)
    {
        while (!m_open.empty() && m_open.back().indentation >= indentation) {
            AddStep(m_open.back());
            m_open.pop_back();
        }
    }

    void AddStep(Section& section)
    {
        if (section.step)
            m_entries.push_back(*std::move(section.step));
        section.step.reset();
    }

    std::vector<BenchEntry> m_entries;
    std::vector<Section> m_open;
    std::size_t m_front = 0;  // characters in front of each line
};

}  // namespace

std::vector<BenchEntry> ReadBenchLog(std::string_view text)
{
    Reader reader;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        reader.AddLine(line);
    }
    reader.EndHistory();
    return reader.Take();
}

}  // namespace tool
