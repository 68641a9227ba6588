// tuvo ids as its users meet it.
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(TuvoIds, ShowsWhatAListMeans)
{
    const struct
    {
        const char *line, *output;
    } rows[] = {
        {"'5 3-1,3:4'", "5 1 2 3 4\n"},
        {"'5 3-1,3:4' --keep-duplicates", "5 1 2 3 3 4\n"},
        {"'5 3-1,3:4' --compact", "5,1-3,4\n"},
        {"'5 3-1,3:4' --count", "5\n"},
        {"0", "\n"},
        {"0 --count", "0\n"},
        {"1,,3:2,x --lenient", "1 0 2 3 0\n"},
        {"'1;3..5' --lenient --separator ; --range .", "1 3 4 5\n"},
        {"'' --lenient --count", "0\n"},
        {"1:10 --step 3", "1 4 7\n"},
        {"1/9+20 --step 4 --separator + --range /", "1 5\n"},
        {"1:3 --step 4", "\n"},
        {"1? --wildcard --compact", "10-18,19\n"},
    };
    for (const auto& [line, output] : rows) {
        const ChildResult run = Tuvo(std::string("ids ") + line);
        EXPECT_EQ(run.output, output) << line;
        EXPECT_EQ(run.errors, "") << line;
        EXPECT_EQ(run.exitCode, 0) << line;
    }
}

TEST(TuvoIds, ReadsStandardInputAsOneList)
{
    EXPECT_EQ(Tuvo("ids -", "5 7-9\n\n1,8\n").output, "5 7 8 9 1\n");
    EXPECT_EQ(Tuvo("ids - --lenient", "5,7:8\n").output, "5 7 8\n");
    std::string text;
    for (int id = 200'000; id > 0; --id)
        text += std::to_string(id) + '\n';
    EXPECT_EQ(Tuvo("ids - --count", text).output, "200000\n");
}

TEST(TuvoIds, PointsToTheItemThatIsWrong)
{
    const struct
    {
        const char *text, *errors;
    } rows[] = {
        {"1,2, x4\n", "item 3 at character 6: \"x\" does not belong in a list of ids\n  1,2, x4\n       ^\n"},
        {"5 -3", "item 2 at character 3: there is no id in front of \"-\"\n  5 -3\n    ^\n"},
        {"1\t2", "item 1 at character 2: \"?\" does not belong in a list of ids\n  1?2\n   ^\n"},
        {"7,1234567890-9", "item 2 at character 3: \"1234567890\" has more than 9 digits\n  7,1234567890-9\n    ^\n"},
        {"1-0000000002", "item 1 at character 3: \"0000000002\" has more than 9 digits\n  1-0000000002\n    ^\n"},
        {"1:2-0000000003", "item 1 at character 5: \"0000000003\" has more than 9 digits\n  1:2-0000000003\n      ^\n"},
        {"1,2\n3 4a,\n5\n", "line 2: item 4 at character 4: \"a\" does not belong in a list of ids\n  3 4a,\n     ^\n"},
        {"x\n1", "line 1: item 1 at character 1: \"x\" does not belong in a list of ids\n  x\n  ^\n"},
        {",,,,,,,,,,,5",
         "item 1 at character 1: there are too many commas in front of the first id\n  ,,,,,,,,,,,5\n  ^\n"},
        {" , ", "there is no id in the list\n"},
        {"", "there is no id in the list\n"},
    };
    for (const auto& [text, errors] : rows) {
        const ChildResult run = Tuvo("ids -", text);
        EXPECT_EQ(run.errors, std::string("tuvo: error: ") + errors) << text;
        EXPECT_EQ(run.output, "") << text;
        EXPECT_EQ(run.exitCode, 1) << text;
    }
    std::string longList;
    for (int id = 1; id < 100; ++id)
        longList += std::to_string(id) + ',';
    const ChildResult run = Tuvo("ids -", longList + "x," + longList);
    EXPECT_TRUE(Contains(run.errors, "item 100 at character 289:")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, ",99,x,1,2,")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, '\n' + std::string(45, ' ') + "^\n")) << run.errors;
}

TEST(TuvoIds, RefusesWhatDoesNotGoTogether)
{
    const struct
    {
        const char* line;
        int exitCode;
        const char* message;
    } rows[] = {
        {"", 2, "TEXT is required (see tuvo ids --help)"},
        {"1 2", 2, "\"2\" is one argument too many"},
        {"1 --compact --count", 2, "--compact and --count exclude each other"},
        {"1 --separator ;", 2, "--separator goes with --lenient or --step"},
        {"1 --lenient --range ..", 2, "--range is one character, not \"..\""},
        {"1? --wildcard --step 2", 2, "--wildcard goes neither with --lenient nor with --step"},
        {"1 --lenient --keep-duplicates", 2, "keep duplicates without --keep-duplicates"},
        {"1:9 --step 0", 2, "--step: Value 0 not in range"},
        {"12 --wildcard", 1, "the pattern \"12\" has no \"?\""},
    };
    for (const auto& [line, exitCode, message] : rows) {
        const ChildResult run = Tuvo(std::string("ids ") + line);
        EXPECT_TRUE(Contains(run.errors, message)) << line << '\n' << run.errors;
        EXPECT_EQ(run.exitCode, exitCode) << line;
        EXPECT_EQ(run.output, "") << line;
    }
}

}  // namespace
