// What tuvo model writes into files, as its users meet it.
#include "support/TestFiles.h"
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr char Deck[] =
    "*HEADING\nTwo cubes & a <script>alert(1)</script>\n"
    "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
    "9,0,0,2\n10,1,0,2\n11,1,1,2\n12,0,1,2\n"
    "*ELEMENT,TYPE=C3D8,ELSET=LOW\n1,1,2,3,4,5,6,7,8\n"
    "*ELEMENT,TYPE=C3D8,ELSET=\"<b>&'\"\n2,5,6,7,8,9,10,11,12\n"
    "*ELEMENT,TYPE=B31,ELSET=BEAM\n3,11,3\n"
    "*MATERIAL,NAME=STEEL\n*ELASTIC\n210000,0.3\n*DENSITY\n7.85e-9\n*SOLID SECTION,ELSET=LOW,MATERIAL=STEEL\n";

class ModelOutput : public testing::Test
{
protected:
    ModelOutput() { m_folder.Write("deck.inp", Deck); }

    // F/ stands for the folder.
    ChildResult Run(std::string line, const std::string& deck = "F/deck.inp") const
    {
        ChildResult run = Tuvo("model " + Placed(deck) + ' ' + Placed(std::move(line)));
        Replace(run.errors, m_folder.NarrowPath(), "F/");
        return run;
    }
    std::string Placed(std::string line) const
    {
        Replace(line, "F/", m_folder.NarrowPath());
        return line;
    }
    std::string Text(const char* name) const { return ReadTextFile(m_folder.Path(name)); }
    std::vector<std::wstring> Names() const
    {
        std::vector<std::wstring> names;
        EXPECT_TRUE(platform::ListDirectory(m_folder.Path().c_str(), names));
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder m_folder;

private:
    static void Replace(std::string& text, const std::string& from, const std::string& to)
    {
        for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
            text.replace(at, from.size(), to);
    }
};

std::size_t CountOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; at += part.size())
        ++count;
    return count;
}

// The lines of a text with one blank between words.
std::set<std::string> Lines(const std::string& text)
{
    std::set<std::string> lines;
    std::istringstream stream(std::regex_replace(text, std::regex(" +"), " "));
    for (std::string line; std::getline(stream, line);)
        lines.insert(std::regex_replace(line, std::regex("^ | $"), ""));
    return lines;
}

// ---- The report and the page ---------------------------------------------------------------------------------------

TEST_F(ModelOutput, TheReportHasTheTablesThatAreShown)
{
    const ChildResult run = Run("--report F/report.txt --from mm,ton,sec");
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.exitCode, 0);
    const std::string report = Text("report.txt");
    EXPECT_TRUE(report.starts_with("Contents\nCount \tType \tClass \tIds \n\n12 \tnodes \t \t1-12 \t\n")) << report;
    EXPECT_TRUE(Contains(report, "\n\nMaterials\nMaterial \tConstant \tValue \n\nSTEEL \tE \t210000 MPa \t\n"));
    // Line by line what the console shows below the title, but for the blanks between cells.
    const std::set<std::string> written = Lines(std::regex_replace(report, std::regex(" ?\t"), "  "));
    for (const std::string& line : Lines(run.output.substr(run.output.find("\n\n"))))
        EXPECT_TRUE(written.contains(line)) << line << "\n" << report;
}

TEST_F(ModelOutput, TheGuessIsInTheReportAndThePage)
{
    m_folder.Write("guess.inp",
                   "*MATERIAL,NAME=<b>A\n*ELASTIC\n210000,.3\n*DENSITY\n7.85e-9\n"
                   "*MATERIAL,NAME=B\n*ELASTIC\n70000,.3\n");
    const ChildResult run = Run("--guess --report F/report.txt --html F/page.html", "F/guess.inp");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_TRUE(Contains(Text("report.txt"),
                         "\n\nGuess at the unit system\nUnit system \tFit \tWhy \n\n"
                         "mm, ton, s, K (N, MPa) or mm, ton, s, degC (N, MPa) \tlikely \t"
                         "<b>A is like steel: E 2.1e+11 Pa, Density 7.85e+03 kg/m^3 \t\n"
                         " \t \tB is like aluminium: E 7e+10 Pa \t\n"))
        << Text("report.txt");
    EXPECT_TRUE(Contains(Text("page.html"), "<h2>Guess at the unit system</h2>"));
    EXPECT_TRUE(Contains(Text("page.html"), "<td>likely</td><td>&lt;b&gt;A is like steel: E"));

    // Without a guess the other tables are written.
    m_folder.Write("none.inp", "*MATERIAL,NAME=M\n");
    const ChildResult none = Run("--guess --report F/report.txt", "F/none.inp");
    EXPECT_TRUE(Contains(none.errors, "the unit system cannot be guessed")) << none.errors;
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_TRUE(Contains(Text("report.txt"), "M \tnone"));
    EXPECT_FALSE(Contains(Text("report.txt"), "Guess"));
}

