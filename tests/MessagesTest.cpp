#include <TuvoUtil/Messages.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/RecordingUpdater.h"

#include <basutl/BuLocalize.h>
#include <basutl/BuLogger.h>
#include <basutl/BuMessage.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

// ---- Posting -------------------------------------------------------------------------------------------------------

TEST(Messages, ReachTheUpdaterFormatted)
{
    RecordingUpdater updater;
    updater.SetResponse(TUVO_RESPONSE_YES);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, L"%d of %s", 3, L"hull");
    TuvoWriteConsoleLinkMessage(TUVO_MESSAGE_INFORMATION, L"<a>%s</a>", L"deck.inp");
    TuvoWritePromptMessage(TUVO_MESSAGE_INFORMATION, L"pick %c", L'A');
    EXPECT_EQ(TuvoPostMessageBox(0x40, L"Title", L"%g", 0.5), TUVO_RESPONSE_YES);
    EXPECT_EQ(TuvoPostForcedMessageBox(0, nullptr, L"%S", "narrow"), TUVO_RESPONSE_YES);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, nullptr);
    EXPECT_EQ(updater.TakeLines(), (Lines{"console 1: 3 of hull", "console 2: <a>deck.inp</a>", "prompt 2: pick A",
                                          "box 64 [Title]: 0.5", "forced box 0 (no caption): narrow", "console 0: "}));
}

TEST(Messages, AreNotEvenFormattedWithoutUpdater)
{
    ASSERT_EQ(TuvoEnvUpdater::GetUpdater(), nullptr);
    const auto* const unreadable = reinterpret_cast<const wchar_t*>(std::uintptr_t{8});
    for (const auto post : {TuvoWriteConsoleMessage, TuvoWriteConsoleLinkMessage, TuvoWritePromptMessage})
        post(TUVO_MESSAGE_ERROR, L"%s", unreadable);
    for (const auto post : {TuvoPostMessageBox, TuvoPostForcedMessageBox})
        EXPECT_EQ(post(0, L"", L"%s", unreadable), TUVO_RESPONSE_NONE);
}

TEST(Messages, PromptsAloneAreBlocked)
{
    RecordingUpdater updater;
    const TuvoBlockAllPrompts outer;
    EXPECT_EQ(TuvoEnvIsPromptsBlocked(), 1);
    TuvoWritePromptMessage(TUVO_MESSAGE_ERROR, L"dropped");
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"written");
    TuvoPostMessageBox(0, L"Title", L"shown");
    {
        const TuvoBlockAllPrompts inner;
    }
    EXPECT_EQ(TuvoEnvIsPromptsBlocked(), 0);  // hosts count on prompts coming back with the inner guard
    TuvoWritePromptMessage(TUVO_MESSAGE_ERROR, L"asked");
    EXPECT_EQ(updater.TakeLines(), (Lines{"console 0: written", "box 0 [Title]: shown", "prompt 0: asked"}));
}

CHILD_SCENARIO(DiagnosticMessages)
{
    BuSetTranslator([](const wchar_t*, int) { return L"translated"; });
    RecordingUpdater updater;
    TuvoPostDiagnosticMessage(TUVO_MESSAGE_ERROR, L"%d", 1);
    TuvoPostDiagnosticMessage(TUVO_MESSAGE_WARNING, L"%d", 2);
    platform::SetEnvironmentValue(L"QD_DVPWARNING_ENABLE", L"1");  // too late to have an effect
    TuvoPostDiagnosticMessage(TUVO_MESSAGE_INFORMATION, L"%d", 3);
    for (const std::string& line : updater.TakeLines())
        std::printf("%s\n", line.c_str());
    return TuvoIsDvpWarningEnabled();
}

