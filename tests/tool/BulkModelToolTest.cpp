// tuvo model on decks of NASTRAN, as its users meet it.
#include "tool/DeckTest.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using TuvoBulkModel = DeckTest;

constexpr char BulkSummary[] =
    "Count  Type                Class  Ids\n"
    "    8  nodes                      1-8\n"
    "    2  elements\n"
    "    1    CHEXA (8 nodes)   solid  1\n"
    "    1    CTETRA (4 nodes)  solid  2\n"
    "\n"
    "Set    Kind      Size  Ids\n"
    "PID 7  elements     2  1-2\n"
    "\n"
    "Extent  From   To  Size\n"
    "x          0    1     1\n"
    "y          0    2     2\n"
    "z          0  1.5   1.5\n"
    "\n"
    "Material  Constant  Value\n"
    "MID 3     E         70000\n"
    "          NU        0.33\n"
    "          Density   2.7e-09\n"
    "\n"
    "Solids of  Elements  Volume      Mass\n"
    "MID 3             2     3.5  9.45e-09\n";

constexpr char SmallFields[] =
    "SOL 101\nCEND\nSUBCASE 1\n   LOAD = 1\nBEGIN BULK\n$ comment\n"
    "GRID    1               0.0     0.0     0.0\n"
    "GRID    2               1.      0.0     0.0\n"
    "GRID    3               1.      2.+0    0.0\n"
    "GRID    4               0.0     2.0     0.0\n"
    "GRID    5               0.0     0.0     15.-1\n"
    "GRID    6               1.0     0.0     1.5D0\n"
    "GRID    7               1.0     2.0     1.5E+0\n"
    "GRID    8                       2.0     1.5\n"
    "CHEXA   1       7       1       2       3       4       5       6       +A\n"
    "+A      7       8\n"
    "CTETRA  2       7       1       2       4       5\n"
    "PSOLID  7       3\n"
    "MAT1    3       70000.          .33     2.7-9\n"
    "FORCE   1       2       0       1.      1.      0.      0.\n"
    "ENDDATA\nGRID    9               9.      9.      9.\n";

constexpr char LargeFields[] =
    "BEGIN BULK\n"
    "GRID*   1                                             0.              0.*\n"
    "*                     0.\n"
    "GRID*,2,,1.,0.,*A\n*A,0.\n"
    "grid,3,,1.,2.,0.\n"
    "GRID\t4\t\t0.0\t2.0\t0.0\n"
    "GRID,5,0,,,1.5\n"
    "GRID,6,,1.0,,1.5 $ behind\n"
    "GRID, 7, , 1.0, 2.0, 1.5\n"
    "  GRID,8,,0.,2.,1.5,,,,\n"
    "CHEXA,1,7,1,2,3,4,5,6\n,7,8\n"
    "CTETRA  2       7       1       2       4       5\n"
    "        \n"
    "PSOLID,7,3\n"
    "MAT1*   3               70000.                          .33\n"
    "*       2.7E-9\n";

TEST_F(TuvoBulkModel, ReadsEveryFormOfBulkData)
{
    for (const char* const deck : {SmallFields, LargeFields}) {
        const ChildResult run = Run(deck, {}, "deck.bdf");
        EXPECT_EQ(run.output, BulkSummary) << deck;
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.exitCode, 0);
    }
}

