#include <basutl/BuLogger.h>

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Entry
{
    int level;
    std::wstring text;
    bool operator==(const Entry&) const = default;
};

// Collects the log until the end of the scope.
class LogCapture
{
public:
    LogCapture() { BuLogger::GetInstance().SetSink(&Receive, this); }
    ~LogCapture() { BuLogger::GetInstance().SetSink(nullptr, nullptr); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<Entry> entries;

private:
    static void Receive(int level, const wchar_t* text, void* context)
    {
        static_cast<LogCapture*>(context)->entries.push_back({level, text});
    }
};

TEST(Logger, HandsEachTextToTheSink)
{
    LogCapture log;
    BuLogger& logger = BuLogger::GetInstance();
    logger.Log(6, L"%s%d\n", L"calls: ", 12);
    logger.Log(2, nullptr);
    logger.LogWithoutArguments(1, L"100%% of %s%d");
    logger.LogText(0, L"100%% of %s");
    logger.LogText(3, nullptr);
    const std::vector<Entry> expected = {
        {6, L"calls: 12\n"}, {2, L""}, {1, L"100% of "}, {0, L"100%% of %s"}, {3, L""}};
    EXPECT_EQ(log.entries, expected);
}

CHILD_SCENARIO(LogToStandardError)
{
    BuLogger& logger = BuLogger::GetInstance();
    logger.Log(0, L"information %d\n", 0);
    logger.LogText(1, L"warning\n");
    logger.LogWithoutArguments(2, L"error%d\n");
    return 0;
}

TEST(Logger, WritesToStandardErrorFromTheLevelAskedFor)
{
    const struct
    {
        std::optional<std::wstring> level;
        const char* written;
    } rows[] = {
        {std::nullopt, ""},
        {L"0", "information 0\nwarning\nerror\n"},
        {L"1", "warning\nerror\n"},
        {L"2", "error\n"},
        {L"3", ""},
        {L"-1", "information 0\nwarning\nerror\n"},
        {L"all", "information 0\nwarning\nerror\n"},
    };
    for (const auto& row : rows) {
        const ChildResult child = RunChild("LogToStandardError", {{L"BU_LOG_LEVEL", row.level}});
        EXPECT_EQ(child.errors, row.written) << "level " << testing::PrintToString(row.level);
        EXPECT_EQ(child.output, "");
    }
}

}  // namespace
