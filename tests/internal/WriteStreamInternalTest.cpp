// Write streams whose writes fail, and without memory.

#include "Filer/BinaryWriteStream.h"

#include "support/AllocationControl.h"
#include "support/ReportScope.h"
#include "support/StreamModel.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using Writer = std::unique_ptr<IWriteStream>;

// A disk that has room for so many bytes, and then fails with an error.
std::size_t g_room;
int g_error;
int g_calls;

std::size_t WriteToDisk(const void* bytes, std::size_t size, std::size_t count, std::FILE* file)
{
    const std::size_t fitting = std::min(count, g_room / size);
    g_room -= fitting * size;
    if (fitting == 0)
        errno = g_error;
    return std::fwrite(bytes, size, fitting, file);
}

class WriteStreamFailure : public testing::Test
{
protected:
    WriteStreamFailure()
    {
        VxInitBinaryFileError();
        g_calls = 0;
    }
    ~WriteStreamFailure() override
    {
        BinaryWriteStream::s_write = std::fwrite;
        VxInitBinaryFileError();
    }

    static void SetRoom(std::size_t room, int error)
    {
        BinaryWriteStream::s_write = WriteToDisk;
        g_room = room;
        g_error = error;
    }
    Writer Open(
        void (*diskFull)() = [] { ++g_calls; }, unsigned long long bufferSize = 8) const
    {
        return Writer(CreateBinaryFileWriter(m_folder.NarrowPath("file").c_str(), 1, diskFull, bufferSize));
    }
    std::string Content() const { return ReadBinaryFile(m_folder.Path("file")); }

    TemporaryFolder m_folder;
};

TEST_F(WriteStreamFailure, WritesWhatFitsAndTellsOnceUntilReset)
{
    SetRoom(10, ENOSPC);
    Writer file = Open();
    file->WriteBytes(12, "0123456789AB");
    EXPECT_EQ(g_calls, 1);
    EXPECT_EQ(VxGetLastBinaryFileError(), 28);
    EXPECT_EQ(file->Tell(), 10) << "what was lost does not count";
    file->WriteBytes(12, "0123456789AB");
    EXPECT_EQ(g_calls, 1);
    VxInitBinaryFileError();
    EXPECT_EQ(VxGetLastBinaryFileError(), 0);
    file->WriteInt(1);
    EXPECT_EQ(g_calls, 1) << "it is in the buffer";
    file.reset();
    EXPECT_EQ(g_calls, 2);
    EXPECT_EQ(Content(), "0123456789");
}

TEST_F(WriteStreamFailure, TellsNothingOfOtherFailuresAndOfAFormerOne)
{
    for (const int error : {EPIPE, EIO, EBADF, 0}) {
        SetRoom(0, error);
        errno = ENOSPC;
        Open()->WriteDouble(1.0);
        EXPECT_EQ(g_calls, 0) << error;
        EXPECT_EQ(VxGetLastBinaryFileError(), 0) << error;
    }
}

TEST_F(WriteStreamFailure, GoesOnAfterAnInterruption)
{
    BinaryWriteStream::s_write = [](const void* bytes, std::size_t size, std::size_t count, std::FILE* file) {
        errno = EINTR;
        return ++g_calls % 2 != 0 ? 0 : std::fwrite(bytes, size, std::min<std::size_t>(count, 3), file);
    };
    Open()->WriteString("three bytes at a time");
    EXPECT_EQ(Content(), std::string("\x16\0\0\0three bytes at a time\0", 26));
}

TEST_F(WriteStreamFailure, BearsACallbackThatThrowsOrWrites)
{
    SetRoom(4, ENOSPC);
    Writer file = Open([] { throw 5; });
    file->WriteInt(1);
    file->WriteInt(2);
    EXPECT_THROW(file->Seek(0, SEEK_CUR), int);
    EXPECT_EQ(file->Tell(), 4);
    EXPECT_EQ(file->Seek(0, SEEK_SET), 0);
    file.reset();
    EXPECT_EQ(Content(), std::string("\1\0\0\0", 4));

    static IWriteStream* writing;
    VxInitBinaryFileError();
    SetRoom(0, ENOSPC);
    file = Open([] { writing->WriteChar('x'); });
    writing = file.get();
    file->WriteBytes(9, "of no use");
    SetRoom(100, 0);
    file->WriteChar('y');
    file.reset();
    EXPECT_EQ(Content(), "xy");
}

TEST_F(WriteStreamFailure, WithoutMemoryThereIsNoStreamOrItWritesEachValueAtOnce)
{
    const ReportScope reports;
    const std::string path = m_folder.NarrowPath("file");
    const int failures = allocation::ForEachFailure([&] {
        const Writer file(CreateBinaryFileWriter(path.c_str(), 1, nullptr, 8));
        ASSERT_TRUE(file != nullptr || allocation::HasFailed());
        if (file == nullptr || !file->IsValid())
            return;
        file->WriteInt(7);
        file->WriteText(L"a text that needs memory to become narrow");
        EXPECT_EQ(file->Seek(0, SEEK_CUR), 0);
        const long long size = file->Tell();
        EXPECT_TRUE(size == 4 + 4 + 42 || (size == 4 + 4 + 1 && allocation::HasFailed())) << size;
    });
    EXPECT_GE(failures, 4);
    EXPECT_EQ(allocation::ForEachFailure([] {
                  const std::unique_ptr<IWriteStreamBasedChecksum> sum(CreateWriteStreamBasedChecksum());
                  EXPECT_EQ(sum == nullptr, allocation::HasFailed());
              }),
              1);
}

}  // namespace
