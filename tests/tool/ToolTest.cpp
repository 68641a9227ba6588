// The host program as its users meet it: arguments and input in, output, messages and exit code out. What the guide shows
// is compared with the program in its place.
#include "platform/Platform.h"
#include "support/TestFiles.h"
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

// ---- Conversion ----------------------------------------------------------------------------------------------------

TEST(TuvoConvert, TakesOneSystemUnderAllItsNames)
{
    for (const char* const name :
         {"IN-SLINCH-SEC-FAHRENHEIT", "'in, slinch, s, degF (lbf, psi)'", "22", "'IN , Slinch , SEC , Fahrenheit'",
          "in,lbf,sec,fahrenheit", "INCH,LBF,S,FAHR", "in,slinch,s,degF"}) {
        const ChildResult run = Tuvo(std::string("convert 1 --type Temperature --to 0 --from ") + name);
        EXPECT_EQ(run.output, "1 degF = 255.927777777778 K\n") << name << run.errors;
    }
    // A force stands for the mass that makes it the force of the system.
    const std::pair<const char*, std::string> rows[] = {
        {"m,n,sec", "kg"},    {"m,kn,sec", "ton"},    {"cm,dyn,sec", "g"},       {"m,kgf,sec", "hyl"},
        {"ft,pdl,sec", "lb"}, {"ft,lbf,sec", "slug"}, {"in,kip,sec", "kslinch"},  // and no system of ounces-force
    };
    for (const auto& [from, mass] : rows) {
        const ChildResult run = Tuvo(std::string("convert 1 --type Mass --to m,kg,sec --from ") + from);
        EXPECT_EQ(run.output, Tuvo("convert 1 --type Mass --to m,kg,sec --from m," + mass + ",sec").output) << from;
        EXPECT_TRUE(Contains(run.output, "1 " + mass + " = ")) << run.output << run.errors;
    }
}

TEST(TuvoConvert, ShowsResultsAsAskedFor)
{
    const struct
    {
        const char *line, *output;
    } rows[] = {
        {"1 10 2.5e3 -.5 --type pressure --from mm,ton,sec --to m,kg,sec",
         "    1 MPa = 1000000 Pa\n"
         "   10 MPa = 10000000 Pa\n"
         "2.5e3 MPa = 2.5e+09 Pa\n"
         "  -.5 MPa = -500000 Pa\n"},
        {"1 2 --plain --digits 5 --type 36 --from 5 --to 22", "145.04\n290.08\n"},
        // Offsets leave no noise in the last digits: 0 C, the Fahrenheit zero, absolute zero.
        {"0 -17.77777777777778 -273.15 --plain --type Temperature --from 1 --to 22", "32\n0\n-459.67\n"},
        {"1e-300 --plain --type Length --from 0 --to 5", "1e-297\n"},
        {"--factor --plain --type Temperature --from 0 --to 1", "1 -273.15\n"},
        {"--factor 3 --type Length --from 0 --to 5", "mm = m * 1000\n3 m = 3000 mm\n"},
        {"0.125 --type Ratio --to-type Percentage", "0.125 = 12.5 percent\n"},
        {"30 --type 'Rotational Speed in RPM' --to-type 'Angular Velocity' --to 9 --digits 6",
         "30 rpm = 0.00314159 rad/ms\n"},
        // The label does not depend on units that the quantity does not have.
        {"1 --type Pressure --from in,lbf,sec,centigrade --to 0", "1 psi = 6894.75729316836 Pa\n"},
        {"--type Length --from 0 --to 5 -- -1", "-1 m = -1000 mm\n"},
    };
    for (const auto& [line, output] : rows) {
        const ChildResult run = Tuvo(std::string("convert ") + line);
        EXPECT_EQ(run.output, output) << line;
        EXPECT_EQ(run.errors, "") << line;
        EXPECT_EQ(run.exitCode, 0) << line;
    }
}

