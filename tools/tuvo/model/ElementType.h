// The element types of CalculiX and NASTRAN decks: how many nodes they have, and the shape that their corners span.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tool {

enum class ElementClass : std::uint8_t
{
    Solid,
    Shell,
    Plane,  // plane stress, plane strain, axisymmetric
    Beam,
    Other  // springs, masses, gaps, fluid networks, ...
};

std::string_view ClassName(ElementClass elementClass);  // "solid", "shell", ...

// A face by its corners, which are positions among the nodes of an element, seen from outside counter-clockwise; a
// triangle has -1 as the fourth.
struct Face
{
    std::int8_t corners[4];
    int Count() const { return corners[3] < 0 ? 3 : 4; }
};

struct Edge
{
    std::int8_t corners[2];
};

// A shape by its corners alone. A surface is its own only face; a line has no face.
struct Shape
{
    int cornerCount = 0;  // the first nodes of an element, but for CTRIAX6, where every second one is a corner
    std::span<const Face> faces;
    std::span<const Edge> edges;
};

struct ElementType
{
    std::string_view name;  // "C3D8", "CTETRA"; several types of NASTRAN share a name
    int nodeCount = 0;
    ElementClass elementClass = ElementClass::Other;
    const Shape* shape = nullptr;  // never null
};

// The type that a CalculiX deck calls so, in any case; null when there is none.
const ElementType* FindKeywordType(std::string_view name);

// The type of a NASTRAN card with at least so many nodes, the largest one of the card when there is none; null when the
// card is no element.
const ElementType* FindBulkType(std::string_view card, int nodeCount);

const Shape& NoShape();  // of an element whose nodes span nothing that can be drawn

}  // namespace tool
