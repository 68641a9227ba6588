#include "tools/tuvo/model/ElementType.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <iterator>

namespace tool {
namespace {

// ---- Shapes --------------------------------------------------------------------------------------------------------

constexpr Face TetrahedronFaces[] = {{{0, 2, 1, -1}}, {{0, 1, 3, -1}}, {{1, 2, 3, -1}}, {{2, 0, 3, -1}}};
constexpr Edge TetrahedronEdges[] = {{{0, 1}}, {{1, 2}}, {{2, 0}}, {{0, 3}}, {{1, 3}}, {{2, 3}}};
constexpr Shape Tetrahedron = {4, TetrahedronFaces, TetrahedronEdges};

constexpr Face PyramidFaces[] = {{{0, 3, 2, 1}}, {{0, 1, 4, -1}}, {{1, 2, 4, -1}}, {{2, 3, 4, -1}}, {{3, 0, 4, -1}}};
constexpr Edge PyramidEdges[] = {{{0, 1}}, {{1, 2}}, {{2, 3}}, {{3, 0}}, {{0, 4}}, {{1, 4}}, {{2, 4}}, {{3, 4}}};
constexpr Shape Pyramid = {5, PyramidFaces, PyramidEdges};

constexpr Face WedgeFaces[] = {{{0, 2, 1, -1}}, {{3, 4, 5, -1}}, {{0, 1, 4, 3}}, {{1, 2, 5, 4}}, {{2, 0, 3, 5}}};
constexpr Edge WedgeEdges[] = {{{0, 1}}, {{1, 2}}, {{2, 0}}, {{3, 4}}, {{4, 5}},
                               {{5, 3}}, {{0, 3}}, {{1, 4}}, {{2, 5}}};
constexpr Shape Wedge = {6, WedgeFaces, WedgeEdges};

constexpr Face HexahedronFaces[] = {{{0, 3, 2, 1}}, {{4, 5, 6, 7}}, {{0, 1, 5, 4}},
                                    {{1, 2, 6, 5}}, {{2, 3, 7, 6}}, {{3, 0, 4, 7}}};
constexpr Edge HexahedronEdges[] = {{{0, 1}}, {{1, 2}}, {{2, 3}}, {{3, 0}}, {{4, 5}}, {{5, 6}},
                                    {{6, 7}}, {{7, 4}}, {{0, 4}}, {{1, 5}}, {{2, 6}}, {{3, 7}}};
constexpr Shape Hexahedron = {8, HexahedronFaces, HexahedronEdges};

constexpr Face TriangleFaces[] = {{{0, 1, 2, -1}}};
constexpr Edge TriangleEdges[] = {{{0, 1}}, {{1, 2}}, {{2, 0}}};
constexpr Shape Triangle = {3, TriangleFaces, TriangleEdges};

// Corners and nodes on the edges take turns.
constexpr Face SpacedTriangleFaces[] = {{{0, 2, 4, -1}}};
constexpr Edge SpacedTriangleEdges[] = {{{0, 2}}, {{2, 4}}, {{4, 0}}};
constexpr Shape SpacedTriangle = {3, SpacedTriangleFaces, SpacedTriangleEdges};

constexpr Face QuadrangleFaces[] = {{{0, 1, 2, 3}}};
constexpr Edge QuadrangleEdges[] = {{{0, 1}}, {{1, 2}}, {{2, 3}}, {{3, 0}}};
constexpr Shape Quadrangle = {4, QuadrangleFaces, QuadrangleEdges};

constexpr Edge LineEdges[] = {{{0, 1}}};
constexpr Shape Line = {2, {}, LineEdges};

// The second node lies in the middle.
constexpr Edge BentLineEdges[] = {{{0, 1}}, {{1, 2}}};
constexpr Shape BentLine = {3, {}, BentLineEdges};

constexpr Shape Nothing = {};

// ---- Types ---------------------------------------------------------------------------------------------------------

using enum ElementClass;

constexpr ElementType KeywordTypes[] = {
    {"C3D4", 4, Solid, &Tetrahedron},
    {"C3D6", 6, Solid, &Wedge},
    {"C3D8", 8, Solid, &Hexahedron},
    {"C3D8I", 8, Solid, &Hexahedron},
    {"C3D8R", 8, Solid, &Hexahedron},
    {"C3D10", 10, Solid, &Tetrahedron},
    {"C3D10T", 10, Solid, &Tetrahedron},
    {"C3D15", 15, Solid, &Wedge},
    {"C3D20", 20, Solid, &Hexahedron},
    {"C3D20R", 20, Solid, &Hexahedron},
    {"C3D20RI", 20, Solid, &Hexahedron},
    {"DC3D4", 4, Solid, &Tetrahedron},
    {"DC3D6", 6, Solid, &Wedge},
    {"DC3D8", 8, Solid, &Hexahedron},
    {"DC3D10", 10, Solid, &Tetrahedron},
    {"DC3D15", 15, Solid, &Wedge},
    {"DC3D20", 20, Solid, &Hexahedron},
    {"F3D4", 4, Solid, &Tetrahedron},
    {"F3D6", 6, Solid, &Wedge},
    {"F3D8", 8, Solid, &Hexahedron},
    {"F3D8R", 8, Solid, &Hexahedron},
    {"S3", 3, Shell, &Triangle},
    {"S4", 4, Shell, &Quadrangle},
    {"S4R", 4, Shell, &Quadrangle},
    {"S6", 6, Shell, &Triangle},
    {"S8", 8, Shell, &Quadrangle},
    {"S8R", 8, Shell, &Quadrangle},
    {"M3D3", 3, Shell, &Triangle},
    {"M3D4", 4, Shell, &Quadrangle},
    {"M3D4R", 4, Shell, &Quadrangle},
    {"M3D6", 6, Shell, &Triangle},
    {"M3D8", 8, Shell, &Quadrangle},
    {"M3D8R", 8, Shell, &Quadrangle},
    {"US3", 3, Shell, &Triangle},
    {"CPS3", 3, Plane, &Triangle},
    {"CPS4", 4, Plane, &Quadrangle},
    {"CPS4R", 4, Plane, &Quadrangle},
    {"CPS6", 6, Plane, &Triangle},
    {"CPS8", 8, Plane, &Quadrangle},
    {"CPS8R", 8, Plane, &Quadrangle},
    {"CPE3", 3, Plane, &Triangle},
    {"CPE4", 4, Plane, &Quadrangle},
    {"CPE4R", 4, Plane, &Quadrangle},
    {"CPE6", 6, Plane, &Triangle},
    {"CPE8", 8, Plane, &Quadrangle},
    {"CPE8R", 8, Plane, &Quadrangle},
    {"CAX3", 3, Plane, &Triangle},
    {"CAX4", 4, Plane, &Quadrangle},
    {"CAX4R", 4, Plane, &Quadrangle},
    {"CAX6", 6, Plane, &Triangle},
    {"CAX8", 8, Plane, &Quadrangle},
    {"CAX8R", 8, Plane, &Quadrangle},
    {"B21", 2, Beam, &Line},
    {"B31", 2, Beam, &Line},
    {"B31R", 2, Beam, &Line},
    {"B32", 3, Beam, &BentLine},
    {"B32R", 3, Beam, &BentLine},
    {"T2D2", 2, Beam, &Line},
    {"T3D2", 2, Beam, &Line},
    {"T3D3", 3, Beam, &BentLine},
    {"D", 3, Other, &BentLine},
    {"GAPUNI", 2, Other, &Line},
    {"DASHPOTA", 2, Other, &Line},
    {"SPRINGA", 2, Other, &Line},
    {"SPRING1", 1, Other, &Nothing},
    {"SPRING2", 2, Other, &Line},
    {"DCOUP3D", 1, Other, &Nothing},
    {"MASS", 1, Other, &Nothing},
};

// Cards of one name follow one another, fewer nodes first.
constexpr ElementType BulkTypes[] = {
    {"CTETRA", 4, Solid, &Tetrahedron}, {"CTETRA", 10, Solid, &Tetrahedron}, {"CPYRAM", 5, Solid, &Pyramid},
    {"CPYRAM", 13, Solid, &Pyramid},    {"CPENTA", 6, Solid, &Wedge},        {"CPENTA", 15, Solid, &Wedge},
    {"CHEXA", 8, Solid, &Hexahedron},   {"CHEXA", 20, Solid, &Hexahedron},   {"CTRIA3", 3, Shell, &Triangle},
    {"CTRIAR", 3, Shell, &Triangle},    {"CTRIA6", 6, Shell, &Triangle},     {"CQUAD4", 4, Shell, &Quadrangle},
    {"CQUADR", 4, Shell, &Quadrangle},  {"CSHEAR", 4, Shell, &Quadrangle},   {"CQUAD8", 8, Shell, &Quadrangle},
    {"CQUAD", 4, Plane, &Quadrangle},   {"CQUAD", 9, Plane, &Quadrangle},    {"CTRIAX6", 6, Plane, &SpacedTriangle},
    {"CROD", 2, Beam, &Line},           {"CONROD", 2, Beam, &Line},          {"CTUBE", 2, Beam, &Line},
    {"CBAR", 2, Beam, &Line},           {"CBEAM", 2, Beam, &Line},           {"CBEND", 2, Beam, &Line},
    {"CBUSH", 2, Other, &Line},         {"CGAP", 2, Other, &Line},           {"CVISC", 2, Other, &Line},
    {"CELAS1", 2, Other, &Line},        {"CELAS2", 2, Other, &Line},         {"CDAMP1", 2, Other, &Line},
    {"CDAMP2", 2, Other, &Line},        {"CMASS1", 2, Other, &Line},         {"CMASS2", 2, Other, &Line},
    {"CONM1", 1, Other, &Nothing},      {"CONM2", 1, Other, &Nothing},
};

bool IsEqual(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return BuToUpper(a) == BuToUpper(b); });
}

}  // namespace

std::string_view ClassName(ElementClass elementClass)
{
    static constexpr std::string_view Names[] = {"solid", "shell", "plane", "beam", "other"};
    return Names[static_cast<std::size_t>(elementClass)];
}

const ElementType* FindKeywordType(std::string_view name)
{
    const auto found = std::find_if(std::begin(KeywordTypes), std::end(KeywordTypes),
                                    [&](const ElementType& type) { return IsEqual(type.name, name); });
    return found != std::end(KeywordTypes) ? &*found : nullptr;
}

const ElementType* FindBulkType(std::string_view card, int nodeCount)
{
    const ElementType* found = nullptr;
    for (const ElementType& type : BulkTypes) {
        if (!IsEqual(type.name, card))
            continue;
        found = &type;
        if (nodeCount <= type.nodeCount)
            break;
    }
    return found;
}

const Shape& NoShape()
{
    return Nothing;
}

}  // namespace tool
