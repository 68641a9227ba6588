// tuvo checksum as its users meet it.
#include "tool/TuvoProgram.h"

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What Windows reads otherwise when it takes it for text.
constexpr char Lines[] = "a\r\nb\n\x1A\x63\n";

class TuvoChecksum : public testing::Test
{
protected:
    TuvoChecksum()
    {
        m_folder.Write("digits", "123456789");
        m_folder.Write("empty", "");
        m_folder.Write("lines",
                       "a\r\nb\n\x1A"
                       "c\n");
    }
    // Runs the command; F/ in the line and in what it writes stands for the folder.
    ChildResult Run(std::string line, const std::string& input = {}) const
    {
        Replace(line, "F/", m_folder.NarrowPath());
        ChildResult run = Tuvo("checksum " + line, input);
        Replace(run.output, m_folder.NarrowPath(), "F/");
        Replace(run.errors, m_folder.NarrowPath(), "F/");
        return run;
    }
    void WriteList(std::string text) const
    {
        Replace(text, "F/", m_folder.NarrowPath());
        m_folder.Write("list", text);
    }

    TemporaryFolder m_folder;

private:
    static void Replace(std::string& text, const std::string& from, const std::string& to)
    {
        for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
            text.replace(at, from.size(), to);
    }
};

TEST_F(TuvoChecksum, ShowsTheChecksumOfEachFile)
{
    EXPECT_EQ(Run("F/digits").output, "340bc6d9  F/digits\n");
    EXPECT_EQ(Run("--final F/digits F/empty F/lines").output,
              "cbf43926  F/digits\n00000000  F/empty\n8ad40e7f  F/lines\n");
    EXPECT_EQ(Run("- --final", Lines).output, "8ad40e7f  -\n");
    const ChildResult run = Run("F/none F/digits .");
    EXPECT_EQ(run.output, "340bc6d9  F/digits\n") << "the others are shown all the same";
    EXPECT_TRUE(Contains(run.errors, "tuvo: error: cannot read F/none: ")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, "tuvo: error: cannot read .: ")) << run.errors;
    EXPECT_EQ(run.exitCode, 1);
}

TEST_F(TuvoChecksum, TellsHowFarItIsWhenAsked)
{
    const ChildResult run = Run("--progress F/digits");
    EXPECT_EQ(run.output, "340bc6d9  F/digits\n");
    EXPECT_TRUE(run.errors.starts_with("tuvo: 100 %")) << run.errors;
    EXPECT_EQ(Run("--progress F/empty").errors, "");
}

TEST_F(TuvoChecksum, ChecksWhatItHasShown)
{
    for (const char* const kind : {"", "--final "}) {
        m_folder.Write("list", Tuvo(std::string("checksum ") + kind + m_folder.NarrowPath("digits") + ' ' +
                                    m_folder.NarrowPath("lines"))
                                   .output);
        const ChildResult run = Run(std::string(kind) + "--check F/list");
        EXPECT_EQ(run.output, "F/digits: OK\nF/lines: OK\n");
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.exitCode, 0);
    }
    WriteList("\r\n340BC6D9 *F/digits\r\nffffffff\tF/lines\r\n340bc6d9 F/none\r\n");
    const ChildResult run = Run("--check F/list");
    EXPECT_EQ(run.output, "F/digits: OK\nF/lines: DIFFERS, now 752bf180\n");
    EXPECT_TRUE(Contains(run.errors, "cannot read F/none: ")) << run.errors;
    EXPECT_TRUE(Contains(run.errors, "2 of 3 files do not have the checksum of the list\n")) << run.errors;
    EXPECT_EQ(run.exitCode, 1);
    WriteList("cbf43926  F/digits\n");
    EXPECT_TRUE(Contains(Run("--check F/list").errors,
                         "1 of 1 files do not have the checksum of the list; was it made with --final?"));
}

TEST_F(TuvoChecksum, SaysWhatIsNoList)
{
    const struct
    {
        const char *text, *message;
    } rows[] = {
        {"340bc6d9  F/digits\n340bc6d  x\n",
         "standard input:2: a line of a list is a checksum of 8 digits, a blank and a name, not \"340bc6d  x\"\n"},
        {"340bc6d9\n", "standard input:1: a line"},
        {"340bc6d9  \n", "standard input:1: a line"},
        {"340bc6d9x y\n", "standard input:1: a line"},
        {"-40bc6d9 y\n", "standard input:1: a line"},
        {"\n", "there is no checksum in standard input\n"},
    };
    for (const auto& [text, message] : rows) {
        const ChildResult run = Run("--check -", text);
        EXPECT_TRUE(Contains(run.errors, message)) << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.exitCode, 1);
    }
    EXPECT_EQ(Run("").exitCode, 2);
    EXPECT_TRUE(Contains(Run("F/digits --check F/list").errors, "--check takes the files from its list"));
}

}  // namespace
