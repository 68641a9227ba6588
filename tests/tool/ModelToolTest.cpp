// tuvo model as its users meet it: decks of CalculiX, and what is computed and told of any deck.
#include "tool/DeckTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using TuvoModel = DeckTest;

// A cube of the side 2, of two hexahedra.
constexpr char CubeNodes[] =
    "*NODE, NSET=Nall\n"
    "1, 0., 0., 0.\n2, 1., 0., 0.\n3, 2., 0., 0.\n4, 0., 2., 0.\n5, 1., 2., 0.\n6, 2., 2., 0.\n"
    "11, 0., 0., 2.\n12, 1., 0., 2.\n13, 2., 0., 2.\n14, 0., 2., 2.\n15, 1., 2., 2.\n16, 2., 2., 2.\n";
constexpr char CubeElements[] =
    "*ELEMENT, TYPE=C3D8, ELSET=Eall\n"
    "1, 1, 2, 5, 4, 11, 12, 15, 14\n2, 2, 3, 6, 5, 12, 13, 16, 15\n";
constexpr char CubeSteel[] =
    "*MATERIAL, NAME=Steel\n*ELASTIC\n210000., 0.3\n*DENSITY\n7.85e-9\n*SOLID SECTION, ELSET=Eall, MATERIAL=steel\n";

std::string Cube()
{
    return std::string(CubeNodes) + CubeElements + CubeSteel;
}

constexpr char CubeSummary[] =
    "Count  Type              Class  Ids\n"
    "   12  nodes                    1-6,11-16\n"
    "    2  elements\n"
    "    2    C3D8 (8 nodes)  solid  1-2\n"
    "\n"
    "Set   Kind      Size  Ids\n"
    "Nall  nodes       12  1-6,11-16\n"
    "Eall  elements     2  1-2\n"
    "\n"
    "Extent  From  To  Size\n"
    "x          0   2     2\n"
    "y          0   2     2\n"
    "z          0   2     2\n"
    "\n"
    "Material  Constant  Value\n"
    "Steel     E         210000\n"
    "          NU        0.3\n"
    "          Density   7.85e-09\n"
    "\n"
    "Solids of  Elements  Volume      Mass\n"
    "Steel             2       8  6.28e-08\n";

void Replace(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
}

// ---- CalculiX decks ------------------------------------------------------------------------------------------------

TEST_F(TuvoModel, ShowsWhatADeckHolds)
{
    const ChildResult run = Run(Cube());
    EXPECT_EQ(run.output, CubeSummary);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.exitCode, 0);
}

// Every way to write the same deck reads the same.
TEST_F(TuvoModel, ReadsEveryWayToWriteADeck)
{
    const auto rewritten = [](std::vector<std::pair<std::string, std::string>> changes) {
        std::string deck = Cube();
        for (const auto& [from, to] : changes)
            Replace(deck, from, to);
        return deck;
    };
    const std::string decks[] = {
        rewritten({{"\n", "\r\n"}}),
        rewritten({{", ", "\t,\t"}, {"\n", " \t\n"}}),
        rewritten(
            {{"*NODE", "** NODE\n\n  * node"}, {"NSET", "nset"}, {"*ELEMENT, TYPE=C3D8", "*Element,type = c3d8"}}),
        rewritten({{"*SOLID SECTION", "*SOLIDSECTION"},
                   {"*MATERIAL, ", "*MATERIAL,\n ** note\n"},
                   {"*DENSITY", "* Density of it "}}),
        rewritten({{"2., ", "+2.0D+0, "}, {"7.85e-9", "7.85-9"}, {"0.3", ".03d1"}, {"210000.", "21d4"}}),
        rewritten({{"1, 1, 2, 5,", "1, 1, 2,\n** between\n5,"}, {"12, 15, 14", "12\n 15\n\n14,"}}),
        rewritten({{"*ELEMENT", "*NODE PRINT, NSET=Nall\nU\n*STEP\n*CLOAD\n1, 2, 3.\n*END STEP\n*ELEMENT"}}),
        rewritten({{"Eall", "\"E all\""}, {"\"E all\"\n1", "Eall\n1"}}),
        "\xEF\xBB\xBF" + Cube(),
        Cube().substr(0, Cube().size() - 1),
    };
    for (const std::string& deck : decks) {
        const ChildResult run = Run(deck);
        EXPECT_EQ(run.output, CubeSummary) << deck;
        EXPECT_EQ(run.errors, "") << deck;
    }
}

