// What a model measures: its extent, and the volume and mass of its solid elements from their corner nodes.
#pragma once

#include "tools/tuvo/model/Model.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tool {

struct Extent
{
    Point low{};
    Point high{};
};

// The box around all nodes; nothing when there are none.
std::optional<Extent> BoundingBox(const Nodes& nodes);

// The volume between the faces of a solid element, which are flat, or bilinear between four corners; below 0 when it is
// inside out. Nothing when a corner is not defined.
std::optional<double> SolidVolume(const Nodes& nodes, const ElementBlock& block, std::size_t element);

// All solid elements that are made of one material.
struct MaterialMeasure
{
    std::optional<std::size_t> material;  // position in Model::materials; nothing: of no known material
    std::uint64_t elements = 0;
    double volume = 0.0;         // of elements that are inside out too, as if they were not
    std::optional<double> mass;  // nothing: there is no density
};

struct SolidMeasures
{
    std::vector<MaterialMeasure> materials;  // in the order of the model, without those that no solid is made of
    std::uint64_t insideOut = 0;             // elements
    std::uint64_t incomplete = 0;            // elements with a corner that is not defined; they measure nothing
};

SolidMeasures MeasureSolids(const Model& model);

// All materials together: of no material; the mass is known when that of each is.
MaterialMeasure Total(const SolidMeasures& measures);

}  // namespace tool
