// Messages while memory is exhausted: a text arrives whole or empty, settings stay as they were.

#include "support/AllocationControl.h"

#include <TuvoUtil/Messages.h>
#include <basutl/BuErrObj.h>

#include <gtest/gtest.h>

#include <cwchar>

namespace {

constexpr wchar_t LongText[] = L"a text that is too long to be held inside a string object";

// Counts texts without allocating.
class CountingUpdater : public TuvoEnvUpdater
{
public:
    CountingUpdater() { SetUpdater(this); }
    ~CountingUpdater() override { SetUpdater(nullptr); }

    void WriteConsoleMessage(_TuvoMessageType, const wchar_t* text, bool) override
    {
        EXPECT_TRUE(*text == 0 || std::wcscmp(text, LongText) == 0);
        ++count;
    }
    _TuvoMsgBoxResponse PostMessageBox(unsigned int, const wchar_t*, const wchar_t* text, bool) override
    {
        WriteConsoleMessage(TUVO_MESSAGE_ERROR, text, false);
        return TUVO_RESPONSE_OK;
    }

    int count = 0;
};

TEST(MessagesWithoutMemory, ArriveEmptyAtWorst)
{
    CountingUpdater updater;
    EXPECT_GE(allocation::ForEachFailure([&] {
                  updater.count = 0;
                  TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"%s", LongText);
                  EXPECT_EQ(TuvoPostMessageBox(0, L"", L"%s", LongText), TUVO_RESPONSE_OK);
                  EXPECT_EQ(updater.count, 2);
              }),
              2);
}

TEST(MessagesWithoutMemory, ShowAnErrorObjectOrSaySo)
{
    CountingUpdater updater;
    const BuErrObj errors[] = {{BU_ERR_INFORMATION, LongText}, {BU_ERR_FAILURE, LongText}, {BU_ERR_FATAL, LongText}};
    for (const BuErrObj& error : errors)
        EXPECT_GE(allocation::ForEachFailure([&] {
                      updater.count = 0;
                      const int result = VEnvPostError(&error);
                      EXPECT_EQ(updater.count, result == 0 ? 1 : 0);
                      TuvoWriteConsoleError(&error);
                      TuvoLogError(&error);
                  }),
                  3);
}

TEST(MessagesWithoutMemory, LeaveDirectoriesAsTheyWere)
{
    VEnvSetUserDirectory(L"before");
    allocation::FailOnce(1);
    VEnvSetUserDirectory(LongText);
    EXPECT_STREQ(VEnvGetUserDirectory(), L"before");
    VEnvSetUserDirectory(L"");

    const BuString application = TuvoGetAppDirectory();
    for (const wchar_t* const setting : {L"", LongText}) {
        VEnvSetTempPath(setting);
        BuString temporary;
        VEnvGetTempPath(temporary);
        EXPECT_GE(allocation::ForEachFailure([&] {
                      BuString path(L"other");
                      VEnvGetTempPath(path);
                      EXPECT_TRUE(path.IsEmpty() ? allocation::HasFailed() : path == temporary);
                      path = TuvoGetAppDirectory();
                      EXPECT_TRUE(path.IsEmpty() ? allocation::HasFailed() : path == application);
                  }),
                  1);
    }
    VEnvSetTempPath(L"");
}

}  // namespace