TEST_F(TuvoModel, TakesTheLastDefinition)
{
    EXPECT_EQ(Run("*NODE, SYSTEM=R\n1\n*NODE, SYSTEM=C\n2, 1., 90.\n").errors,
              "tuvo: warning: deck.inp:3: CalculiX knows no SYSTEM of *NODE: the coordinates are taken as cartesian\n");
    const ChildResult run = Run(std::string(CubeNodes) + "*NODE\n16, 2., 2., 3.\n3, 2., 0., 0.\n" + CubeElements +
                                "*ELEMENT, TYPE=C3D4, ELSET=Eall\n1, 1, 2, 5, 11\n" + CubeSteel);
    EXPECT_TRUE(Contains(run.output, "   12  nodes")) << run.output;
    EXPECT_TRUE(Contains(run.output, "z          0   3     3")) << run.output;
    EXPECT_TRUE(Contains(run.output, "    1    C3D8 (8 nodes)  solid  2\n    1    C3D4 (4 nodes)  solid  1\n"));
    EXPECT_EQ(run.errors, "tuvo: warning: deck.inp:21: element 1 is defined again; this definition counts\n");
    EXPECT_EQ(run.exitCode, 0);
}

TEST_F(TuvoModel, MakesSets)
{
    const ChildResult run = Run(Cube() +
                                "*NSET, NSET=Low\n1, 2,\n3\n4, 5, 6, 1\n"
                                "*NSET, NSET=Every, GENERATE\n1, 16, 5\n3, 1000000000, 10\n"
                                "*NSET, NSET=Both\nlow, EVERY, both\n 14, \n"
                                "*NSET, NSET=Low\n13\n"
                                "*ELSET, ELSET=First\n1\n*ELSET, ELSET=All\nFirst, 2\n"
                                "*NSET, NSET=Odd\n1, 77, 78, 16\n");
    const char* const lines[] = {"Low    nodes        7  1-6,13\n",
                                 "Every  nodes        6  1,3,6,11,13,16\n",
                                 "Both   nodes       10  1-6,11,13-14,16\n",
                                 "First  elements     1  1\n",
                                 "All    elements     2  1-2\n",
                                 "Odd    nodes        2  1,16\n"};
    for (const char* const line : lines)
        EXPECT_TRUE(Contains(run.output, line)) << line << run.output;
    EXPECT_EQ(run.errors,
              "tuvo: warning: deck.inp:39: the set \"Odd\" names 2 nodes not defined: node 77 and others\n");

    EXPECT_TRUE(Contains(RunOn("deck.inp", "--set '?O*'").output,
                         "\nSet   Kind   Size  Ids\nLow   nodes     7  1-6,13\nBoth  nodes"));
    const ChildResult none = RunOn("deck.inp", "--set Louw");
    EXPECT_TRUE(Contains(none.errors, "there is no set \"Louw\"; did you mean \"Low\"?")) << none.errors;
    EXPECT_EQ(none.exitCode, 1);
}

