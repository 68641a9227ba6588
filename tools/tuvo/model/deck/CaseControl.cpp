#include "tools/tuvo/model/deck/CaseControl.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/Fields.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <utility>

namespace tool {
namespace {

// Commands that ask for results of a set, by the letters that tell them apart.
struct Request
{
    std::string_view letters;
    SetKind kind;
};
constexpr Request Requests[] = {
    {"DISP", SetKind::Node},    {"VELO", SetKind::Node},    {"ACCE", SetKind::Node},    {"VECT", SetKind::Node},
    {"SVEC", SetKind::Node},    {"SDIS", SetKind::Node},    {"SVEL", SetKind::Node},    {"SACC", SetKind::Node},
    {"SPCF", SetKind::Node},    {"MPCF", SetKind::Node},    {"OLOA", SetKind::Node},    {"NLLO", SetKind::Node},
    {"GPFO", SetKind::Node},    {"PRES", SetKind::Node},    {"THER", SetKind::Node},    {"ENTH", SetKind::Node},
    {"HDOT", SetKind::Node},    {"BOUT", SetKind::Node},    {"STRE", SetKind::Element}, {"ELST", SetKind::Element},
    {"NLST", SetKind::Element}, {"STRA", SetKind::Element}, {"FORC", SetKind::Element}, {"ELFO", SetKind::Element},
    {"FLUX", SetKind::Element}, {"ESE", SetKind::Element},  {"EKE", SetKind::Element},  {"EDE", SetKind::Element},
};
constexpr std::size_t TellingLetters = 4;

constexpr std::string_view SubcaseWords[] = {"SUBCASE", "SUBCOM", "SYM", "SYMCOM", "REPCASE"};

std::string_view TakeWord(std::string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), [](char c) { return BuIsLetter(c); });
    const std::string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text = Trimmed(text.substr(word.size()));
    return word;
}

void DropParentheses(std::string_view& text)
{
    if (text.starts_with('('))
        text = Trimmed(text.substr(std::min(text.find(')'), text.size() - 1) + 1));
}

// Whether what a command has between parentheses goes on in the next line.
bool GoesOn(std::string_view command)
{
    constexpr std::size_t LongestCommand = 65536;
    if (command.size() > LongestCommand)
        return false;
    TakeWord(command);
    return command.starts_with('(') && command.ends_with(',') && command.find(')') == command.npos;
}

// The items of a set one by one; commas and blanks divide them.
class Items
{
public:
    explicit Items(std::string_view text) : m_text(text) { Skip(); }

    bool AtEnd() const { return m_text.empty(); }
    std::string_view Peek() const { return m_text.substr(0, m_text.find_first_of(Dividers)); }
    std::string_view Take()
    {
        const std::string_view item = Peek();
        m_text.remove_prefix(item.size());
        Skip();
        return item;
    }
    bool TakeWord(std::string_view word)
    {
        const bool isIt = UpperCase(Peek()) == word;
        if (isIt)
            Take();
        return isIt;
    }

private:
    static constexpr std::string_view Dividers = ", \t";
    void Skip() { m_text.remove_prefix(std::min(m_text.find_first_not_of(Dividers), m_text.size())); }

    std::string_view m_text;
};

// The ids of a set as its items say them.
class SetReader
{
public:
    explicit SetReader(std::string_view items) : m_items(items) {}

    // Whether it is a set of ids, and not one of frequencies or names.
    bool IsOfIds() const
    {
        const std::string_view item = m_items.Peek();
        return !item.empty() && (UpperCase(item) == "ALL" || item.find_first_not_of("0123456789") == item.npos);
    }

    // Gives what is wrong with the items; those in front of it are read.
    std::string Read()
    {
        while (!m_items.AtEnd() && m_problem.empty())
            ReadRange();
        return m_problem;
    }

    const IdRanges& Ids() const { return m_ids; }

private:
    bool TakeId(std::int32_t& id)
    {
        const std::string_view item = m_items.Take();
        if (ReadId(item, id) == Got::Value && id >= 1)
            return true;
        m_problem = item.empty() ? "there is no id behind THRU" : NoId(item);
        return false;
    }

    void ReadRange()
    {
        std::int32_t first = 1;
        std::int32_t last = std::numeric_limits<std::int32_t>::max();
        if (!m_items.TakeWord("ALL")) {
            if (!TakeId(first))
                return;
            last = first;
            if (m_items.TakeWord("THRU") && !TakeId(last))
                return;
        }
        if (first <= last)
            AddWithoutExceptions(first, last);
        else
            m_problem = "from " + std::to_string(first) + " to " + std::to_string(last) + " there is nothing";
    }