TEST(TuvoConvert, NamesEachBadValueAndConvertsTheOthers)
{
    const ChildResult run = Tuvo("convert abc 1 1e999 nan 12a '' 1,5 1e308 2 --type Length --from 0 --to 5 --plain");
    EXPECT_EQ(run.output, "\n1000\n\n\n\n\n\n\n2000\n");
    EXPECT_EQ(run.errors,
              "tuvo: error: value 1: \"abc\" is not a number\n"
              "tuvo: error: value 3: \"1e999\" is too large\n"
              "tuvo: error: value 4: \"nan\" is not a finite number\n"
              "tuvo: error: value 5: \"12a\" is not a number: \"a\" follows it\n"
              "tuvo: error: value 6: \"\" is not a number\n"
              "tuvo: error: value 7: \"1,5\" is not a number: \",5\" follows it\n"
              "tuvo: error: value 8: \"1e308\" has no finite result\n"
              "tuvo: error: 7 of 9 values could not be converted\n");
    EXPECT_EQ(run.exitCode, 1);
}

// ---- Standard input ------------------------------------------------------------------------------------------------

const std::string MetresToMillimetres = "convert --type Length --from 0 --to 5 ";

TEST(TuvoConvert, GivesALineForEachLineOfTheInput)
{
    const std::string input =
        "\xEF\xBB\xBF"
        "1\r\n\n  2.5e-3\t\nabc\n-0\n7";
    const ChildResult run = Tuvo(MetresToMillimetres, input);
    EXPECT_EQ(run.output, "1000\n\n2.5\n\n0\n7000\n");
    EXPECT_EQ(run.errors,
              "tuvo: error: line 4: \"abc\" is not a number\n"
              "tuvo: error: 1 of 6 lines could not be converted\n");
    EXPECT_EQ(run.exitCode, 1);

    EXPECT_EQ(Tuvo(MetresToMillimetres + "- --equation", "1\n").output, "1 m = 1000 mm\n");
    EXPECT_EQ(Tuvo(MetresToMillimetres, "").output, "");
}

TEST(TuvoConvert, IsNotStoppedByBytesThatAreNoText)
{
    const ChildResult run = Tuvo(MetresToMillimetres, std::string("1\0 2\n\x1b[31m\n3\n", 14) + std::string(5000, 'x'));
    EXPECT_EQ(run.output, "\n\n3000\n\n");
    EXPECT_TRUE(Contains(run.errors, "line 1: \"1? 2\" is not a number")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, "line 2: \"?[31m\" is not a number")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, "xxx...\" is not a number")) << run.errors;
    EXPECT_LT(run.errors.size(), 500u);
}

TEST(TuvoConvert, StreamsLongInputs)
{
    std::string input, expected, bad;
    for (int i = 1; i <= 100'000; ++i) {
        input += std::to_string(i) + '\n';
        expected += std::to_string(i) + "000\n";
        bad += i <= 1000 ? "x\n" : "";
    }
    EXPECT_TRUE(Tuvo(MetresToMillimetres, input).output == expected);
    const std::string errors = Tuvo(MetresToMillimetres, bad).errors;
    EXPECT_TRUE(Contains(errors, "line 20: ")) << errors;
    EXPECT_FALSE(Contains(errors, "line 21: ")) << errors;
    EXPECT_TRUE(Contains(errors, "1000 of 1000 lines could not be converted; only the first are listed")) << errors;
}

// ---- What can be wrong ---------------------------------------------------------------------------------------------