TEST(DiagnosticMessages, ComeWhenTheSwitchIsOnAtTheFirstUse)
{
    const ChildResult off = RunChild("DiagnosticMessages", {{L"QD_DVPWARNING_ENABLE", std::nullopt}});
    EXPECT_EQ(off.exitCode, 0);
    EXPECT_EQ(off.output, "");
    const ChildResult on = RunChild("DiagnosticMessages", {{L"QD_DVPWARNING_ENABLE", L"yes"}});
    EXPECT_EQ(on.exitCode, 1);
    EXPECT_EQ(on.output, "forced box 16 [Error]: 1\nconsole 1: 2\nconsole 2: 3\n");
}

// ---- The updater ---------------------------------------------------------------------------------------------------

// The entry of a virtual operation in the table, which its pointer holds, counted behind the two of the destructor.
template <typename Operation>
std::uintptr_t SlotOf(Operation TuvoEnvUpdater::*operation)
{
    std::uintptr_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    return (offset - 1) / sizeof(void*) - 1;
}

TEST(TuvoEnvUpdater, KeepsItsSlots)
{
    const std::uintptr_t slots[] = {
        SlotOf(&TuvoEnvUpdater::WriteConsoleMessage),  SlotOf(&TuvoEnvUpdater::WritePromptMessage),
        SlotOf(&TuvoEnvUpdater::PostMessageBox),       SlotOf(&TuvoEnvUpdater::CreateProcessWithOption),
        SlotOf(&TuvoEnvUpdater::GetUserEnvDirectory),  SlotOf(&TuvoEnvUpdater::KillProcess),
        SlotOf(&TuvoEnvUpdater::CheckProcess),         SlotOf(&TuvoEnvUpdater::GetCopyright),
        SlotOf(&TuvoEnvUpdater::GetHomeDirectoryPath), SlotOf(&TuvoEnvUpdater::GetTempDirectoryPath),
        SlotOf(&TuvoEnvUpdater::GetLogDirectoryPath)};
    std::uintptr_t expected = 0;
    for (const std::uintptr_t slot : slots)
        EXPECT_EQ(slot, ++expected);
}

const wchar_t* (*const textServices[])() = {VEnvGetCopyright, VEnvGetHomeDirectoryPath, VEnvGetTempDirectoryPath,
                                            VEnvGetLogDirectoryPath};

TEST(HostServices, AreEmptyWithoutUpdaterAndByDefault)
{
    class DefaultUpdater : public TuvoEnvUpdater
    {};
    DefaultUpdater updater;
    for (const int answer : {-1, 0}) {
        TuvoEnvUpdater::SetUpdater(answer == 0 ? &updater : nullptr);
        void* handle = nullptr;
        int number = 1;
        BuString directory(L"as before");
        EXPECT_EQ(VEnvCreateProcessWithOption("a", "b", {}, &handle, &number, false), answer);
        EXPECT_EQ(VEnvKillProcess(&number), answer);
        EXPECT_EQ(VEnvCheckProcess(&number, &number), answer);
        EXPECT_EQ(VEnvGetUserEnvDirectory(directory), 0);
        EXPECT_STREQ(directory, L"as before");
        for (const auto service : textServices)
            EXPECT_EQ(service(), nullptr);
        EXPECT_EQ(TuvoPostMessageBox(0, L"", L""), TUVO_RESPONSE_NONE);
    }
    TuvoEnvUpdater::SetUpdater(nullptr);
}

class ServiceUpdater : public RecordingUpdater
{
public:
    int CreateProcessWithOption(const char* command, const char* arguments, const _ProcessOptions& options,
                                void** processHandle, int* processId, bool flag) override
    {
        EXPECT_EQ(std::string(command) + arguments + options.workingDirectory, "abc");
        *processHandle = this;
        *processId = flag ? 12 : 13;
        return 4;
    }
    int GetUserEnvDirectory(BuString& directory) override
    {
        directory = L"user";
        return 5;
    }
    int KillProcess(void* processHandle) override { return processHandle == this ? 6 : 0; }
    int CheckProcess(void* processHandle, int* status) override { return processHandle == this ? *status = 7 : 0; }
    const wchar_t* GetCopyright() override { return L"0"; }
    const wchar_t* GetHomeDirectoryPath() override { return L"1"; }
    const wchar_t* GetTempDirectoryPath() override { return L"2"; }
    const wchar_t* GetLogDirectoryPath() override { return L"3"; }
};

