// The coordinate systems of a NASTRAN deck: CORD1R, CORD1C, CORD1S, CORD2R, CORD2C, CORD2S.
#pragma once

#include "tools/tuvo/model/Model.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tool {

class CoordinateSystems
{
public:
    enum class Kind : std::uint8_t
    {
        Rectangular,
        Cylindrical,  // r, theta in degrees, z
        Spherical     // r, theta from the z axis and phi, both in degrees
    };

    // Given by three points in another system: the origin, one on the z axis, one in the xz plane.
    void Define(std::int32_t id, Kind kind, std::int32_t reference, const std::array<Point, 3>& points);

    // Given by three nodes in the same roles.
    void Define(std::int32_t id, Kind kind, const std::array<std::int32_t, 3>& nodes);

    // From here on, nodes are given in this system; 0 is the basic one, Default what SetDefault says at any time.
    static constexpr std::int32_t Default = -1;
    void Select(std::size_t firstNode, std::int32_t system);
    void SetDefault(std::int32_t system) { m_default = system; }

    // Brings all nodes, which stand in the order of the deck, into the basic system. Gives what could not be: a line for
    // each system.
    std::vector<std::string> Apply(Nodes& nodes);

private:
    enum class State : std::uint8_t
    {
        Unknown,
        Pending,  // being resolved: met again, it depends on itself
        Resolved,
        Failed
    };
    struct System
    {
        Kind kind = Kind::Rectangular;
        bool isByNodes = false;
        std::int32_t reference = 0;
        std::array<Point, 3> points{};
        std::array<std::int32_t, 3> nodes{};
        State state = State::Unknown;
        Point origin{};
        std::array<Point, 3> axes{};
    };
    struct Run
    {
        std::size_t firstNode;
        std::int32_t system;
    };

    bool Resolve(std::int32_t id);
    bool ResolveByNodes(System& system);
    bool SetAxes(System& system);
    Point ToBasic(const System& system, const Point& point) const;
    bool NodeToBasic(std::int32_t node, Point& point);
    void FindNodes(const Nodes& nodes);

    struct Named  // a node that a system is given by
    {
        Point point{};
        std::int32_t system = 0;
        bool isFound = false;
    };

    std::map<std::int32_t, System> m_systems;
    std::vector<Run> m_runs;
    std::int32_t m_default = 0;
    std::map<std::int32_t, Named> m_nodes;
    int m_depth = 0;
    std::vector<std::string> m_problems;
};

}  // namespace tool
