#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

namespace {

using Arguments = std::vector<std::wstring>;

CHILD_SCENARIO(PrintArguments)
{
    for (const std::string& argument : ChildArguments())
        std::printf("<%s>\n", argument.c_str());
    return 0;
}

// Copies its input to its output, and exits with the number of bytes.
CHILD_SCENARIO(Echo)
{
    int count = 0;
    for (int byte; (byte = std::getchar()) != EOF; ++count)
        std::putchar(byte);
    std::fputs("done", stderr);
    return count;
}

CHILD_SCENARIO(PrintProcessId)
{
    std::printf("%u", platform::ProcessId());
    return 0;
}

std::string Bracketed(const Arguments& arguments)
{
    std::string text;
    for (const std::wstring& argument : arguments)
        text += '<' + platform::Narrow(argument) + ">\n";
    return text;
}

TEST(RunProgram, ArgumentsArriveAsTheyAre)
{
    const Arguments hard = {L"",      L"a b",       L"\t",       L"\"",      L"a\"b",       L"\\",      L"\\\\",
                            L"\\\"",  L"\\\\\"",    L"a b\\",    L"a b\\\\", L"c:\\x y\\",  L"'$HOME'", L"%PATH%",
                            L"^&|<>", L"\"a b\\\"", L"\u00E9 x", L"-option", L"a\\\\b c\"d"};
    EXPECT_EQ(RunChild("PrintArguments", {}, hard).output, Bracketed(hard));

    std::mt19937 random(7);
    Arguments arguments(300);
    for (std::wstring& argument : arguments)
        for (std::size_t length = random() % 9; length > 0; --length)
            argument += L"\\\\\" ab"[random() % 6];
    EXPECT_EQ(RunChild("PrintArguments", {}, arguments).output, Bracketed(arguments));
}

TEST(RunProgram, StreamsAreRedirectedAndTheExitStatusComesBack)
{
    const ChildResult echoed = RunChild("Echo", {}, {}, "some text");
    EXPECT_EQ(echoed.exitCode, 9);
    EXPECT_EQ(echoed.output, "some text");
    EXPECT_EQ(echoed.errors, "done");

    const TemporaryFolder folder;
    const std::wstring output = folder.Write("out put", "replaced whatever its length");
    const std::wstring errors = folder.Path("errors");
    const int emptyInput = platform::RunProgram(ChildCommand("Echo"), {nullptr, output.c_str(), errors.c_str()});
    EXPECT_EQ(emptyInput, 0);
    EXPECT_EQ(ReadBinaryFile(output), "");
    EXPECT_NE(std::to_string(platform::ProcessId()), RunChild("PrintProcessId").output);
}

TEST(RunProgram, GivesMinusOneWhenNothingWasStarted)
{
    const TemporaryFolder folder;
    const std::wstring missing = folder.Path("missing folder/file");
    EXPECT_EQ(platform::RunProgram({}), -1);
    EXPECT_EQ(platform::RunProgram({L""}), -1);
    EXPECT_EQ(platform::RunProgram({missing}), -1);
    EXPECT_EQ(platform::RunProgram({L"no-program-of-this-name"}), -1);
    EXPECT_EQ(platform::RunProgram({folder.Path()}), -1) << "a directory";
    EXPECT_EQ(platform::RunProgram({folder.Write("text.txt", "no program")}), -1);
    const std::wstring script = folder.Write("script.bat", "exit 0");
    EXPECT_EQ(platform::RunProgram({script}), -1);
    EXPECT_EQ(platform::RunProgram({script + L". "}), -1);
    EXPECT_EQ(platform::RunProgram(ChildCommand("Echo"), {missing.c_str(), nullptr, nullptr}), -1);
    EXPECT_EQ(platform::RunProgram(ChildCommand("Echo"), {nullptr, missing.c_str(), nullptr}), -1);
    EXPECT_EQ(platform::RunProgram(ChildCommand("Echo"), {nullptr, nullptr, missing.c_str()}), -1);
}

TEST(RunProgram, SearchesANameAlongThePath)
{
    Arguments command = ChildCommand("PrintArguments", {L"found"});
    const std::size_t nameAt = command[0].find_last_of(L"/\\") + 1;
    const std::wstring folder = command[0].substr(0, nameAt);
    command[0].erase(0, nameAt);
    EXPECT_EQ(RunAndCapture(command, {{L"PATH", folder}}).output, "<found>\n");
    EXPECT_EQ(RunAndCapture(command, {{L"PATH", folder + L"none"}}).exitCode, -1);
}

TEST(RunCommand, GivesTheExitStatusOfTheShell)
{
    EXPECT_EQ(platform::RunCommand(L"exit 3"), 3);
    EXPECT_EQ(platform::RunCommand(L"cd ."), 0);
    EXPECT_EQ(platform::RunCommand(nullptr), -1);
}

}  // namespace
