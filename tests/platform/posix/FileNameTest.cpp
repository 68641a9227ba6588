#include <TuvoUtil/FileName.h>

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

TEST(PosixFileName, FollowsLinksAndTakesDevicesForFiles)
{
    const TemporaryFolder folder;
    folder.Write("file", "");
    const std::string link = folder.NarrowPath("link");
    const struct
    {
        const char* target;
        int kind;
    } rows[] = {{"file", 0}, {".", 1}, {"nowhere", -1}, {"link", -1}};
    for (const auto& [target, kind] : rows) {
        ASSERT_EQ(symlink(target, link.c_str()), 0);
        EXPECT_EQ(UtlIsFileOrDir(link.c_str()), kind) << target;
        unlink(link.c_str());
    }
    EXPECT_EQ(UtlIsFileOrDir("/dev/null"), 0);
}

}  // namespace
