#include <basutl/BuErrObj.h>

#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

namespace {

constexpr int NoCode = -32768;

int CodeOf(const BuErrObj* error)
{
    int code = NoCode;
    error->GetErrorCode(code);
    return code;
}

std::wstring MessageOf(const BuErrObj* error)
{
    return BuGetErrorDescription(error).GetText();
}

// What a static constructor of the host sees.
const std::wstring g_earlyMessage = MessageOf(BuSetError(L"set before main"));

TEST(Errors, CarryKindCodeAndMessage)
{
    const struct
    {
        const BuErrObj* error;
        int kind, code;
        const wchar_t* message;
    } rows[] = {{BuSetError(L"100% of %s"), 3, NoCode, L"100% of %s"},
                {BuSetError(7, L"No such set"), 3, 7, L"No such set"},
                {BuSetError(0, nullptr), 3, 0, L""},
                {BuSetWarning(11, L"Action cancelled"), 2, 11, L"Action cancelled"},
                {BuSetErrorOfKind(77, L"odd"), 77, NoCode, L"odd"}};
    for (const auto& row : rows) {
        std::int32_t firstField;  // read directly by those who only ask for the kind
        std::memcpy(&firstField, row.error, sizeof firstField);
        EXPECT_TRUE(firstField == row.kind && row.error->GetKind() == row.kind) << row.kind;
        EXPECT_EQ(CodeOf(row.error), row.code);
        EXPECT_EQ(MessageOf(row.error), row.message);
    }
    EXPECT_EQ(MessageOf(nullptr), L"");
    EXPECT_EQ(g_earlyMessage, L"set before main");
}

TEST(Errors, StayValidForTheNextSixtyFour)
{
    const BuErrObj* const error = BuSetError(1, L"a message too long for the string's own storage");
    for (int i = 0; i < 64; ++i) {
        const BuErrObj* const later = BuSetError(i, L"later");
        EXPECT_EQ(BuGetLastError(), later);
    }
    EXPECT_EQ(CodeOf(error), 1);
    EXPECT_EQ(MessageOf(error), L"a message too long for the string's own storage");
}

// The text of each object of the ring is handed on, so at some time that of the very one which has to make room.
TEST(Errors, CanBeMadeOfAnOlderOnesText)
{
    for (int distance = 1; distance <= 70; ++distance) {
        const wchar_t* const text = BuSetError(L"handed on from error to error")->GetMessageText().GetText();
        for (int i = 1; i < distance && i < 65; ++i)
            BuSetError(L"between");
        EXPECT_EQ(MessageOf(BuSetError(text)), L"handed on from error to error") << "distance " << distance;
    }
}

TEST(Errors, BelongToTheirThread)
{
    const BuErrObj* const mine = BuSetError(L"mine");
    std::thread([=] {
        EXPECT_EQ(BuGetLastError(), nullptr);
        for (int i = 0; i < 100; ++i)
            BuSetError(L"a message of the other thread, freed when it ends");
        EXPECT_NE(BuGetLastError(), mine);
    }).join();
    EXPECT_EQ(BuGetLastError(), mine);
    EXPECT_EQ(MessageOf(mine), L"mine");
}

TEST(Errors, TellNativeOnesInTheSystemsWords)
{
    constexpr int notFound = 2;  // ENOENT, ERROR_FILE_NOT_FOUND
    const std::wstring systemText = platform::NativeErrorText(notFound);
    const BuErrObj* const error = BuSetNativeError(L"open part.inp", notFound);
    EXPECT_EQ(MessageOf(error), L"open part.inp: " + systemText);
    EXPECT_EQ(error->GetKind(), BU_ERR_FAILURE);
    EXPECT_EQ(CodeOf(error), notFound);
    EXPECT_EQ(MessageOf(BuSetNativeError(nullptr, notFound)), systemText);
}

}  // namespace