TEST_F(ModelOutput, ThePageDrawsWhatIsSeen)
{
    EXPECT_EQ(Run("--html F/page.html").exitCode, 0);
    const std::string page = Text("page.html");
    // Of the ten faces on the outside five are turned to the eye; the face between the cubes is none of them.
    EXPECT_EQ(CountOf(page, "<path class=g0-"), 5u);
    EXPECT_EQ(CountOf(page, "<path class=g1l"), 1u);
    EXPECT_TRUE(Contains(page, "C3D8 (8 nodes) <span class=faint>2</span>")) << page;
    EXPECT_EQ(Run("--html F/page.html --colour-sets").exitCode, 0);
    const std::string bySet = Text("page.html");
    EXPECT_EQ(CountOf(bySet, "<path class=g0-") + CountOf(bySet, "<path class=g1-"), 5u);
    EXPECT_TRUE(Contains(bySet, "LOW <span class=faint>1</span>"));
    EXPECT_EQ(Run("--html F/page.html --colour-sets --set BEAM").exitCode, 0);
    EXPECT_TRUE(Contains(Text("page.html"), "in no set <span class=faint>2</span>"));
}

TEST_F(ModelOutput, NamesStayTextInThePage)
{
    m_folder.Write("stray.inp", "*NODE,NSET=A\x80\xFF\xC3\xA9\x01\n1,0,0,0\n");
    EXPECT_EQ(Run("--html F/page.html").exitCode, 0);
    const std::string page = Text("page.html");
    EXPECT_TRUE(Contains(page, "<h1>Two cubes &amp; a &lt;script&gt;alert(1)&lt;/script&gt;</h1>"));
    EXPECT_FALSE(Contains(page, "<script"));
    EXPECT_FALSE(Contains(page, "<b>"));
    EXPECT_TRUE(Contains(page, "default-src 'none'")) << "no script would run, and nothing be loaded";
    EXPECT_FALSE(Contains(page, "http://") || Contains(page, "https://") || Contains(page, "src=") ||
                 Contains(page, "url("));
    EXPECT_EQ(Run("--html F/stray.html", "F/stray.inp").exitCode, 0);
    EXPECT_TRUE(Contains(Text("stray.html"), "<td>A\xEF\xBF\xBD\xEF\xBF\xBD\xC3\xA9\xEF\xBF\xBD</td>"))
        << Text("stray.html");
    EXPECT_FALSE(Contains(Text("stray.html"), "<figure>")) << "there is nothing to draw";
}

TEST_F(ModelOutput, AModelOfOddShapesIsDrawn)
{
    // An element inside out, collapsed ones, a node farther away than any model is, missing nodes, lines of no length.
    m_folder.Write("odd.inp",
                   "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n9,1e200,0,0\n"
                   "10,0,0,2\n11,1,0,2\n12,1,1,2\n"
                   "*ELEMENT,TYPE=C3D8\n1,5,6,7,8,1,2,3,4\n2,5,6,7,7,10,11,12,12\n3,1,1,1,1,1,1,1,1\n"
                   "*ELEMENT,TYPE=S4\n4,1,2,9,4\n5,1,2,3,99\n6,1,3,1,3\n*ELEMENT,TYPE=B31\n7,1,1\n8,1,9\n");
    const ChildResult run = Run("--html F/page.html", "F/odd.inp");
    EXPECT_EQ(run.exitCode, 1) << "a node is missing";
    const std::string page = Text("page.html");
    EXPECT_EQ(CountOf(page, "<path class=g0-"), 6u) << "three sides of the cube, and of the wedge on it";
    EXPECT_EQ(CountOf(page, "<path class=g"), 6u);
    EXPECT_TRUE(std::regex_search(page, std::regex("<path class=g0-[0-9] d=\"M[0-9]+ [0-9]+l[-0-9 ]+z\"/>")));
    EXPECT_TRUE(Contains(page, "<h2>Problems</h2>"));

    for (const char* const length : {"0.", "1e-320"}) {
        m_folder.Write("dot.inp", std::string("*NODE\n1\n2,") + length + "\n*ELEMENT,TYPE=B31\n1,1,2\n");
        EXPECT_EQ(Run("--html F/page.html", "F/dot.inp").exitCode, 0);
        EXPECT_TRUE(Contains(Text("page.html"), "<svg viewBox=\"0 0 300 300\"")) << length;
    }
}