// Ranges that overlap in every way make the set that their ids make one by one. Ids have gaps, steps meet again and again.
TEST_F(TuvoModel, JoinsRangesThatOverlap)
{
    constexpr int Last = 6000;
    std::mt19937 random(20);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    std::string deck = "*NODE\n";
    for (int id = 1; id <= Last; ++id)
        if (id % 7 != 0)
            deck += std::to_string(id) + "\n";
    std::vector<std::string> rows;
    for (int set = 0; set < 40; ++set) {
        const std::string name = "S" + std::to_string(set);
        deck += "*NSET, NSET=" + name + ", GENERATE\n";
        std::set<int> ids;
        for (int range = set % 4 == 0 ? 3 : 60; range > 0; --range) {
            const int first = 1 + below(Last);
            const int last = first + below(range % 2 == 0 ? Last : 300);
            const int step = range % 20 == 0 ? 1 + below(9) : 40 + below(3);
            deck += std::to_string(first) + ", " + std::to_string(last) + ", " + std::to_string(step) + "\n";
            for (int id = first; id <= std::min(last, Last); id += step)
                if (id % 7 != 0)
                    ids.insert(id);
        }
        rows.push_back("\n" + name + "  nodes  " + std::to_string(ids.size()) + "  ");
        deck += "*NSET, NSET=" + name + "\n" + std::to_string(*ids.begin()) + "\n";
    }
    const std::string output = std::regex_replace(Run(deck).output, std::regex(" +"), "  ");
    for (const std::string& row : rows)
        EXPECT_TRUE(Contains(output, row)) << row << output;
}

TEST_F(TuvoModel, FollowsIncludes)
{
    platform::CreateOneDirectory(m_folder.Path("mesh").c_str());
    m_folder.Write("mesh/nodes.inc", std::string(CubeNodes).substr(17));
    m_folder.Write("mesh/all.inc", "*include, input=nodes.inc\n*INCLUDE, INPUT=\"elements.inc\"\n");
    m_folder.Write("elements.inc", CubeElements);
    m_folder.Write("circle.inc", "*INCLUDE, INPUT=mesh/../deck.inp\n*NODE\n5\n");
    const ChildResult circle = Run("*NODE\n1\n*INCLUDE, INPUT=circle.inc\n");
    EXPECT_EQ(circle.errors, "tuvo: error: circle.inc:1: \"mesh/../deck.inp\" includes itself\n");
    EXPECT_TRUE(Contains(circle.output, "    2  nodes            1,5\n")) << circle.output;
    const ChildResult run = Run(std::string("*NODE, NSET=Nall\n*INCLUDE, INPUT=mesh/all.inc\n") + CubeSteel);
    EXPECT_EQ(run.output, CubeSummary);
    EXPECT_EQ(run.errors, "");
}

// Files that each include the next one twice are a deck that nobody waits for.
TEST_F(TuvoModel, EndsIncludesThatDouble)
{
    for (int i = 0; i < 14; ++i) {
        const std::string line = "*INCLUDE, INPUT=" + std::to_string(i + 1) + ".inc\n";
        m_folder.Write((std::to_string(i) + ".inc").c_str(), line + line);
    }
    m_folder.Write("14.inc", "*NODE\n1\n");
    const ChildResult run = Run("*INCLUDE, INPUT=0.inc\n*NODE\n2\n");
    EXPECT_TRUE(Contains(run.errors, ".inc:1: more than 10000 files are included; the others are not read\n"));
    EXPECT_EQ(run.errors.find('\n'), run.errors.size() - 1) << "it is told once: " << run.errors;
    EXPECT_TRUE(Contains(run.output, "    2  nodes            1-2\n")) << run.output;
}

TEST_F(TuvoModel, ReadsConstantsOfEveryKind)
{
    const ChildResult run =
        Run("*MATERIAL, NAME=Wood\n*ELASTIC, TYPE=ENGINEERING CONSTANTS\n11e3, 800., 500., .3, .4, .5, 700., "
            "600.,\n50., 20.\n"
            "*EXPANSION, TYPE=ORTHO, ZERO=20\n1e-6, 2e-6, 3e-6\n*CONDUCTIVITY\n0.2, 20.\n0.3, 100.\n*SPECIFIC "
            "HEAT\n1.7e9\n",
            "--from mm,ton,sec");
    EXPECT_TRUE(Contains(run.output,
                         "Wood      E1             11000 MPa\n          E2             800 MPa\n"
                         "          E3             500 MPa\n          NU12           0.3\n"
                         "          NU13           0.4\n          NU23           0.5\n"
                         "          G12            700 MPa\n          G13            600 MPa\n"
                         "          G23            50 MPa\n          Expansion 11   1e-06 1/K\n"
                         "          Expansion 22   2e-06 1/K\n          Expansion 33   3e-06 1/K\n"
                         "          Conductivity   0.2 mW/mm/K\n          Specific heat  1.7e+09 mJ/ton/K\n"))
        << run.output;
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(Contains(
        Run("*MATERIAL, NAME=A\n*ELASTIC, TYPE=ORTHO\n1,2,3,4,5,6,7,8,9\n*DENSITY\n7\n"
            "*MATERIAL, NAME=a\n*ELASTIC\n5, .2\n*DENSITY\n8\n")
            .output,
        "\nMaterial  Constant  Value\nA         E         5\n          NU        0.2\n          Density   8\n"))
        << "the last card counts";
}

