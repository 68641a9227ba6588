// tuvo leaks as its users meet it.
#include "support/TestFiles.h"
#include "tool/TuvoProgram.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Report(const std::string& lines, const std::string& total, const std::string& mode = "Accurate Check ")
{
    return "----Memory leak information -- " + mode + "Reported at 09:05 on 21-11-2026\n" + lines + "===> Total of " +
           total + " bytes leaked\n";
}

std::string Record(const std::string& size, const std::string& times, const std::string& place)
{
    return size + " bytes [" + times + " times] allocated in " + place + " is not freed: Sequence index = 5\n";
}

// With a call stack, as append files have it.
std::string StackRecord(const std::string& size, const std::string& times, const std::string& place)
{
    return size + " bytes [" + times + " times] allocated through CreateObject in " + place +
           " is not freed: Sequence index = 5\n\n  called from\n    Parts::Add at 7 in Parts.cpp\n    ? - NO_INFO -\n";
}

ChildResult Leaks(const std::string& report, const std::string& options = {})
{
    return Tuvo("leaks - " + options, report);
}

TEST(TuvoLeaks, AddsUpWhatOnePlaceLeaked)
{
    const std::string first = Report(Record("24", "2", "b.cpp at 7") + Record("8", "1", "a.cpp at 7") +
                                         Record("40", "1", "b.cpp at 7") + Record("8", "1", "a.cpp at 6"),
                                     "104");
    const std::string second =
        Report(StackRecord("100", "3", "b.cpp at 8") + StackRecord("1", "1", "a.cpp at 6"), "301", "");
    const struct
    {
        std::string report, options, rows;
    } rows[] = {
        {first, "", "88,3,b.cpp,7\n8,1,a.cpp,6\n8,1,a.cpp,7\n"},
        {first + second, "", "300,3,b.cpp,8\n88,3,b.cpp,7\n9,2,a.cpp,6\n8,1,a.cpp,7\n"},
        {first + second, "--last", "300,3,b.cpp,8\n1,1,a.cpp,6\n"},
        {Report(Record("-2", "1", "big at -1"), "4294967294", "Fast Check "), "", "4294967294,1,big,-1\n"},
        {Report(Record("1", "1", "a \"b\", at 3 at 4"), "1", "Check with double pass "), "",
         "1,1,\"a \"\"b\"\", at 3\",4\n"},
    };
    for (const auto& [report, options, expected] : rows) {
        std::string withCarriageReturns;
        for (const char c : report)
            withCarriageReturns += c == '\n' ? "\r\n" : std::string(1, c);
        for (const std::string& text : {report, withCarriageReturns}) {
            const ChildResult run = Leaks(text, options + " --csv");
            EXPECT_EQ(run.output, "bytes,blocks,file,line\n" + expected) << text;
            EXPECT_EQ(run.errors, "");
            EXPECT_EQ(run.exitCode, 1);
        }
    }
}

TEST(TuvoLeaks, ReadsTheLastReportBehindThoseThatWereCutShort)
{
    const std::string whole = Report(StackRecord("100", "3", "b.cpp at 8"), "300");
    const std::size_t headSize = whole.find('\n');
    for (std::size_t size = 1; size < whole.size(); size += 9) {
        const ChildResult last = Leaks(whole + whole.substr(0, size) + whole, "--last --csv");
        EXPECT_EQ(last.output, "bytes,blocks,file,line\n300,3,b.cpp,8\n") << size << ": " << last.errors;
        const std::string errors = Leaks(whole + whole.substr(0, size) + whole).errors;
        EXPECT_TRUE(Contains(errors, size < headSize ? "a leak report begins with" : "it is not whole")) << errors;
    }
}

TEST(TuvoLeaks, ShowsThreeForms)
{
    const std::string report =
        Report(Record("4096", "2", "Parts.cpp at 77") + Record("1", "1", "a\"\\\x01 at 5"), "8193");
    EXPECT_EQ(Leaks(report).output,
              "1 report of 09:05 on 21-11-2026\n\n"
              "bytes  blocks  file       line\n"
              " 8192       2  Parts.cpp    77\n"
              "    1       1  a\"\\?          5\n\n"
              "8193 bytes in 3 blocks from 2 places\n");
    EXPECT_EQ(Leaks(report, "--json").output,
              "{\n  \"reports\": 1,\n  \"bytes\": 8193,\n  \"blocks\": 3,\n  \"places\": [\n"
              "    {\"bytes\": 8192, \"blocks\": 2, \"file\": \"Parts.cpp\", \"line\": 77},\n"
              "    {\"bytes\": 1, \"blocks\": 1, \"file\": \"a\\u0022\\u005c\\u0001\", \"line\": 5}\n  ]\n}\n");
    if (!OnWindows()) {
        const std::string names =
            Leaks(Report(Record("1", "1", "\xC3\xA9\xF0\x9F\x94\xA9\xFF at 5"), "1"), "--json").output;
        EXPECT_TRUE(Contains(names, "\"\\u00e9\\ud83d\\udd29\\udcff\"")) << names;
    }
}

