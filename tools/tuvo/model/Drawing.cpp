#include "tools/tuvo/model/Drawing.h"

#include "tools/tuvo/Interruption.h"
#include "tools/tuvo/model/Vector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>

namespace tool {
namespace {

// ---- Colours -------------------------------------------------------------------------------------------------------

struct Colour
{
    int red, green, blue;
};

// Told apart by eyes that see no difference of red and green as well, on light and on dark ground.
constexpr std::array<Colour, Grouping::MostGroups> Palette = {{{76, 141, 203},
                                                               {230, 146, 56},
                                                               {68, 170, 132},
                                                               {204, 88, 124},
                                                               {148, 118, 208},
                                                               {208, 186, 76},
                                                               {92, 190, 208},
                                                               {150, 144, 136}}};

constexpr int Shades = 10;

std::string Hex(const Colour& colour, double brightness)
{
    const auto part = [&](int value) { return static_cast<unsigned int>(std::clamp(value * brightness, 0.0, 255.0)); };
    std::array<char, 8> text;
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", part(colour.red), part(colour.green), part(colour.blue));
    return text.data();
}

double Brightness(int shade)
{
    return 0.62 + 0.5 * shade / (Shades - 1);
}

// ---- The view ------------------------------------------------------------------------------------------------------

// Orthogonal directions of length 1: the picture's, and towards the eye.
constexpr Point Right = {0.7071067811865475, 0.7071067811865475, 0.0};
constexpr Point Up = {-0.4082482904638630, 0.4082482904638630, 0.8164965809277260};
constexpr Point ToEye = {0.5773502691896258, -0.5773502691896258, 0.5773502691896258};
constexpr Point ToLight = {0.35, -0.6, 0.72};

constexpr double Width = 10000.0;  // of the picture, in its own units
constexpr double Height = 7000.0;
constexpr double Margin = 150.0;
constexpr int LineWidth = 36;  // of beams

// Where a point of the model is in the picture; y goes down.
class View
{
public:
    explicit View(const std::vector<Point>& points)
    {
        constexpr double Infinity = std::numeric_limits<double>::infinity();
        double right = -Infinity, low = Infinity;
        m_left = Infinity;
        m_top = -Infinity;
        for (const Point& point : points) {
            m_left = std::min(m_left, Dot(point, Right));
            right = std::max(right, Dot(point, Right));
            low = std::min(low, Dot(point, Up));
            m_top = std::max(m_top, Dot(point, Up));
        }
        const double width = right - m_left;
        const double height = m_top - low;
        const double scale = std::min((Width - 2 * Margin) / width, (Height - 2 * Margin) / height);
        m_scale = std::isfinite(scale) ? scale : 1.0;  // what has no size, or next to none, is a dot
        m_width = static_cast<int>(width * m_scale + 2 * Margin);
        m_height = static_cast<int>(height * m_scale + 2 * Margin);
    }

    int PictureWidth() const { return m_width; }
    int PictureHeight() const { return m_height; }
    double LengthOf(double units) const { return units / m_scale; }  // in the model's units
    int X(const Point& point) const { return static_cast<int>((Dot(point, Right) - m_left) * m_scale + Margin); }
    int Y(const Point& point) const { return static_cast<int>((m_top - Dot(point, Up)) * m_scale + Margin); }

private:
    double m_left;
    double m_top;
    double m_scale;
    int m_width;
    int m_height;
};

// ---- What is drawn -------------------------------------------------------------------------------------------------

// A face (of 3 or 4 points) or a line in the picture.
struct Part
{
    double depth;  // larger is nearer
    std::array<std::int32_t, 4> points;
    std::uint8_t count;
    std::uint8_t group;
    std::uint8_t shade;
};

class Picture
{
public:
    explicit Picture(const Outline& outline) : m_outline(outline), m_view(outline.points)
    {
        for (const OutlineFace& face : outline.faces)
            AddFace(face);
        for (const OutlineLine& line : outline.lines)
            AddLine(line);
        std::sort(m_parts.begin(), m_parts.end(), [](const Part& a, const Part& b) { return a.depth < b.depth; });
    }

    std::string Text()
    {
        constexpr std::size_t MostFacesWithEdges = 8000;  // of more, edges would hide what they surround
        const bool hasEdges = m_outline.faces.size() <= MostFacesWithEdges;
        const std::string size = std::to_string(m_view.PictureWidth()) + ' ' + std::to_string(m_view.PictureHeight());
        m_text = "<svg viewBox=\"0 0 " + size + "\" role=\"img\" aria-labelledby=\"picture\"" +
                 (hasEdges ? "" : " class=\"plain\"") + ">\n<title id=\"picture\">Outline of the model</title>\n";
        for (const Part& part : m_parts)
            AppendPart(part);
        return std::move(m_text) + "</svg>\n";
    }

private:
    const Point& At(std::int32_t point) const { return m_outline.points[static_cast<std::size_t>(point)]; }

