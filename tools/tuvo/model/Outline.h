// What is seen of a model from outside: the faces that only one solid has, all shells, beams as lines.
#pragma once

#include "tools/tuvo/model/Grouping.h"
#include "tools/tuvo/model/Model.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tool {

struct OutlineFace
{
    std::array<std::int32_t, 4> points;  // counter-clockwise from outside; -1 as the fourth of a triangle
    bool isOfSolid;                      // else it has two outsides
    std::uint8_t group;

    std::size_t Count() const { return points[3] < 0 ? 3 : 4; }
};

struct OutlineLine
{
    std::array<std::int32_t, 2> points;
    std::uint8_t group;
};

struct Outline
{
    std::vector<Point> points;  // what faces and lines are made of, nothing else
    std::vector<OutlineFace> faces;
    std::vector<OutlineLine> lines;
};

// Faces and lines with a node that is not defined are left out, and so are faces without an area.
Outline FindOutline(const Model& model, const Grouping& grouping);

// Draws points together that lie in one cell of a grid, and makes the cells larger until there are at most so many faces
// and lines. Gives the size of a cell; 0 when there was nothing to do.
double Coarsen(Outline& outline, std::size_t mostParts);

}  // namespace tool