// ---- Volume and mass -----------------------------------------------------------------------------------------------

// Shapes between (0, 0, 0) and (1, 2, 3), each alone: its volume is a part of 6.
TEST_F(TuvoModel, MeasuresEachShape)
{
    const std::string nodes =
        "*NODE\n1,0,0,0\n2,1,0,0\n3,1,2,0\n4,0,2,0\n5,0,0,3\n6,1,0,3\n7,1,2,3\n8,0,2,3\n9,1000001,1,0\n";
    const struct
    {
        const char* type;
        const char* element;
        const char* volume;
    } rows[] = {
        {"C3D8", "1,2,3,4,5,6,7,8", "6"}, {"C3D4", "1,2,4,5", "1"},
        {"C3D6", "1,2,4,5,6,8", "3"},     {"C3D10", "1,2,4,5,1,1,1,1,1,1", "1"},
        {"C3D8", "5,6,7,8,1,2,3,4", "6"}, {"C3D8", "1,2,3,4,5,6,7,7", "4.5"},  // a corner drawn to its neighbour
    };
    for (const auto& [type, element, volume] : rows) {
        const ChildResult run = Run(nodes + "*ELEMENT,TYPE=" + type + "\n1," + element + "\n");
        const std::string row = "no material         1  " + std::string(6 - std::string(volume).size(), ' ') + volume;
        EXPECT_TRUE(Contains(run.output, row)) << type << ' ' << element << run.output;
        EXPECT_EQ(Contains(run.output, "1 solid element inside out"), element[0] == '5') << run.output;
    }
    std::string pyramid = "GRID,1\nGRID,2,,1.\nGRID,3,,1.,2.\nGRID,4,,0.,2.\nGRID,5,,0.,0.,3.\nCPYRAM,1,1,1,2,3,4,5\n";
    EXPECT_TRUE(Contains(Run(pyramid, {}, "deck.nas").output, "no material         1       2")) << "a third of 6";
}

TEST_F(TuvoModel, GivesTheMassOfEachMaterial)
{
    const ChildResult run =
        Run(std::string(CubeNodes) + CubeElements + "*ELSET,ELSET=One\n1\n*ELSET,ELSET=Two\n2\n" +
                "*MATERIAL,NAME=A\n*DENSITY\n2.\n*MATERIAL,NAME=B\n*MATERIAL,NAME=Unused\n*DENSITY\n9.\n"
                "*SOLID SECTION,ELSET=Eall,MATERIAL=A\n*SOLID SECTION,ELSET=Two,MATERIAL=B\n",
            "--from m,kg,sec");
    EXPECT_TRUE(Contains(run.output,
                         "Solids of  Elements  Volume        Mass\n"
                         "A                 1   4 m^3        8 kg\n"
                         "B                 1   4 m^3  no density\n"
                         "all               2   8 m^3  no density\n"))
        << run.output;
}

