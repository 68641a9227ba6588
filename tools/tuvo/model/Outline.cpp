#include "tools/tuvo/model/Outline.h"

#include "tools/tuvo/model/Vector.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace tool {
namespace {

using Corners = std::array<std::int32_t, 4>;

// A face that a solid has, with its corners in rising order to meet the same face of a neighbour.
struct SolidFace
{
    Corners key;
    std::uint32_t block;
    std::uint32_t element;
    std::uint8_t face;
};

Corners CornersOf(const Face& face, const std::int32_t* nodes)
{
    Corners corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
        corners[i] = face.corners[i] < 0 ? -1 : nodes[face.corners[i]];
    return corners;
}

// The corners of a face without those that it has twice in a row, as collapsed elements do; false when fewer than three
// are left, or one is not defined.
bool Simplify(Corners& corners, std::size_t count)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (corners[i] < 0)
            return false;
        if (kept == 0 || corners[kept - 1] != corners[i])
            corners[kept++] = corners[i];
    }
    while (kept > 1 && corners[kept - 1] == corners[0])
        --kept;
    std::fill(corners.begin() + static_cast<std::ptrdiff_t>(kept), corners.end(), -1);
    return kept == 3 || (kept == 4 && corners[0] != corners[2] && corners[1] != corners[3]);
}

Point CentreOf(const std::vector<Point>& points, const std::int32_t* nodes, std::size_t count)
{
    Point sum{};
    std::size_t defined = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (nodes[i] >= 0) {
            sum = sum + points[static_cast<std::size_t>(nodes[i])];
            ++defined;
        }
    return sum * (1.0 / static_cast<double>(std::max<std::size_t>(defined, 1)));
}

// Turns a face round when it is seen from inside, which it is where an element is inside out.
void TurnOutwards(OutlineFace& face, const std::vector<Point>& points, const Point& inside)
{
    const std::size_t count = face.Count();
    const auto at = [&](std::size_t i) { return points[static_cast<std::size_t>(face.points[i])]; };
    const Point normal = Cross(at(1) - at(0), at(2) - at(0)) + Cross(at(2) - at(0), at(count - 1) - at(0));
    if (Dot(normal, CentreOf(points, face.points.data(), count) - inside) < 0.0)
        std::reverse(face.points.begin(), face.points.begin() + static_cast<std::ptrdiff_t>(count));
}

std::vector<SolidFace> FacesOfSolids(const Model& model)
{
    std::vector<SolidFace> faces;
    for (std::uint32_t b = 0; b < model.blocks.size(); ++b) {
        const ElementBlock& block = model.blocks[b];
        if (block.type->elementClass != ElementClass::Solid)
            continue;
        const auto shape = block.type->shape->faces;
        faces.reserve(faces.size() + block.Count() * shape.size());
        for (std::uint32_t element = 0; element < block.Count(); ++element)
            for (std::size_t f = 0; f < shape.size(); ++f) {
                const auto number = static_cast<std::uint8_t>(f);  // six faces at most
                SolidFace face = {CornersOf(shape[f], block.NodesOf(element)), b, element, number};
                if (!Simplify(face.key, static_cast<std::size_t>(shape[f].Count())))
                    continue;
                std::sort(face.key.begin(), face.key.end());
                faces.push_back(face);
            }
    }
    return faces;
}

void AddSolids(Outline& outline, const Model& model, const Grouping& grouping)
{
    std::vector<SolidFace> faces = FacesOfSolids(model);
    std::sort(faces.begin(), faces.end(), [](const SolidFace& a, const SolidFace& b) { return a.key < b.key; });
    for (std::size_t i = 0, next = 0; i < faces.size(); i = next) {
        next = i + 1;
        while (next < faces.size() && faces[next].key == faces[i].key)
            ++next;
        if (next - i > 1)
            continue;
        const ElementBlock& block = model.blocks[faces[i].block];
        const Shape& shape = *block.type->shape;
        const Face& face = shape.faces[faces[i].face];
        const std::int32_t* const nodes = block.NodesOf(faces[i].element);
        OutlineFace seen = {CornersOf(face, nodes), true, grouping.groupOf[faces[i].block][faces[i].element]};
        Simplify(seen.points, static_cast<std::size_t>(face.Count()));
        const std::vector<Point>& points = model.nodes.coordinates;
        TurnOutwards(seen, points, CentreOf(points, nodes, static_cast<std::size_t>(shape.cornerCount)));
        outline.faces.push_back(seen);
    }
}