// Continuation lines that do not follow their cards are found by their markers, whichever comes first.
TEST_F(TuvoBulkModel, FindsContinuationLinesByTheirMarkers)
{
    const std::string nodes = "BEGIN BULK\nGRID,1\n=(39),*(1),==\n";
    const std::string first = "CHEXA,1,7,1,2,3,4,5,6,+A\n";
    const std::string large = "CHEXA*  2               7               11              12              *B\n";
    const std::string largeEnd = "*B      13              14              15              16              *C 1\n";
    const ChildResult expected = Run(nodes + first + "+A,7,8\n" + large + largeEnd + "*c 1,17,18\n", {}, "deck.bdf");
    EXPECT_TRUE(Contains(expected.output, "\n    2    CHEXA (8 nodes)  solid  1-2\n")) << expected.output;
    EXPECT_EQ(expected.errors, "");
    for (const std::string& deck :
         {nodes + first + large + "+A,7,8\n" + largeEnd + "GRID,5\n+C 1,17,18\nENDDATA\n",
          nodes + large + first + "GRID,6\n" + largeEnd + "+C 1    17      18\n+A      7       8\n",
          "BEGIN BULK\n" + largeEnd + "*A,7,8\n+C 1,17,18\n" + nodes.substr(11) + large + first}) {
        const ChildResult run = Run(deck, {}, "deck.bdf");
        EXPECT_EQ(run.output, expected.output) << deck;
        EXPECT_EQ(run.errors, "") << deck;
    }

    // A marker that is missing on one side, or that nobody asks for, does not part neighbours.
    for (const char* const deck : {"CTRIA6,1,7,1,2,3,4,5,6,+A\n+,0.\n", "CHEXA,1,7,1,2,3,4,5,6\n+A,7,8\n",
                                   "CHEXA,1,7,1,2,3,4,5,6,+A\n,7,8\n", "CTRIA6,1,7,1,2,3,4,5,6,+A\nGRID,1\n"})
        EXPECT_EQ(Run(nodes + deck, {}, "deck.bdf").errors, "") << deck;

    EXPECT_EQ(
        Run("        TABLED\nBEGIN BULK\n,1,2\n+X,7,8\n+x      9\n" + nodes.substr(11) + first + "+B,7,8\n", {},
            "deck.bdf")
            .errors,
        "tuvo: error: deck.bdf:3: the line continues a card, and there is none in front of it\n"
        "tuvo: error: deck.bdf:5: the line continues a card that ends with \"+X\", and there is none in front of it\n"
        "tuvo: error: deck.bdf:9: the line continues a card that ends with \"+B\", and there is none\n"
        "tuvo: error: deck.bdf:4: the line continues a card that ends with \"+X\", and there is none\n"
        "tuvo: error: deck.bdf:8: element 1 (CHEXA) has no node 7\n"
        "tuvo: error: deck.bdf:8: element 1 (CHEXA) has no node 8\n");
}

