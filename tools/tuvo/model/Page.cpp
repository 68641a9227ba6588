#include "tools/tuvo/model/Page.h"

#include "tools/tuvo/Markup.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/Drawing.h"
#include "tools/tuvo/model/Outline.h"

namespace tool {
namespace {

constexpr char Styles[] = R"(
:root{color-scheme:light dark;--ground:#f6f7f9;--sheet:#fff;--text:#1d2733;--faint:#5f6b78;--line:#dde2e8}
@media(prefers-color-scheme:dark){:root{--ground:#12161b;--sheet:#1a2027;--text:#e3e8ee;--faint:#97a3b0;--line:#2e3741}}
*{box-sizing:border-box}
body{margin:0;background:var(--ground);color:var(--text);font:15px/1.5 system-ui,sans-serif}
main{max-width:72rem;margin:0 auto;padding:2rem 1.5rem;overflow-wrap:anywhere}
h1{margin:0;font-size:1.7rem;line-height:1.25}
h2{margin:0 0 .6rem;font-size:1.05rem}
p{margin:.3rem 0}
.faint{color:var(--faint)}
section,figure{margin:1.5rem 0 0;padding:1.1rem 1.3rem;background:var(--sheet);border:1px solid var(--line);border-radius:.6rem}
section{overflow-x:auto}
figure>svg{width:100%;max-height:75vh;margin:0 auto}
figcaption{display:flex;flex-wrap:wrap;gap:.4rem 1.4rem;align-items:center;margin-top:1rem}
figcaption p{flex-basis:100%}
.key{display:inline-block;width:.9em;height:.9em;margin-right:.5em;border-radius:.2em;vertical-align:-.08em}
table{border-collapse:collapse;font-variant-numeric:tabular-nums}
th,td{padding:.28rem 1.4rem .28rem 0;text-align:left;vertical-align:top;border-bottom:1px solid var(--line);white-space:pre-wrap;overflow-wrap:break-word;max-width:40em}
th{color:var(--faint);font-weight:600;white-space:nowrap}
tr:last-child td{border-bottom:0}
.right{text-align:right}
.error{color:#c8324b}
.warning{color:#a86a00}
@media(prefers-color-scheme:dark){.error{color:#ff8095}.warning{color:#f0b04e}}
@media print{body{background:none}section,figure{break-inside:avoid}}
)";

constexpr std::size_t MostPartsDrawn = 40000;

std::string Paragraph(const std::string& text, const char* kind = "faint")
{
    return std::string("<p class=") + kind + '>' + Escaped(text) + "</p>\n";
}

std::string FileTitle(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string Heading(const Model& model, const PageContent& content)
{
    const std::string name = FileTitle(content.deck);
    std::string text = "<h1>" + Escaped(model.title.empty() ? name : model.title) + "</h1>\n";
    text += Paragraph((model.title.empty() ? "" : name + " \u00B7 ") + Plural(model.nodes.Count(), "node") +
                      " \u00B7 " + Plural(model.ElementCount(), "element") +
                      (content.unitSystem.empty() ? "" : " \u00B7 " + content.unitSystem));
    return text;
}

std::string Legend(const Grouping& grouping)
{
    std::string text;
    for (std::size_t i = 0; i < grouping.groups.size(); ++i)
        text += "<span><span class=\"key g" + std::to_string(i) + "\"></span>" + Escaped(grouping.groups[i].name) +
                " <span class=faint>" + std::to_string(grouping.groups[i].elements) + "</span></span>\n";
    return text;
}

std::string Figure(const Model& model, const Grouping& grouping)
{
    Outline outline = FindOutline(model, grouping);
    const std::size_t parts = outline.faces.size() + outline.lines.size();
    const bool isCoarse = Coarsen(outline, MostPartsDrawn) > 0.0;
    const std::string drawing = DrawOutline(outline);
    if (drawing.empty())
        return {};
    std::string text = "<figure>\n" + drawing + "<figcaption>\n" + DrawAxes() + Legend(grouping);
    if (isCoarse)
        text += Paragraph("Drawn coarser than it is: " + std::to_string(outline.faces.size() + outline.lines.size()) +
                          " faces and lines for the " + std::to_string(parts) + " of the outline.");
    return text + "</figcaption>\n</figure>\n";
}

std::string Cells(const std::vector<std::string>& row, const std::vector<Table::Column>& columns, const char* tag)
{
    std::string text = "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i)
        text += std::string("<") + tag + (columns[i].alignment == Table::Right ? " class=right>" : ">") +
                Escaped(row[i]) + "</" + tag + '>';
    return text + "</tr>\n";
}

std::string TableSection(const SummaryTable& summary)
{
    const std::vector<Table::Column>& columns = summary.table.Columns();
    std::vector<std::string> titles;
    titles.reserve(columns.size());
    for (const Table::Column& column : columns)
        titles.push_back(column.title);
    std::string text = "<section>\n<h2>" + Escaped(summary.title) + "</h2>\n<table>\n<thead>" +
                       Cells(titles, columns, "th") + "</thead>\n<tbody>\n";
    for (const auto& row : summary.table.Rows())
        text += Cells(row, columns, "td");
    text += "</tbody>\n</table>\n";
    for (const std::string& note : summary.notes)
        text += Paragraph(note);
    return text + "</section>\n";
}

std::string ProblemSection(const Problems& problems)
{
    if (problems.kept.empty())
        return {};
    std::string text = "<section>\n<h2>Problems</h2>\n";
    for (const Problem& problem : problems.kept)
        text +=
            Paragraph(problem.file + (problem.line > 0 ? ':' + std::to_string(problem.line) : "") + ": " + problem.text,
                      problem.severity == Severity::Error ? "error" : "warning");
    const std::uint64_t all = problems.errors + problems.warnings;
    if (all > problems.kept.size())
        text += Paragraph("and " + std::to_string(all - problems.kept.size()) + " more");
    return text + "</section>\n";
}

}  // namespace

std::string ModelPage(const Model& model, const PageContent& content)
{
    std::string page =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"generator\" content=\"tuvo " TUVO_VERSION
        "\">\n"
        "<title>" +
        Escaped(FileTitle(content.deck)) + "</title>\n<style>" + Styles + DrawingStyles() +
        "</style>\n</head>\n<body>\n<main>\n";
    page += Heading(model, content) + Figure(model, content.grouping);
    for (const SummaryTable& table : content.tables)
        page += TableSection(table);
    return page + ProblemSection(model.problems) + "</main>\n</body>\n</html>\n";
}

}  // namespace tool