TEST(Tuvo, SaysWhatIsWrongAndWhatMayHaveBeenMeant)
{
    const struct
    {
        const char* line;
        int exitCode;
        const char* message;
    } rows[] = {
        {"convert 1 --type 9999", 1, "there is no data type \"9999\""},
        {"convert 1 --type 4294967302", 1, "there is no data type \"4294967302\""},
        {"units --type Modulus", 1, "did you mean \"Bulk Modulus\", \"Shear Modulus\" or \"Section Modulus\"?"},
        {"convert 1 --type Length --from x,kg,sec", 1, "there is no length unit \"x\" (tuvo units --units"},
        {"convert 1 --type Length --from ,kg,sec", 1, "there is no length unit \"\" (tuvo units --units"},
        {"convert 1 --type Length --from ton,mm,sec", 1,
         "\"ton\" is a mass unit where a length unit belongs (the order is length, mass, time, heat)"},
        {"convert 1 --type Length --from mm,ton", 1, "\"mm,ton\" lists 2 units; a unit system has length, mass,"},
        {"convert 1 --type Length --from degF", 1, "\"degF\" is a heat unit; a unit system has length, mass,"},
        {"convert 1 --type Length --from unitless", 1, "the unit system \"unitless\" has no length unit"},
        {"convert 1 --type Length --to-type Area --from 0 --to 5", 1,
         "the data types \"Length\" and \"Area\" have different dimensions"},
        {"convert 1 --type Length --from 0", 2,
         "--to is required for the data type \"Length\" (see tuvo convert --help)"},
        {"convert 1 --from 0 --to 5", 2, "--type is required (see tuvo convert --help)"},
        {"convert -- -1 --type Ratio", 2, "--type is required"},
        {"convert 1 --tpye Length", 2, "there is no option \"--tpye\"; did you mean \"--type\"?"},
        {"convert 1 - --type Ratio", 2, "\"-\" stands for standard input"},
        {"convert 1 --type Ratio --digits 18", 2, "--digits: Value 18 not in range 1 to 17"},
        {"convert 1 --type Ratio --plain --equation", 2, "--plain and --equation exclude each other"},
        {"convert 1 --type Ratio --to-type ''", 2, "--to-type: must not be empty"},
        {"units --catalogue ''", 2, "--catalogue: must not be empty"},
        {"covnert", 2, "there is no command \"covnert\"; did you mean \"convert\"? (see tuvo --help)"},
        {"units Pressure", 2, "\"Pressure\" is one argument too many (see tuvo units --help)"},
        {"info units", 2, "\"units\" is one argument too many (see tuvo info --help)"},
    };
    for (const auto& [line, exitCode, message] : rows) {
        const ChildResult run = Tuvo(line);
        EXPECT_TRUE(Contains(run.errors, message)) << line << '\n' << run.errors;
        EXPECT_EQ(run.exitCode, exitCode) << line;
        EXPECT_EQ(run.output, "") << line;
    }
}

TEST(Tuvo, HelpsOnEveryLevel)
{
    const std::string help = Tuvo("--help").output;
    EXPECT_EQ(Tuvo("").output, help);
    EXPECT_EQ(Tuvo("").exitCode, 0);
    for (const std::string command : {"convert", "units", "info"}) {
        EXPECT_TRUE(Contains(Tuvo(command + " --help").output, "Examples:\n  tuvo " + command)) << command;
        EXPECT_TRUE(Contains(help, command));
    }
}

TEST(Tuvo, ReportsResultsThatCannotBeWritten)
{
    if (OnWindows())
        GTEST_SKIP() << "there is no device that is always full";
    const TemporaryFolder folder;
    const std::wstring errors = folder.Path("errors");
    platform::ProgramStreams streams;
    streams.outputFile = L"/dev/full";
    streams.errorFile = errors.c_str();
    EXPECT_EQ(platform::RunProgram({BuildFolder() + L"tuvo", L"units", L"--systems"}, streams), 1);
    EXPECT_EQ(ReadTextFile(errors), "tuvo: error: cannot write the results: No space left on device\n");
}

// ---- Catalogues ----------------------------------------------------------------------------------------------------

