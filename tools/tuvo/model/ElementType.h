// The element types of CalculiX and NASTRAN decks: how many nodes they have, and the shape that their corners span.
#pragma once

#include <cstdint>
#include <span>
#include <string>
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

// A face by its corners, seen from outside counter-clockwise; a triangle has -1 as the fourth.
struct Face
{
    std::int8_t corners[4];
    int Count() const { return corners[3] < 0 ? 3 : 4; }
};

struct Edge
{
    std::int8_t corners[2];
};

// A shape by its corners alone. A surface is its own only face; a line has one edge and no face.
struct Shape
{
    int cornerCount = 0;
    std::span<const Face> faces;
    std::span<const Edge> edges;
};

struct ElementType
{
    std::string name;  // "C3D8", "CTETRA"; several types of NASTRAN share a name
    int nodeCount = 0;
    ElementClass elementClass = ElementClass::Other;
    const Shape* shape = nullptr;  // never null; its corners are the first nodes
};

// The type that a CalculiX deck calls so, in any case; null when there is none.
const ElementType* FindKeywordType(std::string_view name);

// The type of a NASTRAN card with so many nodes at most; null when the card is no element.
const ElementType* FindBulkType(std::string_view card, int nodeCount);

const Shape& NoShape();  // of an element whose nodes span nothing that can be drawn

}  // namespace tool
