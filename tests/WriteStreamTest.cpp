#include <TuvoUtil/WriteStream.h>

#include "support/StreamModel.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

namespace {

using std::string_literals::operator""s;
using Writer = std::unique_ptr<IWriteStream>;

int g_calls;

void CountCall()
{
    ++g_calls;
}

class WriteStream : public testing::Test
{
protected:
    WriteStream()
    {
        VxInitBinaryFileError();
        g_calls = 0;
    }
    ~WriteStream() override { VxInitBinaryFileError(); }

    Writer Open(unsigned int mode = 1, unsigned long long bufferSize = 0) const
    {
        return Writer(CreateBinaryFileWriter(m_folder.NarrowPath("file").c_str(), mode, CountCall, bufferSize));
    }
    std::string Content() const { return ReadBinaryFile(m_folder.Path("file")); }

    TemporaryFolder m_folder;
};

// The numbers of virtual operations. A pointer to one is the distance of its entry in bytes, plus 1, and the destructor
// takes two entries.
template <typename... Operations>
std::vector<int> NumbersOf(Operations... operations)
{
    const auto numberOf = [](const auto& operation) {
        std::uintptr_t place = 0;
        std::memcpy(&place, &operation, sizeof place);
        return static_cast<int>((place - 1) / sizeof place) - 1;
    };
    return {numberOf(operations)...};
}

TEST_F(WriteStream, KeepsTheOrderOfItsOperations)
{
    std::vector<int> expected(31);
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(
        NumbersOf(&S::WriteInt, &S::WriteWideInt, &S::WriteInt64, &S::WriteFloat, &S::WriteDouble, &S::WriteReal,
                  &S::WriteText, &S::WritePoint2, &S::WritePoint3, &S::WriteChar, &S::WriteBlock128, &S::WriteString,
                  &S::WriteUnsignedInt, &S::WriteUnsignedInt64, &S::WriteByte, &S::WriteAddress, &S::WriteCountedString,
                  &S::WriteShort, &S::WriteInt32, &S::WriteInt32Triple, &S::WriteFloat32, &S::WritePoint2At,
                  &S::WritePoint3At, &S::WriteInt32Pair, &S::WriteFloat64, &S::WriteUnsignedShort, &S::WriteBytes,
                  &S::Seek, &S::Tell, &S::IsValid, &IWriteStreamBasedChecksum::GetChecksum),
        expected);
}

// Bytes laid out by hand where file and checksum differ, where a length is written, and for null.
TEST_F(WriteStream, WritesTheseBytes)
{
    const std::string euroUmlaut = platform::Narrow(L"\u20AC\u00E4");
    const struct
    {
        const char* what;
        int (*write)(IWriteStream& stream);
        std::string file, summed;
    } rows[] = {
        {"int", [](Stream s) { return s.WriteInt(-2); }, "\xFE\xFF\xFF\xFF", "\xFE\xFF\xFF\xFF"},
        {"wide int", [](Stream s) { return s.WriteWideInt(-2); }, "\xFE\xFF\xFF\xFF",
         "\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},
        {"unsigned", [](Stream s) { return s.WriteUnsignedInt(0xFFFFFFFE); }, "\xFE\xFF\xFF\xFF",
         "\xFE\xFF\xFF\xFF\0\0\0\0"s},
        {"short", [](Stream s) { return s.WriteShort(-2); }, "\xFE\xFF", "\xFE\xFF\xFF\xFF"},
        {"unsigned short", [](Stream s) { return s.WriteUnsignedShort(0xFFFE); }, "\xFE\xFF", "\xFE\xFF\0\0"s},
        {"string", [](Stream s) { return s.WriteString("bolt"); }, "\5\0\0\0bolt\0"s, "bolt"},
        {"counted string", [](Stream s) { return s.WriteCountedString("bolt"); }, "\4\0\0\0bolt"s, "bolt"},
        {"empty string", [](Stream s) { return s.WriteString(""); }, "\1\0\0\0\0"s, ""},
        {"empty counted string", [](Stream s) { return s.WriteCountedString(""); }, "\0\0\0\0"s, ""},
        {"text", [](Stream s) { return s.WriteText(L"bolt"); }, "\5\0\0\0bolt\0"s, "bolt"},
        {"text beyond ASCII", [](Stream s) { return s.WriteText(L"\u20AC\u00E4"); },
         Bytes(static_cast<int>(euroUmlaut.size()) + 1) + euroUmlaut + '\0', "\xAC\xE4"},
        {"null string", [](Stream s) { return s.WriteString(nullptr); }, "\0\0\0\0"s, ""},
        {"null counted string", [](Stream s) { return s.WriteCountedString(nullptr); }, "\0\0\0\0"s, ""},
        {"null block", [](Stream s) { return s.WriteBlock128(nullptr); }, "", ""},
        {"null address", [](Stream s) { return s.WriteAddress(0); }, "\0\0\0\0\0\0\0\0"s, ""},
        {"null triple", [](Stream s) { return s.WriteInt32Triple(nullptr); }, "", ""},
        {"null pair", [](Stream s) { return s.WriteInt32Pair(nullptr); }, "", ""},
        {"null 2D point", [](Stream s) { return s.WritePoint2At(nullptr); }, "", ""},
        {"null 3D point", [](Stream s) { return s.WritePoint3At(nullptr); }, "", ""},
        {"null bytes", [](Stream s) { return s.WriteBytes(5, nullptr); }, "", ""},
        {"no bytes", [](Stream s) { return s.WriteBytes(0, "x"); }, "", ""},
    };
    for (const auto& [what, write, file, summed] : rows) {
        const std::unique_ptr<IWriteStreamBasedChecksum> sum(CreateWriteStreamBasedChecksum());
        EXPECT_EQ(write(*Open()) | write(*sum), 0) << what;
        EXPECT_EQ(Content(), file) << what;
        EXPECT_EQ(sum->GetChecksum(), ChecksumOf(summed)) << what;
    }
    const std::unique_ptr<IWriteStreamBasedChecksum> sum(CreateWriteStreamBasedChecksum());
    sum->WriteBytes((1ULL << 32) + 5, "12345");
    EXPECT_EQ(sum->GetChecksum(), ChecksumOf("12345"));
    EXPECT_TRUE(sum->IsValid());
}

TEST_F(WriteStream, IsTheModelWhateverIsWrittenSoughtAndTold)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string input(2 + random() % 200, '\0');
        for (char& byte : input)
            byte = static_cast<char>(random());
        ASSERT_EQ(StreamDifference(input), "") << "round " << round;
    }
}