TEST(HostServices, AreThoseOfTheUpdater)
{
    ServiceUpdater updater;
    const _ProcessOptions options{.workingDirectory = "c"};
    void* handle = nullptr;
    int number = 0;
    BuString directory;
    for (const bool flag : {false, true}) {
        EXPECT_EQ(VEnvCreateProcessWithOption("a", "b", options, &handle, &number, flag), 4);
        EXPECT_EQ(number, flag ? 12 : 13);
    }
    EXPECT_EQ(VEnvGetUserEnvDirectory(directory), 0);  // what the updater says is not passed on
    EXPECT_STREQ(directory, L"user");
    EXPECT_EQ(VEnvKillProcess(handle), 6);
    EXPECT_EQ(VEnvCheckProcess(handle, &number), 7);
    EXPECT_EQ(number, 7);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(textServices[i](), std::to_wstring(i));
}

TEST(ConsoleMessageHandler, IsKept)
{
    class Handler : public ITuvoConsoleMsgHandler
    {
        void WriteMessage(_TuvoMessageType, const wchar_t*) override {}
    };
    Handler handler;
    for (ITuvoConsoleMsgHandler* const installed : {static_cast<ITuvoConsoleMsgHandler*>(&handler), {}}) {
        TuvoSetConsoleMessageHandler(installed);
        EXPECT_EQ(TuvoGetConsoleMessageHandler(), installed);
    }
}

// ---- Error objects -------------------------------------------------------------------------------------------------

TEST(ErrorObjects, AreToldApart)
{
    EXPECT_STREQ(VGetUserCancelWarning()->GetMessageText(), L"Action cancelled");
    using Answers = std::array<int, 4>;  // error, warning, cancelled, code
    const auto ask = [](const BuErrObj* e) {
        return Answers{VIsError(e), VIsWarning(e), VIsUserCancelWarning(e), VGetErrorID(e)};
    };
    const BuErrObj errorWithThatCode(BU_ERR_FAILURE, 11, L"");
    const BuErrObj plainWarning(BU_ERR_WARNING, L"");
    EXPECT_EQ(ask(nullptr), (Answers{0, 0, 0, -32768}));
    EXPECT_EQ(ask(VGetUserCancelWarning()), (Answers{0, 1, 1, 11}));
    EXPECT_EQ(ask(&errorWithThatCode), (Answers{1, 0, 0, 11}));
    EXPECT_EQ(ask(&plainWarning), (Answers{0, 1, 0, -32768}));
}

TEST(ErrorObjects, AreShownByKind)
{
    RecordingUpdater updater;
    BuSetTranslator([](const wchar_t* text, int) { return std::wcscmp(text, L"Error") == 0 ? L"Fehler" : nullptr; });
    // Every text but that of kind 1 is its own format, whose conversions have no arguments.
    const struct
    {
        std::int32_t kind;
        const wchar_t* text;
        Lines posted, written;
    } rows[] = {
        {BU_ERR_PLAIN, L"50%% %d|%s", {"console 0: 50% |"}, {"console 0: 50% |"}},
        {BU_ERR_INFORMATION, L"50%% %d|%s", {"console 2: 50%% %d|%s"}, {"console 2: 50%% %d|%s"}},
        {BU_ERR_WARNING, L"50%% %d|%s", {"console 1: 50% |"}, {"console 1: 50% |"}},
        {BU_ERR_FAILURE, L"50%% %d|%s", {"console 0: 50% |"}, {"console 0: 50% |"}},
        {BU_ERR_FATAL, L"50%% %d|%s", {"box 0 [Fehler]: 50% |"}, {"console 0: 50% |"}},
        {BU_ERR_FAILURE, L"", {}, {"console 0: "}},
        {7, L"text", {}, {"console 0: text"}},
        {-1, L"text", {}, {"console 0: text"}},
    };
    for (const auto& row : rows) {
        const BuErrObj* const error = BuSetErrorOfKind(row.kind, row.text);
        EXPECT_EQ(VEnvPostError(error), row.posted.empty() ? 1 : 0) << row.kind;
        EXPECT_EQ(updater.TakeLines(), row.posted) << row.kind;
        TuvoWriteConsoleError(error);
        EXPECT_EQ(updater.TakeLines(), row.written) << row.kind;
    }
    EXPECT_EQ(VEnvPostError(nullptr), 1);
    TuvoWriteConsoleError(nullptr);
    BuSetTranslator(nullptr);
}

