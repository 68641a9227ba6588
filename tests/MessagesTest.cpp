#include <TuvoUtil/Messages.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/RecordingUpdater.h"

#include <basutl/BuLocalize.h>
#include <basutl/BuLogger.h>
#include <basutl/BuMessage.h>

#include <gtest/gtest.h>

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
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"%s", unreadable);
    TuvoWriteConsoleLinkMessage(TUVO_MESSAGE_ERROR, L"%s", unreadable);
    TuvoWritePromptMessage(TUVO_MESSAGE_ERROR, L"%s", unreadable);
    EXPECT_EQ(TuvoPostMessageBox(0, L"", L"%s", unreadable), TUVO_RESPONSE_NONE);
    EXPECT_EQ(TuvoPostForcedMessageBox(0, L"", L"%s", unreadable), TUVO_RESPONSE_NONE);
    TuvoPostDiagnosticMessage(TUVO_MESSAGE_ERROR, L"%s", unreadable);
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
    const wchar_t* GetCopyright() override { return L"copyright"; }
    const wchar_t* GetHomeDirectoryPath() override { return L"home"; }
    const wchar_t* GetTempDirectoryPath() override { return L"temp"; }
    const wchar_t* GetLogDirectoryPath() override { return L"log"; }
};

void ExpectNoServices(int processAnswer)
{
    void* handle = nullptr;
    int number = 1;
    BuString directory(L"as before");
    EXPECT_EQ(VEnvCreateProcessWithOption("a", "b", {}, &handle, &number, false), processAnswer);
    EXPECT_EQ(VEnvKillProcess(&number), processAnswer);
    EXPECT_EQ(VEnvCheckProcess(&number, &number), processAnswer);
    EXPECT_EQ(VEnvGetUserEnvDirectory(directory), 0);
    EXPECT_STREQ(directory, L"as before");
    for (const auto service :
         {VEnvGetCopyright, VEnvGetHomeDirectoryPath, VEnvGetTempDirectoryPath, VEnvGetLogDirectoryPath})
        EXPECT_EQ(service(), nullptr);
    EXPECT_EQ(TuvoPostMessageBox(0, L"", L""), TUVO_RESPONSE_NONE);
}

TEST(HostServices, AreEmptyWithoutUpdaterAndByDefault)
{
    class DefaultUpdater : public TuvoEnvUpdater
    {};
    ExpectNoServices(-1);
    DefaultUpdater updater;
    TuvoEnvUpdater::SetUpdater(&updater);
    ExpectNoServices(0);
    TuvoEnvUpdater::SetUpdater(nullptr);
}

// Calls a virtual operation by its place in the table, as a host built apart does. The destructor has two entries.
template <typename Result, typename... Arguments>
Result CallSlot(TuvoEnvUpdater& updater, int slot, Arguments... arguments)
{
    void* const* table = nullptr;
    std::memcpy(&table, static_cast<void*>(&updater), sizeof table);
    return reinterpret_cast<Result (*)(TuvoEnvUpdater*, Arguments...)>(table[slot + 1])(&updater, arguments...);
}

TEST(TuvoEnvUpdater, KeepsItsSlotsAndServesThroughThem)
{
    ServiceUpdater updater;
    CallSlot<void>(updater, 1, TUVO_MESSAGE_WARNING, L"one", false);
    CallSlot<void>(updater, 2, TUVO_MESSAGE_WARNING, L"two", 1);
    CallSlot<_TuvoMsgBoxResponse>(updater, 3, 0u, L"c", L"three", true);
    EXPECT_EQ(updater.TakeLines(), (Lines{"console 1: one", "prompt 1: two", "forced box 0 [c]: three"}));

    const _ProcessOptions options{.workingDirectory = "c"};
    void* handle = nullptr;
    int number = 0;
    EXPECT_EQ((CallSlot<int, const char*, const char*, const _ProcessOptions&>(updater, 4, "a", "b", options, &handle,
                                                                               &number, false)),
              4);
    EXPECT_EQ(number, 13);
    EXPECT_EQ(VEnvCreateProcessWithOption("a", "b", options, &handle, &number, true), 4);
    EXPECT_EQ(number, 12);

    BuString directory;
    EXPECT_EQ((CallSlot<int, BuString&>(updater, 5, directory)), 5);
    EXPECT_EQ(VEnvGetUserEnvDirectory(directory), 0);  // what the updater says is not passed on
    EXPECT_STREQ(directory, L"user");
    EXPECT_EQ(CallSlot<int>(updater, 6, handle), 6);
    EXPECT_EQ(VEnvKillProcess(handle), 6);
    EXPECT_EQ(CallSlot<int>(updater, 7, handle, &number), 7);
    EXPECT_EQ(VEnvCheckProcess(handle, &number), 7);

    const struct
    {
        const wchar_t* (*service)();
        int slot;
        const wchar_t* text;
    } rows[] = {{VEnvGetCopyright, 8, L"copyright"},
                {VEnvGetHomeDirectoryPath, 9, L"home"},
                {VEnvGetTempDirectoryPath, 10, L"temp"},
                {VEnvGetLogDirectoryPath, 11, L"log"}};
    for (const auto& row : rows) {
        EXPECT_STREQ(CallSlot<const wchar_t*>(updater, row.slot), row.text);
        EXPECT_STREQ(row.service(), row.text);
    }
}

