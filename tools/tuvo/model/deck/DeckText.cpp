#include "tools/tuvo/model/deck/DeckText.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/Failure.h"

#include <algorithm>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t DeepestInclude = 100;
constexpr std::size_t MostIncludes = 10'000;  // files that include one another twice would double with each

}  // namespace

DeckText::DeckText(DeckFile deck, DeckFiles& files, Problems& problems) : m_files(files), m_problems(problems)
{
    Push(std::move(deck));
}

void DeckText::Push(DeckFile file)
{
    const auto number =
        static_cast<std::uint32_t>(std::find(m_names.begin(), m_names.end(), file.name) - m_names.begin());
    if (number == m_names.size())
        m_names.push_back(file.name);
    ByteSource source = std::move(file.source);
    m_open.push_back({std::move(file), LineReader(std::move(source)), number});
}

bool DeckText::Next(std::string_view& line)
{
    while (!m_open.empty()) {
        OpenFile& current = m_open.back();
        const LineReader::Result result = current.lines.Next(line);
        m_where = {current.number, current.lines.LineNumber()};
        if (result == LineReader::Result::Line) {
            if (!line.empty())
                return true;
        } else if (result == LineReader::Result::TooLong) {
            Error("the line is longer than " + std::to_string(LineReader::LongestLine) + " bytes");
        } else {
            if (result == LineReader::Result::Binary)
                Error("there is a zero byte: this is no text");
            m_open.pop_back();
        }
    }
    return false;
}

void DeckText::Include(const std::string& name)
{
    if (m_open.empty())
        return;
    if (m_open.size() > DeepestInclude)
        return Error("includes are more than " + std::to_string(DeepestInclude) + " deep");
    if (m_includes == MostIncludes)
        Error("more than " + std::to_string(MostIncludes) + " files are included; the others are not read");
    if (m_includes++ >= MostIncludes)
        return;
    try {
        DeckFile file = m_files.Open(name, m_open.back().file);
        const bool isOpen = std::any_of(m_open.begin(), m_open.end(),
                                        [&](const OpenFile& open) { return open.file.identity == file.identity; });
        if (isOpen)
            return Error(Quoted(name) + " includes itself");
        Push(std::move(file));
    } catch (const Failure& failure) {
        Error(failure.what());
    }
}

void DeckText::Add(Severity severity, const Place& place, std::string_view text)
{
    m_problems.Add({severity, place.file < m_names.size() ? m_names[place.file] : "", place.line, Printable(text)});
}

}  // namespace tool
