// tuvo params as its users meet it.
#include "support/TestFiles.h"
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class TuvoParams : public testing::Test
{
protected:
    ChildResult Run(const std::string& arguments) const
    {
        return Tuvo("params '" + m_folder.NarrowPath("a.config") + "' " + arguments);
    }
    void Write(const std::string& text) const { m_folder.Write("a.config", text); }
    std::string File() const { return ReadTextFile(m_folder.Path("a.config")); }

    TemporaryFolder m_folder;
};

TEST_F(TuvoParams, ListsAndAnswers)
{
    Write("# comment\nTrace Level:3\r\nb : x\ty\nb : \x01 z\n: e\n");
    const struct
    {
        const char *arguments, *output;
    } rows[] = {{"", "Trace Level : 3\nb : ? z\n"}, {"b 'Trace Level' b", "? z\n3\n? z\n"}};
    for (const auto& [arguments, output] : rows) {
        const ChildResult run = Run(arguments);
        EXPECT_EQ(run.output, output) << arguments;
        EXPECT_EQ(run.errors, "") << arguments;
        EXPECT_EQ(run.exitCode, 0) << arguments;
    }
    Write("");
    EXPECT_EQ(Run("").output, "");
}

TEST_F(TuvoParams, SetsAndRemoves)
{
    Write("a : 1\n\nb : 2\n");
    EXPECT_EQ(Run("b=3 'c d=4 = 5' --remove a b").output, "3\n");
    EXPECT_EQ(File(), "b : 3\nc d : 4 = 5\n");
    EXPECT_EQ(Run("--remove b --remove 'c d'").exitCode, 0);
    EXPECT_EQ(File(), "");
    Write("#c\na : 1\na : 2\n");
    EXPECT_EQ(Run("b=3 --drop-comments").exitCode, 0);
    EXPECT_EQ(File(), "a : 2\nb : 3\n");
    const std::string longest(1018, 'x');
    EXPECT_EQ(Run("a " + ("dd=" + longest)).output, "2\n");
    EXPECT_EQ(Run("dd").output, longest + '\n');
}

TEST_F(TuvoParams, RefusesWhatWouldBeLost)
{
    const std::string content = "#c\na : 1\na : 2\nb :\n";
    const struct
    {
        std::string content, arguments, error;
        int exitCode;
    } rows[] = {
        {content, "a=3", "has 3 lines that are no parameters or are repeated; --drop-comments", 1},
        {content, "none", "has no parameter \"none\"", 1},
        {"a : 1\n", "b=2 --remove none", "has no parameter \"none\"", 1},
        {"a : 1\n", "b=2 A", "has no parameter \"A\"", 1},
        {"a : 1\n", "a=", "\"\" cannot be the text of \"a\": it is empty", 2},
        {"a : 1\n", "'a= 1'", "\" 1\" cannot be the text", 2},
        {"a : 1\n", "'a=1\n2'", "\"1?2\" cannot be the text", 2},
        {"a : 1\n", "a:b=1", "\"a:b\" cannot be a name", 2},
        {"a : 1\n", "'#a=1'", "\"#a\" cannot be a name", 2},
        {"a : 1\n", "'a =1'", "\"a \" cannot be a name", 2},
        {"a : 1\n", "=1", "\"\" cannot be a name", 2},
        {"a : 1\n", "dd=" + std::string(1019, 'x'), "does not fit into the 1023 bytes of a line", 2},
        {"c:" + std::string(1021, 'x'), "a=1", "does not fit into the 1023 bytes of a line", 2},
        {"c:" + std::string(1021, ' ') + "a:1" + std::string(1020, ' ') + "#b", "a=2", "has 2 lines that are no", 1},
        {std::string("a : 1\0 b\n", 9), "a=2", "has a line that is no parameter", 1},
    };
    for (const auto& row : rows) {
        Write(row.content);
        const ChildResult run = Run(row.arguments);
        EXPECT_EQ(run.output, "") << row.arguments;
        EXPECT_TRUE(Contains(run.errors, row.error)) << run.errors;
        EXPECT_EQ(run.exitCode, row.exitCode) << row.arguments;
        EXPECT_EQ(File(), row.content);
    }
    EXPECT_EQ(Tuvo("params").exitCode, 2);
    const ChildResult missing = Tuvo("params missing.config a=1");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(Contains(missing.errors, "cannot read the file missing.config: ")) << missing.errors;
}

}  // namespace