// A catalogue of a metre, a millimetre, a kilogram, a second and a kelvin, with some lines more.
std::string CatalogueWith(const std::string& lines, const std::string& systemId = "0")
{
    return R"(<UNITS>
<BASE_TYPE TYPE="LENGTH"><BASE_UNIT ID="1" NAME="Meter" ABBR="m" CONV_VAL="1"/>
  <BASE_UNIT ID="2" NAME="Millimeter" ABBR="mm" CONV_VAL="1000"/></BASE_TYPE>
<BASE_TYPE TYPE="MASS"><BASE_UNIT ID="3" NAME="Kilogram" ABBR="kg" CONV_VAL="1"/></BASE_TYPE>
<BASE_TYPE TYPE="TIME"><BASE_UNIT ID="4" NAME="Second" ABBR="sec" CONV_VAL="1"/></BASE_TYPE>
<BASE_TYPE TYPE="HEAT"><BASE_UNIT ID="5" NAME="Kelvin" ABBR="kelvin" CONV_VAL="1"/></BASE_TYPE>
<UNIT_SYSTEM ID=")" +
           systemId + R"(" NAME="SI" LENGTH_UNIT="1" MASS_UNIT="3" TIME_UNIT="4" HEAT_UNIT="5"/>
<DATA_TYPE ID="1" NAME="Length" NUM_L="1" NUM_M="0" NUM_T="0" NUM_H="0"/>
)" + lines +
           "</UNITS>\n";
}

// The option that names a catalogue in a folder, unit.xml or another file.
std::string From(const TemporaryFolder& folder, const char* name = "")
{
    return " --catalogue '" + folder.NarrowPath(name) + '\'';
}

TEST(TuvoCatalogue, IsTakenFromWhereTheUserSays)
{
    const TemporaryFolder folder;
    folder.Write("unit.xml", CatalogueWith(""));
    // On Linux a name is any bytes.
    const char* const draft = OnWindows() ? "draft.xml" : "entw\xC3\xBCrfe\xFF.xml";
    folder.Write(draft, CatalogueWith(R"(<DATA_TYPE ID="2" NAME="Span" NUM_L="1"/>)"));
    const std::string span = "convert 2 --type Span --from SI --to mm,kg,sec";
    EXPECT_EQ(Tuvo(span + From(folder, draft)).output, "2 m = 2000 mm\n");
    EXPECT_TRUE(Contains(Tuvo(span + From(folder)).errors, "there is no data type \"Span\""));
    EXPECT_EQ(Tuvo(span, {}, {{L"TUVO_CATALOGUE", folder.Path(draft)}}).output, "2 m = 2000 mm\n");
}

TEST(TuvoCatalogue, IsReportedWhenItCannotBeRead)
{
    const TemporaryFolder folder;
    platform::CreateOneDirectory(folder.Path("inner").c_str());
    platform::CreateOneDirectory(folder.Path("inner/unit.xml").c_str());
    const std::string whole = CatalogueWith("");
    folder.Write("cut.xml", whole.substr(0, whole.size() / 2));
    folder.Write("empty.xml", "");
    folder.Write("other.xml", "<page><body/></page>");
    const std::pair<std::string, const char*> rows[] = {
        {From(folder), "unit.xml: cannot open file: "},
        {From(folder, "inner"), "unit.xml: cannot open file: "},
        {From(folder, "cut.xml"), "cut.xml: "},
        {From(folder, "empty.xml"), "empty.xml: no root element"},
        {From(folder, "other.xml"), "other.xml is not a unit catalogue"},
        {" --catalogue /dev/null", OnWindows() ? "cannot read" : "/dev/null: it is not a regular file"},
    };
    for (const auto& [from, message] : rows)
        for (const char* const command : {"convert 1 --type Ratio", "units"}) {
            const ChildResult run = Tuvo(command + from);
            EXPECT_TRUE(Contains(run.errors, message)) << command << from << '\n' << run.errors;
            EXPECT_EQ(run.exitCode, 1);
            EXPECT_EQ(run.output, "");
        }
}