// Cards that end with numbers of their own wait for nothing, however many they are.
TEST_F(TuvoBulkModel, ReadsCardsThatAllHaveMarkers)
{
    std::string deck = "BEGIN BULK\n";
    for (int id = 1; id <= 100'002; ++id)
        deck += "GRID," + std::to_string(id) + ",,,,,,,,+" + std::to_string(id) + '\n';
    const ChildResult run = Run(deck, {}, "deck.bdf");
    EXPECT_TRUE(Contains(run.output, "100002  nodes            1-100002\n")) << run.output;
    EXPECT_EQ(run.errors, "");
}

// The same point in coordinate systems of all kinds, which stand in one another.
TEST_F(TuvoBulkModel, BringsGridPointsIntoOneSystem)
{
    const std::string systems =
        "CORD2R,1,0,10.,0.,0.,10.,0.,1.,\n,11.,0.,0.\n"  // moved by 10 along x
        "CORD2C,2,1,0.,0.,0.,0.,0.,1.,\n,1.,0.,0.\n"     // cylindrical, in that
        "CORD2S,3,1,0.,0.,0.,0.,0.,1.,\n,1.,0.,0.\n"     // spherical, in that
        "CORD2R,4,0,10.,0.,0.,11.,0.,0.,\n,10.,0.,1.\n"  // z' = x, x' = z, y' = -y
        "GRID,101,,10.,0.,0.\nGRID,102,1,0.,0.,1.\nGRID,103,2,1.,0.,0.\nCORD1R,5,101,102,103\n";
    const std::string points[] = {"GRID,1,0,10.,3.,4.\n",          "GRID,1,1,0.,3.,4.\n",
                                  "GRID,1,2,3.,90.,4.\n",          "GRID,1,3,5.,36.86989764584402,90.\n",
                                  "GRID,1,4,4.,-3.,0.\n",          "GRID,1,5,0.,3.,4.\n",
                                  "GRDSET,,1\nGRID,1,,0.,3.,4.\n", "GRID,1,,0.,3.,4.\nGRDSET,,1\n"};
    for (const std::string& point : points) {
        const ChildResult run = Run(systems + point, {}, "deck.nas");
        EXPECT_TRUE(Contains(run.output, "\ny          0   3     3\nz          0   4     4\n")) << point << run.output;
        EXPECT_EQ(run.errors, "") << point;
    }
    EXPECT_TRUE(Contains(
        Run("GRID,1,,1.\nGRID,2,0,20.\nGRDSET,,1\n" + systems.substr(0, systems.find("CORD2C")), {}, "deck.nas").output,
        "\nx         11  20     9\n"))
        << "a default counts wherever it stands, and not where 0 is given";
    EXPECT_EQ(
        Run("GRID,1,8,1.,2.,3.\nCORD2R,8,8\n", {}, "deck.nas").errors,
        "tuvo: error: deck.nas: the coordinate system 8 has no place: what it is given by is missing, lies on one "
        "line, depends on it or on too many others\n");
    EXPECT_TRUE(Contains(
        Run("GRID,1,8,1.,2.,3.\nCORD2R,8,9,0.,0.,0.,0.,0.,1.,\n,1.,0.,0.\n", {}, "deck.nas").errors,
        "tuvo: error: deck.nas: the coordinate system 9 is not defined\ntuvo: error: deck.nas: the coordinate system 8 "
        "has no place"));
    EXPECT_EQ(Run("GRID,1,8,1.,2.,3.\n", {}, "deck.nas").errors,
              "tuvo: error: deck.nas: the coordinate system 8 is not defined\n");
}

TEST_F(TuvoBulkModel, KnowsTheElementsOfBulkData)
{
    const ChildResult run =
        Run("GRID,1\nGRID,2,,1.\nGRID,3,,1.,1.\nGRID,4,,0.,1.\n"
            "CQUAD4,1,1,1,2,3,4,30.\nCTRIA3,2,,1,2,3\nCBAR,3,2,1,2,0.,1.,0.\nCONROD,4,1,2,9\nCELAS2,5,1000.,1,1\n"
            "CONM2,6,3,0,5.\nCHEXA,7,1,1,2,3,4,1,2,\n,3,4,1\nCBUSH,8,1,1\nCQUAD8,9,1,1,2,3,4\n",
            {}, "deck.dat");
    for (const char* const row :
         {"CQUAD4 (4 nodes)  shell  1", "CTRIA3 (3 nodes)  shell  2", "CBAR (2 nodes)    beam   3",
          "CONROD (2 nodes)  beam   4", "CELAS2 (2 nodes)  other  5", "CONM2 (1 node)    other  6",
          "CHEXA (20 nodes)  solid  7", "CBUSH (2 nodes)   other  8", "CQUAD8 (8 nodes)  shell  9",
          "PID 1  elements     4  1,7-9", "PID 2  elements     2  2-3"})
        EXPECT_TRUE(Contains(run.output, row)) << row << '\n' << run.output;
    EXPECT_EQ(run.errors, "");

    const ChildResult materials =
        Run("PLSOLID,1,11\nPSOLID,2,12\nMATHP,11,.8,.2,,1.1\nMAT11,12,1.,2.,3.,,,,7.,\n,,,1.5,4.-5\n", {}, "deck.dat");
    EXPECT_TRUE(Contains(materials.output, "MID 11    A10           0.8\n")) << materials.output;
    EXPECT_TRUE(Contains(materials.output,
                         "          G12           7\n          Density       1.5\n"
                         "          Expansion 11  4e-05\n"))
        << materials.output;
    EXPECT_EQ(materials.errors, "");
    EXPECT_FALSE(Contains(Run("CTRIAX6,10,99,1,,2,,3\n", {}, "deck.dat").output, "PID 99")) << "this is a material";
}

// Every row is the same deck in another form: a card, and cards that stand for more like it.
TEST_F(TuvoBulkModel, MakesImagesOfCards)
{
    const std::string plain =
        "GRID,101,,1.,10.5\nGRID,102,,1.25,10.5\nGRID,103,,1.5,10.5\nGRID,104,,1.75,10.5\nGRID,105,,2.,10.5\n";
    const std::string decks[] = {
        "GRID,101,,1.,10.5\n=,*(1),=,*(0.25),==$ one more\n=(3)\n",
        "GRID,101,,1.,10.5\n=(4),*1,,*.25,=\n",
        "POINT,101,,1.,10.5\nGRID,==\n=(4),*1,,*.25,=\n",
        "GRID,101,,1.,10.5\n=(000004),*1,,*.25,=\n",
        "GRID,101,,1.,10.5\n=,*1,,*.25,=\n=(0000003)\n",
        "GRID,101,,1.,10.5,,,,,+9\n=,*(1),=,*(0.25),=,,,,,*(1)\n=(3)\n",
        "GRID,101,,1.,10.5\n=3,*(1),,*(2.5-1),==\n=\n",
        "GRID    101             1.      10.5\n=       *(1)    =       *(.25)  ==\n=(3)\n",
        "GRID*   101                             1.              10.5\n=,*(1),=,*(.25),==\n$\n=(3)\n",
        "GRID,103,,1.5,10.5\n=(2),*(-1),=,*(-.25),=\nGRID,104,=,1.75,=\nGRID,*(1),=,*(.25),=\n",
    };
    const ChildResult expected = Run(plain, {}, "deck.bdf");
    for (const std::string& deck : decks) {
        const ChildResult run = Run(deck, {}, "deck.bdf");
        EXPECT_EQ(run.output, expected.output) << deck;
        EXPECT_EQ(run.errors, "") << deck;
    }

    // Of cards of several lines too: fields go on, "==" ends with its line when another one follows.
    const std::string nodes = "GRID,1\n=(99),*(1),==\n";
    for (const char* const images :
         {"=,*(1),=,*(8),*(8),*(8),*(8),*(8),*(8)\n,*(8),*(8)\n", "=,*(1),==\n,7,8\n", "=(1),*(1),==\n"})
        EXPECT_TRUE(Contains(Run(nodes + "CHEXA,1,1,1,2,3,4,5,6\n,7,8\n" + images + "=(2)\n", {}, "deck.bdf").output,
                             "\n    4    CHEXA (8 nodes)  solid  1"))
            << images;
    EXPECT_EQ(Run(nodes + "CHEXA,1,1,1,2,3,4,5,6\n,7,8\n=,*(1),==\n,7,208\n", {}, "deck.bdf").errors,
              "tuvo: error: deck.bdf:5: element 2 (CHEXA) has the node 208, which is not defined\n");

    const std::string longField = "DTI," + std::string(1000, 'x') + "\n=(9000000)";
    const struct
    {
        const char* lines;  // behind a first one
        const char* message;
    } rows[] = {
        {"=(0)", "2: \"=(0)\" asks for no number of images from 1 to 10000000"},
        {"=(20000000)", "2: \"=(20000000)\" asks for no number of images from 1 to 10000000"},
        {"=(x)", "2: \"=(X)\" asks for no number of images from 1 to 10000000"},
        {"=(9),*1,==\n=(9999992)", "3: the images of this deck have more than 10000000 lines"},
        {"RBE2,1,,,,,,,,\n,2,3\n=(5000001)", "4: the images of this deck have more than 10000000 lines"},
        {longField.c_str(), "3: the images of this deck have more than 10000000 lines"},
        {"=,*(1),=,=,=,*(1.)", "2: \"*(1.)\" cannot be added to \"\""},
        {"=,*(1999999999),==\n=,*(2147483647)", "3: GRID: \"4147483647\" is above 2147483647, the largest id"},
        {"=(3),*(2147483647)", "2: GRID: \"2147483648\" is above 2147483647, the largest id"},
    };
    for (const auto& [lines, message] : rows) {
        EXPECT_EQ(Run(std::string("GRID,1\n") + lines + "\nGRID,9\n", {}, "deck.bdf").errors,
                  std::string("tuvo: error: deck.bdf:") + message + '\n')
            << lines;
    }
    EXPECT_EQ(Run("=(3)\nGRID,1\n", {}, "deck.bdf").errors,
              "tuvo: error: deck.bdf:1: there is no card in front of it that it could repeat\n");
}

TEST_F(TuvoBulkModel, MakesSetsOfTheCaseControl)
{
    const ChildResult run =
        Run("SOL 101\nCEND\nTITLE = A plate, loaded,\n"
            "SET 1 = 5\nSET 2 = 5, 6, 10 THRU 55 EXCEPT 15, 16, 77, 78, 90 THRU 95 $ 77 lies outside\n"
            "set 3 = all\nSET 4=1 THRU 5,\n 7,$\n$\n  9\nSET 5 = 1. ,2.\nSET 6 = M1, M2\n"
            "SET 7 = 1 THRU 3 EXCEPT 2\nSET 8 = 90 THRU 100 EXCEPT 90,95,100\n"
            "DISP(SORT1, $\n  PUNCH) = 2\nSTRESS = 3\nECHO = NONE\n"
            "SUBCASE 20\n  TITLE = Not this\n  LOAD = 1\n  SET 4 = 8\n  VELOCITY=4\n  ESE=7\n"
            "SUBCASE = 30\n  SPCFORCES(PLOT)=4\n  OLOAD=7\n  FORCE=ALL\n  SET 8 = 5 THRU\n"
            "OUTPUT(PLOT)\nSET 1 = ALL\n"
            "BEGIN BULK\nGRID,1\n=(99),*(1),==\nCONM2,1,5\n=(9),*(1),==\nENDDATA\n",
            {}, "deck.bdf");
    EXPECT_EQ(run.output.substr(0, run.output.find("\nExtent")),
              "A plate, loaded,\n"
              "\n"
              "Count  Type              Class  Ids\n"
              "  100  nodes                    1-100\n"
              "   10  elements\n"
              "   10    CONM2 (1 node)  other  1-10\n"
              "\n"
              "Set               Kind      Size  Ids\n"
              "SET 1             nodes        1  5\n"
              "SET 1             elements     1  5\n"
              "SET 2             nodes       54  5-6,10-14,17-55,77-78,90-95\n"
              "SET 3             elements    10  1-10\n"
              "SET 4             nodes        7  1-5,7,9\n"
              "SET 7             nodes        2  1,3\n"
              "SET 7             elements     2  1,3\n"
              "SET 8             nodes        8  91-94,96-99\n"
              "SET 8             elements     0\n"
              "SUBCASE 20 SET 4  nodes        1  8\n"
              "SUBCASE 30 SET 8  nodes        0\n"
              "SUBCASE 30 SET 8  elements     0\n");
    EXPECT_EQ(run.errors, "tuvo: error: deck.bdf:29: SUBCASE 30 SET 8: there is no id behind THRU\n");
}

// Names of included files in quotes, on several lines, and bare.
TEST_F(TuvoBulkModel, FollowsIncludesOfBulkData)
{
    for (const char* const name : {"two.bdf", "on$e.bdf", "six.bdf"})
        m_folder.Write(name, "GRID," + std::to_string(name[0]) + "\n");
    const ChildResult run =
        Run("INCLUDE 'on$e.bdf'\n include two.bdf $ bare\nINCLUDE \"si \n x.bdf\" \nGRID,1\ninclude\nINCLUDE 'G\nH\n",
            {}, "deck.bdf");
    EXPECT_TRUE(Contains(run.output, "nodes            1,111,115-116\n")) << run.output;
    EXPECT_EQ(run.errors,
              "tuvo: error: deck.bdf:6: INCLUDE names no file, or without a quote at its end\n"
              "tuvo: error: deck.bdf:7: INCLUDE names no file, or without a quote at its end\n");
}

}  // namespace
