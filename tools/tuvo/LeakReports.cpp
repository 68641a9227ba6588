#include "tools/tuvo/LeakReports.h"

#include <algorithm>
#include <charconv>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace tool {
namespace {

constexpr std::string_view Head = "----Memory leak information -- ";
constexpr std::string_view StackHead = "  called from";
constexpr std::string_view FrameIndent = "    ";

// ---- Lines ---------------------------------------------------------------------------------------------------------

bool TakeFront(std::string_view& text, std::string_view expected)
{
    const bool stands = text.substr(0, expected.size()) == expected;
    if (stands)
        text.remove_prefix(expected.size());
    return stands;
}

template <typename Number>
bool TakeNumber(std::string_view& text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number);
    text.remove_prefix(static_cast<std::size_t>(next - text.data()));
    return error == std::errc();
}

// Takes the last occurrence of a label off the end of a text, with the number behind it.
bool TakeNumberAtEnd(std::string_view& text, std::string_view label, int& number)
{
    const std::size_t place = text.rfind(label);
    if (place == text.npos)
        return false;
    std::string_view rest = text.substr(place + label.size());
    text = text.substr(0, place);
    return TakeNumber(rest, number) && rest.empty();
}

struct Record
{
    std::string_view file;
    int line;
    std::uint64_t bytes;
    std::uint64_t blocks;
};

// "24 bytes [2 times] allocated in VUtlStr at 67 is not freed: Sequence index = 5", also "through CreateObject in". Sizes
// and counts of more than INT_MAX are written as negative numbers.
std::optional<Record> ReadRecord(std::string_view line)
{
    int size = 0, times = 0, sequence = 0;
    Record record = {};
    if (!TakeNumber(line, size) || !TakeFront(line, " bytes [") || !TakeNumber(line, times) ||
        !TakeFront(line, " times] allocated "))
        return std::nullopt;
    TakeFront(line, "through CreateObject ");
    if (!TakeFront(line, "in ") || !TakeNumberAtEnd(line, " is not freed: Sequence index = ", sequence) ||
        !TakeNumberAtEnd(line, " at ", record.line))
        return std::nullopt;
    record.file = line;
    record.blocks = static_cast<std::uint32_t>(times);
    record.bytes = std::uint64_t{static_cast<std::uint32_t>(size)} * record.blocks;
    return record;
}

// "===> Total of 48 bytes leaked"
std::optional<std::uint64_t> ReadTotal(std::string_view line)
{
    std::uint64_t total = 0;
    if (TakeFront(line, "===> Total of ") && TakeNumber(line, total) && line == " bytes leaked")
        return total;
    return std::nullopt;
}

// "14:05 on 21-11-2026" of "----Memory leak information -- Fast Check Reported at 14:05 on 21-11-2026"
std::optional<std::string_view> ReadHead(std::string_view line)
{
    constexpr std::string_view label = "Reported at ";
    if (!TakeFront(line, Head))
        return std::nullopt;
    for (const std::string_view mode : {"Fast Check ", "Accurate Check ", "Check with double pass "})
        if (TakeFront(line, mode))
            break;
    return TakeFront(line, label) ? std::optional(line) : std::nullopt;
}

// ---- Reports -------------------------------------------------------------------------------------------------------

class Reader
{
public:
    Reader(ReportChoice choice, LeakReports& reports) : m_choice(choice), m_reports(reports) {}

    // Each gives what is wrong, or nothing.
    std::string AddLine(std::string_view line)
    {
        ++m_line;
        if (line.empty())
            return {};
        if (const auto time = FindHead(line))
            return m_isInReport && m_choice == ReportChoice::All ? CutOff() : BeginReport(*time);
        return m_isInReport ? AddReportLine(line)
                            : "a leak report begins with \"" + std::string(Head) + "\", not with this line";
    }

