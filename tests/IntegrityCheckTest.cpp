#include <TuvoUtil/IntegrityCheck.h>

#include <gtest/gtest.h>

#include <string>

namespace {

int g_result = 0;
std::wstring g_path;

TEST(IntegrityCheck, PassesOnToWhatIsRegistered)
{
    EXPECT_EQ(TuvoCICheckIntegrity(), -1);
    TuvoCISetLastFilePath(L"before anybody listens");

    TuvoCIRegisterCheckCIFunc([] { return g_result; });
    TuvoCIRegisterSetFilePathFunc([](const wchar_t* path) { g_path = path == nullptr ? L"null" : path; });
    EXPECT_EQ(g_path, L"");
    for (const int result : {0, 1, -7}) {
        g_result = result;
        EXPECT_EQ(TuvoCICheckIntegrity(), result);
    }
    for (const wchar_t* const path : {L"a\\b/c d", L"", static_cast<const wchar_t*>(nullptr)}) {
        TuvoCISetLastFilePath(path);
        EXPECT_EQ(g_path, path == nullptr ? L"null" : path);
    }

    TuvoCIRegisterCheckCIFunc([] { return 42; });
    EXPECT_EQ(TuvoCICheckIntegrity(), 42) << "the last one counts";
    TuvoCIRegisterCheckCIFunc(nullptr);
    TuvoCIRegisterSetFilePathFunc(nullptr);
    TuvoCISetLastFilePath(L"after");
    EXPECT_EQ(TuvoCICheckIntegrity(), -1);
    EXPECT_EQ(g_path, L"null");
}

}  // namespace