TEST(TuvoCatalogue, NeverGivesTheResultOfAnotherConversion)
{
    // The system of mm, kg, sec, kelvin is made at run time. Its id would be 1, the number of systems without it and the
    // unitless one counted, which a system of the file has already.
    const TemporaryFolder folder;
    folder.Write("unit.xml", CatalogueWith("", "2"));
    folder.Write("zero.xml", CatalogueWith(R"(
<BASE_TYPE TYPE="LENGTH"><BASE_UNIT ID="9" NAME="Nothing" ABBR="no" CONV_VAL="0"/></BASE_TYPE>)"));
    const std::pair<std::string, const char*> rows[] = {
        {"1 --to mm,kg,sec --from SI" + From(folder), "numbers its unit systems so that none can be added"},
        {"1 --to SI --from no,kg,sec" + From(folder, "zero.xml"), "value 1: \"1\" has no finite result\n"},
        {"--factor --to SI --from no,kg,sec" + From(folder, "zero.xml"), "the conversion has no finite factor\n"},
    };
    for (const auto& [line, message] : rows) {
        const ChildResult run = Tuvo("convert --type Length " + line);
        EXPECT_TRUE(Contains(run.errors, message)) << line << '\n' << run.errors;
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.output, "");
    }
}

TEST(TuvoUnits, FindsWhatIsWrongInACatalogue)
{
    // What a catalogue gets added, with three elements in short.
    const std::string unit = R"(<BASE_TYPE TYPE="LENGTH"><BASE_UNIT NAME="A" )", unitEnd = "/></BASE_TYPE>";
    const std::string system = R"(<UNIT_SYSTEM NAME="A" MASS_UNIT="3" TIME_UNIT="4" HEAT_UNIT="5" )";
    const std::string type = R"(<DATA_TYPE ID="2" NUM_M="0" NUM_T="0" NUM_H="0" )";
    const std::pair<std::string, const char*> rows[] = {
        {R"(<BASE_TYPE TYPE="Length"/>)", R"(TYPE "Length" is not LENGTH, MASS, TIME, HEAT or CONSTANT)"},
        {unit + R"(ID="1" ABBR="a" CONV_VAL="1")" + unitEnd, R"(BASE_UNIT "A": the id "1" is that of "Meter" too)"},
        {unit + R"(ID="9" ABBR="MM" CONV_VAL="1")" + unitEnd, R"(the abbreviation "MM" is that of "Millimeter" too)"},
        {unit + R"(ID="9" ABBR="a" CONV_VAL="1/3")" + unitEnd, R"("A": CONV_VAL: "1/3" is not a number: "/3" follows)"},
        {unit + R"(ID="9" CONV_VAL="1")" + unitEnd, "ABBR is missing"},
        {unit + R"(ID="9" ABBR="a")" + unitEnd, "CONV_VAL is missing"},
        {system + R"(ID="0" LENGTH_UNIT="2"/>)", R"(UNIT_SYSTEM "A": the id "0" is that of "SI" too)"},
        {system + R"(ID="1" LENGTH_UNIT="7"/>)", R"(UNIT_SYSTEM "A": the length unit 7 does not exist)"},
        {system + R"(ID="1" LENGTH_UNIT="3"/>)", R"(UNIT_SYSTEM "A": the length unit "Kilogram" is a unit of mass)"},
        {system + R"(ID="2" LENGTH_UNIT="2"/>)", R"(UNIT_SYSTEM "A": the id 2 is not among 0 to 1)"},
        {system + R"(LENGTH_UNIT="2"/>)", R"("A": ID is missing: this system and all after it are not read)"},
        {type + R"(NAME="LENGTH" NUM_L="1"/>)", R"(the name "LENGTH" is that of "Length" too)"},
        {type + R"(NAME="A" NUM_L="2.5"/>)", R"(DATA_TYPE "A": NUM_L: 2.5 is not a whole number)"},
        {type + R"(NAME="A" NUM_L="2" DISPLAY_UNIT_ID_NAME="0:m2;0;4:a"/>)", R"("0" is not of the form ID:UNIT)"},
        {type + R"(NAME="A" NUM_L="2" DISPLAY_UNIT_ID_NAME="4:a"/>)", "the unit system 4, which does not exist"},
        {type + R"(NAME="A" NUM_L="0" CONST_ID="77"/>)", R"(DATA_TYPE "A": the constant 77 does not exist)"},
        // 1e-200 to the fourth power is 0.
        {unit + R"(ID="9" ABBR="a" CONV_VAL="1e-200")" + unitEnd + system + R"(ID="1" LENGTH_UNIT="9"/>)" + type +
             R"(NAME="A" NUM_L="4"/>)",
         R"("A": a value does not come back from "SI" to "A" and back)"},
    };
    const TemporaryFolder folder;
    for (const auto& [line, problem] : rows) {
        folder.Write("unit.xml", CatalogueWith(line));
        const ChildResult run = Tuvo("units --check" + From(folder));
        EXPECT_TRUE(Contains(run.output, problem)) << line << '\n' << run.output << run.errors;
        EXPECT_EQ(run.exitCode, 1) << line;
    }
    folder.Write("unit.xml", CatalogueWith(""));
    EXPECT_EQ(Tuvo("units --check" + From(folder)).exitCode, 0);
}

