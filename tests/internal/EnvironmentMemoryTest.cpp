// Copying and moving while memory is exhausted: no file is lost, whatever fails.

#include <TuvoUtil/Environment.h>

#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(EnvironmentWithoutMemory, GivesNoOrTheRightTemporaryName)
{
    const std::wstring expected = std::wstring(L"a directory of some length") + platform::Separator() + L"prefix2f.tmp";
    EXPECT_GE(allocation::ForEachFailure([&] {
                  BuString name;
                  const unsigned int number = VEnvGetTempFileName(L"a directory of some length", L"prefix", 0x2f, name);
                  EXPECT_EQ(number, name.IsEmpty() ? 0u : 0x2fu);
                  EXPECT_TRUE(name.IsEmpty() || name.GetText() == expected);
              }),
              3);
}

bool HoldsNew(const TemporaryFolder& folder, const char* name)
{
    return ReadBinaryFile(folder.Path(name)) == "new";
}

// Lets each allocation of a move fail in turn, with a new tree each time. The moved file has to be at one of its two
// places, and at the new one when the move succeeded. Gives the number of failures.
int MoveWithFailures(const char* source, const char* destination, const char* oldFile, const char* newFile,
                     bool failIfExists)
{
    for (int n = 1;; ++n) {
        const TemporaryFolder folder;
        platform::CreateOneDirectory(folder.Path("source").c_str());
        platform::CreateOneDirectory(folder.Path("source/subfolder").c_str());
        folder.Write("source/subfolder/file", "new");
        folder.Write("taken", "old");
        const std::wstring from = folder.Path(source);
        const std::wstring to = folder.Path(destination);
        allocation::FailOnce(n);
        const bool isMoved = VEnvCopyFileOrFolder(from.c_str(), to.c_str(), failIfExists, true, TUVO_MOVE_FILES);
        const bool hasFailed = allocation::HasFailed();
        allocation::FailFrom(0);
        const bool isAtItsNewPlace = HoldsNew(folder, newFile);
        EXPECT_TRUE(isAtItsNewPlace || HoldsNew(folder, oldFile)) << n;
        EXPECT_TRUE(isAtItsNewPlace || !isMoved || hasFailed) << n;
        EXPECT_TRUE(!failIfExists || ReadBinaryFile(folder.Path("taken")) == "old") << n;
        if (!hasFailed)
            return n - 1;
    }
}

TEST(EnvironmentWithoutMemory, LosesNoFileThatIsMoved)
{
    const char* const file = "source/subfolder/file";
    EXPECT_GT(MoveWithFailures(file, "taken", file, "taken", false), 5);
    EXPECT_GT(MoveWithFailures(file, "taken", file, "taken", true), 2) << "a file that must not be replaced stays";
    EXPECT_GT(MoveWithFailures(file, "source/../source/subfolder/file", file, file, false), 2) << "onto itself";
    EXPECT_GT(MoveWithFailures("source", "new/place", file, "new/place/subfolder/file", false), 20);
}

}  // namespace