    // Exceptions end with the first id that lies outside of the range, or begins a range itself.
    void AddWithoutExceptions(std::int32_t first, std::int32_t last)
    {
        std::set<std::int32_t> exceptions;
        if (m_items.TakeWord("EXCEPT")) {
            for (Items ahead = m_items; !ahead.AtEnd(); m_items = ahead) {
                std::int32_t id = 0;
                if (ReadId(ahead.Take(), id) != Got::Value || id < first || id > last ||
                    UpperCase(ahead.Peek()) == "THRU")
                    break;
                exceptions.insert(id);
            }
        }
        for (const std::int32_t id : exceptions) {
            m_ids.AddGenerated(first, id - 1, 1);
            if (id == last)
                return;
            first = id + 1;
        }
        m_ids.AddGenerated(first, last, 1);
    }

    Items m_items;
    IdRanges m_ids;
    std::string m_problem;
};

}  // namespace

bool CaseControl::Take(std::string_view line, const Place& place)
{
    const std::string_view text = Trimmed(line);
    if (m_goesOn) {
        m_sets[m_current].items += text;
        m_goesOn = text.ends_with(',');
        return true;
    }
    m_command += text;
    return GoesOn(m_command) || TakeCommand(std::exchange(m_command, {}), place);
}

bool CaseControl::TakeCommand(std::string_view text, const Place& place)
{
    const std::string word = UpperCase(TakeWord(text));
    m_isOfPlots = m_isOfPlots || (word == "OUTPUT" && text.starts_with('('));
    if (m_isOfPlots)
        return false;
    if (word == "SET")
        return TakeSet(text, place);
    DropParentheses(text);
    const bool isAssigned = text.starts_with('=');
    const std::string_view value = Trimmed(text.substr(isAssigned ? 1 : 0));
    if (std::find(std::begin(SubcaseWords), std::end(SubcaseWords), word) != std::end(SubcaseWords)) {
        m_subcase = "SUBCASE " + std::string(value) + ' ';
        return true;
    }
    if (word.empty() || !isAssigned)
        return false;
    if (word == "TITLE" && m_title.empty())
        m_title = value;
    else
        TakeRequest(word, value);
    return true;
}

// What follows SET: the number, and the items behind "=". A set that is defined again is as it was defined last.
bool CaseControl::TakeSet(std::string_view text, const Place& place)
{
    const std::size_t assigned = text.find('=');
    const std::string_view number = Trimmed(text.substr(0, assigned));
    if (assigned == text.npos || number.empty() || number.find_first_not_of("0123456789") != number.npos)
        return false;
    const auto [entry, isNew] = m_positions.try_emplace(NameInSubcase(number), m_sets.size());
    m_current = entry->second;
    if (isNew)
        m_sets.emplace_back().name = entry->first;
    m_sets[m_current].items = Trimmed(text.substr(assigned + 1));
    m_sets[m_current].place = place;
    m_goesOn = text.ends_with(',');
    return true;
}

// A subcase has its own sets, and those in front of all subcases.
void CaseControl::TakeRequest(std::string_view command, std::string_view set)
{
    const auto* const request = std::find_if(std::begin(Requests), std::end(Requests), [&](const Request& known) {
        return known.letters == command.substr(0, TellingLetters);
    });
    if (request == std::end(Requests))
        return;
    auto asked = m_positions.find(NameInSubcase(set));
    if (asked == m_positions.end())
        asked = m_positions.find("SET " + std::string(set));
    if (asked == m_positions.end())
        return;
    ListedSet& listed = m_sets[asked->second];
    (request->kind == SetKind::Node ? listed.isOfNodes : listed.isOfElements) = true;
}

std::string CaseControl::NameInSubcase(std::string_view number) const
{
    return m_subcase + "SET " + std::string(number);
}

void CaseControl::AddSets(ModelBuilder& builder, DeckText& deck) const
{
    for (const ListedSet& set : m_sets) {
        SetReader reader(set.items);
        if (!reader.IsOfIds())
            continue;
        if (const std::string problem = reader.Read(); !problem.empty())
            deck.Add(Severity::Error, set.place, set.name + ": " + problem);
        if (set.isOfNodes || !set.isOfElements)
            builder.SetOf(SetKind::Node, set.name, set.place).Add(reader.Ids());
        if (set.isOfElements || !set.isOfNodes)
            builder.SetOf(SetKind::Element, set.name, set.place).Add(reader.Ids());
    }
}

}  // namespace tool