    std::string Finish()
    {
        if (m_isInReport)
            return CutOff();
        const auto key = [](const LeakPlace& place) { return std::tie(place.bytes, place.blocks); };
        std::sort(m_reports.places.begin(), m_reports.places.end(), [key](const LeakPlace& l, const LeakPlace& r) {
            return key(l) != key(r) ? key(l) > key(r) : std::tie(l.file, l.line) < std::tie(r.file, r.line);
        });
        return {};
    }

    std::size_t Line() const { return m_line; }

private:
    // A program that is ended while it writes a report leaves part of a line, behind which the next report begins.
    std::optional<std::string_view> FindHead(std::string_view line) const
    {
        const std::size_t start = line.rfind(Head);
        const bool mayBegin = start == 0 || m_isInReport || m_choice == ReportChoice::Last;
        return start != line.npos && mayBegin ? ReadHead(line.substr(start)) : std::nullopt;
    }

    std::string CutOff() const
    {
        return "the report that begins in line " + std::to_string(m_head) + " has no total: it is not whole";
    }

    std::string BeginReport(std::string_view time)
    {
        if (m_choice == ReportChoice::Last) {
            m_reports = {};
            m_indices.clear();
        }
        ++m_reports.count;
        m_reports.time = time;
        m_head = m_line;
        m_bytesBefore = m_reports.bytes;
        m_isInReport = true;
        m_isInStack = m_hasRecord = false;
        return {};
    }

    std::string AddReportLine(std::string_view line)
    {
        if (m_isInStack && line.substr(0, FrameIndent.size()) == FrameIndent)
            return {};
        if (const auto record = ReadRecord(line))
            return AddRecord(*record);
        if (const auto total = ReadTotal(line))
            return EndReport(*total);
        m_isInStack = m_hasRecord && line == StackHead;
        return m_isInStack ? std::string() : "this is no line of a leak report";
    }

    std::string AddRecord(const Record& record)
    {
        m_isInStack = false;
        m_hasRecord = true;
        if (__builtin_add_overflow(m_reports.bytes, record.bytes, &m_reports.bytes))
            return "the sizes add up to more than 64 bits can hold";
        m_reports.blocks += record.blocks;
        LeakPlace& place = PlaceOf(record);
        place.bytes += record.bytes;
        place.blocks += record.blocks;
        return {};
    }

    std::string EndReport(std::uint64_t total)
    {
        m_isInReport = false;
        const std::uint64_t bytes = m_reports.bytes - m_bytesBefore;
        if (total == bytes)
            return {};
        return "the total is " + std::to_string(total) + " bytes, but the records of the report add up to " +
               std::to_string(bytes);
    }

    LeakPlace& PlaceOf(const Record& record)
    {
        m_key.assign(record.file).append(1, '\n').append(std::to_string(record.line));
        const auto [found, isNew] = m_indices.try_emplace(m_key, m_reports.places.size());
        if (isNew)
            m_reports.places.push_back({std::string(record.file), record.line});
        return m_reports.places[found->second];
    }

    ReportChoice m_choice;
    LeakReports& m_reports;
    std::unordered_map<std::string, std::size_t> m_indices;  // of the places, by file and line
    std::string m_key;
    std::size_t m_line = 0;
    std::size_t m_head = 0;  // the line that the present report begins with
    std::uint64_t m_bytesBefore = 0;
    bool m_isInReport = false;
    bool m_hasRecord = false;
    bool m_isInStack = false;
};

std::string_view TakeLine(std::string_view& text)
{
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

}  // namespace

std::optional<ReportProblem> ReadLeakReports(std::string_view text, ReportChoice choice, LeakReports& reports)
{
    reports = {};
    Reader reader(choice, reports);
    std::string problem;
    while (problem.empty() && !text.empty())
        problem = reader.AddLine(TakeLine(text));
    if (problem.empty())
        problem = reader.Finish();
    return problem.empty() ? std::nullopt : std::optional(ReportProblem{reader.Line(), std::move(problem)});
}

}  // namespace tool