    void AddFace(const OutlineFace& face)
    {
        const auto count = static_cast<std::uint8_t>(face.Count());
        const auto& p = face.points;
        Point normal = Cross(At(p[1]) - At(p[0]), At(p[2]) - At(p[0]));
        if (count == 4)
            normal = normal + Cross(At(p[2]) - At(p[0]), At(p[3]) - At(p[0]));
        double facing = Dot(normal, ToEye);
        if (face.isOfSolid && facing < 0.0)
            return;  // a nearer face hides it
        const double length = Length(normal);
        if (!(length > 0.0))
            return;
        const double light = Dot(normal, ToLight) / (facing < 0.0 ? -length : length);
        const auto shade = static_cast<std::uint8_t>(std::clamp((light + 0.2) * Shades, 0.0, Shades - 1.0));
        m_parts.push_back({Depth(p, count), p, count, face.group, shade});
    }

    void AddLine(const OutlineLine& line)
    {
        const std::array<std::int32_t, 4> points = {line.points[0], line.points[1], -1, -1};
        const double depth = Depth(points, 2) + m_view.LengthOf(LineWidth);  // lines lie on faces that they stiffen
        m_parts.push_back({depth, points, 2, line.group, 0});
    }

    double Depth(const std::array<std::int32_t, 4>& points, std::size_t count) const
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < count; ++i)
            sum += Dot(At(points[i]), ToEye);
        return sum / static_cast<double>(count);
    }

    // <path class="g2-4" d="M100 200l50 0 0 50z"/>
    void AppendPart(const Part& part)
    {
        m_text += "<path class=g";
        m_text += static_cast<char>('0' + part.group);
        m_text += part.count == 2 ? 'l' : '-';
        if (part.count > 2)
            m_text += static_cast<char>('0' + part.shade);
        m_text += " d=\"M";
        int x = 0, y = 0;
        for (std::size_t i = 0; i < part.count; ++i) {
            const Point& point = At(part.points[i]);
            const int nextX = m_view.X(point), nextY = m_view.Y(point);
            m_text += (i == 1 ? "l" : i > 1 ? " " : "") + std::to_string(nextX - x) + ' ' + std::to_string(nextY - y);
            x = nextX;
            y = nextY;
        }
        m_text += part.count > 2 ? "z\"/>\n" : "\"/>\n";
    }

    const Outline& m_outline;
    View m_view;
    std::vector<Part> m_parts;
    std::string m_text;
};

}  // namespace

std::string DrawingStyles()
{
    std::string styles =
        "svg{display:block}\n"
        ".axes{width:5em;height:5em}\n"
        "svg.axes path{fill:none;stroke:currentColor;stroke-width:2}\n"
        ".axes text{font-size:15px;fill:currentColor;text-anchor:middle;dominant-baseline:central}\n"
        "svg path{stroke-width:6;stroke-linejoin:round;stroke-linecap:round}\n";
    for (std::size_t group = 0; group < Palette.size(); ++group) {
        const std::string name = ".g" + std::to_string(group);
        const std::string line = Hex(Palette[group], 0.8);
        styles.append(name).append("{background:").append(Hex(Palette[group], 1.0)).append("}\nsvg ").append(name);
        styles.append("l{fill:none;stroke:").append(line).append(";stroke-width:").append(std::to_string(LineWidth));
        styles += "}\n";
        for (int shade = 0; shade < Shades; ++shade) {
            const std::string fill = Hex(Palette[group], Brightness(shade));
            const std::string shaded = name + '-' + std::to_string(shade);
            const std::string edge = Hex(Palette[group], Brightness(shade) * 0.72);
            styles.append(shaded).append("{fill:").append(fill).append(";stroke:").append(edge).append("}\n.plain ");
            styles.append(shaded).append("{stroke:").append(fill).append("}\n");
        }
    }
    return styles;
}

std::string DrawAxes()
{
    constexpr double ArrowLength = 40.0;
    std::string text = "<svg class=axes viewBox=\"-50 -50 100 100\" aria-hidden=\"true\">";
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const int x = static_cast<int>(Right[axis] * ArrowLength);
        const int y = static_cast<int>(-Up[axis] * ArrowLength);
        text += "<path d=\"M0 0L" + std::to_string(x) + ' ' + std::to_string(y) + "\"/><text x=\"" +
                std::to_string(x * 5 / 4) + "\" y=\"" + std::to_string(y * 5 / 4) + "\">" + "xyz"[axis] + "</text>";
    }
    return text + "</svg>\n";
}

std::string DrawOutline(const Outline& outline)
{
    if (outline.faces.empty() && outline.lines.empty())
        return {};
    return Picture(outline).Text();
}

}  // namespace tool
