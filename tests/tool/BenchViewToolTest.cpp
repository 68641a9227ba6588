// tuvo bench-view as its users meet it.
#include "support/TestFiles.h"
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The attribute of each element that begins with `start`, as a number.
std::vector<double> Attributes(const std::string& svg, const std::string& start, const std::string& name)
{
    std::vector<double> values;
    for (std::size_t at = svg.find(start); at != svg.npos; at = svg.find(start, at + 1))
        values.push_back(std::stod(svg.substr(svg.find(' ' + name + "=\"", at) + name.size() + 3)));
    return values;
}

// What stands between each pair of tags, joined by "|".
std::string Texts(const std::string& svg, const std::string& tag)
{
    std::string texts;
    for (std::size_t at = svg.find("<" + tag); at != svg.npos; at = svg.find("<" + tag, at + 1)) {
        const std::size_t start = svg.find('>', at) + 1;
        texts += svg.substr(start, svg.find("</" + tag, start) - start) + '|';
    }
    return texts;
}

constexpr char Box[] = "<rect x";  // of sections; bars of shares follow each

TEST(TuvoBenchView, DrawsSectionsByTime)
{
    const ChildResult run = Tuvo("bench-view -",
                                 "10s (internal: 5s): Chrono 'all'\n"
                                 "   2s (internal: 1s): 'Step one'\n"
                                 "      1s: Chrono 'a'\n"
                                 "   9.5s (internal: 4s): 'Step two'\n"
                                 "      4s: Chrono 'b'\n"
                                 "   10s: End\n");
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(
        Texts(run.output, "title"),
        "all\n10 s (own 5 s)|a\n1 s|Step one\nat 2 s (own 1 s)|b\n4 s|Step two\nat 9.5 s (own 4 s)|End\nat 10 s|");
    const std::vector<double> tops = Attributes(run.output, Box, "y");
    const std::vector<double> heights = Attributes(run.output, Box, "height");
    ASSERT_EQ(tops.size(), 6U);  // three boxes and their bars
    EXPECT_EQ(heights, (std::vector<double>{720, 2, 72, 2, 288, 2}));
    EXPECT_EQ(tops[2], tops[0]);        // begins with its section
    EXPECT_EQ(tops[4], tops[0] + 144);  // behind the step at 2 s
    const std::vector<double> widths = Attributes(run.output, Box, "width");
    EXPECT_NEAR(widths[5], widths[4] * 0.4, 0.1);
}

TEST(TuvoBenchView, EverySectionCanBeRead)
{
    std::string log = "200s (internal: 199.9s): Chrono 'all'\n";
    for (int i = 0; i < 200; ++i)
        log += "   0.0005s: Chrono 'section " + std::to_string(i) + "'\n";
    const std::string svg = Tuvo("bench-view -", log).output;
    const std::vector<double> tops = Attributes(svg, Box, "y");
    ASSERT_EQ(tops.size(), 402U);
    for (std::size_t i = 4; i < tops.size(); i += 2)
        EXPECT_EQ(tops[i] - tops[i - 2], 20) << i;
    EXPECT_TRUE(Contains(svg, ">section 199  0.0005 s</text>"));
}

TEST(TuvoBenchView, FindsHistoriesInALog)
{
    const struct
    {
        const char *log, *names;
    } rows[] = {
        {"started\n1s: Chrono 'a'\nend", "a\n1 s|"},
        {"1s: Chrono 'a'\r\n   1s: Step x\r\n", "a\n1 s|Step x\nat 1 s|"},
        {"1s: Chrono 'a'\n2e-05s: Chrono 'b'\n", "a\n1 s|b\n2e-05 s|"},
        {"12:00 ----------------------------------\n12:01 1s: Chrono 'a'\n12:02    1s: End\n", "a\n1 s|End\nat 1 s|"},
        {"1s: Chrono 'it's'\n1s: Chrono 'cut\nline'\n", "it's\n1 s|cut\n1 s|"},
        {"1s: Chrono '<&>\"\x01\xFF\xC3\xA9'\n", "&lt;&amp;&gt;\"\xEF\xBF\xBD\xEF\xBF\xBD\xC3\xA9\n1 s|"},
        // Steps without a section, numbers that are none, the summary.
        {"   1s: End\n1s: Chrono 'a'\n      1s: End\nxs: Chrono 'b'\n1s (internal: s): Chrono 'c'\ninfs: Chrono 'd'\n"
         "----------------------------------\nBenchmark summary:\n----------------------------------\n"
         "1.000s : 1 calls of    a\n   1s: End\n",
         "a\n1 s|"},
    };
    for (const auto& [log, names] : rows) {
        const ChildResult run = Tuvo("bench-view -", log);
        EXPECT_EQ(Texts(run.output, "title"), names) << log;
        EXPECT_EQ(run.errors, "") << log;
    }
    std::string deep;
    for (std::size_t depth = 0; depth < 2000; ++depth)
        deep += std::string(3 * depth, ' ') + "1s: Chrono 'x'\n";
    EXPECT_EQ(Attributes(Tuvo("bench-view -", deep).output, Box, "x").size(), 4000U);
}

TEST(TuvoBenchView, WritesAFile)
{
    const TemporaryFolder folder;
    folder.Write("log", "1s: Chrono 'a'\n");
    const std::string log = folder.NarrowPath("log"), picture = folder.NarrowPath("picture.svg");
    const ChildResult run = Tuvo("bench-view '" + log + "' -o '" + picture + "'");
    EXPECT_EQ(run.output + run.errors, "");
    const std::string svg = ReadTextFile(folder.Path("picture.svg"));
    EXPECT_EQ(svg.find("<svg xmlns=\"http://www.w3.org/2000/svg\""), 0U);
    EXPECT_EQ(svg.rfind("</svg>\n"), svg.size() - 7);

    const struct
    {
        std::string line;
        int exitCode;
        const char* message;
    } rows[] = {
        {"bench-view", 2, "LOG is required (see tuvo bench-view --help)"},
        {"bench-view ''", 2, "must not be empty"},
        {"bench-view '" + picture + "'", 1, "there is no benchmark history in "},
        {"bench-view '" + picture + ".none'", 1, "cannot read "},
        {"bench-view '" + log + "' -o '" + folder.NarrowPath() + "'", 1, "cannot write "},
    };
    for (const auto& [line, exitCode, message] : rows) {
        const ChildResult failed = Tuvo(line);
        EXPECT_TRUE(Contains(failed.errors, message)) << line << '\n' << failed.errors;
        EXPECT_EQ(failed.exitCode, exitCode) << line;
    }
}

}  // namespace