void AddSurfaces(Outline& outline, const ElementBlock& block, const std::vector<std::uint8_t>& groups)
{
    for (const Face& face : block.type->shape->faces)
        for (std::size_t element = 0; element < block.Count(); ++element) {
            OutlineFace seen = {CornersOf(face, block.NodesOf(element)), false, groups[element]};
            if (Simplify(seen.points, static_cast<std::size_t>(face.Count())))
                outline.faces.push_back(seen);
        }
}

void AddLines(Outline& outline, const ElementBlock& block, const std::vector<std::uint8_t>& groups)
{
    for (const Edge& edge : block.type->shape->edges)
        for (std::size_t element = 0; element < block.Count(); ++element) {
            const std::int32_t* const nodes = block.NodesOf(element);
            const OutlineLine line = {{nodes[edge.corners[0]], nodes[edge.corners[1]]}, groups[element]};
            if (line.points[0] >= 0 && line.points[1] >= 0 && line.points[0] != line.points[1])
                outline.lines.push_back(line);
        }
}

// Calls a function for each point of each part.
template <typename Visit>
void ForEachPoint(Outline& outline, Visit visit)
{
    for (OutlineFace& face : outline.faces)
        for (std::size_t i = 0; i < face.Count(); ++i)
            visit(face.points[i]);
    for (OutlineLine& line : outline.lines)
        for (std::int32_t& point : line.points)
            visit(point);
}

// Leaves only the points that parts are made of.
void TakePoints(Outline& outline, const std::vector<Point>& points)
{
    std::vector<std::int32_t> places(points.size(), -1);
    std::vector<Point> taken;
    ForEachPoint(outline, [&](std::int32_t& point) {
        std::int32_t& place = places[static_cast<std::size_t>(point)];
        if (place < 0) {
            place = static_cast<std::int32_t>(taken.size());
            taken.push_back(points[static_cast<std::size_t>(point)]);
        }
        point = place;
    });
    outline.points = std::move(taken);
}

// Whether there is a place for a point in a picture. What is farther away is a mistake, and its products overflow.
bool IsPlaced(const Point& point)
{
    constexpr double Farthest = 1e100;
    return std::all_of(point.begin(), point.end(), [](double value) { return std::abs(value) < Farthest; });
}

void DropUnplaced(Outline& outline, const std::vector<Point>& points)
{
    const auto isUnplaced = [&](const auto& part) {
        return std::any_of(part.points.begin(), part.points.end(), [&](std::int32_t point) {
            return point >= 0 && !IsPlaced(points[static_cast<std::size_t>(point)]);
        });
    };
    std::erase_if(outline.faces, isUnplaced);
    std::erase_if(outline.lines, isUnplaced);
}

// ---- Coarser outlines ----------------------------------------------------------------------------------------------

struct CellHash
{
    std::size_t operator()(const std::array<std::int64_t, 3>& cell) const
    {
        std::uint64_t hash = 0;
        for (const std::int64_t place : cell)
            hash = (hash ^ static_cast<std::uint64_t>(place)) * 0x9E3779B97F4A7C15u;
        return static_cast<std::size_t>(hash ^ hash >> 32);
    }
};

struct Box
{
    Point low;
    Point high;
};

Box BoxAround(const std::vector<Point>& points)
{
    Box box = {points.front(), points.front()};
    for (const Point& point : points)
        for (std::size_t axis = 0; axis < 3; ++axis) {
            box.low[axis] = std::min(box.low[axis], point[axis]);
            box.high[axis] = std::max(box.high[axis], point[axis]);
        }
    return box;
}

