// Write streams a second time, in memory: what each operation puts into the file and into the checksum, and how a file
// takes it. The oracle of the stream's tests and of its fuzz target.
#pragma once

#include "platform/Platform.h"
#include "support/ChecksumOf.h"
#include "support/TestFiles.h"

#include <TuvoUtil/WriteStream.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

// ---- What an operation writes --------------------------------------------------------------------------------------

// The bytes of values, in memory order.
template <typename... Values>
std::string Bytes(const Values&... values)
{
    return (std::string() + ... + std::string(reinterpret_cast<const char*>(&values), sizeof values));
}

// A number in every type that operations take, and a text without NULs.
struct StreamValues
{
    StreamValues(long long value, std::string ofText) : int64(value), text(std::move(ofText)) {}

    long long int64;
    unsigned long long uint64 = static_cast<unsigned long long>(int64);
    int int32 = static_cast<int>(int64);
    unsigned int uint32 = static_cast<unsigned int>(int64);
    short int16 = static_cast<short>(int64);
    unsigned short uint16 = static_cast<unsigned short>(int64);
    char int8 = static_cast<char>(int64);
    unsigned char uint8 = static_cast<unsigned char>(int64);
    float single = static_cast<float>(int64);
    double real = static_cast<double>(int64) / 3.0;
    _TvPoint2Str point2 = {real, -real};
    _TvPoint3Str point3 = {-real, real, 1.0};
    std::array<int, 3> triple = {int32, -1, 7};
    std::array<int, 2> pair = {-1, int32};
    std::array<char, 128> block = {int8, 'x'};
    std::string text;
};

struct Written
{
    int result;
    std::string file;
    std::string summed;  // in the checksum
};
using Stream = IWriteStream&;
using Values = const StreamValues&;

// An operation that takes a value, one that takes its address, and one whose checksum takes it wider.
template <auto Write, auto Value>
Written Plain(Stream stream, Values values)
{
    return {(stream.*Write)(values.*Value), Bytes(values.*Value), Bytes(values.*Value)};
}

template <auto Write, auto Value>
Written At(Stream stream, Values values)
{
    const auto& value = values.*Value;
    if constexpr (requires { value.data(); })
        return {(stream.*Write)(value.data()), Bytes(value), Bytes(value)};
    else
        return {(stream.*Write)(&value), Bytes(value), Bytes(value)};
}

template <auto Write, auto Value, typename Wide>
Written Wider(Stream stream, Values values)
{
    return {(stream.*Write)(values.*Value), Bytes(values.*Value), Bytes(static_cast<Wide>(values.*Value))};
}

inline Written String(Stream s, Values v)
{
    return {s.WriteString(v.text.c_str()), Bytes(static_cast<int>(v.text.size()) + 1) + v.text + '\0', v.text};
}

// Text of ASCII alone, which is the same in every form.
inline Written Text(Stream s, Values v)
{
    return {s.WriteText(v.text.c_str()), Bytes(static_cast<int>(v.text.size()) + 1) + v.text + '\0', v.text};
}

inline Written CountedString(Stream s, Values v)
{
    return {s.WriteCountedString(v.text.c_str()), Bytes(static_cast<int>(v.text.size())) + v.text, v.text};
}

inline Written Address(Stream s, Values v)
{
    const unsigned long long address = reinterpret_cast<std::uintptr_t>(&v.int64);
    return {s.WriteAddress(address), Bytes(address), Bytes(v.int64)};
}

inline Written Block(Stream s, Values v)
{
    return {s.WriteBytes(v.text.size(), v.text.data()), v.text, v.text};
}

using S = IWriteStream;
using V = StreamValues;