TEST_F(TuvoModel, ComputesWithItsNumbers)
{
    const ChildResult run = Run(Cube() + "*NODE\n99, 0., 0., -3.\n",
                                "--from mm,ton,sec --to m,kg,sec --eval '<mass>/<volume>' "
                                "--eval '<Steel E> / (2*(1+<Steel NU>))' --eval <nodes>+<elements>+1000*<z>");
    EXPECT_TRUE(Contains(run.output,
                         "\n\nExpression                                 Value\n"
                         "<mass>/<volume>                             7850\n"
                         "<Steel E> / (2*(1+<Steel NU>))  80769230769.2308\n"
                         "<nodes>+<elements>+1000*<z>                   20\n"))
        << run.output;
    const ChildResult wrong = Run(std::string(CubeNodes) + CubeElements, "--eval 2*<masse>");
    EXPECT_TRUE(Contains(wrong.errors, "there is no value for \"masse\" at character 3")) << wrong.errors;
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_EQ(RunOn("deck.inp", "--eval <mass>").exitCode, 1) << "there is no density";
}

// ---- Units ---------------------------------------------------------------------------------------------------------

TEST_F(TuvoModel, ConvertsEverything)
{
    const std::string deck = Cube() + "*MATERIAL,NAME=Steel\n*EXPANSION\n1.2e-5\n";
    EXPECT_TRUE(Contains(Run(deck, "--from mm,ton,sec").output, "Steel             2  8 mm^3  6.28e-08 ton\n"));
    const ChildResult run = RunOn("deck.inp", "--from mm,ton,sec --to m,kg,sec,fahrenheit");
    EXPECT_TRUE(Contains(run.output, "x        0 m  0.002 m  0.002 m\n")) << run.output;
    EXPECT_TRUE(Contains(run.output, "Steel     E          2.1e+11 Pa\n")) << run.output;
    EXPECT_TRUE(Contains(run.output, "          Density    7850 kg/m^3\n")) << run.output;
    EXPECT_TRUE(Contains(run.output, "Expansion  6.66666666666667e-06 1/degF\n")) << run.output;
    EXPECT_TRUE(Contains(run.output, "Steel             2  8e-09 m^3  6.28e-05 kg\n")) << run.output;
    EXPECT_EQ(RunOn("deck.inp", "--to m,kg,sec").exitCode, 2);
}

TEST_F(TuvoModel, GuessesTheUnits)
{
    const struct
    {
        const char* constants;
        const char* system;
        const char* reason;
    } rows[] = {
        {"*ELASTIC\n2.1e11,.3\n*DENSITY\n7800.\n", "m, kg, s, K (N, Pa)", "like steel: E 2.1e+11 Pa, Density 7.8e+03"},
        {"*ELASTIC\n70000.,.3\n*DENSITY\n2.7e-9\n", "mm, ton, s, K (N, MPa)", "like aluminium: E 7e+10 Pa"},
        {"*ELASTIC\n70.,.3\n*DENSITY\n2.7e-6\n", "mm, kg, ms, K (kN, GPa)", "like aluminium: E 7e+10 Pa"},
        {"*ELASTIC\n30e6,.3\n*DENSITY\n7.3e-4\n", "in, slinch, s, degR (lbf, psi)", "like steel"},
        {"*DENSITY\n1.2e-9\n*SPECIFIC HEAT\n4.18e9\n*CONDUCTIVITY\n0.6\n", "mm, ton, s, K (N, MPa)", "like water"},
    };
    for (const auto& [constants, system, reason] : rows) {
        const ChildResult run = Run(std::string("*MATERIAL, NAME=M\n") + constants, "--guess");
        EXPECT_TRUE(Contains(run.output, std::string("\nUnit system: ") + system)) << constants << run.output;
        EXPECT_TRUE(Contains(run.output, reason)) << constants << run.output;
        EXPECT_FALSE(Contains(run.output, "fits well")) << constants << run.output;
    }
}

// ---- Bad input -----------------------------------------------------------------------------------------------------

