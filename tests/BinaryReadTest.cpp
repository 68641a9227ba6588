#include <TuvoUtil/BinaryRead.h>
#include <TuvoUtil/Memory.h>

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>

namespace {

struct StreamCloser
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

class BinaryRead : public testing::Test
{
protected:
    Stream Open(const std::string& bytes) const
    {
        m_folder.Write("bytes", bytes);
        return Stream(std::fopen(m_folder.NarrowPath("bytes").c_str(), "rb"));
    }

private:
    TemporaryFolder m_folder;
};

template <typename Value>
std::string BytesOf(Value value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

std::string Reversed(std::string bytes)
{
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

// Kept: what callers get for a double.
std::string HalfReversed(const std::string& bytes)
{
    return Reversed(bytes.substr(4)) + bytes.substr(4);
}

std::string TakeString(std::FILE* stream, int swap)
{
    char* const text = UtlReadVariableString(stream, swap);
    std::string taken = text != nullptr ? text : "null";
    VBuFree(text, __FILE__, __LINE__);
    return taken;
}

TEST(BinaryConvert, TurnsEveryElementRound)
{
    unsigned short shorts[] = {0x0102, 0xFFFE, 0x8000, 7};
    UtlConvert2byteInt(shorts, 3);
    EXPECT_EQ(std::to_array(shorts), std::to_array<unsigned short>({0x0201, 0xFEFF, 0x0080, 7}));

    int ints[] = {0x11223344, -2, 7};
    UtlConvert4byteInt(ints, 2);
    EXPECT_EQ(std::to_array(ints), std::to_array({0x44332211, -0x1000001, 7}));
    UtlConvert4byteInt(ints, 2);
    EXPECT_EQ(std::to_array(ints), std::to_array({0x11223344, -2, 7}));

    // Bytes that make a signalling nan on either side.
    const std::string bytes("\x7F\xA0\x00\x01\x01\x00\xA0\x7F", 8);
    float floats[2];
    std::memcpy(floats, bytes.data(), 8);
    EXPECT_EQ(UtlConvert4byteFloat(floats, 2), 0.0F);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(floats), 8),
              Reversed(bytes.substr(0, 4)) + Reversed(bytes.substr(4)));
}

TEST(BinaryConvert, WritesOnlyHalfOfADouble)
{
    const std::string bytes("\1\2\3\4\5\6\7\10\1\2\3\4\5\6\7\10", 16);
    double values[2];
    std::memcpy(values, bytes.data(), 16);
    for (const char* const expected : {"\10\7\6\5\5\6\7\10", "\10\7\6\5\5\6\7\10"}) {
        EXPECT_EQ(UtlConvert8byteDouble(values, 1), 0.0);
        EXPECT_EQ(BytesOf(values[0]), expected);
        EXPECT_EQ(BytesOf(values[1]), bytes.substr(8));
    }
}

TEST(BinaryConvert, DoesNothingWithoutElements)
{
    unsigned short two = 0x0102;
    int four = 0x01020304;
    float real = 1.0F;
    double precise = 1.0;
    for (const int n : {0, -1, -2147483647 - 1}) {
        UtlConvert2byteInt(&two, n);
        UtlConvert4byteInt(&four, n);
        UtlConvert4byteFloat(&real, n);
        UtlConvert8byteDouble(&precise, n);
    }
    UtlConvert2byteInt(nullptr, 1);
    UtlConvert4byteInt(nullptr, 1);
    UtlConvert4byteFloat(nullptr, 1);
    UtlConvert8byteDouble(nullptr, 1);
    EXPECT_TRUE(two == 0x0102 && four == 0x01020304 && real == 1.0F && precise == 1.0);
}

TEST_F(BinaryRead, GivesValuesInEitherOrder)
{
    const std::string bytes("\xFF\xFE\xFF\xFE\x01\x02\x03\xF4\x3F\x80\x00\x00\x40\x09\x21\xFB\x54\x44\x2D\x18", 20);
    for (const int swap : {0, 1, -1}) {
        const Stream stream = Open(bytes);
        const auto order = [swap](const std::string& part) { return swap != 0 ? Reversed(part) : part; };
        EXPECT_EQ(UtlRead2byteInt(stream.get(), 0), 0xFEFF);
        EXPECT_EQ(UtlRead2byteInt(stream.get(), swap), swap != 0 ? 0xFFFE : 0xFEFF);
        EXPECT_EQ(BytesOf(UtlRead4byteInt(stream.get(), swap)), order(bytes.substr(4, 4)));
        EXPECT_EQ(BytesOf(UtlRead4byteFloat(stream.get(), swap)), order(bytes.substr(8, 4)));
        const std::string last = bytes.substr(12);
        EXPECT_EQ(BytesOf(UtlRead8byteDouble(stream.get(), swap)), swap != 0 ? HalfReversed(last) : last);
        EXPECT_EQ(UtlRead2byteInt(stream.get(), swap), 0);
    }
}

TEST_F(BinaryRead, KeepsTheBytesThatThereAre)
{
    const std::string bytes = "\x81\x82\x83\x84\x85\x86\x87";
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const std::string padded = bytes.substr(0, size) + std::string(8 - size, '\0');
        EXPECT_EQ(BytesOf(UtlRead8byteDouble(Open(bytes.substr(0, size)).get(), 0)), padded);
        EXPECT_EQ(BytesOf(UtlRead8byteDouble(Open(bytes.substr(0, size)).get(), 1)), HalfReversed(padded));
        EXPECT_EQ(BytesOf(UtlRead4byteInt(Open(bytes.substr(0, size)).get(), 0)), padded.substr(0, 4));
        EXPECT_EQ(BytesOf(UtlRead4byteFloat(Open(bytes.substr(0, size)).get(), 1)), Reversed(padded.substr(0, 4)));
        EXPECT_EQ(BytesOf(UtlRead2byteInt(Open(bytes.substr(0, size)).get(), 0)),
                  padded.substr(0, 2) + std::string(2, '\0'));
    }
}

TEST_F(BinaryRead, GivesTextsWithTheirLength)
{
    const std::string longest(65535, 'x');
    const Stream stream =
        Open(std::string("\3\0abc\0\2de\0\0\1\0f", 14) + "\xFF\xFF" + longest + std::string("\2\0g", 3));
    EXPECT_EQ(TakeString(stream.get(), 0), "abc");
    EXPECT_EQ(TakeString(stream.get(), 1), "de");
    EXPECT_EQ(TakeString(stream.get(), 1), "null");
    EXPECT_EQ(TakeString(stream.get(), 0), "f");
    EXPECT_EQ(TakeString(stream.get(), 0), longest);
    EXPECT_EQ(TakeString(stream.get(), 0), "g") << "ends before its length does";
    EXPECT_EQ(TakeString(stream.get(), 0), "null");
    EXPECT_EQ(TakeString(Open("\5").get(), 0), "") << "one byte is the length";
}

TEST(BinaryReadOfNoStream, IsThatOfItsEnd)
{
    EXPECT_EQ(UtlRead2byteInt(nullptr, 1), 0);
    EXPECT_EQ(UtlRead4byteInt(nullptr, 0), 0);
    EXPECT_EQ(UtlRead4byteFloat(nullptr, 1), 0.0F);
    EXPECT_EQ(UtlRead8byteDouble(nullptr, 1), 0.0);
    EXPECT_EQ(UtlReadVariableString(nullptr, 0), nullptr);
}

}  // namespace
