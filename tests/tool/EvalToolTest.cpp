// tuvo eval as its users meet it.
#include "tool/TuvoProgram.h"

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(TuvoEval, ShowsTheValueOfAnExpression)
{
    const struct
    {
        const char *line, *output;
    } rows[] = {
        {"1+2*3", "7\n"},
        {"' 1 + 2 '", "3\n"},
        {"0.1+0.2", "0.3\n"},
        {"1/3 --digits 3", "0.333\n"},
        {"-5", "-5\n"},
        {"-(2)3", "-6\n"},
        {"-.5*4", "-2\n"},
        {"-<x> x=2", "-2\n"},
        {"-- --5", "5\n"},
        {"inf-inf", "nan\n"},
        {"'<a b>/2' 'a b=7'", "3.5\n"},
        {"<y> x=3 y=<x>*<x> x=5", "9\n"},
        {"<> =4", "4\n"},
    };
    for (const auto& [line, output] : rows) {
        const ChildResult run = Tuvo(std::string("eval ") + line);
        EXPECT_EQ(run.output, output) << line;
        EXPECT_EQ(run.errors, "") << line;
        EXPECT_EQ(run.exitCode, 0) << line;
    }
}

TEST(TuvoEval, PointsToWhatIsWrong)
{
    const struct
    {
        const char *line, *errors;
    } rows[] = {
        {"'1 $'", "invalid character at character 3\n  1 $\n    ^\n"},
        {"'  1+'", "invalid character at the end\n  1+\n    ^\n"},
        {"-(2", "parentheses don't match at the end\n  -(2\n     ^\n"},
        {"5+1/0", "division by zero at character 4\n  5+1/0\n     ^\n"},
        {"<n", "a name without \">\" or with more than 255 characters at the end\n  <n\n    ^\n"},
        {"<x>+<ab>*<y>/0 x=1 ad=1 xy=2", "division by zero at character 13\n  <x>+<ab>*<y>/0\n              ^\n"},
        {"<x>+<ab>*<y> x=1 ad=1 wxyz=2",
         "there is no value for \"ab\" at character 5; did you mean \"ad\"?\n  <x>+<ab>*<y>\n      ^\n"},
        {"<b<a>+<a> 'b<a=1'", "there is no value for \"a\" at character 7\n  <b<a>+<a>\n        ^\n"},
        {"<x> x=1+", "the value of \"x\": invalid character at the end\n  1+\n    ^\n"},
        {"1 x=", "the value of \"x\": there is no expression\n"},
        {"''", "there is no expression\n"},
    };
    for (const auto& [line, errors] : rows) {
        const ChildResult run = Tuvo(std::string("eval ") + line);
        EXPECT_EQ(run.errors, std::string("tuvo: error: ") + errors) << line;
        EXPECT_EQ(run.output, "") << line;
        EXPECT_EQ(run.exitCode, 1) << line;
    }
}

TEST(TuvoEval, CountsCharactersNotBytes)
{
    const std::string text = platform::Narrow(L"<\u00E4>+$");
    EXPECT_EQ(Tuvo("eval " + text).errors, "tuvo: error: invalid character at character 5\n  " + text + "\n      ^\n");
}

TEST(TuvoEval, EvaluatesTheLinesOfAFile)
{
    constexpr char bytes[] = "\xEF\xBB\xBF<a>+1\r\n\n(\n1\0+1\n2*<a>";
    const std::string lines(bytes, sizeof bytes - 1);
    const std::string output = "5\n\n\n\n8\n";
    const std::string errors =
        "tuvo: error: line 3: parentheses don't match at the end\n  (\n   ^\n"
        "tuvo: error: line 4: invalid character at character 2\n  1?+1\n   ^\n"
        "tuvo: error: 2 of 5 lines could not be evaluated\n";
    const TemporaryFolder folder;
    folder.Write("formulas.txt", lines);
    const std::string file = folder.NarrowPath("formulas.txt");
    for (const ChildResult& run :
         {Tuvo("eval --file '" + file + "' a=4"), Tuvo("eval --file - a=4", lines), Tuvo("eval - a=4", lines)}) {
        EXPECT_EQ(run.output, output);
        EXPECT_EQ(run.errors, errors);
        EXPECT_EQ(run.exitCode, 1);
    }
    EXPECT_TRUE(Contains(Tuvo("eval --progress --file '" + file + "' a=4").errors, "tuvo: 20 %"));
    const ChildResult many = Tuvo("eval -", std::string(100'000, '\n') + std::string(30, ')') + "\n7");
    EXPECT_EQ(many.output, std::string(100'001, '\n') + "7\n");
}

TEST(TuvoEval, RefusesWhatItCannotUse)
{
    const struct
    {
        const char* line;
        int exitCode;
        const char* message;
    } rows[] = {
        {"", 2, "EXPR is required (see tuvo eval --help)"},
        {"1 x", 2, "\"x\" is not of the form name=value"},
        {"--file f.txt 1", 2, "\"1\" is not of the form name=value"},
        {"--file ''", 2, "--file: must not be empty"},
        {"1 --digits 0", 2, "--digits: Value 0 not in range"},
        {"--5", 2, "there is no option \"--5\""},
        {"--file no/such.txt", 1, "cannot read the file no/such.txt: "},
    };
    for (const auto& [line, exitCode, message] : rows) {
        const ChildResult run = Tuvo(std::string("eval ") + line);
        EXPECT_TRUE(Contains(run.errors, message)) << line << '\n' << run.errors;
        EXPECT_EQ(run.exitCode, exitCode) << line;
        EXPECT_EQ(run.output, "") << line;
    }
}

}  // namespace
