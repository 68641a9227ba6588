#include "tools/tuvo/model/deck/BulkMaterial.h"

namespace tool {
namespace {

constexpr std::string_view Young = "Young's Modulus";
constexpr std::string_view Poisson = "Poisson's Ratio";
constexpr std::string_view Shear = "Shear Modulus";
constexpr std::string_view Bulk = "Bulk Modulus";
constexpr std::string_view Stress = "Stress";
constexpr std::string_view Mass = "Density";
constexpr std::string_view Thermal = "Thermal Expansion";
constexpr std::string_view Conduction = "Thermal Conductivity";
constexpr std::string_view Heat = "Specific Heat";

constexpr BulkConstant Mat1[] = {
    {1, "E", Young}, {2, "G", Shear}, {3, "NU", Poisson}, {4, "Density", Mass}, {5, "Expansion", Thermal}};
constexpr BulkConstant Mat2[] = {
    {1, "G11", Stress},           {2, "G12", Stress},           {3, "G13", Stress},   {4, "G22", Stress},
    {5, "G23", Stress},           {6, "G33", Stress},           {7, "Density", Mass}, {8, "Expansion 11", Thermal},
    {9, "Expansion 22", Thermal}, {10, "Expansion 12", Thermal}};
constexpr BulkConstant Mat3[] = {{1, "EX", Young},
                                 {2, "ETH", Young},
                                 {3, "EZ", Young},
                                 {4, "NUXTH", Poisson},
                                 {5, "NUTHZ", Poisson},
                                 {6, "NUZX", Poisson},
                                 {7, "Density", Mass},
                                 {10, "GZX", Shear},
                                 {11, "Expansion X", Thermal},
                                 {12, "Expansion TH", Thermal},
                                 {13, "Expansion Z", Thermal}};
constexpr BulkConstant Mat4[] = {{1, "Conductivity", Conduction}, {2, "Specific heat", Heat}, {3, "Density", Mass}};
constexpr BulkConstant Mat5[] = {{1, "Conductivity 11", Conduction}, {2, "Conductivity 12", Conduction},
                                 {3, "Conductivity 13", Conduction}, {4, "Conductivity 22", Conduction},
                                 {5, "Conductivity 23", Conduction}, {6, "Conductivity 33", Conduction},
                                 {7, "Specific heat", Heat},         {8, "Density", Mass}};
constexpr BulkConstant Mat8[] = {{1, "E1", Young},
                                 {2, "E2", Young},
                                 {3, "NU12", Poisson},
                                 {4, "G12", Shear},
                                 {5, "G13", Shear},
                                 {6, "G23", Shear},
                                 {7, "Density", Mass},
                                 {8, "Expansion 11", Thermal},
                                 {9, "Expansion 22", Thermal}};
constexpr BulkConstant Mat9[] = {{1, "G11", Stress},
                                 {2, "G12", Stress},
                                 {3, "G13", Stress},
                                 {4, "G14", Stress},
                                 {5, "G15", Stress},
                                 {6, "G16", Stress},
                                 {7, "G22", Stress},
                                 {8, "G23", Stress},
                                 {9, "G24", Stress},
                                 {10, "G25", Stress},
                                 {11, "G26", Stress},
                                 {12, "G33", Stress},
                                 {13, "G34", Stress},
                                 {14, "G35", Stress},
                                 {15, "G36", Stress},
                                 {16, "G44", Stress},
                                 {17, "G45", Stress},
                                 {18, "G46", Stress},
                                 {19, "G55", Stress},
                                 {20, "G56", Stress},
                                 {21, "G66", Stress},
                                 {22, "Density", Mass},
                                 {23, "Expansion 11", Thermal},
                                 {24, "Expansion 22", Thermal},
                                 {25, "Expansion 33", Thermal},
                                 {26, "Expansion 12", Thermal},
                                 {27, "Expansion 23", Thermal},
                                 {28, "Expansion 13", Thermal}};
constexpr BulkConstant Mat10[] = {{1, "Bulk modulus", Bulk}, {2, "Density", Mass}, {3, "Speed of sound", "Velocity"}};
constexpr BulkConstant Mat11[] = {{1, "E1", Young},
                                  {2, "E2", Young},
                                  {3, "E3", Young},
                                  {4, "NU12", Poisson},
                                  {5, "NU13", Poisson},
                                  {6, "NU23", Poisson},
                                  {7, "G12", Shear},
                                  {8, "G13", Shear},
                                  {9, "G23", Shear},
                                  {10, "Density", Mass},
                                  {11, "Expansion 11", Thermal},
                                  {12, "Expansion 22", Thermal},
                                  {13, "Expansion 33", Thermal}};
constexpr BulkConstant Mathp[] = {
    {1, "A10", Stress}, {2, "A01", Stress}, {3, "D1", Stress}, {4, "Density", Mass}, {5, "Expansion", Thermal}};

struct MaterialCard
{
    std::string_view name;
    std::span<const BulkConstant> constants;
};
constexpr MaterialCard Cards[] = {{"MAT1", Mat1}, {"MAT2", Mat2}, {"MAT3", Mat3},   {"MAT4", Mat4},   {"MAT5", Mat5},
                                  {"MAT8", Mat8}, {"MAT9", Mat9}, {"MAT10", Mat10}, {"MAT11", Mat11}, {"MATHP", Mathp}};

}  // namespace

std::span<const BulkConstant> BulkConstants(std::string_view name)
{
    for (const MaterialCard& card : Cards)
        if (card.name == name)
            return card.constants;
    return {};
}

}  // namespace tool