// For each point the cell that it lies in, by number; `centres` are the mean points of the cells.
std::vector<std::int32_t> FindCells(const std::vector<Point>& points, const Point& origin, double size,
                                    std::vector<Point>& centres)
{
    std::unordered_map<std::array<std::int64_t, 3>, std::int32_t, CellHash> cells;
    std::vector<std::int32_t> cellOf(points.size());
    std::vector<double> counts;
    centres.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::array<std::int64_t, 3> cell;
        for (std::size_t axis = 0; axis < 3; ++axis)
            cell[axis] = std::llround((points[i][axis] - origin[axis]) / size);
        const auto [found, isNew] = cells.try_emplace(cell, static_cast<std::int32_t>(centres.size()));
        if (isNew) {
            centres.emplace_back();
            counts.push_back(0.0);
        }
        cellOf[i] = found->second;
        const auto place = static_cast<std::size_t>(found->second);
        centres[place] = centres[place] + points[i];
        counts[place] += 1.0;
    }
    for (std::size_t i = 0; i < centres.size(); ++i)
        centres[i] = centres[i] * (1.0 / counts[i]);
    return cellOf;
}

// The parts between cells, each once.
Outline Merge(const Outline& outline, const Point& origin, double size)
{
    Outline merged;
    const std::vector<std::int32_t> cellOf = FindCells(outline.points, origin, size, merged.points);
    const auto less = [](const auto& a, const auto& b) { return a.points < b.points; };
    const auto equal = [](const auto& a, const auto& b) { return a.points == b.points; };
    const auto move = [&](auto& part) {
        for (std::int32_t& point : part.points)
            point = point < 0 ? -1 : cellOf[static_cast<std::size_t>(point)];
    };
    for (OutlineFace face : outline.faces) {
        const std::size_t count = face.Count();
        move(face);
        if (!Simplify(face.points, count))
            continue;
        const auto end = face.points.begin() + static_cast<std::ptrdiff_t>(face.Count());
        std::rotate(face.points.begin(), std::min_element(face.points.begin(), end),
                    end);  // the same face is written alike
        merged.faces.push_back(face);
    }
    for (OutlineLine line : outline.lines) {
        move(line);
        std::sort(line.points.begin(), line.points.end());
        if (line.points[0] != line.points[1])
            merged.lines.push_back(line);
    }
    std::stable_sort(merged.faces.begin(), merged.faces.end(), less);
    merged.faces.erase(std::unique(merged.faces.begin(), merged.faces.end(), equal), merged.faces.end());
    std::stable_sort(merged.lines.begin(), merged.lines.end(), less);
    merged.lines.erase(std::unique(merged.lines.begin(), merged.lines.end(), equal), merged.lines.end());
    return merged;
}

std::size_t PartCount(const Outline& outline)
{
    return outline.faces.size() + outline.lines.size();
}

// How much larger cells have to be. The number of faces goes with the square of their size.
double GrowthFor(const Outline& outline, std::size_t mostParts)
{
    constexpr double Smallest = 1.05;
    return std::max(Smallest, std::sqrt(static_cast<double>(PartCount(outline)) / static_cast<double>(mostParts)));
}

}  // namespace

Outline FindOutline(const Model& model, const Grouping& grouping)
{
    Outline outline;
    AddSolids(outline, model, grouping);
    for (std::size_t b = 0; b < model.blocks.size(); ++b) {
        const ElementBlock& block = model.blocks[b];
        if (block.type->elementClass == ElementClass::Solid)
            continue;
        const bool isSurface = !block.type->shape->faces.empty();
        (isSurface ? AddSurfaces : AddLines)(outline, block, grouping.groupOf[b]);
    }
    DropUnplaced(outline, model.nodes.coordinates);
    TakePoints(outline, model.nodes.coordinates);
    return outline;
}

double Coarsen(Outline& outline, std::size_t mostParts)
{
    if (PartCount(outline) <= mostParts || outline.points.empty())
        return 0.0;
    const Box box = BoxAround(outline.points);
    double size = Length(box.high - box.low) / 1000.0;
    Outline coarse = Merge(outline, box.low, size);
    while (PartCount(coarse) > mostParts)
        coarse = Merge(outline, box.low, size *= GrowthFor(coarse, mostParts));
    outline = std::move(coarse);
    return size;
}

}  // namespace tool
