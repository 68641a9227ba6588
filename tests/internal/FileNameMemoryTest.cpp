#include <TuvoUtil/FileName.h>
#include <TuvoUtil/Memory.h>

#include "support/AllocationControl.h"
#include "support/ChildProcess.h"
#include "support/ReportScope.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(FileNameMemory, GivesANewTextOrNull)
{
    const ReportScope reports;
    const struct
    {
        char* (*cut)(const char* path);
        const char* expected;
    } rows[] = {{UtlGetFileNameGivenFullPath, "c.d"},
                {UtlGetFileNameWithParentDir, "b\\c.d"},
                {UtlGetParentDir, "a\\b"},
                {UtlGetDirectoryPathFromFileName, ".\\"},
                {UtlMiscGetFileExtension, "d"}};
    for (const auto& [cut, expected] : rows)
        EXPECT_EQ(allocation::ForEachFailure([cut = cut, expected = expected] {
                      char* const text = cut("a/b/c.d");
                      EXPECT_EQ(std::string(text != nullptr ? text : "null"),
                                allocation::HasFailed() ? "null" : expected);
                      VBuFree(text, __FILE__, __LINE__);
                  }),
                  1);
}

TEST(FileNameMemory, AsksForAFileOrDoesNotKnowIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.NarrowPath() + "a path that is longer than what fits in place";
    EXPECT_EQ(UtlIsFileOrDir(path.c_str()), -1);
    for (const int kind : {0, 1}) {
        const std::string known = kind == 0 ? path : folder.NarrowPath();
        folder.Write("a path that is longer than what fits in place", "");
        EXPECT_GT(allocation::ForEachFailure([&] {
                      const int answer = UtlIsFileOrDir(known.c_str());
                      EXPECT_EQ(answer, allocation::HasFailed() ? -1 : kind);
                  }),
                  1);
    }
}

TEST(FileNameMemory, GivesTheLastNameOrNone)
{
    for (const std::string last : {"/./a name that is longer than what fits in place", "/below/.."}) {
        const std::string path = "a folder with a name that is longer than what fits in place" + last;
        char expected[1024];
        UtlGetBaseFileNameFromFullPath(path.c_str(), expected);
        EXPECT_GT(allocation::ForEachFailure([&] {
                      char name[1024] = "as before";
                      EXPECT_EQ(UtlGetBaseFileNameFromFullPath(path.c_str(), name), 0);
                      EXPECT_TRUE(*name == '\0' ? allocation::HasFailed() : std::strcmp(name, expected) == 0) << name;
                  }),
                  2);
    }
}

// In a process of its own: the first of the two copies stays allocated.
CHILD_SCENARIO(DirectoryFromExhaustedMemory)
{
    const ReportScope reports;
    const TemporaryFolder folder;
    const std::string path = folder.NarrowPath() + '\\';
    const int before = allocation::LiveBlocks();
    int calls = 0;
    allocation::ForEachFailure([&] {
        ++calls;
        char* const directory = UtlGetDirNameFromFileName(path.c_str());
        EXPECT_EQ(directory == nullptr, allocation::HasFailed());
        VBuFree(directory, __FILE__, __LINE__);
    });
    EXPECT_EQ(allocation::LiveBlocks(), before + 2) << "of the last two calls";
    EXPECT_GT(calls, 3);
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(FileNameMemory, GivesTheDirectoryOrNull)
{
    const ChildResult result = RunChild("DirectoryFromExhaustedMemory");
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
}

}  // namespace