// Each error is told with its line, the exit code is 1, and all else is read.
TEST_F(TuvoModel, TellsWhatIsWrong)
{
    const struct
    {
        const char* lines;  // behind a cube of 25 lines
        const char* message;
    } rows[] = {
        {"*NODE\n3000000000, 1.", "27: \"3000000000\" is above 2147483647, the largest id"},
        {"*NODE\n-4, 1.", "27: node -4: an id is at least 1"},
        {"*NODE\n, 1.", "27: there is no id"},
        {"*NODE\n90, 1., 2.x", "27: \"2.x\" is no number"},
        {"*NODE\n90, nan", "27: \"nan\" is no number"},
        {"*NODE\n90, 1e999", "27: \"1e999\" is no number"},
        {"*ELEMENT, TYPE=C3D9\n9, 1", "26: there is no element type \"C3D9\""},
        {"*ELEMENT\n9, 1", "26: *ELEMENT names no TYPE"},
        {"*ELEMENT, TYPE=C3D4\n9, 1, 2, x, 4", "27: \"x\" is no id"},
        {"*ELEMENT, TYPE=C3D4\n9, 1, 2\n4", "27: element 9 (C3D4) has 3 of 4 nodes"},
        {"*ELEMENT, TYPE=C3D4\n8,1,2,4,11\n9,1,2,3,99", "28: element 9 (C3D4) has the node 99, which is not defined"},
        {"*ELEMENT, TYPE=C3D4\n9, 1, 2, , 4", "27: element 9 (C3D4) has no node 3"},
        {"*NSET, NSET=A\nB", "27: the set \"A\" names the set \"B\", which is not defined"},
        {"*NSET, GENERATE\n1, 2", "26: *NSET names no NSET"},
        {"*NSET, NSET=A, GENERATE\n5, 1", "27: from 5 to 1 in steps of 1 there is nothing"},
        {"*NSET, NSET=A, GENERATE\n-5, 9, 2", "27: node -5: an id is at least 1"},
        {"*MATERIAL", "26: *MATERIAL has no NAME"},
        {"*MATERIAL, NAME=X\n*ELASTIC\n1.", "27: the material has 1 of 2 constants"},
        {"*MATERIAL, NAME=X\n*ELASTIC, TYPE=ODD\n1.", "27: *ELASTIC has the unknown TYPE \"ODD\""},
        {"*SOLID SECTION, ELSET=E, MATERIAL=Steel", "26: there is no element set \"E\""},
        {"*SOLID SECTION, ELSET=Eall, MATERIAL=S", "26: there is no material \"S\""},
        {"*INCLUDE", "26: *INCLUDE names no INPUT"},
        {"*INCLUDE, INPUT=deck.inp", "26: \"deck.inp\" includes itself"},
        {"*USER ELEMENT, TYPE=U1", "26: *USER ELEMENT needs a TYPE, and from 1 to 1000 NODES"},
    };
    for (const auto& [lines, message] : rows) {
        const ChildResult run = Run(Cube() + "** 23\n** 24\n** 25\n" + lines + "\n*NSET, NSET=Last\n1\n");
        EXPECT_EQ(run.errors, std::string("tuvo: error: deck.inp:") + message + '\n') << lines;
        EXPECT_TRUE(Contains(run.output, "Last  nodes        1  1\n")) << lines << run.output;
        EXPECT_EQ(run.exitCode, 1) << lines;
    }
    EXPECT_EQ(Run(Cube() + "*INCLUDE, INPUT=missing.inc\n").errors.find("tuvo: error: deck.inp:23: cannot read "), 0U);
    EXPECT_EQ(Run("GRID,1,,x\nGRID,2,,1.\n", {}, "deck.nas").errors,
              "tuvo: error: deck.nas:1: GRID: \"x\" is no number\n");
}

