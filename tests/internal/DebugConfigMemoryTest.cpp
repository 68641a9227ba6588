// Debug parameters when memory is exhausted, and what the file tracker sees of their files.

#include <TuvoUtil/DebugConfig.h>

#include "Diagnostics/FileTracker.h"
#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/RecordingUpdater.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const BuString Module = L"a module of some length";
const BuString Name = L"a parameter of some length";
const BuString Value = L"12 and some more text";

TEST(DebugConfigMemory, AddingGivesAParameterOrNone)
{
    const int failures = allocation::ForEachFailure([] {
        UtlParamInfo parameters;
        const int result = parameters.CheckAndAddParamWithValue(&Module, Name, Value);
        EXPECT_EQ(result, allocation::HasFailed() ? -1 : 0);
        int integer = 5;
        const int found = parameters.GetCustomConfigInfo(nullptr, Name, &integer, nullptr, nullptr);
        EXPECT_EQ(found == 0, result == 0);
        EXPECT_EQ(integer, result == 0 ? 12 : 0);
        EXPECT_EQ(parameters.IsModuleInitialized(), result == 0 ? 1 : 0);
        EXPECT_EQ(parameters.RemoveParameter(nullptr, Name), result == 0 ? 0 : 2);
    });
    EXPECT_GT(failures, 10);
}

TEST(DebugConfigMemory, ChangingAndAskingLeavesEverythingAsItWas)
{
    UtlParamInfo parameters;
    parameters.CheckAndAddParamWithValue(&Module, Name, Value);
    const BuString other = L"34 and some other text";
    const BuString before = L"as before";
    int failures = allocation::ForEachFailure([&] {
        const int result = parameters.CheckAndAddParamWithValue(nullptr, Name, other);
        EXPECT_EQ(result, allocation::HasFailed() ? -1 : 0);
        int integer = 0;
        parameters.GetCustomConfigInfo(&Module, Name, &integer, nullptr, nullptr);
        EXPECT_EQ(integer, result == 0 ? 34 : 12);
    });
    EXPECT_GT(failures, 0);
    failures = allocation::ForEachFailure([&] {
        BuTemplateArray<BuString> names;
        BuTemplateArray<BuString> values;
        const int result = parameters.GetModuleInfo(Module, names, values);
        EXPECT_EQ(result, allocation::HasFailed() ? -1 : 0);
        EXPECT_EQ(names.GetCount(), allocation::HasFailed() ? 0 : 1);
        EXPECT_EQ(values.GetCount(), names.GetCount());
    });
    EXPECT_GT(failures, 2);
    BuString text = before;
    failures = allocation::ForEachFailure([&] {
        const int result = parameters.GetCustomConfigInfo(nullptr, Name, nullptr, nullptr, &text);
        EXPECT_EQ(result, allocation::HasFailed() ? -1 : 0);
        EXPECT_EQ(text, result == 0 ? other : before);
    });
    EXPECT_GT(failures, 0);
}

TEST(DebugConfigMemory, FilesAreReadAndWrittenWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    const std::string content = "first parameter : 1 text\nsecond parameter : 2 text\n";
    const BuString path = folder.Write("file", content).c_str();
    const BuString second = L"second parameter";
    int failures = allocation::ForEachFailure([&] {
        UtlParamInfo parameters;
        const int result = parameters.ReadParamsWithValues(Module, path, 0, 1);
        const bool hasFailed = allocation::HasFailed();
        EXPECT_EQ(result == 0, !hasFailed) << result;
        int integer = 0;
        parameters.GetCustomConfigInfo(&Module, second, &integer, nullptr, nullptr);
        EXPECT_TRUE(integer == 2 || result != 0);
    });
    EXPECT_GT(failures, 20);

    // Two modules of one file, by two paths.
    UtlParamInfo parameters;
    const std::wstring detour = folder.Path() + L'.' + platform::Separator() + L"file";
    const BuString file = L"file";
    parameters.ReadParamsWithValues(Module, path, 0, 1);
    parameters.ReadParamsWithValues(L"another", detour.c_str(), 0, 1);
    parameters.RemoveParameter(nullptr, L"first parameter");
    failures = 0;
    for (bool hasFailed = true; hasFailed && failures < 1000; ++failures) {
        platform::RemoveOneFile(folder.Path("file.new").c_str());
        folder.Write("file", content);
        allocation::FailOnce(failures + 1);
        const int result = parameters.WriteInfoToFile(L"", &file);
        hasFailed = allocation::HasFailed();
        allocation::FailFrom(0);
        const std::string written = "second parameter : 2 text\n" + content;
        EXPECT_EQ(ReadTextFile(folder.Path("file")), result == 0 ? written : content) << failures;
        EXPECT_TRUE(result == 0 || hasFailed);
    }
    EXPECT_GT(failures, 10);
    EXPECT_LT(failures, 1000);
}

TEST_IN_CHILD(DebugConfigMemory, ADirectoryIsSetWithItsSeparatorOrNotAtAll)
{
    const BuString directory = L"a folder of some length";
    const int length = directory.GetLength() + 1;
    EXPECT_GT(allocation::ForEachFailure([&] {
                  const int result = QDDebugUtl::SetBinDir(directory);
                  EXPECT_EQ(result, allocation::HasFailed() ? -1 : 0);
                  EXPECT_EQ(QDDebugUtl::m_sBinDir.GetLength(), result == 0 ? length : 0);
              }),
              0);
}

TEST_IN_CHILD(DebugConfigMemory, TheConfigurationIsReadIntoItsModuleOrNone)
{
    const TemporaryFolder folder;
    folder.Write("MovraDebug.config", "a : 1\n");
    QDDebugUtl::SetUserDir(folder.Path().c_str());
    for (const BuString& module : {BuString(), Module}) {
        bool hasFailed = true;
        for (int n = 1; hasFailed; ++n) {
            QDDebugUtl::ClearAll();
            allocation::FailOnce(n);
            const int result = QDDebugUtl::ReadConfigInfo(1, module, L"", 0);
            hasFailed = allocation::HasFailed();
            allocation::FailFrom(0);
            EXPECT_EQ(result == 0, !hasFailed) << n;
            BuTemplateArray<BuString> names;
            QDDebugUtl::GetModuleNames(names);
            for (int i = 0; i < names.GetCount(); ++i)
                EXPECT_EQ(names[i], module.IsEmpty() ? BuString(L"Vdb") : module) << n;
        }
    }
}

TEST(DebugConfigMemory, FilesAreClosedForTheTracker)
{
    const TemporaryFolder folder;
    RecordingUpdater updater;
    StartFileTracker();
    UtlParamInfo parameters;
    EXPECT_EQ(parameters.ReadParamsWithValues(Module, folder.Write("file", "a : 1\n").c_str(), 0, 1), 0);
    EXPECT_EQ(parameters.WriteInfoToFile(Module, nullptr), 0);
    EXPECT_EQ(parameters.WriteInfoToFile(L"", nullptr), 0);
    updater.TakeLines();
    PostOpenFileStatistics();
    EXPECT_EQ(updater.TakeLines()[2], "console 1:       No open files found. Well done");
    StopFileTracker();
}

}  // namespace
