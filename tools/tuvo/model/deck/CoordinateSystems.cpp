#include "tools/tuvo/model/deck/CoordinateSystems.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace tool {
namespace {

constexpr int DeepestChain = 1000;  // of systems each given in the next

Point Difference(const Point& a, const Point& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Point Cross(const Point& a, const Point& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Makes a vector one of length 1; false for one without length.
bool Normalise(Point& vector)
{
    const double length = std::hypot(vector[0], vector[1], vector[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        return false;
    for (double& coordinate : vector)
        coordinate /= length;
    return true;
}

double Radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

Point ToCartesian(CoordinateSystems::Kind kind, const Point& point)
{
    const auto [r, first, second] = point;
    if (kind == CoordinateSystems::Kind::Cylindrical)
        return {r * std::cos(Radians(first)), r * std::sin(Radians(first)), second};
    if (kind == CoordinateSystems::Kind::Spherical)
        return {r * std::sin(Radians(first)) * std::cos(Radians(second)),
                r * std::sin(Radians(first)) * std::sin(Radians(second)), r * std::cos(Radians(first))};
    return point;
}

}  // namespace

void CoordinateSystems::Define(std::int32_t id, Kind kind, std::int32_t reference, const std::array<Point, 3>& points)
{
    System& system = m_systems[id] = {};
    system.kind = kind;
    system.reference = reference;
    system.points = points;
}

void CoordinateSystems::Define(std::int32_t id, Kind kind, const std::array<std::int32_t, 3>& nodes)
{
    System& system = m_systems[id] = {};
    system.kind = kind;
    system.isByNodes = true;
    system.nodes = nodes;
    for (const std::int32_t node : nodes)
        m_nodes[node] = {};
}

void CoordinateSystems::Select(std::size_t firstNode, std::int32_t system)
{
    if (system != (m_runs.empty() ? 0 : m_runs.back().system))
        m_runs.push_back({firstNode, system});
}

Point CoordinateSystems::ToBasic(const System& system, const Point& point) const
{
    const Point local = ToCartesian(system.kind, point);
    Point basic = system.origin;
    for (std::size_t axis = 0; axis < 3; ++axis)
        for (std::size_t i = 0; i < 3; ++i)
            basic[i] += local[axis] * system.axes[axis][i];
    return basic;
}

// Takes note of the nodes that systems are given by, as the deck has them.
void CoordinateSystems::FindNodes(const Nodes& nodes)
{
    if (m_nodes.empty())
        return;
    auto run = m_runs.begin();
    std::int32_t system = 0;
    for (std::size_t i = 0; i < nodes.Count(); ++i) {
        for (; run != m_runs.end() && run->firstNode == i; ++run)
            system = run->system;
        const auto named = m_nodes.find(nodes.ids[i]);
        if (named != m_nodes.end())
            named->second = {nodes.coordinates[i], system, true};
    }
}

bool CoordinateSystems::NodeToBasic(std::int32_t node, Point& point)
{
    const Named& named = m_nodes[node];
    if (!named.isFound || !Resolve(named.system))
        return false;
    point = named.system == 0 ? named.point : ToBasic(m_systems[named.system], named.point);
    return true;
}

bool CoordinateSystems::ResolveByNodes(System& system)
{
    for (std::size_t i = 0; i < 3; ++i)
        if (!NodeToBasic(system.nodes[i], system.points[i]))
            return false;
    return true;
}

bool CoordinateSystems::SetAxes(System& system)
{
    system.origin = system.points[0];
    Point z = Difference(system.points[1], system.points[0]);
    Point y = Cross(z, Difference(system.points[2], system.points[0]));
    if (!Normalise(z) || !Normalise(y))
        return false;
    system.axes = {Cross(y, z), y, z};
    return true;
}

// Finds where a system stands in the basic one, which is system 0. False when it depends on itself or on what is not
// there, or its points lie on one line.
bool CoordinateSystems::Resolve(std::int32_t id)
{
    if (id == 0)
        return true;
    const auto found = m_systems.find(id);
    if (found == m_systems.end()) {
        m_problems.push_back("the coordinate system " + std::to_string(id) + " is not defined");
        m_systems[id].state = State::Failed;
        return false;
    }
    System& system = found->second;
    if (system.state == State::Resolved || system.state == State::Failed)
        return system.state == State::Resolved;
    bool isResolved = system.state != State::Pending && m_depth < DeepestChain;
    system.state = State::Pending;
    ++m_depth;
    if (isResolved && system.isByNodes)
        isResolved = ResolveByNodes(system);
    else if (isResolved && (isResolved = Resolve(system.reference)) && system.reference != 0)
        for (Point& point : system.points)
            point = ToBasic(m_systems[system.reference], point);
    --m_depth;
    isResolved = isResolved && SetAxes(system);
    if (!isResolved && system.state != State::Failed)
        m_problems.push_back("the coordinate system " + std::to_string(id) +
                             " has no place: what it is given by is missing, lies on one line, depends on it or on"
                             " too many others");
    system.state = isResolved ? State::Resolved : State::Failed;
    return isResolved;
}

std::vector<std::string> CoordinateSystems::Apply(Nodes& nodes)
{
    for (Run& run : m_runs)
        run.system = run.system == Default ? m_default : run.system;
    FindNodes(nodes);
    for (std::size_t i = 0; i < m_runs.size(); ++i) {
        const auto [first, id] = m_runs[i];
        if (id == 0 || !Resolve(id))
            continue;
        const System& system = m_systems[id];
        const std::size_t last = i + 1 < m_runs.size() ? m_runs[i + 1].firstNode : nodes.Count();
        for (std::size_t node = first; node < last; ++node)
            nodes.coordinates[node] = ToBasic(system, nodes.coordinates[node]);
    }
    return std::move(m_problems);
}

}  // namespace tool