TEST_F(WriteStream, GathersBytesUntilTheBufferIsFull)
{
    const Writer small = Open(1, 8);
    small->WriteInt(1);
    EXPECT_EQ(Content().size(), 0u);
    small->WriteInt(1);
    small->WriteChar('x');
    EXPECT_EQ(Content().size(), 8u);
    EXPECT_EQ(small->Tell(), 9);
    small->WriteBytes(100, std::string(100, 'y').c_str());
    EXPECT_EQ(Content().size(), 109u);
    const Writer huge = Open(1, (1ULL << 32) + 5);
    huge->WriteInt(1);
    EXPECT_EQ(huge->Seek(0, SEEK_CUR), 0);
    EXPECT_EQ(Content().size(), 4u);
}

TEST_F(WriteStream, ReachesBeyondFourGigabytes)
{
    constexpr long long place = (5LL << 30) + 3;
    const Writer file = Open();
    file->WriteInt(1);
    EXPECT_EQ(file->Seek(place, SEEK_SET), 0);
    EXPECT_EQ(file->Tell(), place);
    EXPECT_EQ(file->Seek(-place, SEEK_CUR), 0);
    EXPECT_EQ(file->Tell(), 0);
    EXPECT_EQ(file->Seek(-1, SEEK_SET), -1);
    EXPECT_EQ(file->Seek(0, 3), -1);
}

// ---- Files that take nothing ---------------------------------------------------------------------------------------

TEST_F(WriteStream, IsInvalidWhenTheFileCannotBeOpened)
{
    const std::string folder = m_folder.NarrowPath(), missing = m_folder.NarrowPath("none/file");
    const struct
    {
        const char* name;
        unsigned int mode;
    } rows[] = {{folder.c_str(), 1}, {missing.c_str(), 2}, {missing.c_str(), 0}, {nullptr, 1}, {"", 1}, {"x", 3}};
    for (const auto& [name, mode] : rows) {
        const Writer file(CreateBinaryFileWriter(name, mode, CountCall, 10));
        ASSERT_NE(file, nullptr);
        EXPECT_FALSE(file->IsValid());
        EXPECT_EQ(file->WriteText(L"text") | file->WriteDouble(1.0) | file->WriteBytes(100, folder.c_str()), 0);
        EXPECT_EQ(file->Seek(0, SEEK_SET), -1);
        EXPECT_EQ(file->Tell(), -1);
        EXPECT_FALSE(file->IsValid());
    }
    EXPECT_EQ(VxGetLastBinaryFileError(), 0);
}

TEST_F(WriteStream, OpensAFileForReadingAndThenWritesNothing)
{
    m_folder.Write("file", "content");
    Writer file = Open(0);
    EXPECT_TRUE(file->IsValid());
    EXPECT_EQ(file->WriteInt(1), 0);
    EXPECT_EQ(file->Tell(), 0);
    EXPECT_EQ(file->Seek(0, SEEK_END), 0);
    EXPECT_EQ(file->Tell(), 7);
    file.reset();
    EXPECT_EQ(Content(), "content");
    EXPECT_EQ(g_calls, 0);
}

TEST_F(WriteStream, CutsALongNameAt1023Bytes)
{
    std::string name = m_folder.NarrowPath();
    while (name.size() < 1000)
        name += "./";
    name += std::string(1023 - name.size(), 'x');
    Writer(CreateBinaryFileWriter((name + "yz").c_str(), 1, nullptr, 0))->WriteChar('1');
    EXPECT_EQ(ReadBinaryFile(platform::Widen(name)), "1");
}

TEST_F(WriteStream, TellsOnceOfAFullDiskWhereverItIsFound)
{
    if (platform::Access(L"/dev/full", 2) != 0)
        GTEST_SKIP() << "this system has no device that is always full";
    void (*const uses[])(IWriteStream & file) = {
        [](Stream file) { file.WriteBytes(100'000, std::string(100'000, 'x').c_str()); },
        [](Stream file) {
            for (int i = 0; i < 100'000; ++i)
                file.WriteInt(i);
        },
        [](Stream file) {
            file.WriteInt(1);
            file.Seek(0, SEEK_SET);
        },
        [](Stream file) { file.WriteInt(1); },  // found when it is closed
    };
    for (const auto use : uses)
        for (const unsigned int mode : {1u, 2u}) {
            VxInitBinaryFileError();
            g_calls = 0;
            use(*Writer(CreateBinaryFileWriter("/dev/full", mode, CountCall, 0)));
            use(*Writer(CreateBinaryFileWriter("/dev/full", mode, CountCall, 16)));
            use(*Writer(CreateBinaryFileWriter("/dev/full", mode, nullptr, 0)));
            EXPECT_EQ(g_calls, 1);
            EXPECT_EQ(VxGetLastBinaryFileError(), 28);
        }
}

}  // namespace