// ---- The binary file -----------------------------------------------------------------------------------------------

// Takes a binary file apart as docs/formats.md describes it.
class BinaryReader
{
public:
    explicit BinaryReader(const std::string& bytes) : m_bytes(bytes) {}

    template <typename Value>
    Value Get()
    {
        Value value{};
        EXPECT_LE(m_at + sizeof value, m_bytes.size());
        if (m_at + sizeof value <= m_bytes.size())
            std::memcpy(&value, m_bytes.data() + m_at, sizeof value);
        m_at += sizeof value;
        return value;
    }
    std::string Text()
    {
        const auto size = static_cast<std::size_t>(Get<std::int64_t>());
        const std::string text = m_bytes.substr(std::min(m_at, m_bytes.size()), size);
        m_at += size;
        return text;
    }
    template <typename Value>
    std::vector<Value> Values(std::int64_t count)
    {
        std::vector<Value> values;
        for (std::int64_t i = 0; i < count; ++i)
            values.push_back(Get<Value>());
        return values;
    }
    bool IsAtEnd() const { return m_at == m_bytes.size(); }

private:
    const std::string& m_bytes;
    std::size_t m_at = 8;  // behind the signature
};

TEST_F(ModelOutput, TheBinaryFileHoldsTheModel)
{
    using Ids = std::vector<std::int32_t>;
    EXPECT_EQ(Run("--write F/model.bin --from mm,ton,sec --to m,kg,sec").exitCode, 0);
    const std::string bytes = ReadBinaryFile(m_folder.Path("model.bin"));
    ASSERT_TRUE(bytes.starts_with("TUVOMODL"));
    BinaryReader file(bytes);
    EXPECT_EQ(file.Get<std::int32_t>(), 1);
    EXPECT_EQ(file.Text(), "Two cubes & a <script>alert(1)</script>");
    EXPECT_EQ(file.Text(), "m-kg-sec-kelvin");
    EXPECT_EQ(file.Get<std::int64_t>(), 12);
    EXPECT_EQ(file.Values<std::int32_t>(12), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(file.Values<double>(36)[33], 0.0);
    EXPECT_EQ(file.Get<std::int64_t>(), 2);
    EXPECT_EQ(file.Text(), "C3D8");
    EXPECT_EQ(file.Values<std::int32_t>(2), (Ids{0, 8}));
    EXPECT_EQ(file.Get<std::int64_t>(), 2);
    EXPECT_EQ(file.Values<std::int32_t>(2), (Ids{1, 2}));
    EXPECT_EQ(file.Values<std::int32_t>(16), (Ids{0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(file.Text(), "B31");
    EXPECT_EQ(file.Values<std::int32_t>(2), (Ids{3, 2}));
    EXPECT_EQ(file.Get<std::int64_t>(), 1);
    EXPECT_EQ(file.Values<std::int32_t>(3), (Ids{3, 10, 2}));
    EXPECT_EQ(file.Get<std::int64_t>(), 3);
    for (const Ids& ids : {Ids{1}, Ids{2}, Ids{3}}) {
        EXPECT_NE(file.Text(), "");
        EXPECT_EQ(file.Get<std::int32_t>(), 1);
        EXPECT_EQ(file.Get<std::int64_t>(), 1);
        EXPECT_EQ(file.Values<std::int32_t>(1), ids);
    }
    EXPECT_EQ(file.Get<std::int64_t>(), 1);
    EXPECT_EQ(file.Text(), "STEEL");
    EXPECT_EQ(file.Get<std::int64_t>(), 3);
    EXPECT_EQ(file.Text(), "E");
    EXPECT_EQ(file.Text(), "Young's Modulus");
    EXPECT_NEAR(file.Get<double>(), 2.1e11, 1.0);
    EXPECT_EQ(file.Text(), "NU");
    EXPECT_EQ(file.Text(), "Poisson's Ratio");
    EXPECT_EQ(file.Get<double>(), 0.3);
    EXPECT_EQ(file.Text(), "Density");
    EXPECT_EQ(file.Text(), "Density");
    EXPECT_NEAR(file.Get<double>(), 7850.0, 1e-6);
    EXPECT_EQ(file.Values<std::int64_t>(3), (std::vector<std::int64_t>{1, 0, 0}));
    file.Get<std::uint32_t>();
    EXPECT_TRUE(file.IsAtEnd());
    EXPECT_TRUE(Tuvo("checksum " + m_folder.NarrowPath("model.bin")).output.starts_with("00000000 "));
}

// ---- What goes wrong -----------------------------------------------------------------------------------------------

TEST_F(ModelOutput, WhatCannotBeWrittenIsSaidBeforeAnythingIsRead)
{
    const std::string options[] = {"--report", "--write", "--html", "--leaks"};
    ASSERT_TRUE(platform::CreateOneDirectory(m_folder.Path("sub").c_str()));
    for (const std::string& option : options) {
        const ChildResult none = Run(option + " F/none/file", "F/absent.inp");
        EXPECT_TRUE(none.errors.starts_with("tuvo: error: cannot write F/none/file: ")) << none.errors;
        EXPECT_EQ(none.exitCode, 1);
        EXPECT_EQ(none.output, "");
        const ChildResult folder = Run(option + " F/sub");
        EXPECT_TRUE(folder.errors.starts_with("tuvo: error: cannot write F/sub: it is a directory")) << folder.errors;
        EXPECT_EQ(folder.exitCode, 1);
    }
    const ChildResult deck = Run("--html F/deck.inp");
    EXPECT_TRUE(Contains(deck.errors, "--html and the deck are the same file")) << deck.errors;
    EXPECT_EQ(deck.exitCode, 2);
    EXPECT_EQ(Run("--html F/a --report F/a").exitCode, 2);
    EXPECT_EQ(Run("--colour-sets").exitCode, 2);
    EXPECT_EQ(Text("deck.inp"), Deck);
    EXPECT_EQ(Names(), (std::vector<std::wstring>{L"deck.inp", L"sub"}));
}

TEST_F(ModelOutput, AFailureLeavesWhatWasThereBefore)
{
    m_folder.Write("page.html", "old");
    EXPECT_EQ(Run("--html F/page.html --write F/model.bin", "F/absent.inp").exitCode, 1);
    EXPECT_EQ(Run("--html F/page.html --write F/model.bin --set NONE").exitCode, 1);
    EXPECT_EQ(Text("page.html"), "old");
    EXPECT_EQ(Names(), (std::vector<std::wstring>{L"deck.inp", L"page.html"}));
    EXPECT_EQ(Run("--html F/page.html").exitCode, 0);
    EXPECT_TRUE(Text("page.html").starts_with("<!DOCTYPE html>"));
}

// ---- The run about itself ------------------------------------------------------------------------------------------

TEST_F(ModelOutput, ItsOwnRunLeaksNothing)
{
    const std::string outputs = " --html F/page.html --report F/report.txt --write F/model.bin --guess --eval <volume>";
    for (const std::string& options : {std::string(), outputs, outputs + " --from mm,ton,sec --to in,lbf,sec"}) {
        const ChildResult run = Run("--leaks F/leaks.txt" + options);
        EXPECT_EQ(run.exitCode, 0) << run.errors << Text("leaks.txt");
        EXPECT_EQ(Text("leaks.txt"), "");
    }
    m_folder.Write("circle.inp", "*NODE\n1\n*INCLUDE,INPUT=circle.inp\n");
    const std::string errors = Run("--leaks F/leaks.txt", "F/circle.inp").errors;
    EXPECT_TRUE(errors.starts_with("tuvo: error: F/circle.inp:3: \"circle.inp\" includes itself\n")) << errors;
    EXPECT_EQ(CountOf(errors, "error"), 1u) << "the file that is opened again is told of once: " << errors;
    EXPECT_EQ(Text("leaks.txt"), "");
}

TEST_F(ModelOutput, TellsHowLongItTook)
{
    const ChildResult run = Run("--bench --report F/report.txt");
    EXPECT_TRUE(Contains(run.errors, "Chrono 'read the deck'")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, "1 calls of    write the report")) << run.errors;
    EXPECT_EQ(run.output, Run("").output);
}

}  // namespace