TEST(TuvoUnits, ListsWhatTheCatalogueHolds)
{
    const TemporaryFolder folder;
    folder.Write("unit.xml", CatalogueWith(R"(
<UNIT_SYSTEM ID="1" NAME="None" LENGTH_UNIT="-1" MASS_UNIT="-1" TIME_UNIT="-1" HEAT_UNIT="-1"/>
<DATA_TYPE ID="2" NAME="Force" NUM_L="1" NUM_M="1" NUM_T="-2" NUM_H="0" ZAMVIEW_NAME="F" DISPLAY_UNIT_ID_NAME="0:N"/>)"));
    const auto units = [&](const char* options) { return Tuvo("units" + From(folder) + options).output; };
    EXPECT_EQ(units(" --systems"),
              "id  display name  name  length  mass  time  heat\n"
              " 0                SI    m       kg    sec   kelvin\n"
              " 1                None  -       -     -     -\n");
    EXPECT_EQ(units(" --units"),
              "kind    id  unit    name        per reference unit  offset\n"
              "length   1  m       Meter       1\n"
              "length   2  mm      Millimeter  1000\n"
              "mass     3  kg      Kilogram    1\n"
              "time     4  sec     Second      1\n"
              "heat     5  kelvin  Kelvin      1\n");
    EXPECT_EQ(units(" --type"),
              "id  data type  dimension  SI unit  viewer name\n"
              " 1  Length     L          m\n"
              " 2  Force      L M T^-2   N        F\n");
}

// ---- Information ---------------------------------------------------------------------------------------------------

TEST(TuvoInfo, TellsWhatIsNotAsUsual)
{
    const ChildVariables switches = {
        {L"DISABLE_VX_HEAP", L"1"},
        {L"BU_LOG_LEVEL", L"2"},
        {L"TUVO_CATALOGUE", L"nowhere.xml"},
        {L"HWLOC_SYNTHETIC", L"package:1 core:2 pu:64"},  // what Linux then takes for the machine
    };
    const ChildResult run = Tuvo("info", {}, switches);
    for (const char* const part :
         {"Block heap        off, switched off by DISABLE_VX_HEAP\n", "Log               from level 2 on\n",
          OnWindows() ? " usable of " : " usable of 128 logical processors, 2 cores, 1 package\n",
          "DISABLE_VX_HEAP=1\n", "cannot read the unit catalogue nowhere.xml"})
        EXPECT_TRUE(Contains(run.output, part)) << part << '\n' << run.output;
    EXPECT_EQ(run.exitCode, 0);
}

}  // namespace