TEST(ConsoleMessageHandler, IsKeptAndNeverCalled)
{
    class Handler : public ITuvoConsoleMsgHandler
    {
        void WriteMessage(_TuvoMessageType, const wchar_t*) override { ADD_FAILURE(); }
    };
    Handler handler;
    EXPECT_EQ(TuvoGetConsoleMessageHandler(), nullptr);
    TuvoSetConsoleMessageHandler(&handler);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"text");
    EXPECT_EQ(TuvoGetConsoleMessageHandler(), &handler);
    TuvoSetConsoleMessageHandler(nullptr);
}

// ---- Error objects -------------------------------------------------------------------------------------------------

TEST(ErrorObjects, AreToldApart)
{
    const BuErrObj* const cancel = VGetUserCancelWarning();
    EXPECT_STREQ(cancel->GetMessageText(), L"Action cancelled");
    const BuErrObj errorWithThatCode(BU_ERR_FAILURE, 11, L"");
    const BuErrObj plainWarning(BU_ERR_WARNING, L"");
    const struct
    {
        const BuErrObj* object;
        int isError, isWarning, isCancel, code;
    } rows[] = {
        {nullptr, 0, 0, 0, -32768},
        {cancel, 0, 1, 1, 11},
        {&errorWithThatCode, 1, 0, 0, 11},
        {&plainWarning, 0, 1, 0, -32768},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(VIsError(row.object), row.isError) << &row - rows;
        EXPECT_EQ(VIsWarning(row.object), row.isWarning) << &row - rows;
        EXPECT_EQ(VIsUserCancelWarning(row.object), row.isCancel) << &row - rows;
        EXPECT_EQ(VGetErrorID(row.object), row.code) << &row - rows;
    }
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
    EXPECT_EQ(updater.TakeLines(), Lines());
    BuSetTranslator(nullptr);
}

TEST(ErrorObjects, AreLoggedLineByLine)
{
    Lines log;
    const auto record = [](int level, const wchar_t* text, void* lines) {
        static_cast<Lines*>(lines)->push_back(std::to_string(level) + ':' + platform::Narrow(text));
    };
    BuLogger::GetInstance().SetSink(record, &log);
    const struct
    {
        const BuErrObj* error;
        Lines lines;
    } rows[] = {
        {BuSetErrorOfKind(BU_ERR_FAILURE, L"one\ntwo \t\r\nthree"), {"2:one", "2:two", "2:three", "2:   \n"}},
        {BuSetErrorOfKind(BU_ERR_FAILURE, L"\n  \nend\n"), {"2: ", "2: ", "2:end", "2:   \n"}},
        {BuSetErrorOfKind(BU_ERR_FATAL, L""), {"3:   \n"}},
        {BuSetErrorOfKind(BU_ERR_INFORMATION, L"5%% of %d"), {"0:5% of ", "0:   \n"}},
        {BuSetErrorOfKind(9, L"text"), {"0:text", "0:   \n"}},
        {nullptr, {}},
        {VGetUserCancelWarning(), {}},
    };
    for (const auto& row : rows) {
        TuvoLogError(row.error);
        EXPECT_EQ(std::exchange(log, {}), row.lines) << &row - rows;
    }
    BuSetWarning(12, L"last");
    TuvoLogLastError();
    EXPECT_EQ(log, (Lines{"1:last", "1:   \n"}));
    BuLogger::GetInstance().SetSink(nullptr, nullptr);
}

std::string g_assertion;

TEST(Assertions, AreShownAndHandedOver)
{
    BuSetAssertHandler([](int code, const char* file, int line) {
        g_assertion = std::to_string(code) + ' ' + file + ' ' + std::to_string(line);
    });
    char expression[] = "a % b == 0";
    char file[] = "Mesh.cpp";
    VAssert(expression, file, 12);  // without updater the handler is called all the same
    EXPECT_EQ(g_assertion, "0 Mesh.cpp 12");
    RecordingUpdater updater;
    VAssert(expression, file, 13);
    VAssert(nullptr, nullptr, -1);
    EXPECT_EQ(g_assertion, "0  -1");
    EXPECT_EQ(updater.TakeLines(), (Lines{"console 0: Assertion 'a % b == 0' reached at Mesh.cpp:13",
                                          "console 0: Assertion '' reached at :-1"}));
    BuSetAssertHandler(nullptr);
}

// ---- Directories ---------------------------------------------------------------------------------------------------

TEST(Directories, AreKeptAsGiven)
{
    EXPECT_STREQ(VEnvGetUserDirectory(), L"");
    VEnvSetUserDirectory(L"C:\\work/");
    VEnvSetUserDirectory(nullptr);
    EXPECT_STREQ(VEnvGetUserDirectory(), L"C:\\work/");
    VEnvSetUserDirectory(L"");

    BuString path;
    VEnvSetTempPath(L"scratch");
    VEnvSetTempPath(nullptr);
    VEnvGetTempPath(path);
    EXPECT_STREQ(path, L"scratch");
    VEnvSetTempPath(L"");
    VEnvGetTempPath(path);
    EXPECT_EQ(path.GetText(), platform::TemporaryDirectory());
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
