#include "tools/tuvo/model/deck/KeywordMaterial.h"

#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <algorithm>
#include <iterator>

namespace tool {
namespace {

constexpr std::string_view Young = "Young's Modulus";
constexpr std::string_view Poisson = "Poisson's Ratio";
constexpr std::string_view Shear = "Shear Modulus";
constexpr std::string_view Stress = "Stress";
constexpr std::string_view Thermal = "Thermal Expansion";
constexpr std::string_view Conduction = "Thermal Conductivity";

constexpr ConstantLabel Isotropic[] = {{"E", Young}, {"NU", Poisson}};
constexpr ConstantLabel Engineering[] = {{"E1", Young},     {"E2", Young},     {"E3", Young},
                                         {"NU12", Poisson}, {"NU13", Poisson}, {"NU23", Poisson},
                                         {"G12", Shear},    {"G13", Shear},    {"G23", Shear}};
constexpr ConstantLabel Orthotropic[] = {{"D1111", Stress}, {"D1122", Stress}, {"D2222", Stress},
                                         {"D1133", Stress}, {"D2233", Stress}, {"D3333", Stress},
                                         {"D1212", Stress}, {"D1313", Stress}, {"D2323", Stress}};
constexpr ConstantLabel Anisotropic[] = {
    {"D1111", Stress}, {"D1122", Stress}, {"D2222", Stress}, {"D1133", Stress}, {"D2233", Stress}, {"D3333", Stress},
    {"D1112", Stress}, {"D2212", Stress}, {"D3312", Stress}, {"D1212", Stress}, {"D1113", Stress}, {"D2213", Stress},
    {"D3313", Stress}, {"D1213", Stress}, {"D1313", Stress}, {"D1123", Stress}, {"D2223", Stress}, {"D3323", Stress},
    {"D1223", Stress}, {"D1323", Stress}, {"D2323", Stress}};
constexpr ConstantLabel Density[] = {{"Density", "Density"}};
constexpr ConstantLabel SpecificHeat[] = {{"Specific heat", "Specific Heat"}};
constexpr ConstantLabel Expansion[] = {{"Expansion", Thermal}};
constexpr ConstantLabel Expansions[] = {{"Expansion 11", Thermal}, {"Expansion 22", Thermal},
                                        {"Expansion 33", Thermal}, {"Expansion 12", Thermal},
                                        {"Expansion 13", Thermal}, {"Expansion 23", Thermal}};
constexpr ConstantLabel Conductivity[] = {{"Conductivity", Conduction}};
constexpr ConstantLabel Conductivities[] = {{"Conductivity 11", Conduction}, {"Conductivity 22", Conduction},
                                            {"Conductivity 33", Conduction}, {"Conductivity 12", Conduction},
                                            {"Conductivity 13", Conduction}, {"Conductivity 23", Conduction}};

using Labels = std::span<const ConstantLabel>;

struct ConstantCard
{
    std::string_view keyword;
    std::string_view type;  // empty: without the parameter
    Labels labels;
};

constexpr ConstantCard Cards[] = {
    {"ELASTIC", "", Isotropic},
    {"ELASTIC", "ISO", Isotropic},
    {"ELASTIC", "ISOTROPIC", Isotropic},
    {"ELASTIC", "ORTHO", Orthotropic},
    {"ELASTIC", "ORTHOTROPIC", Orthotropic},
    {"ELASTIC", "ENGINEERINGCONSTANTS", Engineering},
    {"ELASTIC", "ANISO", Anisotropic},
    {"ELASTIC", "ANISOTROPIC", Anisotropic},
    {"DENSITY", "", Density},
    {"SPECIFICHEAT", "", SpecificHeat},
    {"EXPANSION", "", Expansion},
    {"EXPANSION", "ISO", Expansion},
    {"EXPANSION", "ORTHO", Labels(Expansions).first(3)},
    {"EXPANSION", "ANISO", Expansions},
    {"CONDUCTIVITY", "", Conductivity},
    {"CONDUCTIVITY", "ISO", Conductivity},
    {"CONDUCTIVITY", "ORTHO", Labels(Conductivities).first(3)},
    {"CONDUCTIVITY", "ANISO", Conductivities},
};

constexpr Labels NoLabels;

}  // namespace

const std::span<const ConstantLabel>* FindConstants(const KeywordCard& card)
{
    const std::string type = UpperCase(card.Name("TYPE"));
    bool isKnown = false;
    for (const ConstantCard& candidate : Cards) {
        if (candidate.keyword != card.keyword)
            continue;
        if (candidate.type == type)
            return &candidate.labels;
        isKnown = true;
    }
    return isKnown ? &NoLabels : nullptr;
}

void RemoveConstants(Material& material, std::string_view keyword)
{
    const auto isOfKeyword = [&](const MaterialValue& value) {
        return std::any_of(std::begin(Cards), std::end(Cards), [&](const ConstantCard& card) {
            return card.keyword == keyword &&
                   std::any_of(card.labels.begin(), card.labels.end(),
                               [&](const ConstantLabel& constant) { return constant.label == value.label; });
        });
    };
    std::erase_if(material.values, isOfKeyword);
}

}  // namespace tool
