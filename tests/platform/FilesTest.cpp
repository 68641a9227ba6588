#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <memory>

namespace {

using Names = std::vector<std::wstring>;
using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream Open(const std::wstring& path, const wchar_t* mode)
{
    return Stream(platform::OpenFile(path.c_str(), mode), std::fclose);
}

// In order, since the system has none.
Names List(const std::wstring& directory)
{
    Names names;
    EXPECT_TRUE(platform::ListDirectory(directory.c_str(), names));
    std::sort(names.begin(), names.end());
    return names;
}

bool Exists(const std::wstring& path)
{
    return platform::Access(path.c_str(), 0) == 0;
}

class Files : public testing::Test
{
protected:
    std::wstring Folder(const char* name) const
    {
        const std::wstring path = m_folder.Path(name);
        EXPECT_TRUE(platform::CreateOneDirectory(path.c_str()));
        return path;
    }
    TemporaryFolder m_folder;
};

TEST_F(Files, SeeksAndTellsBeyondFourGigabytes)
{
    const Stream file = Open(m_folder.Path("file"), L"wb");
    constexpr std::int64_t place = (std::int64_t{5} << 30) + 1;
    EXPECT_EQ(platform::SeekFile(file.get(), place, SEEK_SET), 0);
    EXPECT_EQ(platform::FilePosition(file.get()), place);
    EXPECT_EQ(platform::SeekFile(file.get(), -place, SEEK_CUR), 0);
    EXPECT_EQ(platform::FilePosition(file.get()), 0);
    for (const auto& [offset, origin] : {std::pair(-1, SEEK_SET), std::pair(-1, SEEK_END), std::pair(0, 3)}) {
        errno = 0;
        EXPECT_EQ(platform::SeekFile(file.get(), offset, origin), -1);
        EXPECT_EQ(errno, EINVAL);
    }
}

TEST_F(Files, EveryCallTakesEitherSeparator)
{
    for (const wchar_t* const separator : {L"/", L"\\"}) {
        const std::wstring folder = m_folder.Path() + L"outer" + separator + L"inner";
        ASSERT_TRUE(platform::CreateOneDirectory(m_folder.Path("outer").c_str()));
        ASSERT_TRUE(platform::CreateOneDirectory(folder.c_str()));
        const std::wstring one = folder + separator + L"one";
        const std::wstring two = folder + separator + L"two";
        ASSERT_TRUE(Open(one, L"w"));
        EXPECT_TRUE(platform::CopyOneFile(one.c_str(), two.c_str()));
        EXPECT_EQ(List(folder), (Names{L"one", L"two"}));
        platform::FileStatus status;
        EXPECT_TRUE(platform::Status(two.c_str(), status));
        EXPECT_EQ(platform::Access(two.c_str(), 6), 0);
        EXPECT_EQ(platform::CanonicalPath(two.c_str()),
                  platform::CanonicalPath(folder.c_str()) + platform::Separator() + L"two");
        EXPECT_TRUE(platform::RemoveOneFile(two.c_str()));
        EXPECT_TRUE(platform::RemoveOneFile(one.c_str()));
        EXPECT_TRUE(platform::RemoveEmptyDirectory(folder.c_str()));
        EXPECT_TRUE(List(m_folder.Path("outer")).empty());
    }
}

TEST_F(Files, NamesMayHoldBlanksAndAnyScript)
{
    const Names names = {L" a  b ", L"gr\u00FC\u00DF.txt", L"\u0394\u4E2D.txt"};
    for (const std::wstring& name : names) {
        const std::wstring path = m_folder.Path() + name + L"!";  // Windows drops a blank at the end
        ASSERT_TRUE(Open(path, L"w"));
        EXPECT_EQ(List(m_folder.Path()), (Names{name + L"!"}));
        EXPECT_TRUE(platform::RemoveOneFile(path.c_str()));
        EXPECT_FALSE(Exists(path));
    }
}

TEST_F(Files, PathsMayBeLong)
{
    std::wstring folder = m_folder.Path();
    for (int depth = 0; depth < 8; ++depth) {
        folder += std::wstring(60, static_cast<wchar_t>(L'a' + depth));
        ASSERT_TRUE(platform::CreateOneDirectory(folder.c_str()));
        folder += platform::Separator();
    }
    const std::wstring file = folder + L"file";
    ASSERT_TRUE(Open(file, L"wx"));
    ASSERT_TRUE(Open(file, L"r"));
    EXPECT_TRUE(platform::CopyOneFile(file.c_str(), (folder + L"copy").c_str()));
    EXPECT_EQ(List(folder), (Names{L"copy", L"file"}));
    EXPECT_GT(platform::CanonicalPath((folder + L"copy").c_str()).size(), 480u);
}

TEST_F(Files, OpeningADirectoryFails)
{
    for (const wchar_t* const mode : {L"r", L"rb", L"r+", L"w", L"a"}) {
        errno = 0;
        EXPECT_FALSE(Open(m_folder.Path(), mode)) << platform::Narrow(mode);
        EXPECT_NE(errno, 0);
    }
}

TEST_F(Files, AFileThatMustBeNewIsNotOpenedTwice)
{
    for (const wchar_t* const mode : {L"wx", L"wbx", L"wxb", L"w+x", L"ax"}) {
        const std::wstring path = m_folder.Path("new");
        {
            const Stream stream = Open(path, mode);
            ASSERT_TRUE(stream);
            std::fputs("\n", stream.get());
        }
        errno = 0;
        EXPECT_FALSE(Open(path, mode)) << platform::Narrow(mode);
        EXPECT_EQ(errno, EEXIST);
        EXPECT_EQ(ReadTextFile(path), "\n");
        const bool isText = platform::Narrow(mode).find('b') == std::string::npos;
        EXPECT_EQ(ReadBinaryFile(path), isText && platform::Separator() == L'\\' ? "\r\n" : "\n");
        platform::RemoveOneFile(path.c_str());
    }
}

TEST_F(Files, StatusTellsKindSizeAndIdentity)
{
    const std::wstring path = m_folder.Write("file", std::string(70'000, 'x'));
    platform::FileStatus file;
    platform::FileStatus sameFile;
    platform::FileStatus other;
    platform::FileStatus folder;
    ASSERT_TRUE(platform::Status(path.c_str(), file));
    ASSERT_TRUE(platform::Status((m_folder.Path() + L"./file").c_str(), sameFile));
    ASSERT_TRUE(platform::Status(m_folder.Write("other", "").c_str(), other));
    ASSERT_TRUE(platform::Status(m_folder.Path().c_str(), folder));
    EXPECT_EQ(file.kind, platform::FileKind::Regular);
    EXPECT_EQ(folder.kind, platform::FileKind::Directory);
    EXPECT_EQ(file.size, 70'000u);
    EXPECT_EQ(std::pair(file.device, file.file), std::pair(sameFile.device, sameFile.file));
    EXPECT_EQ(file.device, other.device);
    EXPECT_NE(file.file, other.file);
    EXPECT_FALSE(platform::IsLink(path.c_str()));
    EXPECT_FALSE(platform::Status(m_folder.Path("missing").c_str(), file));
}

TEST_F(Files, AccessKnowsFourModes)
{
    const std::wstring path = m_folder.Write("file", "");
    for (int mode = -1; mode < 10; ++mode) {
        const bool isKnown = mode == 0 || mode == 2 || mode == 4 || mode == 6;
        errno = 0;
        EXPECT_EQ(platform::Access(path.c_str(), mode), isKnown ? 0 : -1) << mode;
        EXPECT_EQ(errno, isKnown ? 0 : EINVAL) << mode;
        EXPECT_EQ(platform::Access(m_folder.Path("missing").c_str(), mode), -1);
        EXPECT_EQ(errno, isKnown ? ENOENT : EINVAL) << mode;
    }
}

TEST_F(Files, ACopyReplacesTheWholeFile)
{
    for (const std::size_t size : {0u, 1u, 131'072u, 131'073u, 1'000'000u}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 251);
        const std::wstring source = m_folder.Write("source", bytes);
        const std::wstring target = m_folder.Write("target", "old text of some length");
        ASSERT_TRUE(platform::CopyOneFile(source.c_str(), target.c_str())) << size;
        EXPECT_TRUE(ReadBinaryFile(target) == bytes) << size;
        EXPECT_TRUE(platform::CopyOneFile(source.c_str(), source.c_str())) << "onto itself";
        EXPECT_TRUE(ReadBinaryFile(source) == bytes) << size;
        EXPECT_EQ(List(m_folder.Path()), (Names{L"source", L"target"}));
    }
}

TEST_F(Files, AMovedFileTakesThePlaceOfAnother)
{
    const std::wstring source = m_folder.Write("source", "new");
    const std::wstring target = m_folder.Write("target", "old");
    const std::wstring folder = Folder("folder");
    EXPECT_FALSE(platform::MoveOneFile(source.c_str(), folder.c_str()));
    EXPECT_FALSE(platform::MoveOneFile(folder.c_str(), target.c_str()));
    EXPECT_FALSE(platform::MoveOneFile(m_folder.Path("missing").c_str(), target.c_str()));
    EXPECT_FALSE(platform::MoveOneFile(source.c_str(), m_folder.Path("missing/target").c_str()));
    EXPECT_FALSE(platform::MoveOneFile(source.c_str(), nullptr));
    EXPECT_EQ(ReadBinaryFile(target), "old");
    EXPECT_TRUE(platform::MoveOneFile(source.c_str(), target.c_str()));
    EXPECT_EQ(List(m_folder.Path()), (Names{L"folder", L"target"}));
    EXPECT_EQ(ReadBinaryFile(target), "new");
    EXPECT_TRUE(platform::MoveOneFile(target.c_str(), m_folder.Path("other").c_str()));
    EXPECT_EQ(List(m_folder.Path()), (Names{L"folder", L"other"}));
}

TEST_F(Files, AFailedCopyLeavesNothingBehind)
{
    const std::wstring source = m_folder.Write("source", "text");
    const std::wstring folder = Folder("folder");
    const std::wstring missing = m_folder.Path("missing");
    EXPECT_FALSE(platform::CopyOneFile(missing.c_str(), m_folder.Path("target").c_str()));
    EXPECT_FALSE(platform::CopyOneFile(folder.c_str(), m_folder.Path("target").c_str()));
    EXPECT_FALSE(platform::CopyOneFile(source.c_str(), folder.c_str()));
    EXPECT_FALSE(platform::CopyOneFile(source.c_str(), (missing + L"/target").c_str()));
    EXPECT_EQ(List(m_folder.Path()), (Names{L"folder", L"source"}));
    EXPECT_TRUE(List(folder).empty());
}

TEST_F(Files, RemovingAsksForTheRightKind)
{
    const std::wstring folder = Folder("folder");
    const std::wstring file = m_folder.Write("folder/file", "");
    EXPECT_FALSE(platform::RemoveOneFile(folder.c_str()));
    EXPECT_FALSE(platform::RemoveEmptyDirectory(file.c_str()));
    EXPECT_FALSE(platform::RemoveEmptyDirectory(folder.c_str())) << "not empty";
    EXPECT_TRUE(platform::RemoveOneFile((file + L"/below").c_str()) &&
                platform::RemoveEmptyDirectory((file + L"/below").c_str()))
        << "nothing stands below a file";
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(platform::RemoveOneFile(file.c_str()));
        EXPECT_FALSE(Exists(file));
    }
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(platform::RemoveEmptyDirectory(folder.c_str()));
        EXPECT_FALSE(Exists(folder));
    }
}

TEST_F(Files, DirectoriesAreCreatedOneAtATime)
{
    const std::wstring file = m_folder.Write("file", "");
    EXPECT_FALSE(platform::CreateOneDirectory(m_folder.Path("a/b").c_str()));
    EXPECT_FALSE(platform::CreateOneDirectory(file.c_str()));
    EXPECT_TRUE(platform::CreateOneDirectory(m_folder.Path("a").c_str()));
    EXPECT_TRUE(platform::CreateOneDirectory(m_folder.Path("a").c_str()));
    EXPECT_TRUE(platform::CreateOneDirectory(m_folder.Path("a/b/").c_str()));
    Names names = {L"left over"};
    EXPECT_FALSE(platform::ListDirectory(file.c_str(), names));
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(platform::ListDirectory(m_folder.Path("missing").c_str(), names));
    EXPECT_EQ(List(m_folder.Path("a")), (Names{L"b"}));
}

TEST_F(Files, CanonicalPathsHaveNoDetours)
{
    const std::wstring whole = platform::CanonicalPath(m_folder.Path().c_str());
    EXPECT_NE(whole, L"");
    EXPECT_EQ(platform::CanonicalPath((Folder("folder") + L"/.././/folder/../").c_str()), whole);
    EXPECT_EQ(platform::CanonicalPath(whole.c_str()), whole);
    EXPECT_EQ(platform::CanonicalPath(m_folder.Path("missing").c_str()), L"");
    EXPECT_EQ(platform::CanonicalPath(L"."), platform::CanonicalPath(platform::WorkingDirectory().c_str()));
    EXPECT_EQ(platform::TemporaryDirectory().back(), platform::Separator());
    EXPECT_NE(platform::CanonicalPath(platform::TemporaryDirectory().c_str()), L"");
}

TEST_F(Files, NoPathNamesNothing)
{
    Names names;
    platform::FileStatus status;
    const std::wstring file = m_folder.Write("file", "");
    for (const wchar_t* const none : {static_cast<const wchar_t*>(nullptr), L""}) {
        EXPECT_EQ(platform::OpenFile(none, L"w"), nullptr);
        EXPECT_EQ(platform::OpenFile(file.c_str(), none), nullptr);
        EXPECT_EQ(platform::Access(none, 0), -1);
        EXPECT_FALSE(platform::Status(none, status) || platform::IsLink(none) || platform::ListDirectory(none, names) ||
                     platform::CreateOneDirectory(none) || platform::CopyOneFile(none, m_folder.Path("x").c_str()) ||
                     platform::CopyOneFile(file.c_str(), none) || platform::RemoveOneFile(none) ||
                     platform::RemoveEmptyDirectory(none));
        EXPECT_EQ(platform::CanonicalPath(none), L"");
    }
    EXPECT_EQ(List(m_folder.Path()), (Names{L"file"}));
}

}  // namespace
