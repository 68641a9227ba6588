#include "tools/tuvo/model/deck/KeywordDeck.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/Fields.h"
#include "tools/tuvo/model/deck/KeywordMaterial.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace tool {
namespace {

const char* Noun(SetKind kind)
{
    return kind == SetKind::Node ? "node" : "element";
}

class KeywordReader
{
public:
    KeywordReader(DeckText& deck, Model& model) : m_deck(deck), m_model(model), m_builder(model, deck) {}

    void Read();

private:
    using CardAction = void (KeywordReader::*)(const KeywordCard&);
    using LineAction = void (KeywordReader::*)(std::string_view);
    struct Keyword
    {
        std::string_view name;
        CardAction card;
        LineAction data;
    };
    static const Keyword Keywords[];

    void ReadCard(std::string_view line);
    void Include(const KeywordCard& card);
    void BeginCard(KeywordCard card);
    void EndCard();

    void BeginNodes(const KeywordCard& card);
    void BeginElements(const KeywordCard& card);
    void BeginUserElement(const KeywordCard& card);
    void BeginNodeSet(const KeywordCard& card) { BeginSet(card, SetKind::Node, "NSET"); }
    void BeginElementSet(const KeywordCard& card) { BeginSet(card, SetKind::Element, "ELSET"); }
    void BeginSet(const KeywordCard& card, SetKind kind, std::string_view parameter);
    void BeginMaterial(const KeywordCard& card);
    void BeginConstants(const KeywordCard& card);
    void BeginSection(const KeywordCard& card);

    void ReadTitle(std::string_view line);
    void ReadNode(std::string_view line);
    void ReadElementLine(std::string_view line);
    void ReadSetLine(std::string_view line);
    void ReadGeneratedLine(std::string_view line);
    void ReadConstants(std::string_view line);

    bool ReadCoordinates(Fields& fields, Point& point);
    bool TakeId(Fields& fields, std::int32_t& id);
    bool CheckId(std::int32_t id, const char* noun);
    void DropElement();
    void WarnOfSurplus();
    void ReportIncomplete(std::size_t wanted, const std::string& what);
    IdRanges* SetNamed(const KeywordCard& card, SetKind kind, std::string_view parameter);

    DeckText& m_deck;
    Model& m_model;
    ModelBuilder m_builder;
    LineAction m_data = nullptr;  // for the data lines of the current card; null: they are passed over

    IdRanges* m_set = nullptr;  // what is read goes into it as well; null: into none
    SetKind m_setKind = SetKind::Node;
    std::string m_setName;
    std::set<const IdRanges*> m_taken;  // that the lines of the current card have named, each once and for all

    const ElementType* m_type = nullptr;
    std::int32_t m_element = 0;         // 0: the next line begins one
    bool m_hasWarned = false;           // of this card's surplus nodes
    Place m_place;                      // where the element, or the constants, began
    std::vector<std::int32_t> m_nodes;  // of the element so far