TEST(ErrorObjects, AreLoggedLineByLine)
{
    Lines log;
    const auto record = [](int level, const wchar_t* text, void* lines) {
        static_cast<Lines*>(lines)->push_back(std::to_string(level) + ':' + platform::Narrow(text));
    };
    BuLogger::GetInstance().SetSink(record, &log);
    const std::pair<const BuErrObj*, Lines> rows[] = {
        {BuSetErrorOfKind(BU_ERR_FAILURE, L"one\ntwo \t\r\n  \n\nend\n"),
         {"2:one", "2:two", "2: ", "2: ", "2:end", "2:   \n"}},
        {BuSetErrorOfKind(BU_ERR_FATAL, L""), {"3:   \n"}},
        {BuSetErrorOfKind(BU_ERR_INFORMATION, L"5%% of %d"), {"0:5% of ", "0:   \n"}},
        {BuSetErrorOfKind(9, L"text"), {"0:text", "0:   \n"}},
        {nullptr, {}},
        {VGetUserCancelWarning(), {}},
    };
    for (const auto& [error, lines] : rows) {
        TuvoLogError(error);
        EXPECT_EQ(std::exchange(log, {}), lines) << lines.size();
    }
    BuSetWarning(12, L"last");
    TuvoLogLastError();
    EXPECT_EQ(log, (Lines{"1:last", "1:   \n"}));
    BuLogger::GetInstance().SetSink(nullptr, nullptr);
}

std::string g_assertions;

TEST(Assertions, AreShownAndHandedOver)
{
    BuSetAssertHandler([](int code, const char* file, int line) {
        g_assertions += std::to_string(code) + ' ' + file + ' ' + std::to_string(line) + '|';
    });
    char expression[] = "a % b == 0";
    char file[] = "Mesh.cpp";
    VAssert(expression, file, 12);  // without updater the handler is called all the same
    RecordingUpdater updater;
    VAssert(expression, file, 13);
    VAssert(nullptr, nullptr, -1);
    EXPECT_EQ(g_assertions, "0 Mesh.cpp 12|0 Mesh.cpp 13|0  -1|");
    EXPECT_EQ(updater.TakeLines(), (Lines{"console 0: Assertion 'a % b == 0' reached at Mesh.cpp:13",
                                          "console 0: Assertion '' reached at :-1"}));
    BuSetAssertHandler(nullptr);
}

// ---- Directories ---------------------------------------------------------------------------------------------------

TEST(Directories, AreKeptAsGiven)
{
    EXPECT_STREQ(VEnvGetUserDirectory(), L"");
    BuString path;
    for (const wchar_t* const given : {L"C:\\work/", L""}) {
        VEnvSetUserDirectory(given);
        VEnvSetUserDirectory(nullptr);
        EXPECT_STREQ(VEnvGetUserDirectory(), given);
        VEnvSetTempPath(given);
        VEnvSetTempPath(nullptr);
        VEnvGetTempPath(path);
        EXPECT_EQ(path.GetText(), *given != 0 ? given : platform::TemporaryDirectory());
    }
}

TEST(Directories, TheApplicationsOwnIsThatOfTheLibrary)
{
    const BuString directory = TuvoGetAppDirectory();
    ASSERT_FALSE(directory.IsEmpty());
    EXPECT_EQ(directory.GetAt(directory.GetLength() - 1), platform::Separator());
    static const char address = 0;  // libraries and tests are built into one folder
    EXPECT_EQ(platform::ModuleFile(&address).find(directory), 0u);
}

}  // namespace
