#include <TuvoUtil/TrackedFile.h>

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

namespace {

bool IsPosix()
{
    return platform::Separator() == L'/';
}

bool WriteThrough(const std::string& path, const char* mode, const char* text)
{
    std::FILE* const stream = TuvoFOpen(path.c_str(), mode, __FILE__, __LINE__);
    if (stream == nullptr)
        return false;
    std::fputs(text, stream);
    return TuvoFClose(stream, __FILE__, __LINE__) == 0;
}

TEST(TrackedFile, OpensAnyNameWithEitherSeparator)
{
    const TemporaryFolder folder;
    platform::CreateOneDirectory(folder.Path("sub").c_str());
    std::vector<std::string> names = {" a  b.txt", "$(x);`y`'&%z%.txt", "sub/below", "sub\\below"};
    if (IsPosix())
        names.insert(names.end(), {"gr\xC3\xBC\xC3\x9F", "stray \"\xFF\xC3*\n"});
    for (const std::string& name : names) {
        const std::string path = folder.NarrowPath() + name;
        EXPECT_TRUE(WriteThrough(path, "w", "one")) << name;
        EXPECT_TRUE(WriteThrough(path, "ab", "+two")) << name;
        EXPECT_EQ(ReadBinaryFile(platform::Widen(path)), "one+two") << name;
        EXPECT_EQ(TuvoAccess(path.c_str(), 4, nullptr, 0), 0) << name;
    }
}

TEST(TrackedFile, IsNullWhereNothingCanBeOpened)
{
    const TemporaryFolder folder;
    const std::string file = folder.NarrowPath("file");
    const std::string missing = folder.NarrowPath("none/x");
    folder.Write("file", "text");
    const struct
    {
        const char *path, *mode;
    } rows[] = {{nullptr, "r"}, {file.c_str(), nullptr},   {"", "w"},
                {".", "r"},     {file.c_str(), "no mode"}, {missing.c_str(), "w"}};
    for (const auto& row : rows) {
        errno = 0;
        EXPECT_EQ(TuvoFOpen(row.path, row.mode, __FILE__, __LINE__), nullptr) << &row - rows;
        EXPECT_NE(errno, 0) << &row - rows;
    }
    EXPECT_EQ(ReadBinaryFile(folder.Path("file")), "text");
    EXPECT_EQ(TuvoFClose(nullptr, __FILE__, __LINE__), EOF);
    for (const int mode : {0, 1, 2})
        EXPECT_EQ(TuvoAccess(file.c_str(), mode, nullptr, 0), mode == 1 ? -1 : 0) << mode;
    EXPECT_EQ(TuvoAccess(nullptr, 0, nullptr, 0), -1);
}

TEST(TrackedFile, SystemGivesTheExitStatusOfTheCommand)
{
    EXPECT_EQ(TuvoSystem("exit 3", nullptr, 0), 3);
    EXPECT_EQ(TuvoSystem(nullptr, nullptr, 0), -1);

    const TemporaryFolder folder;
    const std::string file = folder.NarrowPath(IsPosix() ? "gr\xC3\xBC\xC3\x9F \xFF" : "a b");
    EXPECT_EQ(TuvoSystem(("echo text> \"" + file + '"').c_str(), nullptr, 0), 0);
    EXPECT_EQ(ReadTextFile(platform::Widen(file)), "text\n");
}

}  // namespace
