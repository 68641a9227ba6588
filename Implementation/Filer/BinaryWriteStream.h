// The stream of CreateBinaryFileWriter: a buffer of its own in front of a file that has none.
#pragma once

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/TrackedPtr.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/WriteStream.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

class BinaryWriteStream final : public IWriteStream
{
public:
    BinaryWriteStream(const char* fileName, unsigned int mode, void (*diskFull)(), unsigned long long bufferSize);
    ~BinaryWriteStream() override;
    BinaryWriteStream(const BinaryWriteStream&) = delete;
    BinaryWriteStream& operator=(const BinaryWriteStream&) = delete;

    static void* operator new(std::size_t size) noexcept { return VBuMalloc(size, modules::Filer, __LINE__, 0); }
    static void operator delete(void* block) noexcept { VBuFree(block, modules::Filer, __LINE__); }

    // What writes to files; tests put another function in its place.
    static decltype(&std::fwrite) s_write;

    int WriteInt(int value) override { return Write(value); }
    int WriteWideInt(int value) override { return Write(value); }
    int WriteInt64(long long value) override { return Write(value); }
    int WriteFloat(float value) override { return Write(value); }
    int WriteDouble(double value) override { return Write(value); }
    int WriteReal(double value) override { return Write(value); }
    int WriteText(const BuString& text) override;
    int WritePoint2(const _TvPoint2Str& point) override { return Write(point); }
    int WritePoint3(const _TvPoint3Str& point) override { return Write(point); }
    int WriteChar(char value) override { return Write(value); }
    int WriteBlock128(const void* block) override { return WriteAt(block, 128); }
    int WriteString(const char* text) override;
    int WriteUnsignedInt(unsigned int value) override { return Write(value); }
    int WriteUnsignedInt64(unsigned long long value) override { return Write(value); }
    int WriteByte(unsigned char value) override { return Write(value); }
    int WriteAddress(unsigned long long address) override { return Write(address); }
    int WriteCountedString(const char* text) override;
    int WriteShort(short value) override { return Write(value); }
    int WriteInt32(int value) override { return Write(value); }
    int WriteInt32Triple(const int* values) override { return WriteAt(values, 3 * sizeof *values); }
    int WriteFloat32(float value) override { return Write(value); }
    int WritePoint2At(const _TvPoint2Str* point) override { return WriteAt(point, sizeof *point); }
    int WritePoint3At(const _TvPoint3Str* point) override { return WriteAt(point, sizeof *point); }
    int WriteInt32Pair(const int* values) override { return WriteAt(values, 2 * sizeof *values); }
    int WriteFloat64(double value) override { return Write(value); }
    int WriteUnsignedShort(unsigned short value) override { return Write(value); }
    int WriteBytes(unsigned long long size, const void* data) override { return WriteAt(data, size); }
    int Seek(long long offset, int origin) override;
    long long Tell() override;
    bool IsValid() override { return m_file != nullptr; }

private:
    template <typename Value>
    int Write(const Value& value)
    {
        return WriteAt(&value, sizeof value);
    }

    int WriteAt(const void* data, std::size_t size)
    {
        if (data == nullptr)
            return 0;
        if (size > m_capacity - m_pending)
            return WriteThrough(data, size);
        std::memcpy(m_buffer.Get() + m_pending, data, size);
        m_pending += size;
        return 0;
    }

    int WriteThrough(const void* data, std::size_t size);
    void Flush();
    void WriteToFile(const char* bytes, std::size_t size);
    void NoteFailure() const;
    std::size_t MakeBuffer(unsigned long long size);  // gives its capacity

    char m_fileName[1024] = "";
    std::FILE* m_file = nullptr;
    [[maybe_unused]] unsigned long long m_reserved[2] = {};
    void (*m_diskFull)();

    // The bytes that come behind those of the file. No buffer, with a capacity of 0, when the file takes no bytes or
    // memory was exhausted.
    TrackedPtr<char> m_buffer{modules::Filer};
    std::size_t m_capacity = 0;
    std::size_t m_pending = 0;
    bool m_appends;
};