// Operations 1 to 27 in their order.
inline constexpr Written (*streamOperations[])(Stream stream, Values values) = {
    Plain<&S::WriteInt, &V::int32>,
    Wider<&S::WriteWideInt, &V::int32, long long>,
    Plain<&S::WriteInt64, &V::int64>,
    Plain<&S::WriteFloat, &V::single>,
    Plain<&S::WriteDouble, &V::real>,
    Plain<&S::WriteReal, &V::real>,
    Text,
    Plain<&S::WritePoint2, &V::point2>,
    Plain<&S::WritePoint3, &V::point3>,
    Plain<&S::WriteChar, &V::int8>,
    At<&S::WriteBlock128, &V::block>,
    String,
    Wider<&S::WriteUnsignedInt, &V::uint32, unsigned long long>,
    Plain<&S::WriteUnsignedInt64, &V::uint64>,
    Plain<&S::WriteByte, &V::uint8>,
    Address,
    CountedString,
    Wider<&S::WriteShort, &V::int16, int>,
    Plain<&S::WriteInt32, &V::int32>,
    At<&S::WriteInt32Triple, &V::triple>,
    Plain<&S::WriteFloat32, &V::single>,
    At<&S::WritePoint2At, &V::point2>,
    At<&S::WritePoint3At, &V::point3>,
    At<&S::WriteInt32Pair, &V::pair>,
    Plain<&S::WriteFloat64, &V::real>,
    Wider<&S::WriteUnsignedShort, &V::uint16, unsigned int>,
    Block,
};

// ---- What a file becomes -------------------------------------------------------------------------------------------

struct FileModel
{
    std::string content;
    bool appends;
    long long position;

    long long End() const { return static_cast<long long>(content.size()); }

    void Write(const std::string& bytes)
    {
        if (bytes.empty())
            return;
        const auto start = static_cast<std::size_t>(appends ? End() : position);
        content.resize(std::max(content.size(), start + bytes.size()));
        content.replace(start, bytes.size(), bytes);
        position = static_cast<long long>(start + bytes.size());
    }

    int Seek(long long offset, int origin)
    {
        offset += origin == SEEK_SET ? 0 : origin == SEEK_CUR ? position : End();
        if (offset < 0 || origin > SEEK_END)
            return -1;
        position = offset;
        return 0;
    }
};

// Runs the operations that `input` stands for on a file with some content, on a checksum and on the model. Gives what
// differs; the empty text when nothing does.
inline std::string StreamDifference(std::string_view input)
{
    static const TemporaryFolder folder;
    std::size_t next = 0;
    const auto take = [&] { return next < input.size() ? static_cast<unsigned char>(input[next++]) : 0; };
    const bool appends = take() % 2 != 0;
    FileModel model = {appends ? "as it was" : "", appends, appends ? 9 : 0};
    folder.Write("model.bin", "as it was");
    const std::string path = folder.NarrowPath("model.bin");
    std::unique_ptr<IWriteStream> file(
        CreateBinaryFileWriter(path.c_str(), appends ? 2 : 1, nullptr, static_cast<unsigned long long>(take())));
    const std::unique_ptr<IWriteStreamBasedChecksum> sum(CreateWriteStreamBasedChecksum());
    std::string summed;
    while (next < input.size()) {
        const auto operation = static_cast<std::size_t>(take()) % (std::size(streamOperations) + 3);
        const int number = take() - 128, length = take() * 3;
        const StreamValues values(static_cast<long long>(static_cast<unsigned>(number) * 0x0102030405060708ULL),
                                  std::string(static_cast<std::size_t>(length), 'x'));
        if (operation < std::size(streamOperations)) {
            const Written written = streamOperations[operation](*file, values);
            model.Write(written.file);
            summed += written.summed;
            if (written.result != 0 || streamOperations[operation](*sum, values).result != 0)
                return "the result of operation " + std::to_string(operation + 1);
        } else if (operation == std::size(streamOperations)) {
            if (file->Seek(length - 200, number & 3) != model.Seek(length - 200, number & 3))
                return "the result of Seek";
        } else if (file->Tell() != model.position) {
            return "the place that Tell gives";
        }
    }
    file.reset();
    if (ReadBinaryFile(folder.Path("model.bin")) != model.content)
        return "the file";
    return sum->GetChecksum() == ChecksumOf(summed) ? "" : "the checksum";
}
