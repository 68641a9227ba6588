#include "tools/tuvo/model/deck/BulkDeck.h"

#include "tools/tuvo/model/deck/BulkCardReader.h"
#include "tools/tuvo/model/deck/BulkMaterial.h"
#include "tools/tuvo/model/deck/CoordinateSystems.h"
#include "tools/tuvo/model/deck/Fields.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tool {
namespace {

// Where an element card has its property and its nodes, by fields behind the name; the id is field 0.
struct ElementLayout
{
    std::string_view card;
    std::size_t property;  // 0: none
    std::size_t firstNode;
    std::size_t stride;
};

constexpr ElementLayout UsualLayout = {"", 1, 2, 1};
constexpr ElementLayout OtherLayouts[] = {
    {"CONROD", 0, 1, 1}, {"CELAS1", 1, 2, 2}, {"CELAS2", 0, 2, 2}, {"CDAMP1", 1, 2, 2}, {"CDAMP2", 0, 2, 2},
    {"CMASS1", 1, 2, 2}, {"CMASS2", 0, 2, 2}, {"CONM1", 0, 1, 1},  {"CONM2", 0, 1, 1},  {"CTRIAX6", 0, 2, 1},
};

constexpr std::string_view PropertyCards[] = {"PSOLID", "PLSOLID", "PSHELL", "PSHEAR", "PROD",
                                              "PTUBE",  "PBAR",    "PBARL",  "PBEAM",  "PBEAML"};

struct SystemCard
{
    std::string_view name;
    CoordinateSystems::Kind kind;
    bool isByNodes;
};

constexpr SystemCard SystemCards[] = {
    {"CORD1R", CoordinateSystems::Kind::Rectangular, true}, {"CORD2R", CoordinateSystems::Kind::Rectangular, false},
    {"CORD1C", CoordinateSystems::Kind::Cylindrical, true}, {"CORD2C", CoordinateSystems::Kind::Cylindrical, false},
    {"CORD1S", CoordinateSystems::Kind::Spherical, true},   {"CORD2S", CoordinateSystems::Kind::Spherical, false},
};

std::string PropertyName(std::int32_t id)
{
    return "PID " + std::to_string(id);
}

std::string MaterialName(std::int32_t id)
{
    return "MID " + std::to_string(id);
}

class BulkReader
{
public:
    BulkReader(DeckText& deck, Model& model)
        : m_deck(deck), m_model(model), m_builder(model, deck), m_cards(deck, m_control)
    {}

    void Read();

private:
    void ReadCard();
    void ReadGrid();
    void ReadGridDefaults();
    bool ReadElement();
    void ReadProperty();
    void ReadMaterial(std::span<const BulkConstant> constants);
    void ReadSystem(const SystemCard& card);
    void ReadSystemByNodes(const SystemCard& card, std::size_t firstField);

    void SelectElementCard();
    void AddToProperty(std::int32_t element);
    bool Id(std::size_t field, std::int32_t& id, std::int32_t otherwise);
    bool RequiredId(std::size_t field, std::int32_t& id);
    bool Real(std::size_t field, double& value);
    void Error(std::string text) { m_deck.Add(Severity::Error, m_card.place, m_card.name + ": " + std::move(text)); }

    DeckText& m_deck;
    Model& m_model;
    ModelBuilder m_builder;
    CaseControl m_control;
    BulkCardReader m_cards;
    const BulkCard& m_card = m_cards.Card();
    CoordinateSystems m_systems;