TEST(TuvoLeaks, HasNothingToFail)
{
    const ChildResult none = Leaks(Report("", "0"));
    EXPECT_EQ(none.output, "1 report of 09:05 on 21-11-2026\nNo leaks\n");
    EXPECT_EQ(none.exitCode, 0);
    EXPECT_EQ(Leaks(Report("", "0") + Report("", "0"), "--csv").output, "bytes,blocks,file,line\n");

    const TemporaryFolder folder;
    const std::string missing = "leaks '" + folder.NarrowPath("none.txt") + "' ";
    EXPECT_EQ(Tuvo(missing + "--if-exists").output, "No report\nNo leaks\n");
    EXPECT_EQ(Tuvo(missing + "--if-exists").exitCode, 0);
    EXPECT_EQ(Tuvo(missing + "--if-exists --json").output,
              "{\n  \"reports\": 0,\n  \"bytes\": 0,\n  \"blocks\": 0,\n  \"places\": []\n}\n");
    for (const char* const line : {"", "--against -"}) {
        const ChildResult run = Tuvo(missing + line);
        EXPECT_TRUE(Contains(run.errors, "cannot read " + folder.NarrowPath("none.txt") + ": ")) << run.errors;
        EXPECT_EQ(run.exitCode, 1);
    }
}

TEST(TuvoLeaks, ShowsWhatIsNew)
{
    const TemporaryFolder folder;
    folder.Write("old.txt",
                 Report(Record("8", "5", "a at 1") + Record("8", "1", "b at 2") + Record("9", "1", "c at 3"), "57"));
    const struct
    {
        std::string records, total, rows, summary;
    } rows[] = {
        {Record("8", "4", "a at 1"), "32", "", "Nothing new. In all 32 bytes in 4 blocks, before 57 bytes in 7 blocks"},
        {Record("8", "5", "a at 1"), "40", "", "Nothing new. In all 40 bytes in 5 blocks, before 57 bytes in 7 blocks"},
        {Record("100", "1", "c at 3") + Record("9", "1", "c at 4") + Record("8", "2", "b at 2"), "125",
         "100,1,9,1,c,3\n9,1,0,0,c,4\n16,2,8,1,b,2\n",
         "3 places with more than before. In all 125 bytes in 4 blocks, before 57 bytes in 7 blocks"},
        {Record("1", "6", "a at 1"), "6", "6,6,40,5,a,1\n",
         "1 place with more than before. In all 6 bytes in 6 blocks, before 57 bytes in 7 blocks"},
    };
    for (const auto& [records, total, expected, summary] : rows) {
        const std::string against = "--against '" + folder.NarrowPath("old.txt") + "'";
        const ChildResult run = Leaks(Report(records, total), against + " --csv");
        EXPECT_EQ(run.output, "bytes,blocks,bytesBefore,blocksBefore,file,line\n" + expected);
        EXPECT_EQ(run.exitCode, expected.empty() ? 0 : 1);
        EXPECT_TRUE(Contains(Leaks(Report(records, total), against).output, '\n' + summary + '\n')) << summary;
    }
    const std::string same =
        "leaks '" + folder.NarrowPath("old.txt") + "' --against '" + folder.NarrowPath("old.txt") + '\'';
    EXPECT_EQ(Tuvo(same).exitCode, 0);
}

TEST(TuvoLeaks, NamesTheLineThatIsWrong)
{
    const std::string head = Report("", "");
    const std::string start = head.substr(0, head.find('\n') + 1);
    const std::string record = Record("8", "1", "a at 1");
    const std::string noLine = ": this is no line of a leak report";
    const struct
    {
        std::string text, problem;
    } rows[] = {
        {"text\n",
         "standard input:1: a leak report begins with \"----Memory leak information -- \", not with this line"},
        {Report(record, "8") + "more\n", "standard input:4: a leak report begins with"},
        {start + "  called from\n", "standard input:2" + noLine},
        {start + record + "    frame\n", "standard input:3" + noLine},
        {Report(record + Record("99999999999", "1", "a at 1"), "8"), "standard input:3" + noLine},
        {Report(Record("8", "1", "a at "), "8"), "standard input:2" + noLine},
        {Report(Record("8", "1", "a at 1x"), "8"), "standard input:2" + noLine},
        {Report(Record("", "1", "a at 1"), "8"), "standard input:2" + noLine},
        {Report(record, "-8"), "standard input:3" + noLine},
        {Report(record, "9"), "standard input:3: the total is 9 bytes, but the records of the report add up to 8"},
        {Report(Record("-1", "-1", "a at 1") + Record("-1", "-1", "a at 1"), "0"),
         "standard input:3: the sizes add up to more than 64 bits can hold"},
        {start + record, "standard input:2: the report that begins in line 1 has no total: it is not whole"},
        {start + Report(record, "8"), "standard input:2: the report that begins in line 1 has no total"},
        {"", "there is no leak report in standard input"},
    };
    for (const auto& [text, problem] : rows) {
        const ChildResult run = Leaks(text);
        EXPECT_EQ(run.errors.substr(0, 13 + problem.size()), "tuvo: error: " + problem) << text;
        EXPECT_EQ(run.output, "") << text;
        EXPECT_EQ(run.exitCode, 1) << text;
    }
    const std::string whole = Report(record, "8");
    for (std::size_t size = 1; size < whole.size() - 1; size += 7)
        EXPECT_NE(Leaks(whole.substr(0, size)).errors, "") << size << " bytes of a report";
}

TEST(TuvoLeaks, RefusesWhatDoesNotGoTogether)
{
    const struct
    {
        const char *line, *message;
    } rows[] = {
        {"leaks", "REPORT is required (see tuvo leaks --help)"},
        {"leaks ''", "must not be empty"},
        {"leaks a b", "\"b\" is one argument too many"},
        {"leaks a --json --csv", "--json and --csv exclude each other"},
        {"leaks - --against -", "only one of the reports can come from standard input"},
        {"leaks a --jsn", "there is no option \"--jsn\"; did you mean \"--json\"?"},
    };
    for (const auto& [line, message] : rows) {
        const ChildResult run = Tuvo(line);
        EXPECT_TRUE(Contains(run.errors, message)) << line << '\n' << run.errors;
        EXPECT_EQ(run.exitCode, 2) << line;
    }
}

}  // namespace
