#include "tools/tuvo/BenchIcicle.h"

#include "platform/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace tool {
namespace {

// All lengths are in pixels.
constexpr double RowHeight = 20;
constexpr double TimeHeight = 720;  // of the time of all histories, when no row has to be higher
constexpr double CharacterWidth = 7.3;
constexpr double Margin = 12;
constexpr double HeadHeight = 48;
constexpr double Padding = 6;
constexpr std::size_t LongestLabel = 60;  // characters
constexpr std::array Colours = {"#cfe2f3", "#d9ead3", "#fff2cc", "#fce5cd", "#ead1dc", "#d9d2e9"};

// ---- Texts ---------------------------------------------------------------------------------------------------------

// What XML cannot hold becomes U+FFFD.
std::string Characters(std::string_view text, std::size_t limit, bool& isCut)
{
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string characters;
    for (isCut = false; !text.empty() && !isCut; isCut = !text.empty() && limit == 0) {
        const auto [code, length] = platform::DecodeUtf8(text);
        const bool isAllowed =
            code >= ' ' && code != 0x7F && (code < 0xD800 || code > 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
        characters += isAllowed ? text.substr(0, length) : replacement;
        text.remove_prefix(length);
        --limit;
    }
    return characters;
}

std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

template <typename... Values>
void Print(std::string& text, const char* format, Values... values)
{
    std::array<char, 512> piece;
    const int length = std::snprintf(piece.data(), piece.size(), format, values...);
    text.append(piece.data(), std::min(piece.size() - 1, static_cast<std::size_t>(std::max(length, 0))));
}

std::string Seconds(double seconds, int digits)
{
    std::string text;
    Print(text, "%.*g s", digits, seconds);
    return text;
}

// The times of an entry as its line has them.
std::string Times(const BenchEntry& entry, int digits)
{
    const std::string total = (entry.isStep ? "at " : "") + Seconds(entry.seconds, digits);
    return entry.internal ? total + " (own " + Seconds(*entry.internal, digits) + ")" : total;
}

struct Label
{
    std::string text;
    double width;
};

// A long name is cut, its time never.
Label MakeLabel(const BenchEntry& entry)
{
    bool isCut = false;
    const std::string times = "  " + Times(entry, 4);
    const std::string name = Characters(entry.name, LongestLabel - times.size(), isCut);
    const auto isStart = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    const auto count = std::count_if(name.begin(), name.end(), isStart) + (isCut ? 1 : 0);
    return {name + (isCut ? "\xE2\x80\xA6" : "") + times,
            CharacterWidth * static_cast<double>(count + static_cast<std::ptrdiff_t>(times.size()))};
}

// ---- Layout --------------------------------------------------------------------------------------------------------

struct Box
{
    std::size_t firstChild = NoSection;
    std::size_t nextSibling = NoSection;
    std::size_t depth = 0;
    double top = 0;  // within the parent at first
    double height = RowHeight;
    Label label;
};

class Icicle
{
public:
    explicit Icicle(const std::vector<BenchEntry>& entries) : m_entries(entries), m_boxes(entries.size())
    {
        Link();
        for (std::size_t i = m_boxes.size(); i-- > 0;)
            PlaceChildren(i);
        PlaceRoots();
        PlaceColumns();
    }

    std::string Draw(const std::string& title) const
    {
        std::string svg;
        const double width = std::max(m_columns.back(), 720.0) + Margin;
        const double height = m_bottom + Margin;
        Print(svg, R"(<svg xmlns="http://www.w3.org/2000/svg" width="%.0f" height="%.0f" viewBox="0 0 %.0f %.0f")",
              width, height, width, height);
        svg +=
            " font-family=\"DejaVu Sans Mono, Consolas, monospace\" font-size=\"12\">\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
        DrawHead(svg, title);
        for (std::size_t i = 0; i < m_boxes.size(); ++i)
            DrawEntry(svg, i);
        return svg + "</svg>\n";
    }

private:
    // Children in their order, depths, and the time of all histories.
    void Link()
    {
        std::vector<std::size_t> last(m_boxes.size(), NoSection);
        for (std::size_t i = 0; i < m_boxes.size(); ++i) {
            const std::size_t parent = m_entries[i].parent;
            m_boxes[i].label = MakeLabel(m_entries[i]);
            if (parent == NoSection) {
                m_seconds += std::max(m_entries[i].seconds, 0.0);
                continue;
            }
            m_boxes[i].depth = m_boxes[parent].depth + 1;
            (last[parent] == NoSection ? m_boxes[parent].firstChild : m_boxes[last[parent]].nextSibling) = i;
            last[parent] = i;
        }
    }

    double Height(double seconds) const
    {
        return m_seconds > 0 ? std::clamp(seconds / m_seconds, 0.0, 1.0) * TimeHeight : 0.0;
    }

    // Sections follow each other; a step stands at its time, or where the sections before it end.
    void PlaceChildren(std::size_t index)
    {
        double bottom = 0;
        for (std::size_t i = m_boxes[index].firstChild; i != NoSection; i = m_boxes[i].nextSibling) {
            const double atItsTime = m_entries[i].isStep ? Height(m_entries[i].seconds) - RowHeight : 0.0;
            m_boxes[i].top = std::max(bottom, atItsTime);
            bottom = m_boxes[i].top + m_boxes[i].height;
        }
        if (!m_entries[index].isStep)
            m_boxes[index].height = std::max({RowHeight, Height(m_entries[index].seconds), bottom});
    }

    void PlaceRoots()
    {
        m_bottom = HeadHeight;
        for (std::size_t i = 0; i < m_boxes.size(); ++i) {
            const std::size_t parent = m_entries[i].parent;
            m_boxes[i].top += parent == NoSection ? m_bottom : m_boxes[parent].top;
            if (parent == NoSection)
                m_bottom += m_boxes[i].height;
        }
    }

    // Where each column begins, and the last one ends.
    void PlaceColumns()
    {
        m_columns = {Margin};
        std::vector<double> widths;
        for (const Box& box : m_boxes) {
            widths.resize(std::max(widths.size(), box.depth + 1));
            widths[box.depth] = std::max(widths[box.depth], box.label.width + 2 * Padding);
        }
        for (const double width : widths)
            m_columns.push_back(m_columns.back() + width);
    }

    void DrawHead(std::string& svg, const std::string& title) const
    {
        bool isCut = false;
        const auto sections =
            std::count_if(m_entries.begin(), m_entries.end(), [](auto& entry) { return !entry.isStep; });
        Print(svg, "<text x=\"%.0f\" y=\"20\" font-weight=\"bold\" font-size=\"14\">", Margin);
        svg += Escaped(Characters(title, LongestLabel, isCut)) + "</text>\n";
        Print(
            svg,
            "<text x=\"%.0f\" y=\"38\" fill=\"#555555\">%td sections, %s. Time runs downwards; what is shorter than a "
            "line is drawn one line high. Bars show the share of all time.</text>\n",
            Margin, sections, Seconds(m_seconds, 4).c_str());
    }

    void DrawEntry(std::string& svg, std::size_t index) const
    {
        const BenchEntry& entry = m_entries[index];
        const Box& box = m_boxes[index];
        const double left = m_columns[box.depth], width = m_columns[box.depth + 1] - left;
        bool isCut = false;
        svg += "<g><title>" + Escaped(Characters(entry.name, entry.name.size(), isCut) + "\n" + Times(entry, 6)) +
               "</title>";
        if (entry.isStep)
            Print(svg, R"(<path d="M%.1f %.1fh%.1f" stroke="#888888" stroke-dasharray="3 2"/>)", left,
                  box.top + box.height, width);
        else
            DrawSection(svg, index, left, width);
        Print(svg, R"(<text x="%.1f" y="%.1f" xml:space="preserve"%s>)", left + Padding, box.top + 13,
              entry.isStep ? " font-style=\"italic\" fill=\"#555555\"" : "");
        svg += Escaped(box.label.text) + "</text></g>\n";
    }

    // A box, and a bar of the length of its share in the time of all histories.
    void DrawSection(std::string& svg, std::size_t index, double left, double width) const
    {
        const Box& box = m_boxes[index];
        const double share = Height(m_entries[index].seconds) / TimeHeight;
        Print(svg, R"(<rect x="%.1f" y="%.1f" width="%.1f" height="%.1f" fill="%s" stroke="#ffffff"/>)", left, box.top,
              width, box.height, Colours[box.depth % Colours.size()]);
        Print(svg, R"(<rect x="%.1f" y="%.1f" width="%.1f" height="2" fill="#666666"/>)", left, box.top + RowHeight - 4,
              share * width);
    }

    const std::vector<BenchEntry>& m_entries;
    std::vector<Box> m_boxes;
    std::vector<double> m_columns;
    double m_seconds = 0;
    double m_bottom = 0;
};

}  // namespace

std::string DrawBenchIcicle(const std::vector<BenchEntry>& entries, const std::string& title)
{
    return Icicle(entries).Draw(title);
}

}  // namespace tool