    std::string m_elementCard;  // what the members below are about
    bool m_isElement = false;
    ElementLayout m_layout = UsualLayout;
    std::size_t m_mostNodes = 0;
    std::vector<std::int32_t> m_nodes;
    std::int32_t m_property = 0;
    IdRanges* m_propertySet = nullptr;
};

void BulkReader::Read()
{
    while (m_cards.Next()) {
        const std::uint64_t errors = m_model.problems.errors;
        ReadCard();
        if (m_model.problems.errors > errors)
            m_cards.DropImages();
    }
    m_model.title = m_control.Title();
    m_control.AddSets(m_builder, m_deck);
    for (const std::string& problem : m_systems.Apply(m_builder.NodesSoFar()))
        m_deck.Add(Severity::Error, {}, problem);
    m_builder.Finish();
}

void BulkReader::ReadCard()
{
    if (m_card.name == "GRID")
        return ReadGrid();
    if (ReadElement())
        return;
    if (m_card.name == "GRDSET")
        return ReadGridDefaults();
    if (std::find(std::begin(PropertyCards), std::end(PropertyCards), m_card.name) != std::end(PropertyCards))
        return ReadProperty();
    for (const SystemCard& card : SystemCards)
        if (card.name == m_card.name)
            return ReadSystem(card);
    if (const auto constants = BulkConstants(m_card.name); !constants.empty())
        ReadMaterial(constants);
}

// ---- Fields --------------------------------------------------------------------------------------------------------

// An id, or `otherwise` when the field is empty. False, with the problem told, for anything else.
bool BulkReader::Id(std::size_t field, std::int32_t& id, std::int32_t otherwise)
{
    const std::string_view text = m_card.Field(field);
    id = otherwise;
    const Got got = ReadId(text, id);
    const bool isRead = got == Got::Nothing || (got == Got::Value && id >= 0);
    if (!isRead)
        Error(NoId(text));
    return isRead;
}

bool BulkReader::RequiredId(std::size_t field, std::int32_t& id)
{
    if (!Id(field, id, 0))
        return false;
    if (id == 0)
        Error("there is no id");
    return id != 0;
}

// A number; 0 when the field is empty.
bool BulkReader::Real(std::size_t field, double& value)
{
    const std::string_view text = m_card.Field(field);
    value = 0.0;
    const bool isRead = ReadReal(text, value) != Got::Other;
    if (!isRead)
        Error(NoReal(text));
    return isRead;
}

// ---- Grid points and coordinate systems ----------------------------------------------------------------------------

void BulkReader::ReadGrid()
{
    std::int32_t id = 0;
    std::int32_t system = 0;
    Point point;
    if (!RequiredId(0, id) || !Id(1, system, CoordinateSystems::Default) || !Real(2, point[0]) || !Real(3, point[1]) ||
        !Real(4, point[2]))
        return;
    m_systems.Select(m_builder.NodeCount(), system);
    m_builder.AddNode(id, point);
}

void BulkReader::ReadGridDefaults()
{
    std::int32_t system = 0;
    if (Id(1, system, 0))
        m_systems.SetDefault(system);
}

void BulkReader::ReadSystem(const SystemCard& card)
{
    if (card.isByNodes) {
        ReadSystemByNodes(card, 0);
        if (!m_card.Field(4).empty())  // a second system in the same card
            ReadSystemByNodes(card, 4);
        return;
    }
    std::int32_t id = 0;
    std::int32_t reference = 0;
    std::array<Point, 3> points;
    if (!RequiredId(0, id) || !Id(1, reference, 0))
        return;
    for (std::size_t i = 0; i < 9; ++i)
        if (!Real(2 + i, points[i / 3][i % 3]))
            return;
    m_systems.Define(id, card.kind, reference, points);
}

void BulkReader::ReadSystemByNodes(const SystemCard& card, std::size_t firstField)
{
    std::int32_t id = 0;
    std::array<std::int32_t, 3> nodes;
    if (RequiredId(firstField, id) && RequiredId(firstField + 1, nodes[0]) && RequiredId(firstField + 2, nodes[1]) &&
        RequiredId(firstField + 3, nodes[2]))
        m_systems.Define(id, card.kind, nodes);
}

// ---- Elements and properties ---------------------------------------------------------------------------------------

// Finds out what the name of the card means, unless it is that of the element before.
void BulkReader::SelectElementCard()
{
    if (m_elementCard == m_card.name)
        return;
    m_elementCard = m_card.name;
    const ElementType* const largest = FindBulkType(m_card.name, 1000);
    m_isElement = largest != nullptr;
    if (!m_isElement)
        return;
    m_mostNodes = static_cast<std::size_t>(largest->nodeCount);
    m_layout = UsualLayout;
    for (const ElementLayout& layout : OtherLayouts)
        if (layout.card == m_card.name)
            m_layout = layout;
}

// False when the card is no element.
bool BulkReader::ReadElement()
{
    SelectElementCard();
    std::int32_t id = 0;
    if (!m_isElement || !RequiredId(0, id))
        return m_isElement;
    m_nodes.assign(m_mostNodes, 0);
    std::size_t given = 0;
    for (std::size_t i = 0; i < m_mostNodes; ++i) {
        const std::size_t field = m_layout.firstNode + i * m_layout.stride;
        if (!Id(field, m_nodes[i], 0))
            return true;
        if (m_nodes[i] != 0)
            given = i + 1;
    }
    const ElementType* const type = FindBulkType(m_card.name, static_cast<int>(given));
    m_builder.SelectType(type);
    m_builder.AddElement(id, std::span(m_nodes).first(static_cast<std::size_t>(type->nodeCount)), m_card.place);
    if (m_layout.property != 0)
        AddToProperty(id);
    return true;
}

// An element without a property has that of its own number.
void BulkReader::AddToProperty(std::int32_t element)
{
    std::int32_t property = 0;
    if (!Id(m_layout.property, property, element))
        return;
    if (m_propertySet == nullptr || m_property != property)
        m_propertySet = &m_builder.SetOf(SetKind::Element, PropertyName(property), m_card.place);
    m_property = property;
    m_propertySet->Add(element);
}

void BulkReader::ReadProperty()
{
    std::int32_t property = 0;
    std::int32_t material = 0;
    if (!RequiredId(0, property) || !Id(1, material, 0) || material == 0)
        return;
    m_builder.SetOf(SetKind::Element, PropertyName(property), m_card.place);
    m_propertySet = nullptr;  // sets move when one is added
    m_builder.AddSection(PropertyName(property), MaterialName(material), m_card.place);
}

void BulkReader::ReadMaterial(std::span<const BulkConstant> constants)
{
    std::int32_t id = 0;
    if (!RequiredId(0, id))
        return;
    Material& material = m_builder.MaterialOf(MaterialName(id));
    for (const BulkConstant& constant : constants) {
        double value = 0.0;
        if (m_card.Field(constant.field).empty() || material.Find(constant.label) || !Real(constant.field, value))
            continue;
        material.values.push_back({constant.label, constant.dataType, value});
    }
}

}  // namespace

void ReadBulkDeck(DeckText& deck, Model& model)
{
    BulkReader(deck, model).Read();
}

}  // namespace tool