    Material* m_material = nullptr;
    std::span<const ConstantLabel> m_labels;
    std::size_t m_constants = 0;  // read so far
};

// The texts of a keyword are compared as they stand here: in capitals, without blanks. As in CalculiX itself, what follows
// does not matter, but for the many keywords that begin with NODE or ELEMENT.
const KeywordReader::Keyword KeywordReader::Keywords[] = {
    {"HEADING", nullptr, &KeywordReader::ReadTitle},
    {"NODE", &KeywordReader::BeginNodes, &KeywordReader::ReadNode},
    {"ELEMENT", &KeywordReader::BeginElements, &KeywordReader::ReadElementLine},
    {"USERELEMENT", &KeywordReader::BeginUserElement, nullptr},
    {"NSET", &KeywordReader::BeginNodeSet, &KeywordReader::ReadSetLine},
    {"ELSET", &KeywordReader::BeginElementSet, &KeywordReader::ReadSetLine},
    {"MATERIAL", &KeywordReader::BeginMaterial, nullptr},
    {"ELASTIC", &KeywordReader::BeginConstants, &KeywordReader::ReadConstants},
    {"DENSITY", &KeywordReader::BeginConstants, &KeywordReader::ReadConstants},
    {"EXPANSION", &KeywordReader::BeginConstants, &KeywordReader::ReadConstants},
    {"CONDUCTIVITY", &KeywordReader::BeginConstants, &KeywordReader::ReadConstants},
    {"SPECIFICHEAT", &KeywordReader::BeginConstants, &KeywordReader::ReadConstants},
    {"SOLIDSECTION", &KeywordReader::BeginSection, nullptr},
    {"SHELLSECTION", &KeywordReader::BeginSection, nullptr},
    {"MEMBRANESECTION", &KeywordReader::BeginSection, nullptr},
    {"BEAMSECTION", &KeywordReader::BeginSection, nullptr},
    {"FLUIDSECTION", &KeywordReader::BeginSection, nullptr},
};

// ---- Lines ---------------------------------------------------------------------------------------------------------

void KeywordReader::Read()
{
    std::string_view line;
    while (m_deck.Next(line)) {
        while (BuIsSpace(line.front()))
            line.remove_prefix(1);
        if (line.front() == '*')
            ReadCard(line);
        else if (m_data != nullptr)
            (this->*m_data)(line);
    }
    EndCard();
    m_builder.Finish();
}

// A card goes on in the next line when it ends with a comma.
void KeywordReader::ReadCard(std::string_view line)
{
    if (line.starts_with("**"))
        return;
    std::string text(line);
    while (text.back() == ',' && text.size() < LineReader::LongestLine && m_deck.Next(line))
        if (!Trimmed(line).starts_with("**"))
            text += line;
    KeywordCard card = ReadKeywordCard(text);
    if (card.keyword == "INCLUDE")
        return Include(card);
    EndCard();
    BeginCard(std::move(card));
}

// The other file stands in place of this line, be it among the data of a card.
void KeywordReader::Include(const KeywordCard& card)
{
    const KeywordCard::Parameter* const input = card.Find("INPUT");
    std::string name = input != nullptr ? input->value : "";
    std::erase(name, '"');
    if (name.empty())
        return m_deck.Error("*INCLUDE names no INPUT");
    m_deck.Include(name);
}

void KeywordReader::BeginCard(KeywordCard card)
{
    const auto* const keyword = std::find_if(std::begin(Keywords), std::end(Keywords), [&](const Keyword& known) {
        const bool isWhole = known.name == "NODE" || known.name == "ELEMENT";
        return isWhole ? card.keyword == known.name : card.keyword.starts_with(known.name);
    });
    if (keyword == std::end(Keywords))
        return;
    card.keyword = keyword->name;
    m_data = keyword->data;
    if (keyword->card != nullptr)
        (this->*keyword->card)(card);
}

void KeywordReader::EndCard()
{
    if (m_element != 0)
        ReportIncomplete(static_cast<std::size_t>(m_type->nodeCount), "element " + std::to_string(m_element) + " (" +
                                                                          std::string(m_type->name) + ") has " +
                                                                          std::to_string(m_nodes.size()));
    if (m_constants > 0)
        ReportIncomplete(m_labels.size(), "the material has " + std::to_string(m_constants));
    DropElement();
    m_constants = 0;
    m_labels = {};
    m_data = nullptr;
    m_set = nullptr;
}

void KeywordReader::ReportIncomplete(std::size_t wanted, const std::string& what)
{
    const std::string noun = m_element != 0 ? " nodes" : " constants";
    m_deck.Add(Severity::Error, m_place, what + " of " + std::to_string(wanted) + noun);
}

void KeywordReader::ReadTitle(std::string_view line)
{
    if (m_model.title.empty())
        m_model.title = line;
    m_data = nullptr;
}

// ---- Numbers -------------------------------------------------------------------------------------------------------

// Takes an id; false, with the problem told, when there is none.
bool KeywordReader::TakeId(Fields& fields, std::int32_t& id)
{
    const Got got = fields.Id(id);
    if (got == Got::Other)
        m_deck.Error(NoId(fields.Text()));
    else if (got == Got::Nothing)
        m_deck.Error("there is no id");
    return got == Got::Value;
}

bool KeywordReader::CheckId(std::int32_t id, const char* noun)
{
    if (id <= 0)
        m_deck.Error(std::string(noun) + ' ' + std::to_string(id) + ": an id is at least 1");
    return id > 0;
}

// ---- Nodes ---------------------------------------------------------------------------------------------------------

void KeywordReader::BeginNodes(const KeywordCard& card)
{
    if (const std::string system = card.Name("SYSTEM"); !system.empty() && UpperCase(system) != "R")
        m_deck.Warn("CalculiX knows no SYSTEM of *NODE: the coordinates are taken as cartesian");
    m_set = SetNamed(card, SetKind::Node, "NSET");
}

// Coordinates that are not there are 0.
bool KeywordReader::ReadCoordinates(Fields& fields, Point& point)
{
    for (double& coordinate : point) {
        if (fields.Real(coordinate) != Got::Other)
            continue;
        m_deck.Error(NoReal(fields.Text()));
        return false;
    }
    return true;
}

void KeywordReader::ReadNode(std::string_view line)
{
    Fields fields(line);
    std::int32_t id = 0;
    Point point = {};
    if (!TakeId(fields, id) || !CheckId(id, "node") || !ReadCoordinates(fields, point))
        return;
    m_builder.AddNode(id, point);
    if (m_set != nullptr)
        m_set->Add(id);
}

// ---- Elements ------------------------------------------------------------------------------------------------------

void KeywordReader::BeginUserElement(const KeywordCard& card)
{
    const std::string name = card.Name("TYPE");
    std::int32_t nodeCount = 0;
    constexpr std::int32_t MostNodes = 1000;
    if (name.empty() || ReadId(card.Name("NODES"), nodeCount) != Got::Value || nodeCount < 1 || nodeCount > MostNodes)
        m_deck.Error("*USER ELEMENT needs a TYPE, and from 1 to " + std::to_string(MostNodes) + " NODES");
    else if (m_builder.AddUserType(name, nodeCount) == nullptr)
        m_deck.Error("the element type " + Quoted(name) + " is defined already");
}

void KeywordReader::BeginElements(const KeywordCard& card)
{
    const std::string name = card.Name("TYPE");
    m_type = m_builder.FindUserType(name);
    if (m_type == nullptr)
        m_type = FindKeywordType(name);
    if (m_type == nullptr) {
        m_data = nullptr;
        return m_deck.Error(name.empty() ? "*ELEMENT names no TYPE" : "there is no element type " + Quoted(name));
    }
    m_hasWarned = false;
    m_builder.SelectType(m_type);
    m_set = SetNamed(card, SetKind::Element, "ELSET");
}

void KeywordReader::DropElement()
{
    m_element = 0;
    m_nodes.clear();
}

// Tells once for each card that its elements have more nodes than their type takes.
void KeywordReader::WarnOfSurplus()
{
    if (!std::exchange(m_hasWarned, true))
        m_deck.Warn("element " + std::to_string(m_element) + " has more than the " + std::to_string(m_type->nodeCount) +
                    " nodes of " + std::string(m_type->name) + "; what follows them is not used");
}

// An element goes on in the next line until all of its nodes are there.
void KeywordReader::ReadElementLine(std::string_view line)
{
    Fields fields(line);
    if (m_element == 0) {
        m_place = m_deck.Where();
        std::int32_t id = 0;
        if (!TakeId(fields, id) || !CheckId(id, "element"))
            return;
        m_element = id;
    }
    const auto wanted = static_cast<std::size_t>(m_type->nodeCount);
    while (m_nodes.size() < wanted && !fields.AtEnd()) {
        std::int32_t node = 0;
        if (fields.Id(node) == Got::Other) {
            m_deck.Error(NoId(fields.Text()));
            return DropElement();
        }
        m_nodes.push_back(node);
    }
    if (m_nodes.size() < wanted)
        return;
    if (!fields.AtEnd())
        WarnOfSurplus();
    m_builder.AddElement(m_element, m_nodes, m_place);
    if (m_set != nullptr)
        m_set->Add(m_element);
    DropElement();
}

// ---- Sets ----------------------------------------------------------------------------------------------------------

IdRanges* KeywordReader::SetNamed(const KeywordCard& card, SetKind kind, std::string_view parameter)
{
    const std::string name = card.Name(parameter);
    return name.empty() ? nullptr : &m_builder.SetOf(kind, name, m_deck.Where());
}

void KeywordReader::BeginSet(const KeywordCard& card, SetKind kind, std::string_view parameter)
{
    m_set = SetNamed(card, kind, parameter);
    m_setKind = kind;
    m_setName = card.Name(parameter);
    m_taken.clear();
    if (m_set == nullptr) {
        m_data = nullptr;
        return m_deck.Error('*' + card.keyword + " names no " + std::string(parameter));
    }
    if (card.Has("GENERATE"))
        m_data = &KeywordReader::ReadGeneratedLine;
}

// Ids, and names of other sets, all of whose ids are meant.
void KeywordReader::ReadSetLine(std::string_view line)
{
    for (Fields fields(line); !fields.AtEnd();) {
        std::int32_t id = 0;
        const Got got = fields.Id(id);
        if (got == Got::Value && CheckId(id, Noun(m_setKind)))
            m_set->Add(id);
        if (got != Got::Other)
            continue;
        const std::string name = PlainName(fields.Text());
        const IdRanges* const set = m_builder.FindSet(m_setKind, name);
        if (set == nullptr)
            m_deck.Error("the set " + Quoted(m_setName) + " names the set " + Quoted(name) + ", which is not defined");
        else if (m_taken.insert(set).second)
            m_set->Add(*set);
    }
}

void KeywordReader::ReadGeneratedLine(std::string_view line)
{
    Fields fields(line);
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::int32_t step = 1;
    if (!TakeId(fields, first) || !TakeId(fields, last) || !CheckId(first, Noun(m_setKind)))
        return;
    if (fields.Id(step) == Got::Other)
        return m_deck.Error(NoId(fields.Text()));
    if (step < 1 || first > last)
        return m_deck.Error("from " + std::to_string(first) + " to " + std::to_string(last) + " in steps of " +
                            std::to_string(step) + " there is nothing");
    m_set->AddGenerated(first, last, step);
}

// ---- Materials -----------------------------------------------------------------------------------------------------

void KeywordReader::BeginMaterial(const KeywordCard& card)
{
    const std::string name = card.Name("NAME");
    m_material = name.empty() ? nullptr : &m_builder.MaterialOf(name);
    if (name.empty())
        m_deck.Error("*MATERIAL has no NAME");
}

void KeywordReader::BeginConstants(const KeywordCard& card)
{
    m_labels = *FindConstants(card);
    m_place = m_deck.Where();
    if (m_material != nullptr && !m_labels.empty())
        return RemoveConstants(*m_material, card.keyword);
    m_data = nullptr;
    m_deck.Error(m_labels.empty() ? '*' + card.keyword + " has the unknown TYPE " + Quoted(card.Name("TYPE"))
                                  : '*' + card.keyword + " stands in no material");
    m_labels = {};
}

// The constants of the first temperature, which may take several lines; what follows is passed over.
void KeywordReader::ReadConstants(std::string_view line)
{
    for (Fields fields(line); m_constants < m_labels.size() && !fields.AtEnd(); ++m_constants) {
        const ConstantLabel& constant = m_labels[m_constants];
        double value = 0.0;
        if (fields.Real(value) == Got::Other) {
            m_deck.Error(NoReal(fields.Text()));
            m_constants = 0;
            m_data = nullptr;
            return;
        }
        m_material->values.push_back({constant.label, constant.dataType, value});
    }
    if (m_constants < m_labels.size())
        return;
    m_constants = 0;
    m_data = nullptr;
}

void KeywordReader::BeginSection(const KeywordCard& card)
{
    const std::string set = card.Name("ELSET");
    const std::string material = card.Name("MATERIAL");
    if (!set.empty() && !material.empty())
        m_builder.AddSection(set, material, m_deck.Where());
}

}  // namespace

void ReadKeywordDeck(DeckText& deck, Model& model)
{
    KeywordReader(deck, model).Read();
}

}  // namespace tool
