#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Conversion.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/ModelUnits.h"

#include <TuvoUtil/Units.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>

namespace tool {
namespace {

// Constants that are alike in all materials of a kind, in SI units at room temperature; 0: it differs too much.
struct RealMaterial
{
    const char* name;
    std::array<double, 5> constants;  // in the order of Told
};

struct ToldConstant
{
    std::string_view label;
    const char* dataType;
};
constexpr std::array<ToldConstant, 5> Told = {{{"E", "Young's Modulus"},
                                               {"Density", "Density"},
                                               {"Expansion", "Thermal Expansion"},
                                               {"Conductivity", "Thermal Conductivity"},
                                               {"Specific heat", "Specific Heat"}}};

constexpr RealMaterial RealMaterials[] = {
    {"steel", {210e9, 7850.0, 1.2e-5, 50.0, 460.0}},
    {"stainless steel", {195e9, 7900.0, 1.65e-5, 15.0, 500.0}},
    {"cast iron", {110e9, 7200.0, 1.05e-5, 50.0, 500.0}},
    {"aluminium", {70e9, 2700.0, 2.35e-5, 200.0, 900.0}},
    {"titanium", {110e9, 4430.0, 0.9e-5, 7.0, 550.0}},
    {"copper", {120e9, 8930.0, 1.65e-5, 390.0, 385.0}},
    {"brass", {100e9, 8500.0, 1.9e-5, 115.0, 380.0}},
    {"magnesium", {45e9, 1800.0, 2.6e-5, 90.0, 1020.0}},
    {"nickel alloy", {205e9, 8300.0, 1.3e-5, 11.0, 435.0}},
    {"lead", {16e9, 11340.0, 2.9e-5, 35.0, 130.0}},
    {"concrete", {30e9, 2400.0, 1.0e-5, 2.0, 900.0}},
    {"glass", {70e9, 2500.0, 0.9e-5, 1.0, 800.0}},
    {"wood", {11e9, 500.0, 0.5e-5, 0.15, 1700.0}},
    {"polyamide", {2.8e9, 1140.0, 8.0e-5, 0.25, 1700.0}},
    {"polyethylene", {1e9, 950.0, 18.0e-5, 0.4, 1900.0}},
    {"rubber", {5e6, 1100.0, 20.0e-5, 0.15, 1900.0}},
    {"water", {0.0, 1000.0, 0.0, 0.6, 4180.0}},
    {"air", {0.0, 1.2, 0.0, 0.026, 1005.0}},
};

// The constants of a material, in SI units; nothing where it has none.
using Constants = std::array<std::optional<double>, Told.size()>;

struct Nearness
{
    const RealMaterial* material = nullptr;
    double squares = std::numeric_limits<double>::infinity();  // of natural logarithms of ratios
    std::size_t count = 0;
};

Nearness Compare(const Constants& constants, const RealMaterial& real)
{
    Nearness nearness = {&real, 0.0, 0};
    for (std::size_t i = 0; i < Told.size(); ++i) {
        if (!constants[i] || real.constants[i] == 0.0)
            continue;
        const double ratio = std::log(*constants[i] / real.constants[i]);
        nearness.squares += ratio * ratio;
        ++nearness.count;
    }
    return nearness;
}

Constants Converted(const Material& material, const std::vector<Conversion>& conversions)
{
    Constants constants;
    for (std::size_t i = 0; i < Told.size(); ++i) {
        const std::optional<double> value = material.Find(Told[i].label);
        if (value && *value > 0.0)
            constants[i] = conversions[i].Convert(*value);
    }
    return constants;
}

// The real material that is nearest by the mean over its constants.
Nearness FindNearest(const Constants& constants)
{
    const auto given = static_cast<std::size_t>(
        std::count_if(constants.begin(), constants.end(), [](const auto& constant) { return constant.has_value(); }));
    Nearness nearest;
    for (const RealMaterial& real : RealMaterials) {
        const Nearness nearness = Compare(constants, real);
        if (nearness.count == given && nearness.squares < nearest.squares)
            nearest = nearness;
    }
    return nearest;
}

class Guesser
{
public:
    Guesser(const Model& model, const CatalogueFile& catalogue) : m_model(model), m_catalogue(catalogue) {}

    std::optional<UnitGuess> Guess(int unitSystem) const;

private:
    std::vector<Conversion> ToSi(int unitSystem) const;
    std::string Reason(const Material& material, const Constants& constants, const Nearness& nearness) const;

    const Model& m_model;
    const CatalogueFile& m_catalogue;
};

// How the constants in the order of Told become those in SI units.
std::vector<Conversion> Guesser::ToSi(int unitSystem) const
{
    const int si = VUnitUtlGetBaseUnitSystemId();
    std::vector<Conversion> conversions;
    for (const ToldConstant& told : Told) {
        const DataType& type = FindDataType(m_catalogue, told.dataType);
        conversions.push_back(Conversion(m_catalogue, {type, unitSystem}, {type, si}));
    }
    return conversions;
}

std::string Guesser::Reason(const Material& material, const Constants& constants, const Nearness& nearness) const
{
    const int si = VUnitUtlGetBaseUnitSystemId();
    std::string text = material.name + " is like " + nearness.material->name + ":";
    const char* divide = " ";
    for (std::size_t i = 0; i < Told.size(); ++i) {
        if (!constants[i])
            continue;
        text += divide + std::string(Told[i].label) + ' ' + NumberText(*constants[i], 3) + ' ' +
                UnitLabel(m_catalogue, FindDataType(m_catalogue, Told[i].dataType), si);
        divide = ", ";
    }
    return text;
}

std::optional<UnitGuess> Guesser::Guess(int unitSystem) const
{
    const std::vector<Conversion> toSi = ToSi(unitSystem);
    UnitGuess guess;
    double squares = 0.0;
    std::size_t count = 0;
    for (const Material& material : m_model.materials) {
        const Constants constants = Converted(material, toSi);
        const Nearness nearness = FindNearest(constants);
        if (nearness.material == nullptr || nearness.count == 0)
            continue;
        squares += nearness.squares;
        count += nearness.count;
        guess.reasons.push_back(Reason(material, constants, nearness));
    }
    if (count == 0)
        return std::nullopt;
    guess.systems = {unitSystem};
    guess.distance = std::sqrt(squares / static_cast<double>(count));
    return guess;
}

}  // namespace

std::vector<UnitGuess> GuessUnits(const Model& model, const CatalogueFile& catalogue)
{
    const Guesser guesser(model, catalogue);
    std::vector<UnitGuess> guesses;
    for (const UnitSystem& system : catalogue.systems) {
        std::optional<UnitGuess> guess = guesser.Guess(system.id);
        if (!guess)
            continue;
        const auto same = std::find_if(guesses.begin(), guesses.end(), [&](const UnitGuess& other) {
            return other.reasons == guess->reasons && std::abs(other.distance - guess->distance) < 1e-6;
        });
        if (same != guesses.end())
            same->systems.push_back(system.id);
        else
            guesses.push_back(std::move(*guess));
    }
    std::stable_sort(guesses.begin(), guesses.end(),
                     [](const UnitGuess& left, const UnitGuess& right) { return left.distance < right.distance; });
    return guesses;
}

}  // namespace tool