TEST_F(TuvoModel, RefusesWhatIsNoDeck)
{
    EXPECT_TRUE(Contains(RunOn("missing.inp").errors, "cannot read missing.inp: "));
    EXPECT_TRUE(Contains(RunOn("").errors, "cannot read "));
    EXPECT_EQ(Run("").errors, "tuvo: error: deck.inp is no deck: no line of it is one of CalculiX or NASTRAN\n");
    EXPECT_EQ(Run("Dear all,\nno deck here\n").exitCode, 1);
    EXPECT_EQ(Run(std::string("\x7f"
                              "ELF\0\0\1*NODE\n",
                              13))
                  .errors,
              "tuvo: error: deck.inp:1: there is a zero byte: this is no text\n");
    EXPECT_EQ(Run(Cube() + std::string("*NSET,NSET=A\n1\n\0\n*NSET,NSET=B\n1\n", 31)).errors,
              "tuvo: error: deck.inp:25: there is a zero byte: this is no text\n");
}

TEST_F(TuvoModel, PassesOverALineThatNeverEnds)
{
    const ChildResult run = Run(std::string(5'000'000, '1') + '\n' + Cube());
    EXPECT_EQ(run.errors, "tuvo: error: deck.inp:1: the line is longer than 1048576 bytes\n");
    EXPECT_EQ(run.output, CubeSummary);
}

// However little is left of a deck: every message tells its line, and nothing else happens.
TEST_F(TuvoModel, ReadsATruncatedDeck)
{
    const std::string deck = Cube();
    for (std::size_t size = 7; size < deck.size(); size += 41) {
        const ChildResult run = Run(deck.substr(0, size));
        EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 1) << size;
        EXPECT_TRUE(run.errors.empty() || Contains(run.errors, "deck.inp")) << size << run.errors;
        EXPECT_EQ(run.exitCode == 1, Contains(run.errors, "error: ")) << size << run.errors;
    }
}

TEST_F(TuvoModel, ShowsNoControlCharactersOfADeck)
{
    const ChildResult run = Run("*HEADING\nR\xC3\xB6hre \xFF \x1b[31m\n" + Cube() +
                                    "*NSET, NSET=a\x1b]0;x\n1\nb\x07\n"
                                    "*INCLUDE, INPUT=\x1b]0;x\n"
                                    "*USER ELEMENT, TYPE=\x1bU, NODES=1\n*ELEMENT, TYPE=\x1bU\n1,99\n"
                                    "*MATERIAL, NAME=\x1bM\n*DENSITY\n7850.\n",
                                "--guess");
    EXPECT_EQ(run.output.rfind("R\xC3\xB6hre \xFF ?[31m\n\n", 0), 0U) << run.output;
    EXPECT_FALSE(Contains(run.output + run.errors, "\x1b") || Contains(run.errors, "\x07")) << run.errors;
    const ChildResult bulk = Run("SUBCASE \x1b[31m\nSET 1 = 5 THRU x\nBEGIN BULK\nGRID,5\n=(\x1b)\n", {}, "deck.bdf");
    EXPECT_FALSE(Contains(bulk.output + bulk.errors, "\x1b")) << bulk.errors;
}

TEST_F(TuvoModel, UnpacksDecks)
{
    if (OnWindows())
        GTEST_SKIP() << "there is no gzip";
    for (const auto& [program, ending] : {std::pair(L"gzip", ".gz"), std::pair(L"bzip2", ".bz2")}) {
        const std::string name = "tuvo_deck_" + std::to_string(platform::ProcessId()) + ".inp";
        const std::wstring path = m_folder.Write(name.c_str(), Cube());
        ASSERT_EQ(platform::RunProgram({program, L"-f", path}), 0);
        for (const std::string& named : {name, name + ending}) {
            const ChildResult run = RunOn(named.c_str());
            EXPECT_EQ(run.output, CubeSummary) << named;
            EXPECT_EQ(run.errors, "");
        }
        EXPECT_NE(platform::Access((L"/tmp/" + platform::Widen(name)).c_str(), 0), 0)
            << "what was unpacked is still there";
        platform::RemoveOneFile(m_folder.Path((name + ending).c_str()).c_str());
    }
    m_folder.Write("tuvo_no_deck.inp.gz", "nothing that gzip packed");
    EXPECT_TRUE(Contains(RunOn("tuvo_no_deck.inp").errors, "tuvo: error: cannot unpack tuvo_no_deck.inp.gz; is it"));
}

}  // namespace
