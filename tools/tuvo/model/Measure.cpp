#include "tools/tuvo/model/Measure.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tool {
namespace {

// A sum that loses no digits over millions of terms: what rounding takes is added at the end.
class ExactSum
{
public:
    void Add(double term)
    {
        const double sum = m_sum + term;
        m_lost += std::abs(m_sum) >= std::abs(term) ? (m_sum - sum) + term : (term - sum) + m_sum;
        m_sum = sum;
    }
    double Value() const { return m_sum + m_lost; }

private:
    double m_sum = 0.0;
    double m_lost = 0.0;
};

double TripleProduct(const Point& a, const Point& b, const Point& c)
{
    return a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) + a[2] * (b[0] * c[1] - b[1] * c[0]);
}

// Six times the volume between a face and the origin. A face of four corners is the mean of its two ways to be two
// triangles.
double SixfoldCone(const std::array<Point, 4>& corners, int count)
{
    const auto& [a, b, c, d] = corners;
    if (count == 3)
        return TripleProduct(a, b, c);
    return 0.5 * (TripleProduct(a, b, c) + TripleProduct(a, c, d) + TripleProduct(a, b, d) + TripleProduct(b, c, d));
}

// Which material each element is made of that a section names, by rising ids; the last section that names it counts.
class ElementMaterials
{
public:
    explicit ElementMaterials(const Model& model)
    {
        for (const Section& section : model.sections)
            for (const std::int32_t id : model.sets[section.set].ids)
                m_materials.emplace_back(id, section.material);
        const auto byId = [](const Entry& left, const Entry& right) { return left.first < right.first; };
        if (!std::is_sorted(m_materials.begin(), m_materials.end(), byId))
            std::stable_sort(m_materials.begin(), m_materials.end(), byId);
    }

    std::optional<std::size_t> Find(std::int32_t id) const
    {
        const auto behind = std::upper_bound(m_materials.begin(), m_materials.end(), id,
                                             [](std::int32_t i, const Entry& entry) { return i < entry.first; });
        if (behind == m_materials.begin() || std::prev(behind)->first != id)
            return std::nullopt;
        return std::prev(behind)->second;
    }

private:
    using Entry = std::pair<std::int32_t, std::uint32_t>;
    std::vector<Entry> m_materials;
};

struct Collected
{
    std::uint64_t elements = 0;
    ExactSum volume;
};

MaterialMeasure Finished(const Model& model, const Collected& collected, std::optional<std::size_t> material)
{
    MaterialMeasure measure = {material, collected.elements, collected.volume.Value(), std::nullopt};
    if (material)
        if (const auto density = model.materials[*material].Find("Density"))
            measure.mass = *density * measure.volume;
    return measure;
}

}  // namespace

std::optional<Extent> BoundingBox(const Nodes& nodes)
{
    if (nodes.Count() == 0)
        return std::nullopt;
    Extent extent = {nodes.coordinates.front(), nodes.coordinates.front()};
    for (const Point& point : nodes.coordinates) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            extent.low[axis] = std::min(extent.low[axis], point[axis]);
            extent.high[axis] = std::max(extent.high[axis], point[axis]);
        }
    }
    return extent;
}

std::optional<double> SolidVolume(const Nodes& nodes, const ElementBlock& block, std::size_t element)
{
    const Shape& shape = *block.type->shape;
    const std::int32_t* const ids = block.NodesOf(element);
    for (int corner = 0; corner < shape.cornerCount; ++corner)
        if (ids[corner] < 0)
            return std::nullopt;
    const Point& origin =
        nodes.coordinates[static_cast<std::size_t>(ids[0])];  // so that nothing far away is subtracted
    double sixfold = 0.0;
    for (const Face& face : shape.faces) {
        std::array<Point, 4> corners{};
        for (int i = 0; i < face.Count(); ++i) {
            const auto corner = static_cast<std::size_t>(i);
            corners[corner] = nodes.coordinates[static_cast<std::size_t>(ids[face.corners[i]])];
            for (std::size_t axis = 0; axis < 3; ++axis)
                corners[corner][axis] -= origin[axis];
        }
        sixfold += SixfoldCone(corners, face.Count());
    }
    return sixfold / 6.0;
}

SolidMeasures MeasureSolids(const Model& model)
{
    const ElementMaterials materials(model);
    std::vector<Collected> collected(model.materials.size() + 1);  // the last one for elements of no known material
    SolidMeasures measures;
    for (const ElementBlock& block : model.blocks) {
        if (block.type->elementClass != ElementClass::Solid)
            continue;
        for (std::size_t element = 0; element < block.Count(); ++element) {
            const std::optional<double> volume = SolidVolume(model.nodes, block, element);
            measures.incomplete += volume ? 0 : 1;
            measures.insideOut += volume && *volume < 0.0 ? 1 : 0;
            Collected& own = collected[materials.Find(block.ids[element]).value_or(model.materials.size())];
            ++own.elements;
            own.volume.Add(std::abs(volume.value_or(0.0)));
        }
    }
    for (std::size_t i = 0; i < collected.size(); ++i)
        if (collected[i].elements > 0)
            measures.materials.push_back(
                Finished(model, collected[i], i < model.materials.size() ? std::optional(i) : std::nullopt));
    return measures;
}

MaterialMeasure Total(const SolidMeasures& measures)
{
    MaterialMeasure total;
    total.mass = 0.0;
    for (const MaterialMeasure& measure : measures.materials) {
        total.elements += measure.elements;
        total.volume += measure.volume;
        total.mass = total.mass && measure.mass ? std::optional(*total.mass + *measure.mass) : std::nullopt;
    }
    return total;
}

}  // namespace tool
